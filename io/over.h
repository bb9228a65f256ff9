#pragma once
// Looking at a light pass: straight colour with alpha, laid over a plain background.
#include <optional>
#include <string>

#include "host/runner/session.h"

namespace zam::io {

// "#rrggbb" as fractions; none for any other text.
[[nodiscard]] std::optional<host::Color> parse_hex_color(const std::string& text);

// colour * alpha + background * (1 - alpha), opaque, in the frame's own codes.
void lay_over(const host::Color& background, host::Frame* frame);

}  // namespace zam::io
