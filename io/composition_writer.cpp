#include "io/composition_writer.h"

#include <algorithm>
#include <cmath>
#include <nlohmann/json.hpp>

#include "io/effect_layer.h"
#include "io/json_document.h"
#include "io/json_layout.h"
#include "io/keyframes.h"

namespace zam::io {
namespace {

using Json = nlohmann::ordered_json;

constexpr std::size_t kFewestSamples = 3;

Json plain(double v) {
    const bool whole = v == std::floor(v) && std::abs(v) < 1e9;  // 40 rather than 40.0
    return whole && !std::signbit(v) ? Json(static_cast<long>(v)) : Json(v);
}
Json plain(const host::Vec3& v) { return Json::array({plain(v.x), plain(v.y), plain(v.z)}); }
Json plain(const host::Color& c) { return Json::array({plain(c.red), plain(c.green), plain(c.blue)}); }
Json plain(const host::Matrix& m) {
    Json twelve = Json::array();
    for (int i = 0; i < 12; ++i) twelve.push_back(plain(m.at[i / 3][i % 3]));
    return twelve;
}
Json plain(const host::ControlValue& value) {
    if (const auto* number = std::get_if<double>(&value)) return plain(*number);
    if (const auto* truth = std::get_if<bool>(&value)) return *truth;
    return std::get<std::string>(value);
}

// The numbers and lists that a value becomes.
std::size_t values_of(const host::Vec3&) { return 4; }
std::size_t values_of(const host::Color&) { return 4; }
std::size_t values_of(const host::Matrix&) { return 13; }
std::size_t values_of(double) { return 1; }
std::size_t values_of(const host::ControlValue&) { return 1; }

std::size_t count_values(const Json& json) {
    std::size_t count = 1;
    if (json.is_structured())
        for (const Json& child : json) count += count_values(child);
    return count;
}

void check_values(std::size_t count) {
    if (count > kMostJsonValues)
        throw CompositionTooLarge("as a JSON composition it would hold more than " +
                                  std::to_string(kMostJsonValues / 1'000'000) +
                                  " million values, the most that a scene may hold");
}

// A number that divided by `divisor`, as the reader does, gives `quotient` to the last bit, if there is one near.
double undivided(double quotient, double divisor) {
    const double guess = quotient * divisor;
    for (const double next : {guess, std::nextafter(guess, -HUGE_VAL), std::nextafter(guess, HUGE_VAL)})
        if (next / divisor == quotient) return next;
    return guess;
}

class CompositionWriter {
  public:
    explicit CompositionWriter(const host::Composition& composition) : composition_(composition) {}

    std::string text() {
        const host::Composition& c = composition_;
        Json root = {{"name", c.name}, {"size", {c.width, c.height}}};
        if (c.pixel_aspect.value() != 1.0) root["pixel_aspect"] = ratio(c.pixel_aspect);
        root["frame_rate"] = ratio(c.frame_rate);
        root["duration"] = c.duration;
        if (c.work_area_start != 0 || c.work_area_duration != c.duration)
            root["work_area"] = {c.work_area_start, c.work_area_start + c.work_area_duration - 1};
        const bool made = carrier_is_made();
        values_ = 0;
        root["layers"] = Json::array();
        for (const host::Layer& layer : c.layers)
            if (!made || layer.id != c.effect.layer) root["layers"].push_back(layer_of(layer));
        Json effect = Json::object();
        if (!made) effect["layer"] = reference(c.effect.layer);
        if (!c.effect.controls.empty()) effect["controls"] = controls();
        if (!effect.empty()) root["effect"] = std::move(effect);
        check_values(count_values(root));
        std::string text = layout(root) + "\n";
        if (text.size() > kLargestJson)
            throw CompositionTooLarge("as a JSON composition it would be larger than " +
                                      std::to_string(kLargestJson >> 20) +
                                      " MiB, the most that a scene may take");
        return text;
    }

