#pragma once
// Smooth silhouettes: near a cone's edge the ray is cast again at sub-pixel offsets across the projected
// axis, and the stretches are blended into one.
#include "effect/render/kernels/cone.h"

namespace zam {

// scale, scaleX and scaleY turn pixels into ray directions (1 / zoom, pixel aspect / downsample x,
// 1 / downsample y); (px, py) is the pixel and [tNear, tFar] the stretch of its own ray. Writes the blended
// stretch; outNear and outFar may be the variables that tNear and tFar were read from.
template <class V, class M>
void RefineIntersection(const M& maths, int light, double scale, double scaleX, double scaleY, int width,
                        int height, V tNear, V tFar, V px, V py, double rz, double coneC, double cosSq,
                        const _VisLightStruct* lights, const _OptSpotData* opt, const _LightData* spot,
                        V* outNear, V* outFar) {
    struct Sample {
        V near, far, span;
    };
    const auto cast = [&](double ox, double oy, double c, double cos_sq) {
        const V rx = (px + ox - width * 0.5) * scaleX * scale;
        const V ry = (py + oy - height * 0.5) * scaleY * scale;
        const V depth(rz);
        const V rr = rx * rx + ry * ry + depth * depth;
        const _RayOpt<V> ray = MakeRayOpt(rx, ry, depth, lights[light]);
        Sample sample;
        IntersectRayWithCone(maths, light, spot, lights, opt, &ray, rx, ry, depth, rr, c, cos_sq,
                             &sample.near, &sample.far);
        sample.span = sample.far - sample.near;
        return sample;
    };

    // The axis as seen on the screen; the offsets stand across it.
    const double ax = lights[light].dir.x, ay = lights[light].dir.y;
    const double m = ax * ax + ay * ay;
    const double f = m <= 1e-09 ? 1.0 : 0.6 / maths.sqrt(m);
    const Sample own{tNear, tFar, tFar - tNear};
    const Sample s1 = cast(-ay * f, ax * f, coneC, cosSq);
    const Sample s2 = cast(ay * f, -ax * f, coneC, cosSq);
    const auto hit0 = own.span > 0.0, hit1 = s1.span > 0.0, hit2 = s2.span > 0.0;
    const auto all = hit0 & hit1 & hit2, none = !hit0 & !hit1 & !hit2;

    // Well inside: the mean of three. deliberate: this 15-digit constant, not an exact third
    constexpr double kThird = 0.333333333333333;
    V near = select(all, (tNear + s1.near + s2.near) * kThird, tNear);
    V far = select(all, (tFar + s1.far + s2.far) * kThird, tFar);

    const auto edge = !all & !none;
    if (any(edge)) {
        // deliberate: the inner cone for both, whatever cone the caller asked for
        const double f2 = m > 0.0 ? 0.3 / maths.sqrt(m) : 1.0;
        const Sample s3 = cast(-ay * f2, ax * f2, opt[light].coneCInner, opt[light].cosInnerSq);
        const Sample s4 = cast(ay * f2, -ax * f2, opt[light].coneCInner, opt[light].cosInnerSq);
        V sum_near(0.0), sum_far(0.0), n(0.0);
        for (const Sample* sample : {&s1, &s2, &own, &s3, &s4}) {
            const auto hit = sample->span > 0.0;
            sum_near = sum_near + select(hit, sample->near, V(0.0));
            sum_far = sum_far + select(hit, sample->far, V(0.0));
            n = n + select(hit, V(1.0), V(0.0));
        }
        const V divisor = select(n > 1.0, n, V(1.0));
        const V mean_near = sum_near / divisor, mean_far = sum_far / divisor;
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
