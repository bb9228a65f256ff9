#pragma once
// Smooth silhouettes: near a cone's edge the ray is cast again at sub-pixel offsets across the projected axis, and the
// stretches are blended into one.
#include "effect/render/kernels/cone.h"

namespace zam {

// How a pixel becomes a ray: ((x - width / 2) * scaleX * scale, (y - height / 2) * scaleY * scale, 1).
struct PixelRays {
    double scale = 0.0, scaleX = 0.0,
           scaleY = 0.0;        // 1 / zoom, pixel aspect / downsample x, 1 / downsample y
    int width = 0, height = 0;  // of the picture
};

// (px, py) is the pixel and [tNear, tFar] the stretch of its own ray in the cone that coneC and cosSq choose. Writes the
// blended stretch; outNear and outFar may be the variables that tNear and tFar were read from.
template <class V>
void RefineIntersection(const _LightData& spot, const _VisLightStruct& light, const _OptSpotData& opt,
                        const PixelRays& rays, V px, V py, V tNear, V tFar, double coneC, double cosSq,
                        V* outNear, V* outFar) {
    struct Sample {
        V near, far, span;
    };
    const auto cast = [&](double ox, double oy, double c, double cos_sq) {
        const V rx = (px + ox - rays.width * 0.5) * rays.scaleX * rays.scale;
        const V ry = (py + oy - rays.height * 0.5) * rays.scaleY * rays.scale;
        const V rz(1.0);
        const V rr = rx * rx + ry * ry + 1.0;
        const _RayOpt<V> ray = MakeRayOpt(rx, ry, rz, light);
        const BetweenCaps<V> caps = IntersectCaps(spot, light, opt, ray, rx, ry, rz);
        Sample sample;
        IntersectRayWithCone(light, opt, ray, caps, rx, ry, rz, rr, c, cos_sq, &sample.near, &sample.far);
        sample.span = sample.far - sample.near;
        return sample;
    };

    // opt.across stands across the axis as seen on the screen, 1 long: (-dir.y, dir.x) / |(dir.x, dir.y)|.
    const double ox = opt.acrossX * opt.firstOffset, oy = opt.acrossY * opt.firstOffset;
    const Sample own{tNear, tFar, tFar - tNear};
    const Sample s1 = cast(ox, oy, coneC, cosSq);
    const Sample s2 = cast(-ox, -oy, coneC, cosSq);
    const auto hit0 = own.span > 0.0, hit1 = s1.span > 0.0, hit2 = s2.span > 0.0;
    const auto all = hit0 & hit1 & hit2, none = (!hit0) & (!hit1) & (!hit2);

    // Well inside: the mean of three. deliberate: this 15-digit constant, not an exact third
    constexpr double kThird = 0.333333333333333;
    V near = select(all, (tNear + s1.near + s2.near) * kThird, tNear);
    V far = select(all, (tFar + s1.far + s2.far) * kThird, tFar);

    const auto edge = (!all) & (!none);
    if (any(edge)) {
        // deliberate: the inner cone for both, whatever cone the caller asked for
        const double ix = opt.acrossX * 0.3, iy = opt.acrossY * 0.3;
        const Sample s3 = cast(ix, iy, opt.coneCInner, opt.cosInnerSq);
        const Sample s4 = cast(-ix, -iy, opt.coneCInner, opt.cosInnerSq);
        V sum_near(0.0), sum_far(0.0), n(0.0);
        const Sample* const samples[] = {&s1, &s2, &own, &s3, &s4};
        for (const Sample* sample : samples) {
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
        near = select(edge, middle - length * 0.5, near);
        far = select(edge, middle + length * 0.5, far);
    }
    *outNear = near;
    *outFar = far;
}

}  // namespace zam
