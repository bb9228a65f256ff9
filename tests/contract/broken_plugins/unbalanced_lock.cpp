// Locks its sequence data once and unlocks its global data twice.
#include "tests/contract/broken_plugins/well_behaved.h"

BROKEN_AT(PF_Cmd_RENDER) {
    in->utils->host_lock_handle(in->sequence_data);
    in->utils->host_lock_handle(in->global_data);
    in->utils->host_unlock_handle(in->global_data);
    in->utils->host_unlock_handle(in->global_data);
    return broken::render(in, output);
}
