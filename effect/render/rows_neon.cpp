// The rows on two lanes of NEON.
#include "effect/render/kernels/lanes_neon.h"
#include "effect/render/row_renderer.h"
#include "effect/render/row_targets.h"

namespace zam {

void RenderRow_neon(const _RenderData& frame, A_long y, PF_Pixel* out) {
    RowRenderer<F64x2>(frame, y).Render(out);
}

}  // namespace zam
