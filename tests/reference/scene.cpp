#include "tests/reference/scene.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <stdexcept>

namespace zam::reference {
namespace {

// A point of the world in the camera's own axes, by Cramer's rule.
class CameraSpace {
  public:
    explicit CameraSpace(const double (&m)[16])
        : x_{m[0], m[1], m[2]}, y_{m[4], m[5], m[6]}, z_{m[8], m[9], m[10]}, at_{m[12], m[13], m[14]} {}
    Vec3 operator()(const Vec3& world) const {
        const Vec3 p = world - at_;
        const Real volume = dot(x_, cross(y_, z_));
        return {dot(p, cross(y_, z_)) / volume, dot(p, cross(z_, x_)) / volume,
                dot(p, cross(x_, y_)) / volume};
    }

  private:
    Vec3 x_, y_, z_, at_;
};

Real individual(Individual rule, Real common, const Light& light) {
    switch (rule) {
        case Individual::kNone:
            return common;
        case Individual::kIntensityMult:
            return common * light.intensity;
        case Individual::kShadowDarknessMult:
            return common * light.shadow_darkness;
        case Individual::kShadowDiffusionAdd:
            return common + light.shadow_diffusion;
    }
    throw std::invalid_argument("unknown choice of an individual radius or reach");
}

Real effective_intensity(double percent, bool use_light, const Light& light) {
    return Real(percent) / 100 * (use_light ? Real(light.intensity) : Real(1));
}

std::int32_t box_edge(double value) {
    constexpr double low = std::numeric_limits<std::int32_t>::min();
    constexpr double high = std::numeric_limits<std::int32_t>::max();
    if (std::isnan(value)) return 0;
    return static_cast<std::int32_t>(std::clamp(value, low, high));  // the cast drops the fraction
}

// In double and in this order of operations: a box edge often falls on a whole number, where the last bit
// decides. deliberate: the box grows with the light's strength, uses the horizontal scale for both
// directions, and is turned inside out for an apex behind the camera.
ScreenBox screen_box(const View& view, const Vec3& apex, Real strength) {
    const auto x = static_cast<double>(apex.x);
    const auto y = static_cast<double>(apex.y);
    const auto z = static_cast<double>(apex.z);
    const auto intensity = static_cast<double>(strength);
    double middle_x = 0.0;
    double middle_y = 0.0;
    double half = 0.0;
    if (z != 0.0) {
        middle_x = view.width * 0.5 + (view.downsample_x * x / z) * view.zoom;
        middle_y = view.height * 0.5 + (view.downsample_y * y / z) * view.zoom;
        half = ((kSpotScale * intensity - 1.0) * 0.5 / z) * view.zoom * view.downsample_x;
    }
    return {box_edge(middle_x + 0.5 - half), box_edge(middle_y + 0.5 - half), box_edge(middle_x + 0.5 + half),
            box_edge(middle_y + 0.5 + half)};
}

}  // namespace

Scene build_scene(const View& view, const Controls& controls, const Reach& reach,
                  const std::vector<Light>& lights) {
    const CameraSpace to_camera(view.camera_to_world);

    const bool ends_at_layer = controls.reach_comp_layer && reach.found;
    const Vec3 layer_point = to_camera(to_vec(reach.point));
    const Vec3 layer_dir = to_camera(to_vec(reach.point) + to_vec(reach.normal)) - layer_point;
    const Vec3 layer_normal = (1 / length(layer_dir)) * layer_dir;

    Scene scene;
    for (const Light& light : lights) {
        if (light.intensity == 0.0) continue;
        const Vec3 pos = to_camera(to_vec(light.pos));

        if (!light.spot) {
            const Real radius = individual(controls.individual_radius, controls.radius, light);
            if (!(radius >= 0)) continue;
            scene.points.push_back({.pos = pos,
                                    .color = to_vec(light.color),
                                    .intensity = effective_intensity(controls.point_intensity,
                                                                     controls.point_use_intensity, light),
                                    .source_intensity = effective_intensity(
                                        controls.source_intensity, controls.point_use_intensity, light),
                                    .radius = radius});
            continue;
        }

        const Real length_of_cone = individual(controls.individual_reach, controls.reach, light);
        if (!(length_of_cone >= 0)) continue;
        const Real intensity =
            effective_intensity(controls.spot_intensity, controls.spot_use_intensity, light);
        const Real half_angle = Real(light.cone_angle) / 2;
        const bool beyond = dot(layer_point - pos, layer_normal) < 0;  // the light is on the normal's side
        scene.spots.push_back({.apex = pos,
                               .axis = to_camera(to_vec(light.pos) + to_vec(light.dir)) - pos,
                               .color = to_vec(light.color),
                               .intensity = intensity,
                               .feathered = light.cone_feather > 0.0,
                               .cos_inner = std::cos(half_angle * (1 - Real(light.cone_feather))),
                               .cos_outer = std::cos(half_angle),
                               .half_angle = half_angle,
                               .start = controls.start_distance,
                               .reach = length_of_cone,
                               .ends_at_layer = ends_at_layer,
                               .layer_point = layer_point,
                               .layer_normal = layer_normal,
                               .side = controls.reach_both_sides && beyond ? Real(-1) : Real(1),
                               .box = screen_box(view, pos, intensity)});
    }
    return scene;
}

bool has_rays(const View& view) {
    for (const double scale : {view.zoom, view.pixel_aspect, view.downsample_x, view.downsample_y}) {
        if (scale == 0.0 || !std::isfinite(scale)) return false;
    }
    return true;
}

Vec3 ray_through(const View& view, Real px, Real py) {
    const Real square_x = (px - Real(view.width) / 2) * view.pixel_aspect / view.downsample_x;
    const Real square_y = (py - Real(view.height) / 2) / view.downsample_y;
    return {square_x / view.zoom, square_y / view.zoom, 1};
}

}  // namespace zam::reference
