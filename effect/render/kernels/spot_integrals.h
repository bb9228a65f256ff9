#pragma once
// Light scattered towards the camera along the stretch [t0, t1] of a view ray inside a spot's cone, in closed
// form: each function evaluates an antiderivative F and returns F(t1) - F(t0). Integrals are over t, not over
// arc length.
//
//   symbol  code       unit       from
//   r p d              as in cone.h
//   a       rr         -          r.r
//   b       b          comp px    -2 (r.p)
//   k       k          -          r.d
//   dp      axisDotPos comp px    d.p
//   Q(t)               comp px^2  a t^2 + b t + p.p + 1, squared distance from the light, softened
//   Q0(t)              comp px^2  a t^2 + b t + p.p, the true one
//   c(t)               -          (k t - dp) / sqrt(Q), cosine off the axis (Q0 in the constant model)
//   w(t)               -          (c - cosOuter) / (cosInner - cosOuter): 0 on the outer cone, 1 on the inner
//
// deliberate: the natural and distance models take the softened distance in the cosine too
#include "effect/render/kernels/lanes.h"
#include "effect/render/kernels/records.h"

namespace zam {

// Integral of 1 / Q:  F = 2 i atan((2 a t + b) i),  i = 1 / sqrt(4 a (p.p + 1) - b^2)
template <class V, class M>
V IntegrateNatural(const M& maths, int light, const _VisLightStruct*, const _OptSpotData* opt,
                   const _RayOpt<V>* ray, V, V, V, V rr, V t0, V t1) {
    const V b = ray->rayDotPos * -2.0;
    const V i = 1.0 / maths.sqrt((opt[light].distSq + 1.0) * rr * 4.0 - b * b);
    const auto F = [&](V t) { return 2.0 * i * maths.atan((2.0 * rr * t + b) * i); };
    return F(t1) - F(t0);
}

// Integral of w / Q. With D = b^2 - 4 a u, u = p.p + 1:
//   F = [(alpha t + beta) / sqrt(Q) - cosOuter 2 i atan((2 a t + b) i)] / (cosInner - cosOuter)
//   alpha = 2 (b k + 2 a dp) / D,  beta = 2 (2 u k + b dp) / D,  i = 1 / sqrt(-D)
template <class V, class M>
V IntegrateNaturalConeF(const M& maths, int light, const _VisLightStruct*, const _OptSpotData* opt,
                        const _RayOpt<V>* ray, V, V, V, V rr, V t0, V t1) {
    const _OptSpotData& cone = opt[light];
    const V b = ray->rayDotPos * -2.0, k = ray->rayDotAxis;
    const double u = cone.distSq + 1.0, dp = cone.axisDotPos;
    const V D = -4.0 * rr * u + b * b;
    const V i = 1.0 / maths.sqrt(-D);
    const V E = -2.0 * u * k - b * dp;
    const auto F = [&](V t) {
        const V Q = rr * t * t + b * t + cone.distSq + 1.0;
        const V rational = (E - b * k * t - 2.0 * rr * dp * t) * -2.0 / (D * maths.sqrt(Q));
        const V angular = maths.atan((2.0 * rr * t + b) * i) * (-2.0 * cone.cosOuter) * i;
        return (rational + angular) / (cone.cosInner - cone.cosOuter);
    };
    return F(t1) - F(t0);
}

// Integral of 1 / sqrt(Q):  F = log((2 a t + b) / sqrt(a) + 2 sqrt(Q)) / sqrt(a)
template <class V, class M>
V IntegrateDistance(const M& maths, int light, const _VisLightStruct* lights, const _OptSpotData* opt, V rx,
                    V ry, V rz, V rr, V t0, V t1) {
    const Vec3& p = lights[light].pos;
    const V b = (rx * p.x + ry * p.y + rz * p.z) * -2.0;
    const V root_a = maths.sqrt(rr);
    const auto F = [&](V t) {
        const V Q = rr * t * t + b * t + opt[light].distSq + 1.0;
        return 1.0 / root_a * maths.log((b + 2.0 * rr * t) / root_a + 2.0 * maths.sqrt(Q));
    };
    return F(t1) - F(t0);
}

// Integral of w / sqrt(Q):
//   F = [G i atan((b + 2 a t) i) + k log(Q) + H log(2 sqrt(Q) + (b + 2 a t) / sqrt(a))] / N
//   G = -2 (b k + 2 a dp),  H = -2 cosOuter sqrt(a),  N = 2 a (cosInner - cosOuter),  i as above
template <class V, class M>
V IntegrateDistanceConeF(const M& maths, int light, const _VisLightStruct* lights, const _OptSpotData* opt,
                         V rx, V ry, V rz, V rr, V t0, V t1) {
    const _OptSpotData& cone = opt[light];
    const Vec3 &p = lights[light].pos, &d = lights[light].dir;
    const V b = (rx * p.x + ry * p.y + rz * p.z) * -2.0;
    const V k = rx * d.x + ry * d.y + rz * d.z;
    const double u = cone.distSq + 1.0;
    const V i = 1.0 / maths.sqrt(rr * 4.0 * u - b * b);
    const V root_a = maths.sqrt(rr);
    const V G = -2.0 * (b * k + 2.0 * rr * cone.axisDotPos);
    const V H = -2.0 * cone.cosOuter * root_a;
    const V N = 2.0 * rr * (cone.cosInner - cone.cosOuter);
    const auto F = [&](V t) {
        const V Q = rr * t * t + b * t + cone.distSq + 1.0;
        const V slope = b + 2.0 * rr * t;
        return (G * i * maths.atan(slope * i) + k * maths.log(Q) +
                H * maths.log(2.0 * maths.sqrt(Q) + slope / root_a)) /
               N;
    };
    return F(t1) - F(t0);
}

// Integral of w with the true cosine:
//   F = [cosOuter t - k sqrt(Q0) / a + M log((2 a t + b) / sqrt(a) + 2 sqrt(Q0)) / L] / (cosOuter - cosInner)
//   M = b k + 2 a dp,  L = 2 a sqrt(a)
// A ray through the apex has M = 0 and loses the logarithm's argument to rounding; the term is dropped there.
template <class V, class M>
V IntegrateConstConeF(const M& maths, int light, const _VisLightStruct* lights, const _OptSpotData* opt, V rx,
                      V ry, V rz, V rr, V t0, V t1) {
    const _OptSpotData& cone = opt[light];
    const Vec3 &p = lights[light].pos, &d = lights[light].dir;
    const V b = (rx * p.x + ry * p.y + rz * p.z) * -2.0;
    const V k = rx * d.x + ry * d.y + rz * d.z;
    const V root_a = maths.sqrt(rr);
    const V i = 1.0 / root_a;
    const V m = b * k + rr * -2.0 * -cone.axisDotPos;
    const V l = 2.0 * rr * root_a;
    const auto F = [&](V t) {
        const V root_q = maths.sqrt(at_least_zero(rr * t * t + b * t + cone.distSq));
        const V argument = (2.0 * rr * t + b) * i + 2.0 * root_q;
        const auto legal = argument > 0.0;
        const V term = m * maths.log(select(legal, argument, V(1.0))) / l;
        return (cone.cosOuter * t - 1.0 / rr * k * root_q + select(legal, term, V(0.0))) /
               (cone.cosOuter - cone.cosInner);
    };
    return F(t1) - F(t0);
}

}  // namespace zam
