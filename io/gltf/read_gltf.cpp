#include "io/gltf/read_gltf.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <map>

#include "host/text.h"
#include "host/utf8_path.h"
#include "io/effect_layer.h"
#include "io/gltf/bounds.h"
#include "io/gltf/layers.h"

namespace zam::io::gltf {
namespace {

constexpr std::size_t kMostLayers = 10'000;
constexpr double kDark = 1e-12;            // candela, lux: nobody sees less
constexpr double kDim = 2.0;               // percent
constexpr std::size_t kLongestList = 400;  // bytes of names in a message

// The most that a value reaches; intensities are never negative.
double peak(const host::Animated<double>& value) {
    double most = value.keys.empty() ? value.constant : 0.0;
    for (const auto& key : value.keys) most = std::max(most, key.value);
    return most;
}

void multiply(host::Animated<double>* value, double factor, bool* confined) {
    value->constant = bounded(value->constant * factor, confined);
    for (auto& key : value->keys) key.value = bounded(key.value * factor, confined);
}

class GltfReader {
  public:
    GltfReader(const std::string& file, const GltfOptions& options)
        : options_(options),
          file_(file),
          lights_(read_lights(file_, scene_.warnings)),
          cameras_(read_cameras(file_)),
          channels_(file_, scene_.warnings),
          nodes_(file_, channels_) {}

    Scene read() {
        if (nodes_.carriers().size() > kMostLayers)
            throw SceneError(name(), {},
                             "there are more than " + std::to_string(kMostLayers) + " lights and cameras",
                             "export fewer of them");
        // The length is known when everything that moves has been read.
        read_motion();
        Timeline timeline(name(), channels_.last_second(), options_.frame_rate);
        for (const std::size_t index : nodes_.carriers())  // all of it first: a refusal should be quick
            timeline.count_work(timeline.frames(nodes_.placement(index)) * nodes_.pose_work(index));
        LayerMaker maker(options_, nodes_, timeline);
        host::Composition& composition = scene_.composition;
        composition.name = host::utf8_path(name()).stem().string();
        composition.width = options_.width;
        composition.height = options_.height;
        composition.frame_rate = options_.frame_rate;
        composition.duration = composition.work_area_duration = timeline.frames();
        add_lights(maker);
        scale_intensities();
        add_cameras(maker);
        if (confined_)
            scene_.warnings.push_back(name() +
                                      ": colours, angles, places or other values leave their bounds and are "
                                      "held at them");
        add_effect_layer(composition);
        return std::move(scene_);
    }

  private:
    [[nodiscard]] const std::string& name() const { return file_.document().file; }

    void read_motion() {
        for (const std::size_t index : nodes_.carriers()) {
            const Node& node = nodes_.node(index);
            if (node.light && motions_.count(*node.light) == 0)
                motions_.insert({*node.light, LightMotion(channels_, *node.light, lights_[*node.light])});
            if (node.camera && lenses_.count(*node.camera) == 0)
                lenses_.insert({*node.camera, channels_.track(Property::yfov, *node.camera)});
        }
    }

    void add_lights(LayerMaker& maker) {
        for (const std::size_t index : nodes_.carriers()) {
            const Node& node = nodes_.node(index);
            if (!node.light) continue;
            scene_.composition.layers.push_back(
                maker.light(index, lights_[*node.light], motions_.at(*node.light), &confined_));
        }
    }

    // From candela and lux to percent.
    void scale_intensities() {
        std::vector<host::Layer>& layers = scene_.composition.layers;
        const host::Layer* brightest = nullptr;
        double most_candela = 0.0, most_lux = 0.0;
        bool any = false;
        for (const host::Layer& layer : layers) {
            const double most = peak(layer.light.intensity);
            const bool parallel = layer.light.type == host::LightType::parallel;
            any = any || !parallel;
            if (!layer.video) continue;
            if (parallel) most_lux = std::max(most_lux, most);
            if (parallel || (brightest && most <= most_candela)) continue;
            brightest = &layer;
            most_candela = most;
        }
        const double full = options_.light_scale.value_or(most_candela > kDark ? most_candela : 1.0);
        const double full_lux = options_.light_scale.value_or(most_lux > kDark ? most_lux : 1.0);
        if (!any)
            scene_.warnings.push_back(name() + ": no node carries a point or spot light; nothing will shine");
        else if (!brightest)
            scene_.warnings.push_back(name() + ": all point and spot lights are hidden; nothing will shine");
        else
            note_scale(brightest->name, most_candela, full);
        shines_ = brightest != nullptr;
        for (host::Layer& layer : layers)
            multiply(&layer.light.intensity,
                     100.0 / (layer.light.type == host::LightType::parallel ? full_lux : full), &confined_);
        note_dim(layers);
    }

