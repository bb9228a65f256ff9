// Writes one pixel too many into the third row.
#include "tests/contract/broken_plugins/well_behaved.h"

static PF_Err one_more(void* refcon, A_long x, A_long y, PF_Pixel* in, PF_Pixel* out) {
    const auto* world = static_cast<PF_EffectWorld*>(refcon);
    if (y == 2) out[world->width].green = 1;
    return broken::number_row(refcon, x, y, in, out);
}

BROKEN_AT(PF_Cmd_RENDER) { return broken::render(in, output, one_more); }
