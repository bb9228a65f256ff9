// Answers each new instance with an error.
#include "tests/contract/broken_plugins/well_behaved.h"

BROKEN_EXPORT PF_Err EntryPointFunc(PF_Cmd cmd, PF_InData* in, PF_OutData* out, PF_ParamDef*[],
                                    PF_LayerDef* output, void*) {
    if (cmd == PF_Cmd_SEQUENCE_SETUP) return PF_Err_OUT_OF_MEMORY;
    return broken::answer(cmd, in, out, output);
}
