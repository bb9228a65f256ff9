// Answers with an error when it has not got a suite that nobody has.
#include "tests/contract/broken_plugins/well_behaved.h"

BROKEN_AT(PF_Cmd_RENDER) { return broken::acquire<char>(in, "A Suite of Dreams", 1) ? 0 : 4; }
