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
// With a feather the integral runs over the near stretch, from the outer cone to the inner one, and the far stretch,
// from the inner to the outer; w is linear in the cosine, so that both together are
//
//   [C(near) + C(far) - cosOuter (I(outer) - I(inner))] / (cosInner - cosOuter)
//
// with I the integral of the model without w, over the outer and over the inner stretch, and C that of the model with c
// for w. Each fog below has both: Integrate for I, IntegrateCosine for C. Its plain forms are given above it.
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
// Two differences become one function of the product of their quotients: as complex numbers for angles, as they stand
// for logarithms.
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
[[gnu::always_inline]] inline FogRay<V> MakeFogRay(V a, V inv_root_a, V k, V rp, const _OptSpotData& cone,
                                                   double softening) {
    return {a,
            inv_root_a,
            k,
            rp,
            NegMulAdd(a, V(cone.axisDotPos), rp * k),
            NegMulAdd(rp, rp, a * (cone.distSq + softening))};
}

// What every end of a stretch has.
template <class V>
struct FogEnd {
    V t, v, s2;  // s2 = v^2 + w2 = a Q
};
template <class V>
[[gnu::always_inline]] inline FogEnd<V> MakeFogEnd(const FogRay<V>& ray, V t) {
    const V v = MulAdd(ray.a, t, -ray.rp);
    return {t, v, MulAdd(v, v, ray.w2)};
}

// A near and a far stretch in their order along the ray: f_in to t_in, t_out to f_out.
template <class End>
struct FeatherEnds {
    End f_in, t_in, t_out, f_out;
};

// The angle between the ends of a stretch as seen from the light, 0 to pi, as that of the point (x, y).
// Plain: atan(v1 / w) - atan(v0 / w); aw = a w, w = sqrt(w2).
template <class V>
struct Turn {
    V x, y;
};
template <class V>
[[gnu::always_inline]] inline Turn<V> TurnBetween(const FogRay<V>& ray, V aw, const FogEnd<V>& from,
                                                  const FogEnd<V>& to) {
    return {MulAdd(from.v, to.v, ray.w2), aw * (to.t - from.t)};
}
template <class V>
[[gnu::always_inline]] inline V AngleOf(const Turn<V>& turn) {
    return AngleAbove(turn.y, turn.x);
}
// One after the other.
template <class V>
[[gnu::always_inline]] inline Turn<V> operator*(const Turn<V>& a, const Turn<V>& b) {
    return {NegMulAdd(a.y, b.y, a.x * b.x), MulAdd(a.x, b.y, b.x * a.y)};
}

// An end's g = v + s as the quotient over / under, with s = sqrt(s2).
template <class V>
struct LogEnd : FogEnd<V> {
    V s, over, under;
};
template <class V>
[[gnu::always_inline]] inline LogEnd<V> MakeLogEnd(const FogEnd<V>& end, V w2, V s) {
    const auto before = end.v < 0.0;
    const V sum = s + Abs(end.v);
    return {end, s, select(before, w2, sum), select(before, sum, V(1.0))};
}
// log(g1 / g0)
template <class V>
[[gnu::always_inline]] inline V LogBetween(const LogEnd<V>& from, const LogEnd<V>& to) {
    return LogOfQuotient(to.over * from.under, from.over * to.under);
}

// IntegrateNatural: 1 / Q. Plain:
//   F = 2 i atan((2 a t + b) i),  i = 1 / sqrt(4 a (p.p + 1) - b^2) = 1 / (2 w)
// IntegrateNaturalConeF: w / Q. Plain, with D = b^2 - 4 a u = -4 w2, u = p.p + 1:
//   F = [(alpha t + beta) / sqrt(Q) - cosOuter 2 i atan((2 a t + b) i)] / (cosInner - cosOuter)
//   alpha = 2 (b k + 2 a dp) / D,  beta = 2 (2 u k + b dp) / D
// With t = (v + rp) / a the first term is (m v - k w2) / (w2 sqrt(a) sqrt(a Q)).
template <class V>
struct NaturalFog {
    struct End : FogEnd<V> {
        V inv_s;  // 1 / sqrt(s2)
    };
    FogRay<V> ray;
    V inv_w, aw;

    [[gnu::always_inline]] explicit NaturalFog(const FogRay<V>& fog_ray)
        : ray(fog_ray), inv_w(ReciprocalRoot(fog_ray.w2)), aw(fog_ray.a * (fog_ray.w2 * inv_w)) {}

    [[gnu::always_inline]] End At(V t) const {
        const FogEnd<V> end = MakeFogEnd(ray, t);
        return {end, ReciprocalRoot(end.s2)};
    }
    [[gnu::always_inline]] V Integrate(const End& from, const End& to) const {
        return AngleOf(TurnBetween<V>(ray, aw, from, to)) * inv_w;
    }
    [[gnu::always_inline]] V IntegrateCosine(const End& from, const End& to) const {
        return (Term(to) - Term(from)) * (inv_w * ray.inv_root_a) * inv_w;
    }
    [[gnu::always_inline]] V IntegrateCosine(const FeatherEnds<End>& ends) const {
        const V near = Term(ends.t_in) - Term(ends.f_in), far = Term(ends.f_out) - Term(ends.t_out);
        return (near + far) * (inv_w * ray.inv_root_a) * inv_w;
    }
    [[gnu::always_inline]] V Term(const End& end) const {
        return NegMulAdd(ray.k, ray.w2, ray.m * end.v) * end.inv_s;
    }
    // Stretches whose feather is known not to be negative. Seen from the light the ray sweeps an angle at the rate
    // w / Q, so that the feather's sign is that of the mean over that angle of c - cosOuter. There c is C cos(angle -
    // angle0), and the mean of a cosine over less than half a turn is at least that of its ends, if that is not
    // negative.
    [[gnu::always_inline]] auto KnownNotNegative(const _OptSpotData& cone, const End& from,
                                                 const End& to) const {
        const auto depth = [this](const End& end) { return MulAdd(ray.k, end.v, ray.m); };  // a (k t - dp)
        const V cosines = MulAdd(depth(from), from.inv_s, depth(to) * to.inv_s);
        return cosines >= 2.0 * cone.cosOuter * (ray.a * ray.inv_root_a);
    }
};

