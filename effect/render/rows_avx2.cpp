// The rows on four lanes of AVX2.
#include "effect/render/kernels/lanes_avx2.h"
#include "effect/render/row_renderer.h"
#include "effect/render/row_targets.h"

namespace zam {

void RenderRow_avx2(const _RenderData& frame, A_long y, PF_Pixel* out) {
    RowRenderer<F64x4>(frame, y).Render(out);
}

}  // namespace zam
