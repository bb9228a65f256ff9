#pragma once
// Arc tangent, logarithm and power on any lane type, shaped as the formulas need them: of a quotient, with one
// reciprocal for both. Coefficients are those of interpolations at the Chebyshev nodes of the range that is left after
// reduction; elementary_test.cpp holds the functions against the C library's.
#include "effect/render/kernels/lanes.h"

namespace zam {

inline constexpr double kPi = 3.141592653589793;

// Together log(2); an exponent times the first is exact.
inline constexpr double kLn2High = 0.6931471803691238, kLn2Low = 1.9082149292705877e-10;

// c[first] + c[first + 1] z + ... of `terms` coefficients, with powers[n] = z^(2^n): halves are joined, so that no
// operation waits for a long chain of others.
template <int first, int terms, class V, int kTerms>
[[gnu::always_inline]] inline V Halves(const double (&c)[kTerms], const V* powers) {
    if constexpr (terms == 1) {
        return V(c[first]);
    } else {
        constexpr int level = terms > 16 ? 4 : terms > 8 ? 3 : terms > 4 ? 2 : terms > 2 ? 1 : 0;
        constexpr int low = 1 << level;
        return MulAdd(Halves<first + low, terms - low>(c, powers), powers[level],
                      Halves<first, low>(c, powers));
    }
}

// c[0] + c[1] z + c[2] z^2 + ...
template <class V, int kTerms>
[[gnu::always_inline]] inline V Polynomial(const double (&c)[kTerms], V z) {
    static_assert(kTerms >= 2 && kTerms <= 32);
    const V z2 = z * z, z4 = z2 * z2, z8 = z4 * z4;
    const V powers[] = {z, z2, z4, z8, z8 * z8};
    return Halves<0, kTerms>(c, powers);
}

// The angle of the point (x, y) above the x axis, for y >= 0: 0 to pi. Not for x = y = 0.
//
// With the smaller coordinate over the larger, q, the angle is atan(q) from the nearer axis; beyond pi/8 it is pi/4
// and the arc tangent of (q - 1) / (q + 1). In two halves, which a loop may run one after the other: the quotient,
// and the angle from it.
template <class V>
struct NearerAxis {
    V smaller_one, larger_one;
    decltype(V() < V()) beyond;  // pi/8

    [[gnu::always_inline]] NearerAxis(V y, V x)
        : smaller_one(smaller(y, Abs(x))),
          larger_one(larger(y, Abs(x))),
          beyond(smaller_one > 0.4142135623730951 * larger_one) {}
};
template <class V>
[[gnu::always_inline]] inline V AngleQuotient(V y, V x) {
    const NearerAxis<V> axis(y, x);
    return Quotient(select(axis.beyond, axis.smaller_one - axis.larger_one, axis.smaller_one),
                    select(axis.beyond, axis.smaller_one + axis.larger_one, axis.larger_one));
}
template <class V>
[[gnu::always_inline]] inline V AngleFromQuotient(V q, V y, V x) {
    // atan(sqrt(z)) / sqrt(z) for 0 <= z <= tan(pi/8)^2
    static constexpr double kAtan[] = {
        1.0,
        -0.3333333333332844,
        0.1999999999885511,
        -0.14285714180976467,
        0.11111106180455946,
        -0.09090773074808414,
        0.07689953496306857,
        -0.06640233930429408,
        0.056883492268090106,
        -0.04348052215716462,
        0.021135373157693246,
    };
    const V base = select(NearerAxis<V>(y, x).beyond, V(0.25 * kPi), V(0.0));
    const V angle = MulAdd(q, Polynomial(kAtan, q * q), base);
    const V from_axis = select(y > Abs(x), 0.5 * kPi - angle, angle);
    return select(x < 0.0, kPi - from_axis, from_axis);
}
template <class V>
[[gnu::always_inline]] inline V AngleAbove(V y, V x) {
    return AngleFromQuotient(AngleQuotient(y, x), y, x);
}

// log(n / d) for normal positive numbers.
template <class V>
[[gnu::always_inline]] inline V LogOfQuotient(V n, V d) {
    V n_mantissa, n_exponent, d_mantissa, d_exponent;
    SplitExponent(n, &n_mantissa, &n_exponent);
    SplitExponent(d, &d_mantissa, &d_exponent);
    // Bring the quotient of the mantissas between 1/sqrt(2) and sqrt(2).
    const auto high = n_mantissa > 1.4142135623730951 * d_mantissa;
    const auto low = 1.4142135623730951 * n_mantissa < d_mantissa;
    n_mantissa = select(high, 0.5 * n_mantissa, select(low, 2.0 * n_mantissa, n_mantissa));
    const V step = select(high, V(1.0), select(low, V(-1.0), V(0.0)));
    const V exponent = n_exponent - d_exponent + step;
    // log(f) = 2 atanh(s), s = (f - 1) / (f + 1) = (n - d) / (n + d); atanh(sqrt(z)) / sqrt(z)
    static constexpr double kAtanh[] = {
        1.0,
        0.33333333333333826,
        0.1999999999965117,
        0.1428571438032084,
        0.11111098528363024,
        0.09091815840114664,
        0.07656264074182095,
        0.07404855180327638,
    };
    const V s = Quotient(n_mantissa - d_mantissa, n_mantissa + d_mantissa);
    const V fraction = 2.0 * s * Polynomial(kAtanh, s * s);
    return MulAdd(exponent, V(kLn2High), MulAdd(exponent, V(kLn2Low), fraction));
}

// v^exponent for normal v > 0 and exponent > 0; 0 where the result is below the normal numbers, e^708 where it is
// above.
template <class V>
[[gnu::always_inline]] inline V Power(V v, double exponent) {
    const V power = exponent * LogOfQuotient(v, V(1.0));  // natural logarithm of the result
    // exp(x) = 2^n exp(r) with |r| <= log(2) / 2
    static constexpr double kExp[] = {
        1.0,
        1.0,
        0.5000000000000019,
        0.1666666666666668,
        0.0416666666664881,
        0.008333333333319601,
        0.0013888888952314775,
        0.00019841269890047113,
        2.4801485482328494e-05,
        2.755724091857897e-06,
        2.763263963904103e-07,
        2.5110037605963777e-08,
    };
    constexpr double kLeast = -708.0;  // exp of it is a normal number
    const V x = smaller(select(power > kLeast, power, V(kLeast)), V(-kLeast));
    const V n = Floor(MulAdd(x, V(1.4426950408889634), V(0.5)));
    const V r = NegMulAdd(n, V(kLn2Low), NegMulAdd(n, V(kLn2High), x));
    return select(power > kLeast, ScaleByPowerOfTwo(Polynomial(kExp, r), n), V(0.0));
}

}  // namespace zam
