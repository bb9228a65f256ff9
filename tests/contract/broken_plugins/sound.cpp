// Keeps every rule, and keeps a journal of what each command brought.
#include <sstream>
#include <string>

#include "tests/contract/broken_plugins/well_behaved.h"

static std::string journal;

ZAM_EXPORT const char* Journal() { return journal.c_str(); }

ZAM_EXPORT PF_Err EntryPointFunc(PF_Cmd cmd, PF_InData* in, PF_OutData* out, PF_ParamDef* params[],
                                 PF_LayerDef* output, void* extra) {
    std::ostringstream text;
    text << "version " << in->version.major << "." << in->version.minor;
    if (params) {
        text << " params";
        for (int i = 1; params[i]; ++i) {
            const PF_ParamDef& p = *params[i];
            text << " " << (p.param_type == PF_Param_POPUP ? p.u.pd.value : p.u.fd.value);
        }
        if (params[0]->u.ld.data) text << " input";
    }
    if (in->sequence_data)
        text << " sequence " << int{**reinterpret_cast<unsigned char**>(in->sequence_data)};
    if (in->time_step)
        text << " time " << in->current_time << "/" << in->time_scale << " step " << in->time_step;
    if (in->width) text << " size " << in->width << "x" << in->height;
    if (output) text << " output " << output->width << "x" << output->height;
    if (extra) text << " extra";
    if (out->return_msg[0] || out->out_flags) text << " DIRTY";
    journal = text.str();
    std::strcpy(out->return_msg, "seen");  // must be gone at the next command
    return broken::answer(cmd, in, out, output);
}
