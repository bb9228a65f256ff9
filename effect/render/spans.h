#pragma once
// Which columns of a row a light can reach, found once per row and light: along a row the discriminant of a sphere or
// of a cone is a quadratic in the ray's dx. Columns are always at least those that are lit, by the same formulas,
// literal oddities included.
#include "effect/render/render_data.h"

namespace zam {

struct Columns {
    int first, end;  // empty when end <= first
};

// Rays of row y that meet the sphere in front of the camera. centre and radius in camera space.
Columns SphereColumns(const _RenderData& frame, const Vec3& centre, double radius, A_long y);

// Rays of row y that a spot light may light, the pixels of its screen box included.
Columns SpotColumns(const _RenderData& frame, int light, A_long y);

}  // namespace zam
