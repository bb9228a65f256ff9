#pragma once
// Where a view ray is inside a spot light's cone, between its start cap and its end cap.
//
//   symbol  code                unit     from
//   r       rx, ry, rz          -        view ray x(t) = t r, not normalised (rz = 1: t is depth)
//   p, d    light pos, dir      comp px  apex and axis in camera space; d is not normalised
//   k       ray rayDotAxis      -        r.d
//   c       cosSq               -        squared cosine of the half angle
//
// x(t) is on the double cone where A t^2 + 2 B t + C = 0 with A = k^2 - c (r.r), B = c (r.p) - k (d.p) and
// C = (d.p)^2 - c (p.p). Half of it, the nappe behind the apex, is no part of the light.
#include "effect/render/kernels/lanes.h"
#include "effect/render/kernels/records.h"

namespace zam {

inline constexpr double kFarthest = 10000000.0;  // stands in for an end that is not there
inline constexpr double kConeEps = 1e-05;        // absolute, on every coefficient of the quadratic

// The ray's products with one spot light. Where k is 0 its reciprocal is a placeholder, never a result.
template <class V>
_RayOpt<V> MakeRayOpt(V rx, V ry, V rz, const _VisLightStruct& light) {
    _RayOpt<V> ray;
    ray.rayDotAxis = rx * light.dir.x + ry * light.dir.y + rz * light.dir.z;
    ray.invRayDotAxis = 1.0 / select(ray.rayDotAxis != 0.0, ray.rayDotAxis, V(1.0));
    ray.rayDotPos = rx * light.pos.x + ry * light.pos.y + rz * light.pos.z;
    return ray;
}

// Writes the stretch [*tNear, *tFar]; it is empty when *tFar <= *tNear, and nothing behind the camera (t < 0)
// is ever in it. coneC and cosSq choose the cone: coneCInner and cosInnerSq, or coneCOuter and cosOuterSq.
// rr is r.r.
template <class V, class M>
void IntersectRayWithCone(const M& maths, int light, const _LightData* spot, const _VisLightStruct* lights,
                          const _OptSpotData* opt, const _RayOpt<V>* ray, V rx, V ry, V rz, V rr,
                          double coneC, double cosSq, V* tNear, V* tFar) {
    const _VisLightStruct& cone = lights[light];
    const _OptSpotData& caps = opt[light];
    const V zero(0.0), farthest(kFarthest);
    const V k = ray->rayDotAxis, inv_k = ray->invRayDotAxis, rp = ray->rayDotPos;
    const auto along = k > 0.0, against = k < 0.0;

    // End cap. The comparisons send a not-a-number to kFarthest.
    V lo, hi;
    auto miss = k != k;
    if (spot->reachActive) {
        const Vec3& n = spot->reachNormal;
        const V dn = (rx * n.x + ry * n.y + rz * n.z) * caps.endSign;
        const V end = caps.endPlane / select(dn != 0.0, dn, V(1.0));
        hi = select((dn > 0.0) & (end < farthest), end, farthest);
        lo = select((dn < 0.0) & (end > 0.0), end, zero);
    } else {
        const V end = caps.endPlane * inv_k;
        hi = select(along & (end < farthest), end, farthest);
        lo = select(against & (end > 0.0), end, zero);
        // deliberate: across the axis the depth of the apex is compared with the reach
        miss = miss | ((k == 0.0) & (rp > cone.radius));
    }

    // Start cap.
    const V start = caps.startPlane * inv_k;
    lo = select(along, larger(lo, start), lo);
    hi = select(against, smaller(hi, start), hi);
    miss = miss | (lo > hi);

    // Depth of x(t) beyond the apex along the axis.
    const auto beyond_apex = [&](V t) {
        return (t * rx - cone.pos.x) * cone.dir.x + (t * ry - cone.pos.y) * cone.dir.y +
               (t * rz - cone.pos.z) * cone.dir.z;
    };

    const V A = k * k - cosSq * rr;
    const V B = cosSq * rp - k * caps.axisDotPos;
    const double C = coneC;
    const auto parallel = maths.fabs(A) <= kConeEps;
    const V D = B * B - A * C;

    // Two roots: the stretch between them, or from the one on the forward nappe on (k > 0) or up to it (k <=
    // 0).
    const auto two = !parallel & (D > kConeEps);
    const V w = maths.sqrt(select(two, D, zero));
    const V inv_a = 1.0 / select(parallel, V(1.0), A);
    const V ta = (-B - w) * inv_a, tb = (w - B) * inv_a;
    const auto fa = beyond_apex(ta) >= 0.0, fb = beyond_apex(tb) >= 0.0;
    const auto both = fa & fb, neither = !fa & !fb;
    const V one = select(fa, ta, tb);
    V near = select(both, larger(lo, smaller(ta, tb)), select(along, larger(lo, one), lo));
    V far = select(both, smaller(hi, larger(ta, tb)), select(along, hi, smaller(hi, one)));
    near = select(neither, lo, near);
    far = select(neither, lo, far);

    // No root: no stretch.
    near = select(two, near, lo);
    far = select(two, far, zero);

    // The rare rays: a double root (the ray touches the cone or passes its apex) and a ray parallel to a
    // generator.
    const auto tangent = !parallel & (maths.fabs(D) < kConeEps);
    if (any(tangent)) {
        const V root = -B * inv_a;
        const V probe = root + 100.0;
        const V qx = probe * rx - cone.pos.x, qy = probe * ry - cone.pos.y, qz = probe * rz - cone.pos.z;
        const V qd = qx * cone.dir.x + qy * cone.dir.y + qz * cone.dir.z;
        const auto outside = qd * qd / (qx * qx + qy * qy + qz * qz) <= cosSq;
        miss = miss | (tangent & outside);
        near = select(tangent, select(along, larger(lo, root), lo), near);
        far = select(tangent, select(along, hi, smaller(hi, root)), far);
    }
    if (any(parallel)) {
        const auto no_slope = parallel & (maths.fabs(B) <= kConeEps);
        const auto single = parallel & !no_slope;
        const auto on_cone = no_slope & (maths.fabs(V(C)) < kConeEps);
        const V root = V(C * -0.5) / select(single, B, V(1.0));
        miss = miss | (single & !(beyond_apex(root) > 0.0));
        near = select(single, select(along, larger(lo, root), lo), select(parallel, lo, near));
        far = select(single, select(along, hi, smaller(hi, root)),
                     select(on_cone, hi, select(no_slope, zero, far)));
    }

    *tNear = select(miss, zero, at_least_zero(near));
    *tFar = select(miss, zero, at_least_zero(far));
}

}  // namespace zam
