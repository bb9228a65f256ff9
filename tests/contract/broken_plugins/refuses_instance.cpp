// Answers each new instance with an error.
#include "tests/contract/broken_plugins/well_behaved.h"

BROKEN_AT(PF_Cmd_SEQUENCE_SETUP) { return PF_Err_OUT_OF_MEMORY; }
