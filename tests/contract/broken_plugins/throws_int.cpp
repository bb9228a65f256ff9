// Throws an int when it renders.
#include "tests/contract/broken_plugins/well_behaved.h"

BROKEN_AT(PF_Cmd_RENDER) { throw 516; }
