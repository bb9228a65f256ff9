// Which target runs: the cap holds whatever was compiled in, and whatever the processor has.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "effect/render/rows.h"

namespace zam {
namespace {

std::string Within(const std::vector<RowTarget>& targets, const char* cap) {
    return TargetWithin(targets, cap).name;
}

TEST(RowTargets, ACapIsNeverExceeded) {
    const RowTarget scalar{"scalar", 1, nullptr}, neon{"neon", 2, nullptr}, avx2{"avx2", 4, nullptr},
        avx512{"avx512", 8, nullptr};
    EXPECT_EQ(Within({scalar, avx2, avx512}, "scalar"), "scalar");
    EXPECT_EQ(Within({scalar, avx2, avx512}, "avx2"), "avx2");
    EXPECT_EQ(Within({scalar, avx2, avx512}, "avx512"), "avx512");
    EXPECT_EQ(Within({scalar, avx2}, "avx512"), "avx2");
    EXPECT_EQ(Within({scalar, avx512}, "avx2"), "scalar");
    EXPECT_EQ(Within({scalar, avx2, avx512}, "neon"), "scalar");
    EXPECT_EQ(Within({scalar, neon}, "scalar"), "scalar");
    EXPECT_EQ(Within({scalar, neon}, "avx2"), "neon");
    for (const char* no_cap : {static_cast<const char*>(nullptr), "", "AVX2"}) {
        EXPECT_EQ(Within({scalar, avx2, avx512}, no_cap), "avx512");
        EXPECT_EQ(Within({scalar}, no_cap), "scalar");
    }
}

// Everything that this build compiled in and this processor runs is offered, narrowest first.
TEST(RowTargets, AreOfferedInOrderOfWidth) {
    const std::span<const RowTarget> targets = RowTargets();
    ASSERT_FALSE(targets.empty());
    EXPECT_STREQ(targets.front().name, "scalar");
    for (std::size_t i = 1; i < targets.size(); ++i) EXPECT_LT(targets[i - 1].lanes, targets[i].lanes);
#if defined(__aarch64__)
    EXPECT_STREQ(targets.back().name, "neon");
#endif
}

}  // namespace
}  // namespace zam
