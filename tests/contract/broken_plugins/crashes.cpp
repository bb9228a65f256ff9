// Reads through a null pointer when it renders.
#include "tests/contract/broken_plugins/well_behaved.h"

BROKEN_EXPORT PF_Err EntryPointFunc(PF_Cmd cmd, PF_InData* in, PF_OutData* out, PF_ParamDef*[],
                                    PF_LayerDef* output, void*) {
    if (cmd == PF_Cmd_RENDER) {
        const A_long* volatile nothing = nullptr;
        return *nothing;
    }
    return broken::answer(cmd, in, out, output);
}
