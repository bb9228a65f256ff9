#include "tests/reference/spot_light.h"

#include <algorithm>
#include <cmath>

#include "tests/reference/quadrature.h"

namespace zam::reference {
namespace {

Real brightness(Falloff falloff, Real distance_sq) {
    if (falloff == Falloff::kNone) return 1;
    return 1 / (falloff == Falloff::kInverse ? std::sqrt(distance_sq + 1) : distance_sq + 1);
}

// Squared distance added to keep the light finite at the apex.
Real softening(Falloff falloff) { return falloff == Falloff::kNone ? Real(0) : Real(1); }

template <class F>
Real along_ray(const F& f, Falloff falloff, const Vec3& ray, const SpotCone& spot, Real from, Real to) {
    if (!(to > from)) return 0;
    const Passage pass = passage(ray, spot.apex);
    const Real width = std::sqrt(pass.distance * pass.distance + softening(falloff)) / length(ray);
    return integrate_around(f, from, to, pass.closest, width);
}

Real number_or_zero(Real v) { return std::isnan(v) ? Real(0) : v; }

bool strictly_inside(const ScreenBox& box, int px, int py) {
    return box.left < px && px < box.right && box.top < py && py < box.bottom;
}

}  // namespace

Real fog(Falloff falloff, const Vec3& ray, const SpotCone& spot, Real from, Real to) {
    const auto f = [&](Real t) {
        const Vec3 q = t * ray - spot.apex;
        return brightness(falloff, dot(q, q));
    };
    return along_ray(f, falloff, ray, spot, from, to);
}

Real feathered_fog(Falloff falloff, const Vec3& ray, const SpotCone& spot, Real from, Real to) {
    const auto f = [&](Real t) {
        const Vec3 q = t * ray - spot.apex;
        const Real distance_sq = dot(q, q);
        // deliberate: the cosine uses the softened distance too
        const Real cosine = dot(q, spot.axis) / std::sqrt(distance_sq + softening(falloff));
        return (cosine - spot.cos_outer) * brightness(falloff, distance_sq);
    };
    return along_ray(f, falloff, ray, spot, from, to) / (spot.cos_inner - spot.cos_outer);
}

Real spot_strength(const View& view, SpotModel model, const SpotCone& spot, int px, int py) {
    if (model == SpotModel::kOff) return 0;
    const Falloff falloff = model == SpotModel::kNatural    ? Falloff::kInverseSquare
                            : model == SpotModel::kDistance ? Falloff::kInverse
                                                            : Falloff::kNone;
    const Vec3 ray = ray_through(view, px, py);
    Stretch inner = cone_stretch(ray, spot, spot.cos_inner);
    Stretch outer = spot.feathered ? cone_stretch(ray, spot, spot.cos_outer) : inner;
    if (model == SpotModel::kNatural && strictly_inside(spot.box, px, py)) {
        inner = refined_stretch(view, px, py, spot, spot.cos_inner, inner);
        if (spot.feathered) outer = refined_stretch(view, px, py, spot, spot.cos_outer, outer);
    }

    const auto feather = [&](Real from, Real to) {
        return std::max(Real(0), number_or_zero(feathered_fog(falloff, ray, spot, from, to)));
    };
    const Real main = number_or_zero(fog(falloff, ray, spot, inner.near, inner.far));
    Real sum = main;
    if (spot.feathered && main > 0) {
        sum += feather(outer.near, inner.near) + feather(inner.far, outer.far);
    } else if (spot.feathered) {
        sum += feather(outer.near, outer.far);
    }

    if (model == SpotModel::kNatural) return sum * kSpotScale;
    if (model == SpotModel::kDistance) return sum;
    // deliberate: narrow cones are divided by about 200, wide ones by 400 tan(half angle)
    return sum / std::max(400 * std::tan(spot.half_angle), 200 * std::cos(spot.half_angle));
}

}  // namespace zam::reference
