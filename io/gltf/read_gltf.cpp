#include "io/gltf/read_gltf.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <numbers>

#include "io/effect_layer.h"
#include "io/euler.h"
#include "io/gltf/lights.h"
#include "io/gltf/nodes.h"
#include "io/text.h"

namespace zam::io::gltf {
namespace {

constexpr double kDegrees = 180.0 / std::numbers::pi;
constexpr int kMostFrames = 100'000;
constexpr std::size_t kMostKeys = 5'000'000;  // of all layers together
// Times are stored in single precision: a last key a thousandth of a frame early still counts.
constexpr double kFrameSlack = 1e-3;

// glTF has y up and z towards the viewer; a composition has y down and z away. Turning by half about x takes
// one to the other, so nothing is mirrored.
Vec3 turned(const Vec3& v) { return {v.x, -v.y, -v.z}; }

// An animation whose keys are all the same does not move.
void settle(host::Animated<Vec3>& animated) {
    const auto& keys = animated.keys;
    const bool still = std::all_of(keys.begin(), keys.end(),
                                   [&](const auto& key) { return key.value == keys.front().value; });
    if (!keys.empty()) animated.constant = keys.front().value;
    if (still) animated.keys.clear();
}

class GltfReader {
  public:
    GltfReader(const std::string& file, const GltfOptions& options)
        : options_(options),
          file_(file),
          lights_(read_lights(file_, scene_.warnings)),
          cameras_(read_cameras(file_)),
          channels_(read_channels(file_)),
          nodes_(file_, channels_, scene_.warnings) {}

    Scene read() {
        scene_.warnings.insert(scene_.warnings.end(), channels_.warnings.begin(), channels_.warnings.end());
        host::Composition& composition = scene_.composition;
        composition.name = std::filesystem::path(file_.document().file).stem().string();
        composition.width = options_.width;
        composition.height = options_.height;
        composition.frame_rate = options_.frame_rate;
        composition.duration = count_frames();
        composition.work_area_duration = composition.duration;
        add_lights();
        add_cameras();
        add_effect_layer(composition);
        return std::move(scene_);
    }

  private:
    int count_frames() {
        const double last = channels_.last_second * options_.frame_rate.value();
        if (!(last < kMostFrames))
            throw SceneError(file_.document().file, {},
                             "the animation lasts " + format_number(last) + " frames, more than " +
                                 std::to_string(kMostFrames),
                             "export a shorter range, or use fewer frames per second");
        const int frames = static_cast<int>(std::floor(last + kFrameSlack)) + 1;
        if (nodes_.carriers().size() > kMostKeys / static_cast<std::size_t>(frames))
            throw SceneError(file_.document().file, {}, "too many lights and frames",
                             "export fewer lights or a shorter range");
        return frames;
    }

    // A layer at a node's place, with a key at each frame when the node moves.
    host::Layer place(std::size_t index, host::LayerKind kind, const std::string& name) {
        host::Layer layer;
        layer.id = next_id_++;
        layer.kind = kind;
        layer.name = name;
        layer.out_frame = scene_.composition.duration;
        const int frames = nodes_.moves(index) ? scene_.composition.duration : 1;
        Vec3 orientation;
        for (int frame = 0; frame < frames; ++frame) {
            const double seconds = frame / options_.frame_rate.value();
            const Placement axes = nodes_.world_axes(index, seconds);
            // A composition's lights and cameras look along their +z, glTF's along -z; y is turned alike.
            orientation =
                orientation_of({turned(axes.x), turned(axes.y * -1.0), turned(axes.z * -1.0)}, orientation);
            layer.transform.position.keys.push_back(
                {static_cast<double>(frame), position(nodes_.world(index, seconds).origin)});
            layer.transform.orientation.keys.push_back({static_cast<double>(frame), orientation});
        }
        settle(layer.transform.position);
        settle(layer.transform.orientation);
        return layer;
    }

    // The file's origin is the composition's centre: without a camera it is in the middle of the view.
    Vec3 position(const Vec3& metres) const {
        const Vec3 centre{options_.width / 2.0, options_.height / 2.0, 0.0};
        return centre + turned(metres) * options_.pixels_per_metre;
    }

