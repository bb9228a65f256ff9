#include "effect/render/kernels/look.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace zam {
namespace {

TEST(Look, CurvesAndSquares) {
    const struct {
        Look look;
        bool squares;
        double of_quarter, of_two;
    } rows[] = {
        {Look::weak, true, 0.25, 1.0},
        {Look::linear, false, 0.25, 1.0},
        {Look::natural, true, 0.5, 1.0},
        {Look::strong, false, 0.5, 1.0},
        {Look::adjustable_linear, false, std::pow(0.25, 0.4), 1.0},
        {Look::adjustable_natural, true, std::pow(0.25, 0.4), 1.0},
    };
    for (const auto& row : rows) {
        const auto value = static_cast<std::int32_t>(row.look);
        EXPECT_EQ(SquaresLights(value), row.squares) << value;
        EXPECT_DOUBLE_EQ(ShapeByLook(value, 1 / 2.5, 0.25), row.of_quarter) << value;
        EXPECT_EQ(ShapeByLook(value, 1 / 2.5, 2.0), row.of_two) << value;
    }
}

TEST(Look, ChannelCodesAreDefinedForEveryNumber) {
    const double inf = std::numeric_limits<double>::infinity(),
                 nan = std::numeric_limits<double>::quiet_NaN();
    const struct {
        double value;
        int code8, code16;
    } rows[] = {
        {0.0, 0, 0},
        {1.0, 255, 32768},
        {0.5, 128, 16384},
        {0.999, 255, 32735},
        {1.0 / 255, 1, 129},
        {2.0, 510 % 256, 0},
        {-0.1, 256 - 25, 65536 - 3276},  // low bits of what fits an integer
        {1e300, 255, 32768},
        {-1e300, 0, 0},
        {inf, 255, 32768},
        {-inf, 0, 0},
        {nan, 0, 0},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(ChannelCode<std::uint8_t>(row.value, 255.0), row.code8) << row.value;
        EXPECT_EQ(ChannelCode<std::uint16_t>(row.value, 32768.0), row.code16) << row.value;
    }
}

}  // namespace
}  // namespace zam