// IntegrateDistance: 1 / sqrt(Q). Plain:
//   F = log((2 a t + b) / sqrt(a) + 2 sqrt(Q)) / sqrt(a)
// IntegrateDistanceConeF: w / sqrt(Q). Plain:
//   F = [G i atan((b + 2 a t) i) + k log(Q) + H log(2 sqrt(Q) + (b + 2 a t) / sqrt(a))] / N
//   G = -2 (b k + 2 a dp) = 4 m,  H = -2 cosOuter sqrt(a),  N = 2 a (cosInner - cosOuter)
template <class V>
struct DistanceFog {
    using End = LogEnd<V>;
    FogRay<V> ray;
    V inv_w, aw;

    [[gnu::always_inline]] explicit DistanceFog(const FogRay<V>& fog_ray)
        : ray(fog_ray), inv_w(ReciprocalRoot(fog_ray.w2)), aw(fog_ray.a * (fog_ray.w2 * inv_w)) {}

    [[gnu::always_inline]] End At(V t) const {
        const FogEnd<V> end = MakeFogEnd(ray, t);
        return MakeLogEnd(end, ray.w2, Root(end.s2));
    }
    [[gnu::always_inline]] V Integrate(const End& from, const End& to) const {
        return LogBetween(from, to) * ray.inv_root_a;
    }
    [[gnu::always_inline]] V IntegrateCosine(const End& from, const End& to) const {
        return CosineOf(TurnBetween<V>(ray, aw, from, to), LogOfQuotient(to.s2, from.s2));
    }
    [[gnu::always_inline]] V IntegrateCosine(const FeatherEnds<End>& ends) const {
        const auto [f_in, t_in, t_out, f_out] = ends;
        return CosineOf(TurnBetween<V>(ray, aw, f_in, t_in) * TurnBetween<V>(ray, aw, t_out, f_out),
                        LogOfQuotient(t_in.s2 * f_out.s2, f_in.s2 * t_out.s2));
    }
    [[gnu::always_inline]] V CosineOf(const Turn<V>& turn, V log) const {
        return MulAdd(ray.m * inv_w, AngleOf(turn), 0.5 * ray.k * log) * (ray.inv_root_a * ray.inv_root_a);
    }
    // Stretches whose feather is known not to be negative: true distances would give none, and softened ones can only
    // where the ray passes so close to the light that they move the cosine by the width of the feather.
    [[gnu::always_inline]] auto KnownNotNegative(const _OptSpotData& cone, const End&, const End&) const {
        return ray.w2 >= (cone.cosInner + cone.cosOuter) * cone.invFeather * ray.a;
    }
};

// Constant: 1, and IntegrateConstConeF: w with the true cosine. Plain:
//   F = [cosOuter t - k sqrt(Q0) / a + M log((2 a t + b) / sqrt(a) + 2 sqrt(Q0)) / L] / (cosOuter - cosInner)
//   M = b k + 2 a dp = -2 m,  L = 2 a sqrt(a)
// A ray through the apex has m = 0 and loses w2 to rounding; the logarithm is dropped there.
template <class V>
struct ConstantFog {
    using End = LogEnd<V>;
    FogRay<V> ray;

    [[gnu::always_inline]] End At(V t) const {
        constexpr double kLeast = 1e-100;  // through the apex, where the root only has to be legal
        const FogEnd<V> end = MakeFogEnd(ray, t);
        return MakeLogEnd(end, larger(ray.w2, V(kLeast)), Root(larger(end.s2, V(kLeast))));
    }
    [[gnu::always_inline]] static V Integrate(const End& from, const End& to) { return to.t - from.t; }
    [[gnu::always_inline]] V IntegrateCosine(const End& from, const End& to) const {
        return CosineOf(to.s - from.s, LogBetween(from, to));
    }
    [[gnu::always_inline]] V IntegrateCosine(const FeatherEnds<End>& ends) const {
        const auto [f_in, t_in, t_out, f_out] = ends;
        return CosineOf((t_in.s - f_in.s) + (f_out.s - t_out.s),
                        LogOfQuotient((t_in.over * f_in.under) * (f_out.over * t_out.under),
                                      (f_in.over * t_in.under) * (t_out.over * f_out.under)));
    }
    [[gnu::always_inline]] V CosineOf(V roots, V log) const {
        const V logs = select(ray.w2 > 0.0, ray.m * log, V(0.0));
        return MulAdd(ray.k, roots, logs) * (ray.inv_root_a * ray.inv_root_a * ray.inv_root_a);
    }
    // All: where w is negative is no part of the cone.
    [[gnu::always_inline]] auto KnownNotNegative(const _OptSpotData&, const End&, const End&) const {
        return ray.a > 0.0;
    }
};

}  // namespace zam
