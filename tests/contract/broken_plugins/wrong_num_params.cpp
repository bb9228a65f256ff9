// Announces more controls than it added.
#include "tests/contract/broken_plugins/well_behaved.h"

BROKEN_EXPORT PF_Err EntryPointFunc(PF_Cmd cmd, PF_InData* in, PF_OutData* out, PF_ParamDef*[],
                                    PF_LayerDef* output, void*) {
    if (cmd == PF_Cmd_PARAMS_SETUP) {
        const PF_Err error = broken::add_controls(in, out);
        out->num_params = 12;
        return error;
    }
    return broken::answer(cmd, in, out, output);
}
