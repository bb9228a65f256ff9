// Throws in a row, on whatever thread the host calls it.
#include <stdexcept>

#include "tests/contract/broken_plugins/well_behaved.h"

static PF_Err throwing_row(void* refcon, A_long x, A_long y, PF_Pixel* in, PF_Pixel* out) {
    if (y == 3) throw std::runtime_error("third row");
    return broken::number_row(refcon, x, y, in, out);
}

BROKEN_AT(PF_Cmd_RENDER) { return broken::render(in, output, throwing_row); }
