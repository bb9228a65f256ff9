#pragma once
// Smooth silhouettes: near a cone's edge the ray is cast again at sub-pixel offsets across the projected axis, and the
// stretches are blended into one.
#include "effect/render/kernels/cone.h"
#include "effect/render/kernels/rays.h"

namespace zam {

// A ray beside the pixel's own, with all that does not depend on which of the light's cones it is cast at.
template <class V>
struct SampleRay {
    V rx, ry, rr;  // the ray (rx, ry, 1) and its square
    _RayOpt<V> products;
    BetweenCaps<V> caps;
};
// The ray through (px + ox, py + oy).
template <class V>
[[gnu::always_inline]] inline SampleRay<V> MakeSampleRay(const _LightData& spot, const _VisLightStruct& light,
                                                         const _OptSpotData& opt, const PixelRays& rays, V px,
                                                         V py, double ox, double oy) {
    const V one(1.0);
    SampleRay<V> s;
    s.rx = RayX(rays, px + ox);
    s.ry = RayY(rays, py + oy);
    s.rr = s.rx * s.rx + s.ry * s.ry + 1.0;
    s.products = MakeRayOpt(s.rx, s.ry, one, light);
    s.caps = IntersectCaps(spot, light, opt, s.products, s.rx, s.ry, one);
    return s;
}

// What one ray has of a cone.
template <class V>
struct Sample {
    V near, far, span;
};
template <class V>
[[gnu::always_inline]] inline Sample<V> CastSample(const _VisLightStruct& light, const _OptSpotData& opt,
                                                   const SampleRay<V>& s, double coneC, double cosSq) {
    V near, far;
    IntersectRayWithCone(light, opt, s.products, s.caps, s.rx, s.ry, V(1.0), s.rr, coneC, cosSq, &near, &far);
    return {near, far, far - near};
}

// The two rays beside a pixel's own that every pixel asks for; the same for both cones of a light.
template <class V>
struct FirstSamples {
    SampleRay<V> ahead, behind;
};
template <class V>
[[gnu::always_inline]] inline FirstSamples<V> MakeFirstSamples(const _LightData& spot,
                                                               const _VisLightStruct& light,
                                                               const _OptSpotData& opt, const PixelRays& rays,
                                                               V px, V py) {
    // opt.across stands across the axis as seen on the screen, 1 long: (-dir.y, dir.x) / |(dir.x, dir.y)|.
    const double ox = opt.acrossX * opt.firstOffset, oy = opt.acrossY * opt.firstOffset;
    return {MakeSampleRay(spot, light, opt, rays, px, py, ox, oy),
            MakeSampleRay(spot, light, opt, rays, px, py, -ox, -oy)};
}

// The blended stretch [*near, *far] of a pixel on a cone's edge, where some rays hit and some miss.
template <class V>
void BlendEdge(const _LightData& spot, const _VisLightStruct& light, const _OptSpotData& opt,
               const PixelRays& rays, V px, V py, const Sample<V>& own, const Sample<V>& s1,
               const Sample<V>& s2, V* near, V* far) {
    // deliberate: the inner cone, whatever cone the other samples were cast at
    const auto cast = [&](double ox, double oy) {
        return CastSample(light, opt, MakeSampleRay(spot, light, opt, rays, px, py, ox, oy), opt.coneCInner,
                          opt.cosInnerSq);
    };
    const double ox = opt.acrossX * 0.3, oy = opt.acrossY * 0.3;
    const Sample<V> s3 = cast(ox, oy), s4 = cast(-ox, -oy);
    V sum_near(0.0), sum_far(0.0), n(0.0);
    const Sample<V>* const samples[] = {&s1, &s2, &own, &s3, &s4};
    for (const Sample<V>* sample : samples) {
        const auto hit = sample->span > 0.0;
        sum_near = sum_near + select(hit, sample->near, V(0.0));
        sum_far = sum_far + select(hit, sample->far, V(0.0));
        n = n + select(hit, V(1.0), V(0.0));
    }
    const V share = Reciprocal(select(n > 1.0, n, V(1.0)));
    const V mean_near = sum_near * share, mean_far = sum_far * share;
    // As long as the share of the five samples that hit, around the middle of those.
    const V length = (mean_far - mean_near) * n * 0.2;
    const V middle = (mean_far + mean_near) * 0.5;
    *near = middle - length * 0.5;
    *far = middle + length * 0.5;
}

// (px, py) is the pixel and [*tNear, *tFar] the stretch of its own ray in the cone that coneC and cosSq choose;
// writes the blended stretch in its place.
template <class V>
[[gnu::always_inline]] inline void RefineIntersection(const _LightData& spot, const _VisLightStruct& light,
                                                      const _OptSpotData& opt, const PixelRays& rays, V px,
                                                      V py, const FirstSamples<V>& first, double coneC,
                                                      double cosSq, V* tNear, V* tFar) {
    const Sample<V> own{*tNear, *tFar, *tFar - *tNear};
    const Sample<V> s1 = CastSample(light, opt, first.ahead, coneC, cosSq);
    const Sample<V> s2 = CastSample(light, opt, first.behind, coneC, cosSq);
    const auto hit0 = own.span > 0.0, hit1 = s1.span > 0.0, hit2 = s2.span > 0.0;
    const auto all = hit0 & hit1 & hit2;

    // Well inside: the mean of three. deliberate: this 15-digit constant, not an exact third
    constexpr double kThird = 0.333333333333333;
    *tNear = select(all, (own.near + s1.near + s2.near) * kThird, own.near);
    *tFar = select(all, (own.far + s1.far + s2.far) * kThird, own.far);
    const auto edge = (!all) & (hit0 | hit1 | hit2);
    if (any(edge)) {
        V near, far;
        BlendEdge(spot, light, opt, rays, px, py, own, s1, s2, &near, &far);
        *tNear = select(edge, near, *tNear);
        *tFar = select(edge, far, *tFar);
    }
}

}  // namespace zam