  private:
    template <class T, class ToJson>
    [[nodiscard]] Json animated(const host::Animated<T>& value, ToJson to_json) const {
        if (!value.varies()) return to_json(value.constant);
        // A key that is no sample is a list of its own, with its frame.
        const bool sampled = is_sampled(value);
        values_ += value.keys.size() * (values_of(value.constant) + (sampled ? 0 : 2));
        check_values(values_);
        if (sampled) {
            Json samples = Json::array();
            for (const auto& key : value.keys) samples.push_back(to_json(key.value));
            Json result = {{"samples", std::move(samples)}};
            if (value.keys[0].frame != 0.0) result["from"] = plain(value.keys[0].frame);
            return result;
        }
        Json keys = Json::array();
        for (const auto& key : value.keys) {
            keys.push_back({plain(key.frame), to_json(key.value)});
            if (Json manner = manner_of(key); !manner.is_null()) keys.back().push_back(std::move(manner));
        }
        return {{"keys", std::move(keys)}};
    }
    template <class T>
    [[nodiscard]] Json animated(const host::Animated<T>& value) const {
        return animated(value, [](const T& one) { return plain(one); });
    }

    template <class T>
    [[nodiscard]] static bool is_sampled(const host::Animated<T>& value) {
        for (std::size_t i = 0; i < value.keys.size(); ++i) {
            const auto& key = value.keys[i];
            if (key.interpolation == host::Interpolation::hold || key.ease_in || key.ease_out) return false;
            if (i > 0 && key.frame != value.keys[i - 1].frame + 1.0) return false;
        }
        return value.keys.size() >= kFewestSamples;
    }

    // The third entry of a key; null for the straight line.
    template <class T>
    [[nodiscard]] Json manner_of(const host::Keyframe<T>& key) const {
        const bool holds = key.interpolation == host::Interpolation::hold;
        if (!key.ease_in && (holds || !key.ease_out)) return holds ? Json("hold") : Json();
        Json manner = Json::object();
        if (key.ease_in) manner["ease_in"] = ease_of(*key.ease_in);
        if (holds)
            manner["ease_out"] = "hold";
        else if (key.ease_out)
            manner["ease_out"] = ease_of(*key.ease_out);
        return manner;
    }

    [[nodiscard]] Json ease_of(const host::Ease& ease) const {
        return Json::array({plain(undivided(ease.speed, composition_.frame_rate.value())),
                            plain(undivided(ease.influence, 100.0))});
    }

    [[nodiscard]] static Json ratio(const host::Ratio& ratio) {
        if (ratio.den == 1) return ratio.num;
        constexpr int kMost = 1'000'000;  // that the pair may hold; beyond it was read from decimals
        if (ratio.num > kMost || ratio.den > kMost) return ratio.value();
        return Json::array({ratio.num, ratio.den});
    }

    // By its name where that is one layer's only.
    [[nodiscard]] Json reference(host::LayerId id) const {
        const std::string& name = composition_.find_layer(id)->name;
        const auto same = std::count_if(composition_.layers.begin(), composition_.layers.end(),
                                        [&](const host::Layer& layer) { return layer.name == name; });
        return same == 1 ? Json(name) : Json(id);
    }

    // Is the effect's layer the one that the reader makes for scenes that name none?
    [[nodiscard]] bool carrier_is_made() const {
        const auto& layers = composition_.layers;
        const host::Layer& top = layers.front();  // there is one: the effect's
        const bool is_parent = std::any_of(layers.begin(), layers.end(),
                                           [&](const host::Layer& layer) { return layer.parent == top.id; });
        if (top.id != composition_.effect.layer || is_parent) return false;
        host::Composition made = composition_;
        made.layers.erase(made.layers.begin());
        add_effect_layer(made);
        const CompositionWriter writer(made);
        return layer_of(top) == writer.layer_of(made.layers.front());
    }

