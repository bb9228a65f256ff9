#pragma once
// The renderer written down literally: one pixel after the other, one light after the other, every formula as it
// reads. Slow, easily compared with the formulas, and what faster renderings are held against, in result and in
// time.
#include "hostapi/effect.h"

namespace zam::literal {

// One row, as the effect's PixelFunc: refcon is the frame's _RenderData, `out` the first pixel of row y at the
// frame's depth; x and `in` are not used.
PF_Err PixelFunc(void* refcon, A_long x, A_long y, PF_Pixel* in, PF_Pixel* out);

}  // namespace zam::literal
