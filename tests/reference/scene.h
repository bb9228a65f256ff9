#pragma once
// The lights of one frame as the pixels see them: filtered, weighted and moved into camera space.

#include <cstdint>
#include <vector>

#include "tests/reference/real.h"
#include "tests/reference/slow_renderer.h"

namespace zam::reference {

inline constexpr double kSpotScale = 60.0;  // strength of the natural spot model, and of its screen box

struct PointGlow {
    Vec3 pos;  // camera space, pixels
    Vec3 color;
    Real intensity;         // of the glow, 1 = full
    Real source_intensity;  // of the source ball, 1 = full
    Real radius;            // of the glow sphere, pixels, >= 0
};

// Pixels strictly between these limits get smoothed cone edges (natural model only).
struct ScreenBox {
    std::int32_t left, top, right, bottom;
};

struct SpotCone {
    Vec3 apex;  // camera space, pixels
    Vec3 axis;  // camera space, as long as the light's own axis
    Vec3 color;
    Real intensity;  // 1 = full
    bool feathered;
    Real cos_inner;   // full light within this angle of the axis
    Real cos_outer;   // no light beyond this one
    Real half_angle;  // outer, radians
    Real start;       // cone is cut here, in axis lengths from the apex
    Real reach;       // and ends here, unless the reach layer ends it
    bool ends_at_layer;
    Vec3 layer_point;   // camera space
    Vec3 layer_normal;  // unit length; the cone is where side * (x - layer_point) . layer_normal <= 0
    Real side;          // +1 or -1
    ScreenBox box;
};

struct Scene {
    std::vector<PointGlow> points;
    std::vector<SpotCone> spots;
};

[[nodiscard]] Scene build_scene(const View& view, const Controls& controls, const Reach& reach,
                                const std::vector<Light>& lights);

// False when the view has no rays at all: zoom, pixel aspect or a downsample factor 0 or not finite.
[[nodiscard]] bool has_rays(const View& view);

// The view ray through pixel position (px, py), corners at whole numbers.
[[nodiscard]] Vec3 ray_through(const View& view, Real px, Real py);

}  // namespace zam::reference
