// Throws a standard exception when it renders.
#include <stdexcept>

#include "tests/contract/broken_plugins/well_behaved.h"

BROKEN_AT(PF_Cmd_RENDER) { throw std::runtime_error("no idea"); }