    void note_dim(const std::vector<host::Layer>& layers) {
        const auto dim = std::count_if(layers.begin(), layers.end(), [](const host::Layer& layer) {
            return layer.light.type != host::LightType::parallel && layer.video &&
                   peak(layer.light.intensity) < kDim;
        });
        if (shines_ && dim > 0)
            scene_.notes.push_back(std::to_string(dim) + " of " + std::to_string(layers.size()) +
                                   " lights never reach " + format_number(kDim) + " %" +
                                   "; a lower --light-scale, or \"Light's Intensity\" off, makes them seen");
    }

    void note_scale(const std::string& brightest, double candela, double full) {
        const std::string most = quote(brightest) + " with " + format_number(candela) + " cd";
        scene_.notes.push_back(
            "light scale " + format_number(full) + " candela for 100 %: " +
            (options_.light_scale
                 ? "the brightest light, " + most + ", has " + format_number(100.0 * candela / full) + " %"
                 : "that is the brightest light, " + most + "; --light-scale " + format_number(full) +
                       " keeps it"));
    }

    void add_cameras(LayerMaker& maker) {
        std::vector<host::Layer> layers;
        std::optional<std::size_t> chosen;
        std::vector<std::string> names;
        std::string flat;
        std::vector<double> aspects;
        for (const std::size_t index : nodes_.carriers()) {
            const Node& node = nodes_.node(index);
            if (!node.camera) continue;
            const CameraDefinition& camera = cameras_[*node.camera];
            if (!camera.perspective) {
                flat += (flat.empty() ? "" : ", ") + quote(maker.name_of(index, camera.name, "Camera"));
                continue;
            }
            layers.push_back(maker.camera(index, camera, lenses_.at(*node.camera), &confined_));
            aspects.push_back(camera.aspect_ratio);
            names.push_back(quote(layers.back().name));
            if (layers.back().name == options_.camera && !chosen) chosen = layers.size() - 1;
        }
        if (!flat.empty())
            scene_.warnings.push_back("orthographic cameras are left out: " + shorten(flat, kLongestList));
        if (!options_.camera.empty() && !chosen)
            throw SceneError(name(), {}, "there is no perspective camera " + quote(options_.camera),
                             names.empty() ? "the file has none; leave the choice out"
                                           : "the file has " + shorten(join_or(names), kLongestList));
        if (layers.empty()) {
            if (shines_) note_default_view();
            return;
        }
        // The topmost camera is the one that is looked through.
        note_aspect(aspects[chosen.value_or(0)], layers[chosen.value_or(0)].name);
        std::swap(layers[0], layers[chosen.value_or(0)]);
        for (host::Layer& layer : layers) scene_.composition.layers.push_back(std::move(layer));
    }

    void note_default_view() {
        scene_.notes.push_back("there is no camera to look through: the default view shows " +
                               format_number(options_.width / options_.pixels_per_metre) + " x " +
                               format_number(options_.height / options_.pixels_per_metre) +
                               " metres around the origin; --pixels-per-metre and --size change that");
    }

    void note_aspect(double theirs, const std::string& camera) {
        const double ours = static_cast<double>(options_.width) / options_.height;
        if (theirs <= 0.0 || std::abs(theirs / ours - 1.0) < 0.01) return;
        scene_.notes.push_back(
            "camera " + quote(camera) + " was made for width / height = " + format_number(theirs) +
            ", the composition has " + format_number(ours) + ": the view keeps its height");
    }

    const GltfOptions& options_;
    Scene scene_;
    Container file_;
    std::vector<LightDefinition> lights_;
    std::vector<CameraDefinition> cameras_;
    Channels channels_;
    NodeTree nodes_;
    std::map<std::size_t, LightMotion> motions_;          // of the light definitions in use
    std::map<std::size_t, std::optional<Track>> lenses_;  // yfov of the camera definitions in use
    bool confined_ = false;                               // a value was held within its bounds
    bool shines_ = false;                                 // some point or spot light is not hidden
};

}  // namespace

Scene read_gltf(const std::string& file, const GltfOptions& options) {
    return GltfReader(file, options).read();
}

}  // namespace zam::io::gltf