    [[nodiscard]] Json layer_of(const host::Layer& layer) const {
        const host::Layer usual;
        Json json = {{"kind", ""}, {"name", layer.name}, {"id", layer.id}};
        if (layer.parent != 0) json["parent"] = reference(layer.parent);
        if (layer.in_frame != 0.0) json["in"] = plain(layer.in_frame);
        if (layer.out_frame != composition_.duration) json["out"] = plain(layer.out_frame);
        if (layer.start_frame != usual.start_frame) json["start"] = plain(layer.start_frame);
        if (layer.stretch != usual.stretch) json["stretch"] = plain(layer.stretch);
        if (!layer.video) json["video"] = false;
        if (layer.solo) json["solo"] = true;
        if (layer.shy) json["shy"] = true;
        if (layer.locked) json["locked"] = true;
        switch (layer.kind) {
            case host::LayerKind::solid:
                json["kind"] = "solid";
                if (const host::Item* item = composition_.find_item(layer.source))
                    json["size"] = {item->width, item->height};
                break;
            case host::LayerKind::null_object:
                json["kind"] = "null";
                break;
            case host::LayerKind::camera:
                json["kind"] = "camera";
                json["zoom"] = animated(layer.camera.zoom);
                break;
            case host::LayerKind::light:
                json["kind"] = "light";
                add_light(layer.light, json);
                break;
        }
        add_place(layer, json);
        return json;
    }

    template <class T>
    void add_unless(const char* name, const host::Animated<T>& value, const T& usual, Json& json) const {
        if (value.varies() || value.constant != usual) json[name] = animated(value);
    }

    void add_place(const host::Layer& layer, Json& json) const {
        const host::Transform& t = layer.transform;
        const bool light = layer.kind == host::LayerKind::light;
        const auto type = layer.light.type;
        if (light && type == host::LightType::ambient) return;
        if (layer.world) {
            json["world_matrix"] = animated(*layer.world);
            return;
        }
        json["position"] = animated(t.position);
        if (light && type == host::LightType::point) return;
        add_unless("orientation", t.orientation, {}, json);
        add_unless("rotation_x", t.rotation_x, 0.0, json);
        add_unless("rotation_y", t.rotation_y, 0.0, json);
        add_unless("rotation_z", t.rotation_z, 0.0, json);
        if (light || layer.kind == host::LayerKind::camera) {
            if (t.point_of_interest) json["point_of_interest"] = animated(*t.point_of_interest);
            return;
        }
        json["anchor"] = animated(t.anchor);
        add_unless("scale", t.scale, {100.0, 100.0, 100.0}, json);
        if (!layer.three_d) json["three_d"] = false;
    }

    void add_light(const host::LightSettings& light, Json& json) const {
        using host::LightType;
        const host::LightSettings usual;
        const bool spot = light.type == LightType::spot, ambient = light.type == LightType::ambient;
        json["type"] = spot                                ? "spot"
                       : light.type == LightType::point    ? "point"
                       : light.type == LightType::parallel ? "parallel"
                                                           : "ambient";
        json["intensity"] = animated(light.intensity);
        add_unless("color", light.color, {}, json);
        if (spot) {
            json["cone_angle"] = animated(light.cone_angle);
            json["cone_feather"] = animated(light.cone_feather);
        }
        if (ambient) return;
        if (light.casts_shadows) json["casts_shadows"] = true;
        add_unless("shadow_darkness", light.shadow_darkness, usual.shadow_darkness.constant, json);
        if (light.type != LightType::parallel)
            add_unless("shadow_diffusion", light.shadow_diffusion, 0.0, json);
        if (light.falloff.varies() || light.falloff.constant != 0.0) json["falloff"] = falloff(light.falloff);
        add_unless("falloff_start", light.falloff_start, usual.falloff_start.constant, json);
        add_unless("falloff_distance", light.falloff_distance, usual.falloff_distance.constant, json);
    }

    [[nodiscard]] Json falloff(const host::Animated<double>& value) const {
        return animated(value, [](double kind) {
            return kind == 1.0 ? "smooth" : kind == 2.0 ? "inverse square" : "none";
        });
    }

    // Of several settings of one name the last one counts, and only one can stand in an object.
    [[nodiscard]] Json controls() const {
        Json all = Json::object();
        for (const host::ControlSetting& setting : composition_.effect.controls) {
            all.erase(setting.control);
            all[setting.control] = animated(setting.value);
        }
        return all;
    }

    const host::Composition& composition_;
    mutable std::size_t values_ = 0;  // that keys have become so far
};

}  // namespace

std::string composition_text(const host::Composition& composition) {
    return CompositionWriter(composition).text();
}

}  // namespace zam::io
