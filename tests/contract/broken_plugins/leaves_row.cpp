// Leaves the last row as it was.
#include "tests/contract/broken_plugins/well_behaved.h"

BROKEN_AT(PF_Cmd_RENDER) {
    const PF_Rect most{0, 0, output->width, output->height - 1};
    return in->utils->fill(in->effect_ref, nullptr, &most, output);
}
