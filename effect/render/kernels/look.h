#pragma once
// From sums of light to channel codes: the "Look" curves and the coding of a channel.
#include <cstdint>
#include <limits>

#include "effect/render/kernels/elementary.h"

namespace zam {

enum class Look : std::int32_t { weak = 1, linear, natural, strong, adjustable_linear, adjustable_natural };

// Squared before it is added: each light's values in these looks.
[[gnu::always_inline]] inline bool SquaresLights(std::int32_t look) {
    const Look l{look};
    return l == Look::weak || l == Look::natural || l == Look::adjustable_natural;
}

// Below the normal numbers there is no light left.
inline constexpr double kLeastNormal = std::numeric_limits<double>::min();

// v^exponent for v < 0: a number for whole exponents only. Out of the way: only lights that take light away lead here.
template <class V>
[[gnu::noinline, gnu::cold]] V PowerOfNegative(V v, double exponent) {
    if (std::floor(exponent) != exponent) return V(std::numeric_limits<double>::quiet_NaN());
    const auto normal = v <= -kLeastNormal;
    const V power = select(normal, Power(select(normal, -v, V(1.0)), exponent), V(0.0));
    return std::floor(0.5 * exponent) == 0.5 * exponent ? power : -power;
}

// The final curve of one sum. Chosen by ranges: below 3 cut off, 3 and 4 the square root, above 4 the power. Of a sum
// below zero, roots are not numbers.
template <class V>
[[gnu::always_inline]] inline V ShapeByLook(std::int32_t look, double invGamma, V v) {
    const V cut = smaller(v, V(1.0));
    if (look < 3) return cut;
    if (look <= 4) return select(cut == 0.0, V(0.0), Root(cut));
    const auto normal = cut >= kLeastNormal, negative = cut < 0.0;
    const V power = select(normal, Power(select(normal, cut, V(1.0)), invGamma), V(0.0));
    if (any(negative)) [[unlikely]]
        return select(negative, PowerOfNegative(cut, invGamma), power);
    return power;
}

// value * full + 0.5, whose whole part is the value's channel code.
template <class V>
[[gnu::always_inline]] inline V HalfUp(V value, double full) {
    return MulAdd(value, V(full), V(0.5));
}

// Channel code of a value in units of full scale, rounded half up: the low bits of the integer part of
// HalfUp. What no 32-bit integer holds gets the nearest end of the scale, a not-a-number 0.
template <class Channel>
[[gnu::always_inline]] inline Channel ChannelCode(double value, double full_scale) {
    const double scaled = HalfUp(value, full_scale);
    if (!(scaled > -2147483649.0)) return 0;
    if (!(scaled < 2147483648.0)) return static_cast<Channel>(full_scale);
    return static_cast<Channel>(static_cast<std::uint32_t>(static_cast<std::int32_t>(scaled)));
}

}  // namespace zam
