#pragma once
// One output row.
#include "hostapi/effect.h"

namespace zam {

// [any thread] For the host's iterate callback over an area one pixel wide, so that it is called once per row
// and walks the row itself. refcon is the frame's _RenderData; `out` is the first pixel of row y at the
// frame's depth; x and `in` are not used. Writes nothing but the row's lit pixels. Always 0.
PF_Err PixelFunc(void* refcon, A_long x, A_long y, PF_Pixel* in, PF_Pixel* out);

}  // namespace zam
