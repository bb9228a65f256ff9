// Ends the process when the last of it is taken down.
#include <cstdlib>

#include "tests/contract/broken_plugins/well_behaved.h"

BROKEN_EXPORT PF_Err EntryPointFunc(PF_Cmd cmd, PF_InData* in, PF_OutData* out, PF_ParamDef*[],
                                    PF_LayerDef* output, void*) {
    if (cmd == PF_Cmd_GLOBAL_SETDOWN) std::_Exit(0);
    return broken::answer(cmd, in, out, output);
}
