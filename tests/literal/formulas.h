#pragma once
// The literal renderer's formulas, one function each: scalar, conditions as branches, maths through the host's
// callbacks, terms in the order in which the formulas are written down. Kept apart from the kernels on purpose:
// records are shared, no code is.
//
//   symbol  code                unit     from
//   r       ray x, y, z         -        view ray x(t) = t r, z = 1: t is depth
//   a       ray square          -        r.r
//   p, d    light pos, dir      comp px  position (a spot's apex) and axis, camera space
//   b       b                   comp px  -2 (r.p)
//   k       rayDotAxis          -        r.d
#include "effect/render/kernels/records.h"
#include "hostapi/effect.h"

namespace zam::literal {

using Maths = PF_ANSICallbacks;

// A light's share of one pixel: colour, and the colour-free strength.
struct Light {
    double red = 0.0, green = 0.0, blue = 0.0, alpha = 0.0;
};

struct Ray {
    double x = 0.0, y = 0.0, z = 1.0;
    double square = 1.0;
};

// A ray against one spot light.
struct RayOpt {
    double rayDotAxis = 0.0;
    double invRayDotAxis = 0.0;  // 1 / k; means nothing where k is 0
    double rayDotPos = 0.0;      // r.p
};

// [near, far] of a ray's t; empty unless far > near.
struct Stretch {
    double near = 0.0, far = 0.0;
    [[nodiscard]] double length() const { return far - near; }
    [[nodiscard]] bool hit() const { return length() > 0.0; }
};

// How pixels become rays.
struct View {
    double scale = 1.0, scaleX = 1.0,
           scaleY = 1.0;  // 1 / zoom, pixel aspect / downsample x, 1 / downsample y
    int width = 0, height = 0;
};
inline Ray RayThrough(const View& view, double px, double py) {
    Ray ray;
    ray.x = (px - view.width * 0.5) * view.scaleX * view.scale;
    ray.y = (py - view.height * 0.5) * view.scaleY * view.scale;
    ray.square = ray.x * ray.x + ray.y * ray.y + 1.0;
    return ray;
}

// Of all point lights.
struct PointConstants {
    double softKSq = 1.0, softKRoot = 2.0;
};

Light PointLight(const Maths& maths, const Ray& ray, const _VisLightStruct& light, const _OptPointData& opt,
                 const _LightData& points, const PointConstants& constants);

// coneC and cosSq choose the inner or the outer cone.
Stretch IntersectRayWithCone(const Maths& maths, const _LightData& spots, const _VisLightStruct& light,
                             const _OptSpotData& opt, const RayOpt& ray_opt, const Ray& ray, double coneC,
                             double cosSq);
Stretch RefineIntersection(const Maths& maths, const View& view, const _LightData& spots,
                           const _VisLightStruct& light, const _OptSpotData& opt, Stretch own, double px,
                           double py, double coneC, double cosSq);

// Over [t0, t1]. The plain ones integrate the fog, those with ConeF the fog times the feather's weight.
using Integral = double(const Maths& maths, const _OptSpotData& opt, const RayOpt& ray_opt, const Ray& ray,
                        double t0, double t1);
Integral IntegrateNatural, IntegrateNaturalConeF, IntegrateDistance, IntegrateDistanceConeF, IntegrateConst,
    IntegrateConstConeF;

// A spot's scattering value S in pixel (x, y). *ray_opt is the row's: its reciprocal keeps its value where k is 0.
double SpotScattering(const Maths& maths, const View& view, const _LightData& spots,
                      const _VisLightStruct& light, const _OptSpotData& opt, double spotScale, int x, int y,
                      const Ray& ray, RayOpt* ray_opt);

}  // namespace zam::literal
