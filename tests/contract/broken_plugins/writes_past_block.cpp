// Writes behind its sequence data.
#include "tests/contract/broken_plugins/well_behaved.h"

BROKEN_EXPORT PF_Err EntryPointFunc(PF_Cmd cmd, PF_InData* in, PF_OutData* out, PF_ParamDef*[],
                                    PF_LayerDef* output, void*) {
    if (cmd == PF_Cmd_RENDER) static_cast<char*>(*in->sequence_data)[4] = 1;
    return broken::answer(cmd, in, out, output);
}
