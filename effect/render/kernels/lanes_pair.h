#pragma once
// Two lane vectors as one of twice the width. What depends on each other within one vector leaves the processor
// waiting; the other half fills the gaps, and constants are fetched once for both.
#include "effect/render/kernels/lanes.h"

namespace zam {

template <class V>
struct Pair {
    V low, high;
    Pair() = default;
    [[gnu::always_inline]] Pair(V l, V h) : low(l), high(h) {}
    [[gnu::always_inline]] Pair(double all) : low(all), high(low) {}  // NOLINT: a number is a vector of it
};
template <class M>
struct PairMask {
    M low, high;
    [[gnu::always_inline]] friend PairMask operator&(PairMask a, PairMask b) {
        return {a.low & b.low, a.high & b.high};
    }
    [[gnu::always_inline]] friend PairMask operator|(PairMask a, PairMask b) {
        return {a.low | b.low, a.high | b.high};
    }
    [[gnu::always_inline]] friend PairMask operator!(PairMask a) { return {!a.low, !a.high}; }
};
template <class V>
using MaskOfPair = PairMask<decltype(V() < V())>;

template <class V>
[[gnu::always_inline]] inline Pair<V> operator+(Pair<V> a, Pair<V> b) {
    return {a.low + b.low, a.high + b.high};
}
template <class V>
[[gnu::always_inline]] inline Pair<V> operator+(Pair<V> a, double b) {
    return a + Pair<V>(b);
}
template <class V>
[[gnu::always_inline]] inline Pair<V> operator+(double a, Pair<V> b) {
    return Pair<V>(a) + b;
}
template <class V>
[[gnu::always_inline]] inline Pair<V> operator-(Pair<V> a, Pair<V> b) {
    return {a.low - b.low, a.high - b.high};
}
template <class V>
[[gnu::always_inline]] inline Pair<V> operator-(Pair<V> a, double b) {
    return a - Pair<V>(b);
}
template <class V>
[[gnu::always_inline]] inline Pair<V> operator-(double a, Pair<V> b) {
    return Pair<V>(a) - b;
}
template <class V>
[[gnu::always_inline]] inline Pair<V> operator*(Pair<V> a, Pair<V> b) {
    return {a.low * b.low, a.high * b.high};
}
template <class V>
[[gnu::always_inline]] inline Pair<V> operator*(Pair<V> a, double b) {
    return a * Pair<V>(b);
}
template <class V>
[[gnu::always_inline]] inline Pair<V> operator*(double a, Pair<V> b) {
    return Pair<V>(a) * b;
}
template <class V>
[[gnu::always_inline]] inline Pair<V> operator/(Pair<V> a, Pair<V> b) {
    return {a.low / b.low, a.high / b.high};
}
template <class V>
[[gnu::always_inline]] inline Pair<V> operator/(Pair<V> a, double b) {
    return a / Pair<V>(b);
}
template <class V>
[[gnu::always_inline]] inline Pair<V> operator/(double a, Pair<V> b) {
    return Pair<V>(a) / b;
}
template <class V>
[[gnu::always_inline]] inline Pair<V> operator-(Pair<V> a) {
    return {-a.low, -a.high};
}
template <class V>
[[gnu::always_inline]] inline MaskOfPair<V> operator<(Pair<V> a, Pair<V> b) {
    return {a.low < b.low, a.high < b.high};
}
template <class V>
[[gnu::always_inline]] inline MaskOfPair<V> operator<(Pair<V> a, double b) {
    return a < Pair<V>(b);
}
template <class V>
[[gnu::always_inline]] inline MaskOfPair<V> operator>(Pair<V> a, Pair<V> b) {
    return {a.low > b.low, a.high > b.high};
}
template <class V>
[[gnu::always_inline]] inline MaskOfPair<V> operator>(Pair<V> a, double b) {
    return a > Pair<V>(b);
}
template <class V>
[[gnu::always_inline]] inline MaskOfPair<V> operator<=(Pair<V> a, Pair<V> b) {
    return {a.low <= b.low, a.high <= b.high};
}
template <class V>
[[gnu::always_inline]] inline MaskOfPair<V> operator<=(Pair<V> a, double b) {
    return a <= Pair<V>(b);
}
template <class V>
[[gnu::always_inline]] inline MaskOfPair<V> operator>=(Pair<V> a, Pair<V> b) {
    return {a.low >= b.low, a.high >= b.high};
}
template <class V>
[[gnu::always_inline]] inline MaskOfPair<V> operator>=(Pair<V> a, double b) {
    return a >= Pair<V>(b);
}
template <class V>
[[gnu::always_inline]] inline MaskOfPair<V> operator==(Pair<V> a, Pair<V> b) {
    return {a.low == b.low, a.high == b.high};
}
template <class V>
[[gnu::always_inline]] inline MaskOfPair<V> operator==(Pair<V> a, double b) {
    return a == Pair<V>(b);
}
template <class V>
[[gnu::always_inline]] inline MaskOfPair<V> operator!=(Pair<V> a, Pair<V> b) {
    return {a.low != b.low, a.high != b.high};
}
template <class V>
[[gnu::always_inline]] inline MaskOfPair<V> operator!=(Pair<V> a, double b) {
    return a != Pair<V>(b);
}

template <class V>
struct LanesOf<Pair<V>> {
    static constexpr int kHalf = LanesOf<V>::kCount, kCount = 2 * kHalf;
    [[gnu::always_inline]] static Pair<V> Load(const double* from) {
        return {LanesOf<V>::Load(from), LanesOf<V>::Load(from + kHalf)};
    }
    static Pair<V> Index() { return {LanesOf<V>::Index(), LanesOf<V>::Index() + V(kHalf)}; }
};
template <class V>
[[gnu::always_inline]] inline void Store(double* to, Pair<V> v) {
    Store(to, v.low);
    Store(to + LanesOf<V>::kCount, v.high);
}
template <class M, class V>
[[gnu::always_inline]] inline Pair<V> select(PairMask<M> mask, Pair<V> when_true, Pair<V> when_false) {
    return {select(mask.low, when_true.low, when_false.low),
            select(mask.high, when_true.high, when_false.high)};
}
template <class M>
[[gnu::always_inline]] inline bool any(PairMask<M> mask) {
    return any(mask.low | mask.high);
}
template <class V>
[[gnu::always_inline]] inline Pair<V> Abs(Pair<V> v) {
    return {Abs(v.low), Abs(v.high)};
}
template <class V>
[[gnu::always_inline]] inline Pair<V> Floor(Pair<V> v) {
    return {Floor(v.low), Floor(v.high)};
}
template <class V>
[[gnu::always_inline]] inline Pair<V> Reciprocal(Pair<V> v) {
    return {Reciprocal(v.low), Reciprocal(v.high)};
}
template <class V>
[[gnu::always_inline]] inline Pair<V> Root(Pair<V> v) {
    return {Root(v.low), Root(v.high)};
}
template <class V>
[[gnu::always_inline]] inline Pair<V> ReciprocalRoot(Pair<V> v) {
    return {ReciprocalRoot(v.low), ReciprocalRoot(v.high)};
}
template <class V>
[[gnu::always_inline]] inline Pair<V> at_least_zero(Pair<V> v) {
    return {at_least_zero(v.low), at_least_zero(v.high)};
}
template <class V>
[[gnu::always_inline]] inline Pair<V> Quotient(Pair<V> a, Pair<V> b) {
    return {Quotient(a.low, b.low), Quotient(a.high, b.high)};
}
template <class V>
[[gnu::always_inline]] inline Pair<V> larger(Pair<V> a, Pair<V> b) {
    return {larger(a.low, b.low), larger(a.high, b.high)};
}
template <class V>
[[gnu::always_inline]] inline Pair<V> smaller(Pair<V> a, Pair<V> b) {
    return {smaller(a.low, b.low), smaller(a.high, b.high)};
}
template <class V>
[[gnu::always_inline]] inline Pair<V> ScaleByPowerOfTwo(Pair<V> a, Pair<V> b) {
    return {ScaleByPowerOfTwo(a.low, b.low), ScaleByPowerOfTwo(a.high, b.high)};
}
template <class V>
[[gnu::always_inline]] inline Pair<V> MulAdd(Pair<V> a, Pair<V> b, Pair<V> c) {
    return {MulAdd(a.low, b.low, c.low), MulAdd(a.high, b.high, c.high)};
}
template <class V>
[[gnu::always_inline]] inline Pair<V> NegMulAdd(Pair<V> a, Pair<V> b, Pair<V> c) {
    return {NegMulAdd(a.low, b.low, c.low), NegMulAdd(a.high, b.high, c.high)};
}
template <class V>
[[gnu::always_inline]] inline void SplitExponent(Pair<V> v, Pair<V>* m, Pair<V>* e) {
    SplitExponent(v.low, &m->low, &e->low);
    SplitExponent(v.high, &m->high, &e->high);
}
template <class V>
[[gnu::always_inline]] inline void StorePacked(std::uint64_t* to, Pair<V> a, Pair<V> b, Pair<V> c, Pair<V> d,
                                               int bits) {
    StorePacked(to, a.low, b.low, c.low, d.low, bits);
    StorePacked(to + LanesOf<V>::kCount, a.high, b.high, c.high, d.high, bits);
}

}  // namespace zam
