#pragma once
// Maths policies: where a kernel takes its square root, arc tangent, logarithm ... from. A policy M offers
// sqrt, fabs, atan, log, cos, tan and pow on the lane type; this is the C++ library's own.
#include <cmath>

namespace zam {

inline constexpr double kPi = 3.141592653589793;

struct StdMaths {
    [[nodiscard]] double sqrt(double v) const { return std::sqrt(v); }
    [[nodiscard]] double fabs(double v) const { return std::fabs(v); }
    [[nodiscard]] double atan(double v) const { return std::atan(v); }
    [[nodiscard]] double log(double v) const { return std::log(v); }
    [[nodiscard]] double cos(double v) const { return std::cos(v); }
    [[nodiscard]] double tan(double v) const { return std::tan(v); }
    [[nodiscard]] double pow(double v, double exponent) const { return std::pow(v, exponent); }
};

}  // namespace zam
