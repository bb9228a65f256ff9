#pragma once
// What a formula may use of its lane type V. Here is V = double, one lane, which every processor runs; the wider types
// (lanes_neon.h, lanes_avx2.h ...) bring the same names, and every kernel runs on them as it stands.
//
// A comparison gives a mask (bool for one lane); masks combine with & | ! and choose with select.
#include <bit>
#include <cmath>
#include <cstdint>

namespace zam {

// Lanes of V and the index of each: 0, 1, 2 ...
template <class V>
struct LanesOf;
template <>
struct LanesOf<double> {
    static constexpr int kCount = 1;
    static double Load(const double* from) { return *from; }
    static double Index() { return 0.0; }
};
inline void Store(double* to, double v) { *to = v; }

// Both values are computed in every lane: keep them legal where the mask will not choose them.
inline double select(bool mask, double when_true, double when_false) { return mask ? when_true : when_false; }

// True when some lane is set: a reason to do work, never to change a result.
inline bool any(bool mask) { return mask; }

inline double Abs(double v) { return std::fabs(v); }
inline double Floor(double v) { return std::floor(v); }

// a * b + c and c - a * b; in one rounding where the processor can.
[[gnu::always_inline]] inline double MulAdd(double a, double b, double c) { return a * b + c; }
inline double NegMulAdd(double a, double b, double c) { return c - a * b; }

// n / d, 1 / v, 1 / sqrt(v) and sqrt(v), for normal numbers (positive ones under the root) to about one unit in the
// last place.
inline double Quotient(double n, double d) { return n / d; }
inline double Reciprocal(double v) { return 1.0 / v; }
inline double ReciprocalRoot(double v) { return 1.0 / std::sqrt(v); }
inline double Root(double v) { return std::sqrt(v); }

// v = m * 2^e with 1 <= m < 2; for normal positive numbers.
inline void SplitExponent(double v, double* m, double* e) {
    const auto bits = std::bit_cast<std::uint64_t>(v);
    *m = std::bit_cast<double>((bits & 0x000FFFFFFFFFFFFF) | 0x3FF0000000000000);
    *e = static_cast<double>(static_cast<std::int64_t>(bits >> 52) - 1023);
}
// v * 2^e for a whole e within the exponents of normal numbers.
inline double ScaleByPowerOfTwo(double v, double e) {
    return v * std::bit_cast<double>(static_cast<std::uint64_t>(static_cast<std::int64_t>(e) + 1023) << 52);
}

// The whole parts of four numbers from 0 to 65535 in one word, `first` lowest, `bits` apart; one word per lane.
inline void StorePacked(std::uint64_t* to, double first, double second, double third, double fourth,
                        int bits) {
    *to = static_cast<std::uint64_t>(first) | static_cast<std::uint64_t>(second) << bits |
          static_cast<std::uint64_t>(third) << 2 * bits | static_cast<std::uint64_t>(fourth) << 3 * bits;
}

// The larger and smaller value; of a number and a not-a-number, `a`.
template <class V>
[[gnu::always_inline]] inline V larger(V a, V b) {
    return select(b > a, b, a);
}
template <class V>
[[gnu::always_inline]] inline V smaller(V a, V b) {
    return select(b < a, b, a);
}

// Below zero, and for a not-a-number, zero.
template <class V>
[[gnu::always_inline]] inline V at_least_zero(V v) {
    return select(v > 0.0, v, V(0.0));
}

}  // namespace zam
