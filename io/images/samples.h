#pragma once
// A frame's codes as the samples of image files: one row, four samples per pixel, red, green, blue, alpha unless told
// otherwise.
#include <cstdint>

#include "host/runner/session.h"

namespace zam::io {

// 255 is full. Codes of 16 bits are rounded, or dithered with an 8 x 8 Bayer matrix; then 0 and full scale stay what
// they are, and every other value is right on the mean.
void rgba8_row(const host::Frame& frame, int row, bool dither, std::uint8_t* samples);

// 65535 is full. The machine's byte order.
void rgba16_row(const host::Frame& frame, int row, std::uint16_t* samples);

// 1 is full; colours are multiplied by alpha, after sRGB codes have been made linear if that is wanted. All of the
// row's alphas come first, then all blues, greens and reds.
void premultiplied_row(const host::Frame& frame, int row, bool linear, float* samples);

}  // namespace zam::io
