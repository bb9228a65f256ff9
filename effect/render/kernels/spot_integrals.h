#pragma once
// Light scattered towards the camera along a stretch of a view ray inside a spot's cone, in closed form. Integrals are
// over t, from t0 to t1, not over arc length.
//
//   symbol  code       unit       from
//   r p d              as in cone.h
//   a       a          -          r.r
//   k       k          -          r.d
//   rp      rp         comp px    r.p; in the plain forms b = -2 rp
//   dp      axisDotPos comp px    d.p
//   Q(t)               comp px^2  a t^2 + b t + p.p + 1, squared distance from the light, softened
//   Q0(t)              comp px^2  a t^2 + b t + p.p, the true one
//   c(t)               -          (k t - dp) / sqrt(Q), cosine off the axis (Q0 in the constant model)
//   w(t)               -          (c - cosOuter) / (cosInner - cosOuter): 0 on the outer cone, 1 on the inner
//
// deliberate: the natural and distance models take the softened distance in the cosine too
//
// The plain forms are differences F(t1) - F(t0) of antiderivatives. They are computed in terms of
//
//   v(t) = a t - rp            half the slope of Q
//   w2   = a (p.p + 1) - rp^2  so that a Q(t) = v^2 + w2, without cancellation
//   m    = rp k - a dp         of the feather
//
// and every difference of arc tangents or logarithms is one function of a quotient:
//
//   atan(v1 / w) - atan(v0 / w) = AngleAbove((v1 - v0) w, w2 + v0 v1),  v1 - v0 = a (t1 - t0)
//   log(g1) - log(g0)           = LogOfQuotient(g1, g0),  g = v + sqrt(v^2 + w2)
//
// where for v < 0, where that sum cancels, g = w2 / (sqrt(v^2 + w2) - v): one factor on the other side of the quotient.
#include "effect/render/kernels/elementary.h"
#include "effect/render/kernels/records.h"

namespace zam {

// One ray and one light; w2 with the softened distance or, for the constant model, the true one.
template <class V>
struct FogRay {
    V a, inv_root_a;  // r.r, and 1 / sqrt(r.r)
    V k, rp, m, w2;
};
template <class V>
[[gnu::always_inline]] inline FogRay<V> MakeFogRay(V a, V inv_root_a, const _RayOpt<V>& ray,
                                                   const _OptSpotData& cone, double softening) {
    const V k = ray.rayDotAxis, rp = ray.rayDotPos;
    return {a,
            inv_root_a,
            k,
            rp,
            NegMulAdd(a, V(cone.axisDotPos), rp * k),
            NegMulAdd(rp, rp, a * (cone.distSq + softening))};
}

// One end of a stretch.
template <class V>
struct FogEnd {
    V t, v, s2;  // s2 = v^2 + w2 = a Q
};
template <class V>
[[gnu::always_inline]] inline FogEnd<V> MakeFogEnd(const FogRay<V>& ray, V t) {
    const V v = MulAdd(ray.a, t, -ray.rp);
    return {t, v, MulAdd(v, v, ray.w2)};
}

// (atan(v1 / w) - atan(v0 / w)) for t0 <= t1; w = sqrt(w2).
template <class V>
[[gnu::always_inline]] inline V AngleBetween(const FogRay<V>& ray, V w, const FogEnd<V>& from,
                                             const FogEnd<V>& to) {
    return AngleAbove(ray.a * (to.t - from.t) * w, MulAdd(from.v, to.v, ray.w2));
}

// log(g1 / g0); s = sqrt(s2) of both ends.
template <class V>
[[gnu::always_inline]] inline V LogBetween(const FogRay<V>& ray, const FogEnd<V>& from, V from_s,
                                           const FogEnd<V>& to, V to_s) {
    const auto from_before = from.v < 0.0, to_before = to.v < 0.0;
    const V from_sum = from_s + Abs(from.v), to_sum = to_s + Abs(to.v);
    const V over = select(to_before, ray.w2, to_sum) * select(from_before, from_sum, V(1.0));
    const V under = select(from_before, ray.w2, from_sum) * select(to_before, to_sum, V(1.0));
    return LogOfQuotient(over, under);
}

// "Natural": Integral of 1 / Q. Plain: F = 2 i atan((2 a t + b) i),  i = 1 / sqrt(4 a (p.p + 1) - b^2) = 1 / (2 w).
template <class V>
struct NaturalFog {
    FogRay<V> ray;
    V inv_w, w;

