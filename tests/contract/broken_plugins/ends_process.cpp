// Ends the process when the last of it is taken down.
#include <cstdlib>

#include "tests/contract/broken_plugins/well_behaved.h"

BROKEN_AT(PF_Cmd_GLOBAL_SETDOWN) { std::_Exit(0); }
