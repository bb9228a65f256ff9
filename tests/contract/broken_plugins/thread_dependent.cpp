// Draws what depends on the thread that a row is drawn on.
#include "tests/contract/broken_plugins/well_behaved.h"

static PF_Err counting_row(void* refcon, A_long x, A_long y, PF_Pixel* in, PF_Pixel* out) {
    static thread_local A_u_char rows = 0;
    rows = y == 0 ? A_u_char{1} : static_cast<A_u_char>(rows + 1);
    const PF_Err error = broken::number_row(refcon, x, y, in, out);
    out->blue = rows;
    return error;
}

BROKEN_EXPORT PF_Err EntryPointFunc(PF_Cmd cmd, PF_InData* in, PF_OutData* out, PF_ParamDef*[],
                                    PF_LayerDef* output, void*) {
    if (cmd == PF_Cmd_RENDER) return broken::render(in, output, counting_row);
    return broken::answer(cmd, in, out, output);
}
