// Locks its sequence data once and unlocks its global data twice.
#include "tests/contract/broken_plugins/well_behaved.h"

BROKEN_EXPORT PF_Err EntryPointFunc(PF_Cmd cmd, PF_InData* in, PF_OutData* out, PF_ParamDef*[],
                                    PF_LayerDef* output, void*) {
    if (cmd == PF_Cmd_RENDER) {
        in->utils->host_lock_handle(in->sequence_data);
        in->utils->host_lock_handle(in->global_data);
        in->utils->host_unlock_handle(in->global_data);
        in->utils->host_unlock_handle(in->global_data);
    }
    return broken::answer(cmd, in, out, output);
}
