#pragma once
// Looking at a light pass: straight colour with alpha, laid over a background. All in the codes of the frame, as the
// host mixes layers; nothing is made linear.
#include <optional>
#include <string>

#include "host/runner/session.h"

namespace zam::io {

// "#rrggbb" as fractions; none for any other text.
[[nodiscard]] std::optional<host::Color> parse_hex_color(const std::string& text);

// colour * alpha + background * (1 - alpha), opaque.
void lay_over(const host::Color& background, host::Frame* frame);

// The same over a picture of equal size and depth; where that is transparent the result is, too, with straight colour.
void lay_over(const host::Frame& background, host::Frame* frame);

}  // namespace zam::io
