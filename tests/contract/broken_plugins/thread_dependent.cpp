// Draws what depends on the thread that a row is drawn on.
#include "tests/contract/broken_plugins/well_behaved.h"

static PF_Err counting_row(void* refcon, A_long x, A_long y, PF_Pixel* in, PF_Pixel* out) {
    static thread_local A_u_char rows = 0;
    rows = y == 0 ? A_u_char{1} : static_cast<A_u_char>(rows + 1);
    const PF_Err error = broken::number_row(refcon, x, y, in, out);
    out->blue = rows;
    return error;
}

BROKEN_AT(PF_Cmd_RENDER) { return broken::render(in, output, counting_row); }
