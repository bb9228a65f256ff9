#include "effect/render/kernels/look.h"

#include <gtest/gtest.h>

#include <limits>

namespace zam {
namespace {

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
