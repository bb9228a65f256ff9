// Gives back a suite that it does not have, and keeps another.
#include "tests/contract/broken_plugins/well_behaved.h"

BROKEN_AT(PF_Cmd_RENDER) {
    in->pica_basicP->ReleaseSuite("AEGP Item Suite", 3);
    broken::acquire<char>(in, "AEGP Light Suite", 1);
    return broken::render(in, output);
}
