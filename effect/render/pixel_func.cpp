#include "effect/render/pixel_func.h"

#include "effect/render/rows.h"

namespace zam {

PF_Err PixelFunc(void* refcon, A_long, A_long y, PF_Pixel*, PF_Pixel* out) {
    ChosenTarget().render(*static_cast<const _RenderData*>(refcon), y, out);
    return PF_Err_NONE;
}

}  // namespace zam
