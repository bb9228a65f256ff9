// Fills the message to its last byte and formats more than fits.
#include "tests/contract/broken_plugins/well_behaved.h"

ZAM_EXPORT PF_Err EntryPointFunc(PF_Cmd cmd, PF_InData* in, PF_OutData* out, PF_ParamDef*[],
                                 PF_LayerDef* output, void*) {
    if (cmd == PF_Cmd_ABOUT) {
        std::memset(out->return_msg, 97, sizeof out->return_msg);
        const int wanted = in->utils->ansi.sprintf(out->return_msg, "%0500d", 7);
        out->out_flags = wanted == 500 ? PF_OutFlag_DISPLAY_ERROR_MESSAGE : 0;
    }
    if (cmd == PF_Cmd_UPDATE_PARAMS_UI) std::memset(out->return_msg, 97, sizeof out->return_msg);
    return broken::answer(cmd, in, out, output);
}
