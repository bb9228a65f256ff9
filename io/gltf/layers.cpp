#include "io/gltf/layers.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "io/euler.h"
#include "io/gltf/bounds.h"

namespace zam::io::gltf {
namespace {

constexpr double kDegrees = 180.0 / std::numbers::pi;
constexpr double kNarrowestView = 1e-4;  // radians

// glTF has y up and z towards the viewer; a composition has y down and z away. Turning by half about x takes
// one to the other, so nothing is mirrored.
Vec3 turned(const Vec3& v) { return {v.x, -v.y, -v.z}; }

}  // namespace

// A layer at a node's place, with keys when the node moves.
host::Layer LayerMaker::place(std::size_t node, host::LayerKind kind, const std::string& name,
                              bool* confined) {
    host::Layer layer;
    layer.id = next_id_++;
    layer.kind = kind;
    layer.name = name;
    layer.out_frame = timeline_.frames();
    const Variation variation = nodes_.placement(node);
    const int frames = timeline_.frames(variation);
    Samples<Vec3> positions(variation), orientations(variation);
    Vec3 orientation;
    for (int frame = 0; frame < frames; ++frame) {
        const double seconds = timeline_.seconds(frame);
        const Placement pose = nodes_.pose(node, seconds);
        // A composition's lights and cameras look along their +z, glTF's along -z; y is turned alike.
        orientation = bounded(
            orientation_of({turned(pose.x), turned(pose.y * -1.0), turned(pose.z * -1.0)}, orientation),
            confined);
        positions.add(frame, bounded(position(pose.origin), confined));
        orientations.add(frame, orientation);
    }
    layer.transform.position = positions.take();
    layer.transform.orientation = orientations.take();
    timeline_.count_keys(layer.transform.position.keys.size() + layer.transform.orientation.keys.size());
    return layer;
}

// The file's origin is the composition's centre: without a camera it is in the middle of the view.
Vec3 LayerMaker::position(const Vec3& metres) const {
    const Vec3 centre{options_.width / 2.0, options_.height / 2.0, 0.0};
    return centre + turned(metres) * options_.pixels_per_metre;
}

host::Layer LayerMaker::light(std::size_t node, const LightDefinition& definition, const LightMotion& motion,
                              bool* confined) {
    host::Layer layer =
        place(node, host::LayerKind::light, name_of(node, definition.name, "Light"), confined);
    layer.light.type = definition.type;
    // Point lights shine alike to all sides; a composition's have no orientation.
    if (definition.type == host::LightType::point) layer.transform.orientation = Vec3{};
    // The video switch has no keys. A light that is never seen is switched off; one that comes and goes is
    // dark in between, so that it stays one layer however often it blinks.
    layer.video = nodes_.visibility(node) != Variation::still || nodes_.visible(node, 0.0);
    shine(node, motion, &layer.light, confined);
    return layer;
}

void LayerMaker::shine(std::size_t node, const LightMotion& motion, host::LightSettings* light,
                       bool* confined) {
    const Variation blinking = nodes_.visibility(node);
    const int frames = timeline_.frames(std::max(motion.any(), blinking));
    timeline_.count_work(frames *
                         (motion.work() + (blinking == Variation::still ? 0 : nodes_.visible_work(node))));
    Samples<host::Color> colors(motion.color());
    Samples<double> intensities(std::max(motion.intensity(), blinking)), ranges(motion.range());
    Samples<double> angles(motion.cone()), feathers(motion.cone());
    bool was_visible = true;
    for (int frame = 0; frame < frames; ++frame) {
        const double seconds = timeline_.seconds(frame);
        const LightValues values = motion.at(seconds, confined);
        const bool visible = blinking == Variation::still || nodes_.visible(node, seconds);
        colors.add(frame, values.color);
        intensities.add(frame, visible ? values.intensity : 0.0, frame > 0 && visible != was_visible);
        was_visible = visible;
        // A light that reaches further reaches everything.
        ranges.add(frame, std::min(values.range * options_.pixels_per_metre, kLargest));
        if (light->type != host::LightType::spot) continue;
        angles.add(frame, 2.0 * values.outer_angle * kDegrees);
        feathers.add(frame, (1.0 - values.inner_angle / values.outer_angle) * 100.0);
    }
    light->color = colors.take();
    light->intensity = intensities.take();
    light->shadow_diffusion = ranges.take();
    if (light->type == host::LightType::spot) {
        light->cone_angle = angles.take();
        light->cone_feather = feathers.take();
    }
    timeline_.count_keys(light->color.keys.size() + light->intensity.keys.size() +
                         light->shadow_diffusion.keys.size() + light->cone_angle.keys.size() +
                         light->cone_feather.keys.size());
}

host::Layer LayerMaker::camera(std::size_t node, const CameraDefinition& definition,
                               const std::optional<Track>& yfov, bool* confined) {
    host::Layer layer =
        place(node, host::LayerKind::camera, name_of(node, definition.name, "Camera"), confined);
    const Variation variation = variation_of(yfov);
    timeline_.count_work(timeline_.frames(variation) * kLayerWork);
    Samples<double> zooms(variation);
    for (int frame = 0; frame < timeline_.frames(variation); ++frame) {
        const double told = yfov ? yfov->at(timeline_.seconds(frame))[0] : definition.yfov;
        const double angle = std::clamp(told, kNarrowestView, std::numbers::pi - kNarrowestView);
        if (angle != told) *confined = true;
        zooms.add(frame, options_.height / (2.0 * std::tan(angle / 2.0)));
    }
    layer.camera.zoom = zooms.take();
    timeline_.count_keys(layer.camera.zoom.keys.size());
    return layer;
}

std::string LayerMaker::name_of(std::size_t node, const std::string& definition, const char* kind) const {
    const std::string& own = nodes_.node(node).name;
    if (!own.empty()) return own;
    if (!definition.empty()) return definition;
    return std::string(kind) + " " + std::to_string(next_id_);
}

}  // namespace zam::io::gltf
