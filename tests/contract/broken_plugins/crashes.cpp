// Reads through a null pointer when it renders.
#include "tests/contract/broken_plugins/well_behaved.h"

BROKEN_AT(PF_Cmd_RENDER) {
    const A_long* volatile nothing = nullptr;
    return *nothing;
}
