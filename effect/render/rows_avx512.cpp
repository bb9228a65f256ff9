// The rows on eight lanes of AVX-512.
#include "effect/render/kernels/lanes_avx512.h"
#include "effect/render/kernels/lanes_pair.h"
#include "effect/render/row_renderer.h"
#include "effect/render/row_targets.h"

namespace zam {

void RenderRow_avx512(const _RenderData& frame, A_long y, PF_Pixel* out) {
    RowRenderer<Pair<F64x8>, F64x8>(frame, y).Render(out);
}

}  // namespace zam
