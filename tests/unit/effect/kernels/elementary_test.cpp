#include "effect/render/kernels/elementary.h"

#include <gtest/gtest.h>

#include "tests/literal/random.h"

namespace zam {
namespace {

TEST(Elementary, AgreesWithTheLibrary) {
    test::Random random(31);
    for (int i = 0; i < 200000; ++i) {
        const double y = random.over_decades(1e-12, 1e12),
                     x = random.over_decades(1e-12, 1e12) * (i % 2 ? 1 : -1);
        ASSERT_NEAR(AngleAbove(y, x) / std::atan2(y, x), 1.0, 1e-15) << y << " " << x;
        // Quotients near 1 as well: there the logarithm is small and must keep its digits.
        const double d = random.over_decades(1e-100, 1e100);
        const double n = i % 3 ? random.over_decades(1e-100, 1e100) : d * (1.0 + random.between(-1e-3, 1e-3));
        const long double log = std::log(static_cast<long double>(n) / d);
        ASSERT_NEAR(LogOfQuotient(n, d), static_cast<double>(log),
                    6e-16 * (1e-3 + std::fabs(static_cast<double>(log))))
            << n << " " << d;
        const double v = random.over_decades(1e-30, 1.0), exponent = random.over_decades(0.01, 1000.0);
        ASSERT_NEAR(Power(v, exponent), std::pow(v, exponent), 1e-15) << v << " " << exponent;
    }
    EXPECT_EQ(AngleAbove(0.0, 1.0), 0.0);
    EXPECT_EQ(AngleAbove(0.0, -1.0), kPi);
    EXPECT_EQ(LogOfQuotient(7.0, 7.0), 0.0);
    EXPECT_EQ(Power(1.0, 3.0), 1.0);
    EXPECT_EQ(Power(1e-300, 1000.0), 0.0);
}

}  // namespace
}  // namespace zam
