// Leaves the last row as it was.
#include "tests/contract/broken_plugins/well_behaved.h"

BROKEN_EXPORT PF_Err EntryPointFunc(PF_Cmd cmd, PF_InData* in, PF_OutData* out, PF_ParamDef*[],
                                    PF_LayerDef* output, void*) {
    if (cmd == PF_Cmd_RENDER) {
        const PF_Rect most{0, 0, output->width, output->height - 1};
        return in->utils->fill(in->effect_ref, nullptr, &most, output);
    }
    return broken::answer(cmd, in, out, output);
}
