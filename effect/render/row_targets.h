#pragma once
// One function for each target, each in a file of its own that is compiled for that kind of processor. All but the
// scalar one may be left out of a build.
#include "effect/render/render_data.h"

namespace zam {

void RenderRow_scalar(const _RenderData& frame, A_long y, PF_Pixel* out);
void RenderRow_neon(const _RenderData& frame, A_long y, PF_Pixel* out);    // arm64
void RenderRow_avx2(const _RenderData& frame, A_long y, PF_Pixel* out);    // AVX2 and FMA
void RenderRow_avx512(const _RenderData& frame, A_long y, PF_Pixel* out);  // AVX-512 F, DQ and VL

}  // namespace zam