    explicit NaturalFog(const FogRay<V>& fog_ray)
        : ray(fog_ray), inv_w(ReciprocalRoot(fog_ray.w2)), w(fog_ray.w2 * inv_w) {}

    V Integrate(const FogEnd<V>& from, const FogEnd<V>& to) const {
        return AngleBetween(ray, w, from, to) * inv_w;
    }

    // Integral of w / Q. Plain, with D = b^2 - 4 a u = -4 w2, u = p.p + 1:
    //   F = [(alpha t + beta) / sqrt(Q) - cosOuter 2 i atan((2 a t + b) i)] / (cosInner - cosOuter)
    //   alpha = 2 (b k + 2 a dp) / D,  beta = 2 (2 u k + b dp) / D
    // With t = (v + rp) / a the first term is (m v - k w2) / (w2 sqrt(a) sqrt(a Q)).
    V Rational(const FogEnd<V>& end) const {
        return (ray.m * end.v - ray.k * ray.w2) * ReciprocalRoot(end.s2) * (inv_w * inv_w) * ray.inv_root_a;
    }
    V IntegrateConeF(const _OptSpotData& cone, const FogEnd<V>& from, V from_rational, const FogEnd<V>& to,
                     V to_rational) const {
        const V angular = Integrate(from, to) * cone.cosOuter;
        return (to_rational - from_rational - angular) * cone.invFeather;
    }
};

// "Distance": Integral of 1 / sqrt(Q). Plain: F = log((2 a t + b) / sqrt(a) + 2 sqrt(Q)) / sqrt(a).
template <class V>
struct DistanceFog {
    FogRay<V> ray;
    V inv_w, w;

    explicit DistanceFog(const FogRay<V>& fog_ray)
        : ray(fog_ray), inv_w(ReciprocalRoot(fog_ray.w2)), w(fog_ray.w2 * inv_w) {}

    V Integrate(const FogEnd<V>& from, V from_s, const FogEnd<V>& to, V to_s) const {
        return LogBetween(ray, from, from_s, to, to_s) * ray.inv_root_a;
    }

    // Integral of w / sqrt(Q). Plain:
    //   F = [G i atan((b + 2 a t) i) + k log(Q) + H log(2 sqrt(Q) + (b + 2 a t) / sqrt(a))] / N
    //   G = -2 (b k + 2 a dp) = 4 m,  H = -2 cosOuter sqrt(a),  N = 2 a (cosInner - cosOuter)
    V IntegrateConeF(const _OptSpotData& cone, const FogEnd<V>& from, V from_s, const FogEnd<V>& to,
                     V to_s) const {
        const V angular = ray.m * inv_w * AngleBetween(ray, w, from, to);
        const V logs = 0.5 * ray.k * LogOfQuotient(to.s2, from.s2);
        const V inv_a = ray.inv_root_a * ray.inv_root_a;
        return ((angular + logs) * inv_a - Integrate(from, from_s, to, to_s) * cone.cosOuter) *
               cone.invFeather;
    }
};

// "Constant" with a feather: Integral of w with the true cosine. Plain:
//   F = [cosOuter t - k sqrt(Q0) / a + M log((2 a t + b) / sqrt(a) + 2 sqrt(Q0)) / L] / (cosOuter - cosInner)
//   M = b k + 2 a dp = -2 m,  L = 2 a sqrt(a)
// A ray through the apex has m = 0 and loses w2 to rounding; the logarithm is dropped there.
template <class V>
[[gnu::always_inline]] inline V IntegrateConstConeF(const FogRay<V>& ray, const _OptSpotData& cone,
                                                    const FogEnd<V>& from, V from_s, const FogEnd<V>& to,
                                                    V to_s) {
    const V inv_a = ray.inv_root_a * ray.inv_root_a;
    const auto legal = ray.w2 > 0.0;
    FogRay<V> safe = ray;
    safe.w2 = select(legal, ray.w2, V(1.0));
    const V logs = select(legal, ray.m * LogBetween(safe, from, from_s, to, to_s), V(0.0));
    const V roots = ray.k * (to_s - from_s);
    return ((roots + logs) * inv_a * ray.inv_root_a - (to.t - from.t) * cone.cosOuter) * cone.invFeather;
}

}  // namespace zam
