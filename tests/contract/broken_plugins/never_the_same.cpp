// Draws something else each time.
#include "tests/contract/broken_plugins/well_behaved.h"

static PF_Err changing_row(void* refcon, A_long x, A_long y, PF_Pixel* in, PF_Pixel* out) {
    static A_u_char frame = 0;
    if (y == 0) ++frame;
    const PF_Err error = broken::number_row(refcon, x, y, in, out);
    if (y == 0) out->red = frame;
    return error;
}

BROKEN_AT(PF_Cmd_RENDER) { return broken::render(in, output, changing_row); }
