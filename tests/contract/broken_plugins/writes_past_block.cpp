// Writes behind its sequence data.
#include "tests/contract/broken_plugins/well_behaved.h"

BROKEN_AT(PF_Cmd_RENDER) {
    static_cast<char*>(*in->sequence_data)[4] = 1;
    return broken::render(in, output);
}
