// Gives back a suite that it does not have, and keeps another.
#include "tests/contract/broken_plugins/well_behaved.h"

BROKEN_EXPORT PF_Err EntryPointFunc(PF_Cmd cmd, PF_InData* in, PF_OutData* out, PF_ParamDef*[],
                                    PF_LayerDef* output, void*) {
    if (cmd == PF_Cmd_RENDER) in->pica_basicP->ReleaseSuite("AEGP Item Suite", 3);
    const void* suite = nullptr;
    if (cmd == PF_Cmd_RENDER) in->pica_basicP->AcquireSuite("AEGP Light Suite", 1, &suite);
    return broken::answer(cmd, in, out, output);
}
