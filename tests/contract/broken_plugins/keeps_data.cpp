// Keeps a block that it made to render, and its data at the end.
#include "tests/contract/broken_plugins/well_behaved.h"

ZAM_EXPORT PF_Err EntryPointFunc(PF_Cmd cmd, PF_InData* in, PF_OutData* out, PF_ParamDef*[],
                                 PF_LayerDef* output, void*) {
    if (cmd == PF_Cmd_RENDER) broken::new_block(in, 96, 0);
    if (cmd == PF_Cmd_SEQUENCE_SETDOWN || cmd == PF_Cmd_GLOBAL_SETDOWN) return PF_Err_NONE;
    return broken::answer(cmd, in, out, output);
}
