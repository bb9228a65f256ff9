#include "cli/sheet.h"

#include <algorithm>
#include <string>

namespace zam::cli {
namespace {

constexpr std::uint16_t kPaper = 40, kInk = 200;

// Digits of 3 x 5 dots, a row for each group of three bits, the top row first; drawn with 2 x 2 pixels a dot.
constexpr unsigned kDigits[10] = {075557, 026227, 071747, 071717, 055711,
                                  074717, 074757, 071111, 075757, 075717};
constexpr int kDot = 2, kColumns = 3, kRows = 5;
static_assert(kRows * kDot == Sheet::kLabel);

}  // namespace

Sheet::Sheet(int count, int columns, int picture_width, int picture_height)
    : columns_(columns), picture_width_(picture_width), picture_height_(picture_height) {
    image_.width = width(columns, picture_width);
    image_.height = height(count, columns, picture_height);
    image_.argb.assign(4 * static_cast<std::size_t>(image_.width) * static_cast<std::size_t>(image_.height),
                       kPaper);
    for (std::size_t i = 0; i < image_.argb.size(); i += 4) image_.argb[i] = 255;
}

int Sheet::width(int columns, int picture_width) { return kGap + columns * (picture_width + kGap); }

int Sheet::height(int count, int columns, int picture_height) {
    const int rows = (count + columns - 1) / columns;
    return kGap + rows * (picture_height + kGap / 2 + kLabel + kGap);
}

std::uint16_t* Sheet::pixel(int x, int y) {
    return image_.argb.data() + 4 * (static_cast<std::size_t>(y) * static_cast<std::size_t>(image_.width) +
                                     static_cast<std::size_t>(x));
}

void Sheet::put(int place, const host::Frame& picture, int number) {
    const int left = width(place % columns_, picture_width_);
    const int top = height(place / columns_, 1, picture_height_);
    for (int y = 0; y < picture_height_; ++y) {
        const auto row = 4 * static_cast<std::size_t>(picture_width_);
        std::copy_n(picture.argb.begin() + static_cast<std::ptrdiff_t>(row * static_cast<std::size_t>(y)),
                    row, pixel(left, top + y));
    }
    put_number(left, top + picture_height_ + kGap / 2, number);
}

// As many of its digits as fit below a picture.
void Sheet::put_number(int x, int y, int number) {
    const int end = x + picture_width_;
    for (const char digit : std::to_string(number)) {
        if (x + kColumns * kDot > end) return;
        const unsigned dots = kDigits[digit - '0'];
        for (int i = 0; i < kColumns * kDot; ++i)
            for (int j = 0; j < kRows * kDot; ++j) {
                const int bit = (kRows - 1 - j / kDot) * kColumns + kColumns - 1 - i / kDot;
                if ((dots >> bit) & 1U) std::fill_n(pixel(x + i, y + j) + 1, 3, kInk);
            }
        x += (kColumns + 1) * kDot;
    }
}

}  // namespace zam::cli
