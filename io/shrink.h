#pragma once
// Smaller pictures of frames, to look at.
#include "host/runner/session.h"

namespace zam::io {

// Each pixel is the mean of the area that it covers, of codes as they stand. For opaque frames: colours are not weighed
// by alpha. Width and height are at least 1; larger pictures than the frame come out in blocks.
[[nodiscard]] host::Frame shrink(const host::Frame& frame, int width, int height);

}  // namespace zam::io
