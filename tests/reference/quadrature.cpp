#include "tests/reference/quadrature.h"

#include <cmath>

namespace zam::reference {
namespace {

// Legendre polynomial of degree kGaussPoints at x, and its derivative, by the three-term recurrence.
struct Legendre {
    Real value, slope;
};

Legendre legendre(Real x) {
    Real before = 1;
    Real now = x;
    for (int n = 2; n <= kGaussPoints; ++n) {
        const Real next = ((2 * n - 1) * x * now - (n - 1) * before) / n;
        before = now;
        now = next;
    }
    return {now, kGaussPoints * (x * now - before) / (x * x - 1)};
}

GaussRule make_rule() {
    GaussRule rule{};
    for (int i = 0; i < kGaussPoints; ++i) {
        Real x = std::cos(kPi * (i + 0.75L) / (kGaussPoints + 0.5L));  // near the i-th root
        for (int step = 0; step < 20; ++step) {
            const Legendre p = legendre(x);
            x -= p.value / p.slope;
        }
        const Real slope = legendre(x).slope;
        rule.node[static_cast<std::size_t>(i)] = x;
        rule.weight[static_cast<std::size_t>(i)] = 2 / ((1 - x * x) * slope * slope);
    }
    return rule;
}

}  // namespace

const GaussRule& gauss_rule() {
    static const GaussRule rule = make_rule();
    return rule;
}

}  // namespace zam::reference
