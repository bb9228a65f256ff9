// Answers with an error when it has not got a suite that nobody has.
#include "tests/contract/broken_plugins/well_behaved.h"

BROKEN_EXPORT PF_Err EntryPointFunc(PF_Cmd cmd, PF_InData* in, PF_OutData* out, PF_ParamDef*[],
                                    PF_LayerDef* output, void*) {
    if (cmd == PF_Cmd_RENDER) return broken::acquire<char>(in, "A Suite of Dreams", 1) ? 0 : 4;
    return broken::answer(cmd, in, out, output);
}
