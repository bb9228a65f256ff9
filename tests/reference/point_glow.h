#pragma once
// The light one point light scatters along one view ray.

#include "tests/reference/scene.h"

namespace zam::reference {

// Light of one lamp along one ray, before the look: alpha is the strength without the colour.
struct Contribution {
    Real alpha = 0, red = 0, green = 0, blue = 0;
};

[[nodiscard]] Contribution point_glow(const Controls& controls, const PointGlow& light, const Vec3& ray);

}  // namespace zam::reference
