// The rows on one lane, which every processor has.
#include "effect/render/kernels/lanes.h"
#include "effect/render/row_renderer.h"
#include "effect/render/row_targets.h"

namespace zam {

void RenderRow_scalar(const _RenderData& frame, A_long y, PF_Pixel* out) {
    RowRenderer<double>(frame, y).Render(out);
}

}  // namespace zam
