#pragma once
// Point lights as glows, seen along the view ray x(t) = t * (dx, dy, 1) from the camera (t = 0).
//
//   symbol  code              unit     from
//   r       dx, dy, 1         -        view ray, not normalised: t is depth
//   a       a                 -        r.r
//   p       light.pos         comp px  camera space
//   b       b                 comp px  -2 (r.p)
//   k       softK             comp px  "Softness [%]" + 1, hence k >= 1
//
// The squared distance of x(t) from the light is a t^2 + b t + p.p.
#include "effect/render/kernels/lanes.h"
#include "effect/render/kernels/maths.h"
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

template <class V>
V PointRayB(V dx, V dy, const Vec3& p) {
    return -2.0 * (dx * p.x + dy * p.y + p.z);
}

// "Natural": G = 2 k^(1/4) * Integral from 0 to infinity of dt / (|x(t) - p|^2 + k^2)
//              = 2 k^(1/4) * (pi - 2 atan(b / R)) / R,   R^2 = 4 a (p.p + k^2) - b^2
// R^2 is at least 4 a k^2, which stands in where it is lost to rounding (lights some 1e8 px away).
template <class V, class M>
V PointNaturalGlow(const M& maths, V a, V b, const _OptPointData& opt, const PointSettings& settings) {
    const V exact = a * opt.softDenominator - b * b;
    const V root = maths.sqrt(select(exact > 0.0, exact, 4.0 * settings.softKSq * a));
    return (kPi - 2.0 * maths.atan(b / root)) / root * settings.softKRoot;
}

// Length in t of the ray's part inside a sphere around the light, in front of the camera. 0 on a miss, on a
// touch, and for a sphere without size, whatever rounding says of its discriminant. deliberate: not
// multiplied by |r|, so a sphere away from the image centre is a little dimmer
template <class V, class M>
V ChordInSphere(const M& maths, V a, V b, double distSqMinusRadiusSq, double radius) {
    if (!(radius > 0.0)) return V(0.0);
    const V discriminant = b * b - 4.0 * a * distSqMinusRadiusSq;
    const auto hit = discriminant > 0.0;
    if (!any(hit)) return V(0.0);
    const V root = maths.sqrt(select(hit, discriminant, V(0.0)));
    const V half_over_a = 0.5 / a;
    const V far = (root - b) * half_over_a;
    const V near = (-b - root) * half_over_a;
    const V chord = select(near < 0.0, V(0.0), near) - select(far < 0.0, V(0.0), far);
    return select(hit, maths.fabs(chord), V(0.0));
}

// The soft edge of the "Radius" glow, for a value below 1: s^2 (3 - 2 s) softness + (1 - softness) v with
// s = 1 - sqrt(1 - v^2).
template <class V, class M>
V SoftEdge(const M& maths, V v, double softness) {
    const auto shaped = v < 1.0;
    const V s = 1.0 - maths.sqrt(select(shaped, 1.0 - v * v, V(0.0)));
    return select(shaped, s * s * (3.0 - 2.0 * s) * softness + (1.0 - softness) * v, v);
}

// One light's share by the chosen model. `a` is r.r.
template <class V, class M>
Light4<V> PointLight(const M& maths, V dx, V dy, V a, const _VisLightStruct& light, const _OptPointData& opt,
                     const PointSettings& settings) {
    const V zero(0.0);
    Light4<V> sum{zero, zero, zero, zero};
    const V b = PointRayB(dx, dy, light.pos);
    const PointModel model = settings.model;

    if (model == PointModel::natural) {
        const V glow = PointNaturalGlow(maths, a, b, opt, settings);
        sum = {glow * opt.colorIntensity.x, glow * opt.colorIntensity.y, glow * opt.colorIntensity.z,
               glow * light.intensity};
    }
    if (model == PointModel::radius || model == PointModel::radius_source) {
        const V chord = ChordInSphere(maths, a, b, opt.distSqMinusRadiusSq, light.radius);
        if (any(chord > 0.0)) {
            const auto lit = chord > 0.0;  // a sphere without size has no finite strength per length
            sum = {select(lit, chord * opt.colorOverDiameter.x, zero),
                   select(lit, chord * opt.colorOverDiameter.y, zero),
                   select(lit, chord * opt.colorOverDiameter.z, zero),
                   select(lit, chord * opt.intensityOverDiameter, zero)};
            if (settings.softness > 0.0) {
                sum = {SoftEdge(maths, sum.red, settings.softness),
                       SoftEdge(maths, sum.green, settings.softness),
                       SoftEdge(maths, sum.blue, settings.softness),
                       SoftEdge(maths, sum.alpha, settings.softness)};
            }
        }
    }
    if (model == PointModel::radius_source || model == PointModel::source) {
        const V chord = ChordInSphere(maths, a, b, opt.distSqMinusSourceRadiusSq, settings.sourceRadius);
        if (any(chord > 0.0)) {
            const double width = 2.0 * settings.sourceRadius;
            sum.red = sum.red + light.sourceIntensity * light.color.x / width * chord;
            sum.green = sum.green + light.sourceIntensity * light.color.y / width * chord;
            sum.blue = sum.blue + light.sourceIntensity * light.color.z / width * chord;
            sum.alpha = sum.alpha + light.sourceIntensity / width * chord;
        }
    }
    return sum;
}

}  // namespace zam
