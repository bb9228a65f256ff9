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
// C = (d.p)^2 - c (p.p). Half of it, the nappe behind the apex, is no part of the light: x(t) is on the forward one
// where (t r - p).d = t k - d.p is not negative.
//
// The caps are planes across the axis, d.x = startPlane and d.x = endPlane, that the ray meets at t = plane / k.
// Plain, from lo = 0 and hi = kFarthest, the end cap first: where k > 0 the light lies before it, hi = min(hi, end),
// and where k < 0 behind it, lo = max(lo, end); then the start cap the other way round, lo = max(lo, start) where
// k > 0, hi = min(hi, start) where k < 0. One selection by the sign of k does both below. With a reach layer its
// plane is the end cap, n.x = endPlane endSign, and the sign of r.n decides in place of k.
#include "effect/render/kernels/lanes.h"
#include "effect/render/kernels/records.h"

namespace zam {

inline constexpr double kFarthest = 10000000.0;  // stands in for an end that is not there
inline constexpr double kConeEps = 1e-05;        // absolute, on every coefficient of the quadratic

// k, summed as it stands, without fused operations: whether it is exactly 0 decides what the caps do.
template <class V>
[[gnu::always_inline]] inline V RayDotAxis(V rx, V ry, V rz, const Vec3& axis) {
    return rx * axis.x + ry * axis.y + rz * axis.z;
}

// The ray's products with one spot light. Where k is 0 its reciprocal means nothing.
template <class V>
[[gnu::always_inline]] inline _RayOpt<V> MakeRayOpt(V rx, V ry, V rz, const _VisLightStruct& light) {
    _RayOpt<V> ray;
    ray.rayDotAxis = RayDotAxis(rx, ry, rz, light.dir);
    ray.invRayDotAxis = Reciprocal(ray.rayDotAxis);
    ray.rayDotPos = MulAdd(rx, V(light.pos.x), MulAdd(ry, V(light.pos.y), rz * light.pos.z));
    return ray;
}

// The part [lo, hi] of a ray between the caps, empty when hi < lo: the same for both cones of a light. lo is never
// negative, hi never above kFarthest.
template <class V>
struct BetweenCaps {
    V lo, hi;
};
template <class V>
[[gnu::always_inline]] inline BetweenCaps<V> IntersectCaps(const _LightData& spot,
                                                           const _VisLightStruct& light,
                                                           const _OptSpotData& opt, const _RayOpt<V>& ray,
                                                           V rx, V ry, V rz) {
    // larger and smaller send a not-a-number to 0 and kFarthest.
    const V zero(0.0), farthest(kFarthest);
    const auto along = ray.rayDotAxis > 0.0, across = ray.rayDotAxis == 0.0;
    const V start = opt.startPlane * ray.invRayDotAxis;
    BetweenCaps<V> caps;
    if (spot.reachActive) {
        const Vec3& n = spot.reachNormal;
        const V dn = (rx * n.x + ry * n.y + rz * n.z) * opt.endSign;
        const V end = opt.endPlane * Reciprocal(select(dn != 0.0, dn, V(1.0)));
        caps.hi = select(dn > 0.0, smaller(farthest, end), farthest);
        caps.lo = select(dn < 0.0, larger(zero, end), zero);
        caps.lo = select(along, larger(caps.lo, start), caps.lo);
        caps.hi = select(along | across, caps.hi, smaller(caps.hi, start));
        return caps;
    }
    const V end = opt.endPlane * ray.invRayDotAxis;
    caps.lo = larger(zero, select(along, start, end));
    caps.hi = smaller(farthest, select(along, end, start));
    if (any(across)) [[unlikely]] {
        // deliberate: across the axis the depth of the apex is compared with the reach
        const auto miss = ray.rayDotPos > light.radius;
        caps.lo = select(across, zero, caps.lo);
        caps.hi = select(across, select(miss, V(-1.0), farthest), caps.hi);
    }
    return caps;
}

// Writes the stretch [*tNear, *tFar] of the ray inside one cone and between the caps; it is empty when
// *tFar <= *tNear, and *tNear is never behind the camera (t < 0). coneC and cosSq choose the cone: coneCInner
// and cosInnerSq, or coneCOuter and cosOuterSq. rr is r.r.
template <class V>
[[gnu::always_inline]] inline void IntersectRayWithCone(const _VisLightStruct& light, const _OptSpotData& opt,
                                                        const _RayOpt<V>& ray, const BetweenCaps<V>& caps,
                                                        V rx, V ry, V rz, V rr, double coneC, double cosSq,
                                                        V* tNear, V* tFar) {
    const V k = ray.rayDotAxis, lo = caps.lo, hi = caps.hi;
    const auto along = k > 0.0;
    // Stands in for a root that is not on the forward nappe, which goes on without end where k > 0 and comes from there
    // where k < 0.
    const V beyond = select(along, V(kFarthest), V(-kFarthest));

    const V apex_depth(opt.axisDotPos);
    const V A = NegMulAdd(V(cosSq), rr, k * k);
    const V minus_B = MulAdd(k, apex_depth, ray.rayDotPos * -cosSq);
    const V C(coneC);
    const auto parallel = Abs(A) <= kConeEps;
    const V D = NegMulAdd(A, C, minus_B * minus_B);

    // Two roots. One that is not on the forward nappe counts as lying beyond all: then the stretch is from the other
    // root on (k > 0) or up to it (k <= 0), and of two such there is none.
    const auto two = (!parallel) & (D > kConeEps);
    const V w = Root(select(two, D, V(1.0)));
    const V inv_a = Reciprocal(select(parallel, V(1.0), A));
    const V ta = (minus_B - w) * inv_a, tb = (minus_B + w) * inv_a;
    const V a = select(two & (ta * k >= apex_depth), ta, beyond);
    const V b = select(two & (tb * k >= apex_depth), tb, beyond);
    V near = larger(lo, smaller(a, b)), far = smaller(hi, larger(a, b));

    // The rare rays: a double root (the ray touches the cone or passes its apex) and a ray parallel to a generator.
    const auto from_root_on = [&](auto lanes, V root) {
        near = select(lanes, select(along, larger(lo, root), lo), near);
        far = select(lanes, select(along, hi, smaller(hi, root)), far);
    };
    const V none(-1.0);
    const auto tangent = (!parallel) & (Abs(D) < kConeEps);
    if (any(tangent)) [[unlikely]] {
        const V root = minus_B * inv_a;
        const V probe = root + 100.0;
        const V qx = probe * rx - light.pos.x, qy = probe * ry - light.pos.y, qz = probe * rz - light.pos.z;
        const V qd = qx * light.dir.x + qy * light.dir.y + qz * light.dir.z;
        from_root_on(tangent, root);
        far = select(tangent & (qd * qd / (qx * qx + qy * qy + qz * qz) <= cosSq), none, far);
    }
    if (any(parallel)) [[unlikely]] {
        const auto no_slope = parallel & (Abs(minus_B) <= kConeEps);
        const auto single = parallel & !no_slope;
        const V root = C * 0.5 / select(single, minus_B, V(1.0));
        from_root_on(single, root);
        far = select(single & !(root * k > apex_depth), none, far);
        near = select(no_slope, lo, near);
        far = select(no_slope, select(Abs(C) < kConeEps, hi, none), far);
    }
    *tNear = near;
    *tFar = far;
}

}  // namespace zam
