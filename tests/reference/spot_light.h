#pragma once
// The light one spot light scatters along one view ray.

#include "tests/reference/cone_span.h"

namespace zam::reference {

// How the fog's brightness falls off with the distance from the light.
enum class Falloff {
    kInverseSquare,  // 1 / (distance^2 + 1)
    kInverse,        // 1 / sqrt(distance^2 + 1)
    kNone,           // 1
};

// Integral of the fog over [from, to] of the ray; 0 for an empty stretch.
[[nodiscard]] Real fog(Falloff falloff, const Vec3& ray, const SpotCone& spot, Real from, Real to);

// The same with each point weighted by (c - cos_outer) / (cos_inner - cos_outer), c the cosine to the axis: 1
// on the inner cone, 0 on the outer one.
[[nodiscard]] Real feathered_fog(Falloff falloff, const Vec3& ray, const SpotCone& spot, Real from, Real to);

// Strength of the spot in pixel (px, py), colour and intensity left out.
[[nodiscard]] Real spot_strength(const View& view, SpotModel model, const SpotCone& spot, int px, int py);

}  // namespace zam::reference
