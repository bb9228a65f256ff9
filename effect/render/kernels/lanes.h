#pragma once
// What a formula needs from its lane type V besides arithmetic and comparison. A comparison of V gives a
// mask; masks combine with & | ! and choose with select. Here V = double, one lane, and its mask is bool; a
// wider type brings the same names and every kernel runs on it as it stands.
namespace zam {

// Both values are computed in every lane: keep them legal where the mask will not choose them.
inline double select(bool mask, double when_true, double when_false) { return mask ? when_true : when_false; }

// True when some lane is set: a reason to do work, never to change a result.
inline bool any(bool mask) { return mask; }

// The larger and smaller value; of a number and a not-a-number, `a`.
template <class V>
V larger(V a, V b) {
    return select(b > a, b, a);
}
template <class V>
V smaller(V a, V b) {
    return select(b < a, b, a);
}

// A not-a-number counts as no light at all.
template <class V>
V number_or_zero(V v) {
    return select(v == v, v, V(0.0));
}

// Below zero, and for a not-a-number, zero.
template <class V>
V at_least_zero(V v) {
    return select(v > 0.0, v, V(0.0));
}

}  // namespace zam
