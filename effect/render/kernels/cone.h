#pragma once
// Where a view ray is inside a spot light's cone, between its start cap and its end cap.
//
//   symbol  code                unit     from
//   r       rx, ry, rz          -        view ray x(t) = t r, not normalised (rz = 1: t is depth)
//   p, d    light pos, dir      comp px  apex and axis in camera space; d is not normalised
//   k       ray.rayDotAxis      -        r.d
//   c       cosSq               -        squared cosine of the half angle
//
// x(t) is on the double cone where A t^2 + 2 B t + C = 0 with A = k^2 - c (r.r), B = c (r.p) - k (d.p) and
// C = (d.p)^2 - c (p.p). Half of it, the nappe behind the apex, is no part of the light.
#include "effect/render/kernels/lanes.h"
#include "effect/render/kernels/records.h"

namespace zam {

inline constexpr double kFarthest = 10000000.0;  // stands in for an end that is not there
inline constexpr double kConeEps = 1e-05;        // absolute, on every coefficient of the quadratic

// The ray's products with one spot light. Where k is 0 its reciprocal is a placeholder, never a result. The products
// are summed as they stand, without fused operations: whether k is exactly 0 decides what the caps do.
template <class V>
[[gnu::always_inline]] inline _RayOpt<V> MakeRayOpt(V rx, V ry, V rz, const _VisLightStruct& light) {
    _RayOpt<V> ray;
    ray.rayDotAxis = rx * light.dir.x + ry * light.dir.y + rz * light.dir.z;
    ray.invRayDotAxis = Reciprocal(select(ray.rayDotAxis != 0.0, ray.rayDotAxis, V(1.0)));
    ray.rayDotPos = MulAdd(rx, V(light.pos.x), MulAdd(ry, V(light.pos.y), rz * light.pos.z));
    return ray;
}

// The part [lo, hi] of a ray between the caps, and the rays that miss whatever the cone. The same for both cones of
// a light.
template <class V>
struct BetweenCaps {
    V lo, hi;
    decltype(V(0.0) < V(0.0)) miss;
};
template <class V>
[[gnu::always_inline]] inline BetweenCaps<V> IntersectCaps(const _LightData& spot,
                                                           const _VisLightStruct& light,
                                                           const _OptSpotData& opt, const _RayOpt<V>& ray,
                                                           V rx, V ry, V rz) {
    const V zero(0.0), farthest(kFarthest);
    const V k = ray.rayDotAxis;
    const auto along = k > 0.0, against = k < 0.0;
    BetweenCaps<V> caps;
    caps.miss = k != k;

    // End cap. The comparisons send a not-a-number to kFarthest.
    if (spot.reachActive) {
        const Vec3& n = spot.reachNormal;
        const V dn = (rx * n.x + ry * n.y + rz * n.z) * opt.endSign;
        const V end = opt.endPlane * Reciprocal(select(dn != 0.0, dn, V(1.0)));
        caps.hi = select((dn > 0.0) & (end < farthest), end, farthest);
        caps.lo = select((dn < 0.0) & (end > 0.0), end, zero);
    } else {
        const V end = opt.endPlane * ray.invRayDotAxis;
        caps.hi = select(along & (end < farthest), end, farthest);
        caps.lo = select(against & (end > 0.0), end, zero);
        // deliberate: across the axis the depth of the apex is compared with the reach
        caps.miss = caps.miss | ((k == 0.0) & (ray.rayDotPos > light.radius));
    }

    // Start cap.
    const V start = opt.startPlane * ray.invRayDotAxis;
    caps.lo = select(along, larger(caps.lo, start), caps.lo);
    caps.hi = select(against, smaller(caps.hi, start), caps.hi);
    caps.miss = caps.miss | (caps.lo > caps.hi);
    return caps;
}

// Writes the stretch [*tNear, *tFar] of the ray inside one cone and between the caps; it is empty when
// *tFar <= *tNear, and nothing behind the camera (t < 0) is ever in it. coneC and cosSq choose the cone: coneCInner
// and cosInnerSq, or coneCOuter and cosOuterSq. rr is r.r.
template <class V>
[[gnu::always_inline]] inline void IntersectRayWithCone(const _VisLightStruct& light, const _OptSpotData& opt,
                                                        const _RayOpt<V>& ray, const BetweenCaps<V>& caps,
                                                        V rx, V ry, V rz, V rr, double coneC, double cosSq,
                                                        V* tNear, V* tFar) {
    const V zero(0.0);
    const V k = ray.rayDotAxis, lo = caps.lo, hi = caps.hi;
    const auto along = k > 0.0;
    auto miss = caps.miss;

    const V apex_depth(opt.axisDotPos);
    const V A = NegMulAdd(V(cosSq), rr, k * k);
    const V B = NegMulAdd(k, apex_depth, cosSq * ray.rayDotPos);
    const V C(coneC);
    const auto parallel = Abs(A) <= kConeEps;
    const V D = NegMulAdd(A, C, B * B);

    // Two roots: the stretch between them, or from the one on the forward nappe on (k > 0) or up to it (k <= 0).
    const auto two = (!parallel) & (D > kConeEps);
    const V w = Root(select(two, D, V(1.0)));
    const V inv_a = Reciprocal(select(parallel, V(1.0), A));
    const V ta = (-B - w) * inv_a, tb = (w - B) * inv_a;
    const auto fa = ta * k >= apex_depth, fb = tb * k >= apex_depth;
    const auto both = fa & fb, neither = (!fa) & (!fb);
    const V one = select(fa, ta, tb);
    V near = select(both, larger(lo, smaller(ta, tb)), select(along, larger(lo, one), lo));
    V far = select(both, smaller(hi, larger(ta, tb)), select(along, hi, smaller(hi, one)));
    near = select(neither, lo, near);
    far = select(neither, lo, far);

    // No root: no stretch.
    near = select(two, near, lo);
    far = select(two, far, zero);

    // The rare rays: a double root (the ray touches the cone or passes its apex) and a ray parallel to a generator.
    const auto tangent = (!parallel) & (Abs(D) < kConeEps);
    if (any(tangent)) {
        const V root = -B * inv_a;
        const V probe = root + 100.0;
        const V qx = probe * rx - light.pos.x, qy = probe * ry - light.pos.y, qz = probe * rz - light.pos.z;
        const V qd = qx * light.dir.x + qy * light.dir.y + qz * light.dir.z;
        const auto outside = qd * qd / (qx * qx + qy * qy + qz * qz) <= cosSq;
        miss = miss | (tangent & outside);
        near = select(tangent, select(along, larger(lo, root), lo), near);
        far = select(tangent, select(along, hi, smaller(hi, root)), far);
    }
    if (any(parallel)) {
        const auto no_slope = parallel & (Abs(B) <= kConeEps);
        const auto single = parallel & !no_slope;
        const auto on_cone = no_slope & (Abs(C) < kConeEps);
        const V root = C * -0.5 / select(single, B, V(1.0));
        miss = miss | (single & !(root * k > apex_depth));
        near = select(single, select(along, larger(lo, root), lo), select(parallel, lo, near));
        far = select(single, select(along, hi, smaller(hi, root)),
                     select(on_cone, hi, select(no_slope, zero, far)));
    }

    *tNear = select(miss, zero, at_least_zero(near));
    *tFar = select(miss, zero, at_least_zero(far));
}

}  // namespace zam
