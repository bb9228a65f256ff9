#include "io/images/samples.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstring>
#include <vector>

namespace zam::io {
namespace {

constexpr std::uint32_t kFull16 = 32768;  // the interface's full scale
constexpr std::size_t kOrder[4] = {1, 2, 3, 0};

const std::uint16_t* codes_of(const host::Frame& frame, int row) {
    return frame.argb.data() + static_cast<std::size_t>(row) * static_cast<std::size_t>(frame.width) * 4;
}

std::uint32_t full_scale(const host::Frame& frame) {
    return frame.depth == host::Depth::bits8 ? 255 : kFull16;
}

// Where a place in the 8 x 8 pattern comes in the order of growing values, 0 to 63: the bits of x ^ y and y,
// interleaved from the lowest up.
constexpr std::array<std::uint8_t, 64> bayer_order() {
    std::array<std::uint8_t, 64> order{};
    for (unsigned y = 0; y < 8; ++y)
        for (unsigned x = 0; x < 8; ++x) {
            unsigned place = 0;
            for (unsigned bit = 0; bit < 3; ++bit)
                place = place << 2 | ((x ^ y) >> bit & 1) << 1 | (y >> bit & 1);
            order[y * 8 + x] = static_cast<std::uint8_t>(place);
        }
    return order;
}
constexpr std::array<std::uint8_t, 64> kBayer = bayer_order();

// Calls convert(code, column, sample index) for every sample of a row, in the order of the file.
template <class Convert>
void each_sample(const host::Frame& frame, int row, const Convert& convert) {
    const std::uint32_t full = full_scale(frame);
    const std::uint16_t* argb = codes_of(frame, row);
    for (std::size_t x = 0; x < static_cast<std::size_t>(frame.width); ++x)
        for (std::size_t i = 0; i < 4; ++i)
            convert(std::min<std::uint32_t>(argb[x * 4 + kOrder[i]], full), x, x * 4 + i);
}

double linear_of_srgb(double value) {
    return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
}

// The values of all codes, made once.
std::vector<float> make_table(std::uint32_t full, bool linear) {
    std::vector<float> values(full + 1);
    for (std::uint32_t code = 0; code <= full; ++code) {
        const double value = static_cast<double>(code) / full;
        values[code] = static_cast<float>(linear ? linear_of_srgb(value) : value);
    }
    return values;
}

const std::vector<float>& table(const host::Frame& frame, bool linear) {
    static const std::vector<float> plain8 = make_table(255, false), plain16 = make_table(kFull16, false),
                                    linear8 = make_table(255, true), linear16 = make_table(kFull16, true);
    if (frame.depth == host::Depth::bits8) return linear ? linear8 : plain8;
    return linear ? linear16 : plain16;
}

}  // namespace

void rgba8_row(const host::Frame& frame, int row, bool dither, std::uint8_t* samples) {
    if (frame.depth == host::Depth::bits8) {
        each_sample(frame, row, [&](std::uint32_t code, std::size_t, std::size_t at) {
            samples[at] = static_cast<std::uint8_t>(code);
        });
        return;
    }
    // What is added before the fraction is cut off, in 32768ths.
    std::uint32_t thresholds[8];
    for (std::size_t x = 0; x < 8; ++x) {
        const std::uint32_t place = kBayer[static_cast<std::size_t>(row % 8) * 8 + x];
        thresholds[x] = dither ? (2 * place + 1) * kFull16 / 128 : kFull16 / 2;
    }
    each_sample(frame, row, [&](std::uint32_t code, std::size_t x, std::size_t at) {
        samples[at] = static_cast<std::uint8_t>((code * 255 + thresholds[x % 8]) / kFull16);
    });
}

void rgba16_row(const host::Frame& frame, int row, std::uint16_t* samples) {
    if (frame.depth == host::Depth::bits8) {
        each_sample(frame, row, [&](std::uint32_t code, std::size_t, std::size_t at) {
            samples[at] = static_cast<std::uint16_t>(code * 257);
        });
        return;
    }
    // Loops that compilers turn into vector instructions: this is the kind of row that is written most.
    const std::uint16_t* argb = codes_of(frame, row);
    const std::size_t width = static_cast<std::size_t>(frame.width);
    for (std::size_t x = 0; x < width; ++x) {
        std::uint64_t pixel = 0;
        std::memcpy(&pixel, argb + x * 4, sizeof pixel);
        pixel = std::endian::native == std::endian::little ? std::rotr(pixel, 16) : std::rotl(pixel, 16);
        std::memcpy(samples + x * 4, &pixel, sizeof pixel);
    }
    for (std::size_t i = 0; i < width * 4; ++i) {
        const std::uint32_t code = std::min<std::uint32_t>(samples[i], kFull16);
        samples[i] =
            static_cast<std::uint16_t>(2 * code - (code > kFull16 / 2));  // code * 65535 / 32768, rounded
    }
}

void premultiplied_row(const host::Frame& frame, int row, bool linear, float* samples) {
    const float *values = table(frame, linear).data(), *plain = table(frame, false).data();
    const std::uint32_t full = full_scale(frame);
    const std::uint16_t* argb = codes_of(frame, row);
    const std::size_t width = static_cast<std::size_t>(frame.width);
    for (std::size_t x = 0; x < width; ++x) {
        const auto code = [&](std::size_t i) { return std::min<std::uint32_t>(argb[x * 4 + i], full); };
        const float alpha = plain[code(0)];
        samples[x] = alpha;
        for (std::size_t i = 1; i < 4; ++i) samples[i * width + x] = values[code(4 - i)] * alpha;
    }
}

}  // namespace zam::io