    void add_lights() {
        choose_scales();
        for (const std::size_t index : nodes_.carriers()) {
            const Node& node = nodes_.node(index);
            if (!node.light) continue;
            const LightDefinition& definition = lights_[*node.light];
            host::Layer layer = place(index, host::LayerKind::light, name_of(node, definition.name, "Light"));
            host::LightSettings& light = layer.light;
            const bool parallel = definition.type == host::LightType::parallel;
            light.type = definition.type;
            // Point lights shine alike to all sides; a composition's have no orientation.
            if (light.type == host::LightType::point) layer.transform.orientation = Vec3{};
            light.color = definition.color;
            light.intensity = definition.intensity * (parallel ? lux_scale_ : candela_scale_);
            light.shadow_diffusion = definition.range * options_.pixels_per_metre;
            if (definition.type == host::LightType::spot) {
                light.cone_angle = 2.0 * definition.outer_angle * kDegrees;
                light.cone_feather = (1.0 - definition.inner_angle / definition.outer_angle) * 100.0;
            }
            scene_.composition.layers.push_back(std::move(layer));
        }
    }

    void choose_scales() {
        const LightDefinition* brightest = nullptr;
        double most_lux = 0.0;
        for (const std::size_t index : nodes_.carriers()) {
            if (!nodes_.node(index).light) continue;
            const LightDefinition& light = lights_[*nodes_.node(index).light];
            if (light.type == host::LightType::parallel)
                most_lux = std::max(most_lux, light.intensity);
            else if (!brightest || light.intensity > brightest->intensity)
                brightest = &light;
        }
        if (!brightest)
            scene_.warnings.push_back(file_.document().file +
                                      ": there is no point or spot light; nothing will shine");
        if (most_lux > 0.0) lux_scale_ = 100.0 / most_lux;
        if (brightest && brightest->intensity > 0.0) candela_scale_ = 100.0 / brightest->intensity;
        if (options_.light_scale) candela_scale_ = lux_scale_ = *options_.light_scale;
        if (brightest)
            scene_.notes.push_back("light scale " + format_number(candela_scale_) +
                                   " percent per candela: the brightest light" +
                                   (brightest->name.empty() ? "" : ", " + quote(brightest->name) + ",") +
                                   " with " + format_number(brightest->intensity) + " cd has " +
                                   format_number(brightest->intensity * candela_scale_) + " %");
    }

    void add_cameras() {
        std::vector<host::Layer> layers;
        std::vector<std::string> names;
        std::size_t chosen = 0;
        for (const std::size_t index : nodes_.carriers()) {
            const Node& node = nodes_.node(index);
            if (!node.camera) continue;
            const CameraDefinition& camera = cameras_[*node.camera];
            const std::string name = name_of(node, camera.name, "Camera");
            if (!camera.perspective) {
                scene_.warnings.push_back("the orthographic camera " + quote(name) + " is left out");
                continue;
            }
            host::Layer& layer = layers.emplace_back(place(index, host::LayerKind::camera, name));
            layer.camera.zoom = options_.height / (2.0 * std::tan(camera.yfov / 2.0));
            if (!options_.camera.empty() && options_.camera == name) chosen = layers.size() - 1;
            names.push_back(name);
            note_aspect(camera, name);
        }
        if (!options_.camera.empty() && std::find(names.begin(), names.end(), options_.camera) == names.end())
            throw SceneError(
                file_.document().file, {}, "there is no perspective camera " + quote(options_.camera),
                names.empty() ? "the file has none; leave the choice out" : "the file has " + join_or(names));
        // The topmost camera is the one that is looked through.
        if (!layers.empty()) std::swap(layers[0], layers[chosen]);
        for (host::Layer& layer : layers) scene_.composition.layers.push_back(std::move(layer));
    }

    void note_aspect(const CameraDefinition& camera, const std::string& name) {
        const double ours = static_cast<double>(options_.width) / options_.height;
        if (camera.aspect_ratio <= 0.0 || std::abs(camera.aspect_ratio / ours - 1.0) < 0.01) return;
        scene_.notes.push_back(
            "camera " + quote(name) + " was made for width / height = " + format_number(camera.aspect_ratio) +
            ", the composition has " + format_number(ours) + ": the view keeps its height");
    }

    std::string name_of(const Node& node, const std::string& definition, const char* kind) const {
        if (!node.name.empty()) return node.name;
        if (!definition.empty()) return definition;
        return std::string(kind) + " " + std::to_string(next_id_);
    }

    const GltfOptions& options_;
    Scene scene_;
    Container file_;
    std::vector<LightDefinition> lights_;
    std::vector<CameraDefinition> cameras_;
    Channels channels_;
    NodeTree nodes_;
    host::LayerId next_id_ = 1;
    double candela_scale_ = 100.0, lux_scale_ = 100.0;  // percent per unit
};

}  // namespace

Scene read_gltf(const std::string& file, const GltfOptions& options) {
    return GltfReader(file, options).read();
}

}  // namespace zam::io::gltf
