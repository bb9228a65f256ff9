// A spot's scattering value: the stretches of its cones, and the chosen model's integrals over them.
#include <algorithm>

#include "tests/literal/formulas.h"

namespace zam::literal {
namespace {

double NumberOrZero(double v) { return v == v ? v : 0.0; }

// Below zero, and for a not-a-number, zero.
double AtLeastZero(double v) { return v > 0.0 ? v : 0.0; }

// main and the pieces of the feather: before and behind the inner cone, or all of the outer cone where the inner
// one gives nothing. `inner` and `outer` are the stretches of the two cones.
template <class Feather>
double AddFeather(double main, Stretch inner, Stretch outer, Feather feather) {
    double sum = main;
    if (main > 0.0) {
        if (inner.near - outer.near > 0.0) sum += AtLeastZero(feather(outer.near, inner.near));
        if (outer.far - inner.far > 0.0) sum += AtLeastZero(feather(inner.far, outer.far));
    } else if (outer.length() > 0.0) {
        sum += AtLeastZero(feather(outer.near, outer.far));
    }
    return sum;
}

}  // namespace

double SpotScattering(const Maths& maths, const View& view, const _LightData& spots,
                      const _VisLightStruct& light, const _OptSpotData& opt, double spotScale, int x, int y,
                      const Ray& ray, RayOpt* ray_opt) {
    ray_opt->rayDotAxis = ray.x * light.dir.x + ray.y * light.dir.y + light.dir.z;
    if (ray_opt->rayDotAxis != 0.0) ray_opt->invRayDotAxis = 1.0 / ray_opt->rayDotAxis;
    ray_opt->rayDotPos = ray.x * light.pos.x + ray.y * light.pos.y + light.pos.z;

    const bool feathered = light.coneFeather > 0.0;
    Stretch inner =
        IntersectRayWithCone(maths, spots, light, opt, *ray_opt, ray, opt.coneCInner, opt.cosInnerSq);
    Stretch outer;
    if (feathered) {
        outer = IntersectRayWithCone(maths, spots, light, opt, *ray_opt, ray, opt.coneCOuter, opt.cosOuterSq);
    }

    const auto scattered = [&](Integral* plain, Integral* with_feather, double scale) {
        if (!inner.hit() && !outer.hit()) return 0.0;
        const auto over = [&](Integral* integral, double t0, double t1) {
            return scale * integral(maths, opt, *ray_opt, ray, t0, t1);
        };
        const double main = inner.length() > 0.0 ? NumberOrZero(over(plain, inner.near, inner.far)) : 0.0;
        if (!feathered) return main;
        return AddFeather(main, inner, outer,
                          [&](double t0, double t1) { return over(with_feather, t0, t1); });
    };
    const bool in_box =
        opt.screenLeft < x && x < opt.screenRight && opt.screenTop < y && y < opt.screenBottom;
    switch (SpotModel{spots.model}) {
        case SpotModel::natural:
            if (in_box) {
                inner = RefineIntersection(maths, view, spots, light, opt, inner, x, y, opt.coneCInner,
                                           opt.cosInnerSq);
            }
            if (in_box && feathered) {
                outer = RefineIntersection(maths, view, spots, light, opt, outer, x, y, opt.coneCOuter,
                                           opt.cosOuterSq);
            }
            return scattered(IntegrateNatural, IntegrateNaturalConeF, spotScale);
        case SpotModel::distance:
            return scattered(IntegrateDistance, IntegrateDistanceConeF, 1.0);
        case SpotModel::constant: {
            const double length = scattered(IntegrateConst, IntegrateConstConeF, 1.0);
            const double half = light.coneAngle * 0.5;
            return length > 0.0 ? length / std::max(400.0 * maths.tan(half), 200.0 * maths.cos(half)) : 0.0;
        }
        case SpotModel::off:
            break;
    }
    return 0.0;
}

}  // namespace zam::literal
