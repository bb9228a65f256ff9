#include "io/over.h"

#include <cmath>

namespace zam::io {

std::optional<host::Color> parse_hex_color(const std::string& text) {
    const bool digits = text.find_first_not_of("0123456789abcdefABCDEF", 1) == std::string::npos;
    if (text.size() != 7 || text[0] != '#' || !digits) return std::nullopt;
    const auto fraction = [&](std::size_t at) { return std::stoi(text.substr(at, 2), nullptr, 16) / 255.0; };
    return host::Color{fraction(1), fraction(3), fraction(5)};
}

void lay_over(const host::Color& background, host::Frame* frame) {
    const double full = frame->depth == host::Depth::bits8 ? 255.0 : 32768.0;
    const double behind[3] = {background.red * full, background.green * full, background.blue * full};
    for (std::size_t pixel = 0; pixel + 3 < frame->argb.size(); pixel += 4) {
        std::uint16_t* argb = &frame->argb[pixel];
        const double alpha = argb[0] / full;
        argb[0] = static_cast<std::uint16_t>(full);
        for (int channel = 0; channel < 3; ++channel) {
            const double mixed = argb[1 + channel] * alpha + behind[channel] * (1.0 - alpha);
            argb[1 + channel] = static_cast<std::uint16_t>(std::lround(mixed));
        }
    }
}

}  // namespace zam::io
