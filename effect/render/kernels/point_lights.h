#pragma once
// Point lights as glows, seen along the view ray x(t) = t * (dx, dy, 1) from the camera (t = 0).
//
//   symbol  code         unit     from
//   r       dx, dy, 1    -        view ray, not normalised: t is depth
//   a       a            -        r.r
//   p       light.pos    comp px  camera space
//   b       -2 rp        comp px  -2 (r.p)
//   k       softK        comp px  "Softness [%]" + 1, hence k >= 1
//
// The squared distance of x(t) from the light is a t^2 + b t + p.p.
#include "effect/render/kernels/elementary.h"
#include "effect/render/kernels/records.h"

namespace zam {

// Of all point lights of a frame.
struct PointSettings {
    PointModel model = PointModel::off;
    double softness = 0.0;      // 0 to 1
    double sourceRadius = 0.0;  // comp px
    double softKSq = 1.0;       // k^2
    double softKRoot = 2.0;     // 2 k^(1/4)
};

// "Natural": G = 2 k^(1/4) * Integral from 0 to infinity of dt / (|x(t) - p|^2 + k^2)
//              = 2 k^(1/4) * (pi - 2 atan(b / R)) / R,   R^2 = 4 a (p.p + k^2) - b^2
// Here with half of everything, rho = R / 2 and rp = -b / 2: pi - 2 atan(-rp / rho) is twice the angle of the point
// (-rp, rho) above the axis, so
//            G = 2 k^(1/4) * AngleAbove(rho, -rp) / rho,       rho^2 = a (p.p + k^2) - rp^2
// A row computes this in three short loops (PointRows::AddNatural), within which the operations of neighbouring
// lanes do not wait for each other: rho and 1 / rho, the angle's quotient, and the rest.
//
// rho^2, in which kFar guards against its loss to rounding, for lights far away: it is at least a k^2.
template <bool kFar, class V>
[[gnu::always_inline]] inline V NaturalRhoSquare(V a, V rp, const _OptPointData& opt,
                                                 const PointSettings& settings) {
    const V rho_sq = NegMulAdd(rp, rp, a * V(0.25 * opt.softDenominator));
    if constexpr (!kFar) return rho_sq;
    return select(rho_sq > 0.0, rho_sq, a * V(settings.softKSq));
}
// Up to this many k^2, p.p + k^2 = softDenominator / 4 is far enough from 2^53 k^2 for rho^2 not to be lost.
inline constexpr double kFarSquare = 1e12;

// Length in t of the ray's part inside a sphere around the light, in front of the camera; 0 on a miss or a touch.
// The roots of a t^2 + b t + c = 0 are (rp -+ sqrt(rp^2 - a c)) / a.
// deliberate: not multiplied by |r|, so a sphere away from the image centre is a little dimmer
template <class V>
[[gnu::always_inline]] inline V ChordInSphere(V a, V inv_a, V rp, double dist_sq_minus_radius_sq) {
    const V discriminant = NegMulAdd(a, V(dist_sq_minus_radius_sq), rp * rp);
    const auto hit = discriminant > 0.0;
    const V root = Root(select(hit, discriminant, V(1.0)));
    const V far = (rp + root) * inv_a, near = (rp - root) * inv_a;
    return select(hit, at_least_zero(far) - at_least_zero(near), V(0.0));
}

// The soft edge of the "Radius" glow, for a value below 1: s^2 (3 - 2 s) softness + (1 - softness) v with
// s = 1 - sqrt(1 - v^2).
template <class V>
[[gnu::always_inline]] inline V SoftEdge(V v, double softness) {
    const auto shaped = v < 1.0;
    const V rest = 1.0 - v * v;
    const V s = 1.0 - select(rest > 0.0, Root(select(rest > 0.0, rest, V(1.0))), rest);
    return select(shaped, s * s * (3.0 - 2.0 * s) * softness + (1.0 - softness) * v, v);
}

}  // namespace zam
