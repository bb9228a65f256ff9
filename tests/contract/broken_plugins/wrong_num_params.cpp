// Announces more controls than it added.
#include "tests/contract/broken_plugins/well_behaved.h"

BROKEN_AT(PF_Cmd_PARAMS_SETUP) {
    const PF_Err error = broken::add_controls(in, out);
    out->num_params = 12;
    return error;
}
