#pragma once
// Numeric integration along a view ray: Gauss-Legendre panels that grow geometrically away from a peak.
//
// The integrands here are smooth but for one place, the ray's closest approach to a light, where they change
// over a known width (their nearest complex singularity lies `width` beside the peak).  Panels [0, w], [w,
// 2w], [2w, 4w] ... on either side of the peak see that singularity no nearer than twice their half length,
// where 20 points leave an error far below long double.

#include <algorithm>
#include <array>

#include "tests/reference/real.h"

namespace zam::reference {

inline constexpr int kGaussPoints = 20;

struct GaussRule {
    std::array<Real, kGaussPoints> node;  // on [-1, 1]
    std::array<Real, kGaussPoints> weight;
};

[[nodiscard]] const GaussRule& gauss_rule();

// Integral of f over [from, to] by one panel.
template <class F>
Real integrate_panel(const F& f, Real from, Real to) {
    const GaussRule& rule = gauss_rule();
    const Real middle = (from + to) / 2;
    const Real half = (to - from) / 2;
    Real sum = 0;
    for (int i = 0; i < kGaussPoints; ++i) {
        const auto n = static_cast<std::size_t>(i);
        sum += rule.weight[n] * f(middle + half * rule.node[n]);
    }
    return half * sum;
}

// Integral of f over [from, to], from <= to; f changes fastest within `width` of `peak`, which may lie
// outside. A width of 0 means a jump at the peak.
template <class F>
Real integrate_around(const F& f, Real from, Real to, Real peak, Real width) {
    const Real first = std::max(width, Real(1e-12L));
    Real sum = 0;
    for (const Real side : {Real(-1), Real(1)}) {
        const auto beside = [&](Real s) { return f(peak + side * s); };
        const Real begin = side < 0 ? peak - to : from - peak;  // distances from the peak on this side
        const Real end = side < 0 ? peak - from : to - peak;
        Real inner = 0;
        Real outer = first;
        while (inner < end) {
            const Real a = std::max(inner, begin);
            const Real b = std::min(outer, end);
            if (a < b) sum += integrate_panel(beside, a, b);
            inner = outer;
            outer *= 2;
        }
    }
    return sum;
}

// Integral of f over [from, infinity) for an f that falls off like 1 / t^2.  Beyond the peak the tail is
// turned over by t = peak + 1/u, which makes it a smooth function on a short interval of u.
template <class F>
Real integrate_to_infinity(const F& f, Real from, Real peak, Real width) {
    const Real split = std::max(from, peak + width);
    const auto tail = [&](Real u) { return f(peak + 1 / u) / (u * u); };
    return integrate_around(f, from, split, peak, width) + integrate_panel(tail, 0, 1 / (split - peak));
}

}  // namespace zam::reference
