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

// atan(v1 / w) - atan(v0 / w) for t0 <= t1; aw = a w, w = sqrt(w2).
template <class V>
[[gnu::always_inline]] inline V AngleBetween(const FogRay<V>& ray, V aw, const FogEnd<V>& from,
                                             const FogEnd<V>& to) {
    return AngleAbove(aw * (to.t - from.t), MulAdd(from.v, to.v, ray.w2));
}

// An end's g = v + s as the quotient over / under, with s = sqrt(s2).
template <class V>
struct LogEnd {
    V s, over, under;
};
template <class V>
[[gnu::always_inline]] inline LogEnd<V> MakeLogEnd(V w2, V v, V s) {
    const auto before = v < 0.0;
    const V sum = s + Abs(v);
    return {s, select(before, w2, sum), select(before, sum, V(1.0))};
}
// log(g1 / g0)
template <class V>
[[gnu::always_inline]] inline V LogBetween(const LogEnd<V>& from, const LogEnd<V>& to) {
    return LogOfQuotient(to.over * from.under, from.over * to.under);
}

// "Natural" (IntegrateNatural, IntegrateNaturalConeF): Integral of 1 / Q. Plain:
//   F = 2 i atan((2 a t + b) i),  i = 1 / sqrt(4 a (p.p + 1) - b^2) = 1 / (2 w).
template <class V>
struct NaturalFog {
    FogRay<V> ray;
    V inv_w, aw;

    [[gnu::always_inline]] explicit NaturalFog(const FogRay<V>& fog_ray)
        : ray(fog_ray), inv_w(ReciprocalRoot(fog_ray.w2)), aw(fog_ray.a * (fog_ray.w2 * inv_w)) {}

    [[gnu::always_inline]] V IntegrateNatural(const FogEnd<V>& from, const FogEnd<V>& to) const {
        return AngleBetween(ray, aw, from, to) * inv_w;
    }

    // Integral of w / Q. Plain, with D = b^2 - 4 a u = -4 w2, u = p.p + 1:
    //   F = [(alpha t + beta) / sqrt(Q) - cosOuter 2 i atan((2 a t + b) i)] / (cosInner - cosOuter)
    //   alpha = 2 (b k + 2 a dp) / D,  beta = 2 (2 u k + b dp) / D
    // With t = (v + rp) / a the first term is (m v - k w2) / (w2 sqrt(a) sqrt(a Q)). This is that of one end, times
    // w2 sqrt(a).
    [[gnu::always_inline]] V Rational(const FogEnd<V>& end) const {
        return NegMulAdd(ray.k, ray.w2, ray.m * end.v) * ReciprocalRoot(end.s2);
    }
    [[gnu::always_inline]] V IntegrateNaturalConeF(const _OptSpotData& cone, const FogEnd<V>& from,
                                                   V from_rational, const FogEnd<V>& to,
                                                   V to_rational) const {
        const V rational = (to_rational - from_rational) * (inv_w * ray.inv_root_a);
        const V angular = AngleBetween(ray, aw, from, to) * cone.cosOuter;
        return (rational - angular) * inv_w * cone.invFeather;
    }
};

// "Distance" (IntegrateDistance, IntegrateDistanceConeF): Integral of 1 / sqrt(Q). Plain:
//   F = log((2 a t + b) / sqrt(a) + 2 sqrt(Q)) / sqrt(a).
template <class V>
struct DistanceFog {
    FogRay<V> ray;
    V inv_w, aw;

    [[gnu::always_inline]] explicit DistanceFog(const FogRay<V>& fog_ray)
        : ray(fog_ray), inv_w(ReciprocalRoot(fog_ray.w2)), aw(fog_ray.a * (fog_ray.w2 * inv_w)) {}

    [[gnu::always_inline]] LogEnd<V> Logarithmic(const FogEnd<V>& end) const {
        return MakeLogEnd(ray.w2, end.v, Root(end.s2));
    }
    [[gnu::always_inline]] V Integrate(const FogEnd<V>& from, const FogEnd<V>& to) const {
        return LogBetween(Logarithmic(from), Logarithmic(to)) * ray.inv_root_a;
    }

    // Integral of w / sqrt(Q). Plain:
    //   F = [G i atan((b + 2 a t) i) + k log(Q) + H log(2 sqrt(Q) + (b + 2 a t) / sqrt(a))] / N
    //   G = -2 (b k + 2 a dp) = 4 m,  H = -2 cosOuter sqrt(a),  N = 2 a (cosInner - cosOuter)
    [[gnu::always_inline]] V IntegrateConeF(const _OptSpotData& cone, const FogEnd<V>& from,
                                            const LogEnd<V>& from_log, const FogEnd<V>& to,
                                            const LogEnd<V>& to_log) const {
        const V angular = ray.m * inv_w * AngleBetween(ray, aw, from, to);
        const V logs = 0.5 * ray.k * LogOfQuotient(to.s2, from.s2);
        const V beside = (angular + logs) * ray.inv_root_a;
        return (beside - LogBetween(from_log, to_log) * cone.cosOuter) * (ray.inv_root_a * cone.invFeather);
    }
};

// "Constant" with a feather (IntegrateConstConeF): Integral of w with the true cosine. Plain:
//   F = [cosOuter t - k sqrt(Q0) / a + M log((2 a t + b) / sqrt(a) + 2 sqrt(Q0)) / L] / (cosOuter - cosInner)
//   M = b k + 2 a dp = -2 m,  L = 2 a sqrt(a)
// A ray through the apex has m = 0 and loses w2 to rounding; the logarithm is dropped there.
template <class V>
struct ConstantFog {
    FogRay<V> ray;

    [[gnu::always_inline]] static V Integrate(const FogEnd<V>& from, const FogEnd<V>& to) {
        return to.t - from.t;
    }
    [[gnu::always_inline]] LogEnd<V> Logarithmic(const FogEnd<V>& end) const {
        constexpr double kLeast = 1e-100;  // through the apex, where the root only has to be legal
        return MakeLogEnd(larger(ray.w2, V(kLeast)), end.v, Root(larger(end.s2, V(kLeast))));
    }
    [[gnu::always_inline]] V IntegrateConeF(const _OptSpotData& cone, const FogEnd<V>& from,
                                            const LogEnd<V>& from_log, const FogEnd<V>& to,
                                            const LogEnd<V>& to_log) const {
        const V logs = select(ray.w2 > 0.0, ray.m * LogBetween(from_log, to_log), V(0.0));
        const V roots = ray.k * (to_log.s - from_log.s);
        const V inv_a = ray.inv_root_a * ray.inv_root_a;
        return ((roots + logs) * inv_a * ray.inv_root_a - (to.t - from.t) * cone.cosOuter) * cone.invFeather;
    }
};

}  // namespace zam
