#include "tests/contract/reference_scene.h"

#include <algorithm>
#include <numbers>

#include "host/composition/queries.h"
#include "host/composition/transforms.h"
#include "host/runner/control.h"

namespace zam::test {
namespace {

reference::View make_view(const host::Composition& comp, double frame, const host::RenderSettings& settings) {
    reference::View view;
    view.pixel_aspect = comp.pixel_aspect.value();
    view.downsample_x = settings.downsample_x.value();
    view.downsample_y = settings.downsample_y.value();
    view.width = static_cast<int>(std::ceil(comp.width * view.downsample_x));
    view.height = static_cast<int>(std::ceil(comp.height * view.downsample_y));
    view.deep = settings.depth == host::Depth::bits16;
    const host::Layer* camera = host::active_camera(comp, frame);
    host::Matrix matrix;
    if (camera) {
        matrix = host::world_from_layer(comp, *camera, frame);
        view.zoom = camera->camera.zoom.at(frame);
    } else {
        matrix = host::default_camera_matrix(comp);
        matrix.at[0][0] = 1.0 / view.pixel_aspect;  // the effect's own default view
        view.zoom = host::default_camera_distance(comp);
    }
    for (int i = 0; i < 16; ++i) view.camera_to_world[i] = matrix.at[i / 4][i % 4];
    return view;
}

reference::Light make_light(const host::Composition& comp, const host::Layer& layer, double frame) {
    const host::LightSettings& settings = layer.light;
    const host::Matrix world = host::world_from_layer(comp, layer, frame);
    const host::Color color = settings.color.at(frame);
    reference::Light light;
    light.spot = settings.type == host::LightType::spot;
    std::copy_n(world.at[3], 3, light.pos);
    std::copy_n(world.at[2], 3, light.dir);
    light.color[0] = color.red;
    light.color[1] = color.green;
    light.color[2] = color.blue;
    light.cone_angle = settings.cone_angle.at(frame) * std::numbers::pi / 180.0;
    light.cone_feather = settings.cone_feather.at(frame) / 100.0;
    light.intensity = settings.intensity.at(frame) / 100.0;
    light.shadow_darkness = settings.shadow_darkness.at(frame) / 100.0;
    light.shadow_diffusion = settings.shadow_diffusion.at(frame);
    return light;
}

}  // namespace

host::Frame render_reference(const host::Composition& comp, const std::vector<host::Control>& controls,
                             double frame, const host::RenderSettings& settings) {
    reference::Controls c;
    reference::Reach reach;
    const auto value_of = [&](const char* name, double fallback) {
        const int index = host::find_control(controls, name).index;
        for (const host::ControlSetting& setting : comp.effect.controls) {
            const host::ResolvedSetting resolved = host::resolve_setting(controls, setting, comp);
            if (resolved.index == index) return resolved.value.at(frame);
        }
        return fallback;
    };
    const auto choice = [&](const char* name, auto* field) {
        *field = static_cast<std::remove_reference_t<decltype(*field)>>(
            static_cast<int>(value_of(name, static_cast<double>(static_cast<int>(*field)))));
    };
    // Sliders reach the effect as 16.16 numbers.
    const auto slider = [&](const char* name, double* field) {
        *field = std::round(value_of(name, *field) * 65536.0) / 65536.0;
    };
    const auto box = [&](const char* name, bool* field) { *field = value_of(name, *field) != 0.0; };
    choice("Point Light Model", &c.point_model);
    box("Point Lights/Light's Intensity", &c.point_use_intensity);
    slider("Point Lights/Intensity", &c.point_intensity);
    slider("Softness [%]", &c.softness);
    slider("Radius", &c.radius);
    choice("Individual Radius", &c.individual_radius);
    slider("Source Intensity", &c.source_intensity);
    slider("Source Radius", &c.source_radius);
    choice("Spot Light Model", &c.spot_model);
    box("Spot Lights/Light's Intensity", &c.spot_use_intensity);
    slider("Spot Lights/Intensity", &c.spot_intensity);
    slider("Start Distance", &c.start_distance);
    slider("Reach", &c.reach);
    choice("Individual Reach", &c.individual_reach);
    box("Reach Comp Layer", &c.reach_comp_layer);
    box("Reach Both Sides", &c.reach_both_sides);
    choice("Look", &c.look);
    slider("Gamma", &c.gamma);

    const auto wall = static_cast<host::LayerId>(value_of("Set Reach Layer", 0.0));
    if (const host::Layer* layer = wall != 0 ? comp.find_layer(wall) : nullptr) {
        const host::Matrix world = host::world_from_layer(comp, *layer, frame);
        reach.found = true;
        for (int i = 0; i < 3; ++i) {  // through single precision, as the effect takes them
            reach.point[i] = static_cast<float>(world.at[3][i]);
            reach.normal[i] = static_cast<float>(world.at[2][i]);
        }
    }
    std::vector<reference::Light> lights;
    for (const host::Layer& layer : comp.layers) {
        const bool shown =
            layer.kind == host::LayerKind::light && layer.video &&
            (layer.light.type == host::LightType::spot || layer.light.type == host::LightType::point);
        if (shown) lights.push_back(make_light(comp, layer, frame));
    }
    reference::Frame drawn = reference::render(make_view(comp, frame, settings), c, reach, lights);
    host::Frame result;
    result.width = drawn.width;
    result.height = drawn.height;
    result.depth = settings.depth;
    result.argb = std::move(drawn.argb);
    return result;
}

}  // namespace zam::test
