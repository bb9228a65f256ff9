#include "io/over.h"

#include <algorithm>
#include <cmath>

namespace zam::io {
namespace {

std::uint32_t full_scale(const host::Frame& frame) { return frame.depth == host::Depth::bits8 ? 255 : 32768; }

// One pixel over another, both alpha, red, green, blue with `full` as full scale.
void lay_over(const std::uint16_t* behind, std::uint32_t full, std::uint16_t* argb) {
    const std::uint32_t alpha = std::min<std::uint32_t>(argb[0], full);
    const std::uint32_t rest =
        (behind[0] * (full - alpha) + full / 2) / full;  // what shows of the background
    const std::uint32_t sum = alpha + rest;
    argb[0] = static_cast<std::uint16_t>(sum);
    for (int channel = 1; channel < 4; ++channel) {
        const std::uint32_t mixed = argb[channel] * alpha + behind[channel] * rest;
        argb[channel] = static_cast<std::uint16_t>(sum == 0 ? 0 : (mixed + sum / 2) / sum);
    }
}

}  // namespace

std::optional<host::Color> parse_hex_color(const std::string& text) {
    const bool digits = text.find_first_not_of("0123456789abcdefABCDEF", 1) == std::string::npos;
    if (text.size() != 7 || text[0] != '#' || !digits) return std::nullopt;
    const auto fraction = [&](std::size_t at) { return std::stoi(text.substr(at, 2), nullptr, 16) / 255.0; };
    return host::Color{fraction(1), fraction(3), fraction(5)};
}

void lay_over(const host::Color& background, host::Frame* frame) {
    const std::uint32_t full = full_scale(*frame);
    const auto code = [&](double value) { return static_cast<std::uint16_t>(std::lround(value * full)); };
    const std::uint16_t behind[4] = {code(1.0), code(background.red), code(background.green),
                                     code(background.blue)};
    for (std::size_t at = 0; at + 3 < frame->argb.size(); at += 4) lay_over(behind, full, &frame->argb[at]);
}

void lay_over(const host::Frame& background, host::Frame* frame) {
    const std::uint32_t full = full_scale(*frame);
    for (std::size_t at = 0; at + 3 < frame->argb.size(); at += 4)
        lay_over(&background.argb[at], full, &frame->argb[at]);
}

}  // namespace zam::io
