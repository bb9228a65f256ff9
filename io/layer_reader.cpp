#include "io/layer_reader.h"

#include <algorithm>

#include "host/text.h"
#include "io/keyframes.h"
#include "io/values.h"

namespace zam::io {
namespace {

using Names = std::vector<std::string>;

constexpr NumberRule kSize{1, 30000, "pixels", ""};
constexpr NumberRule kPercent{0, 100, "percent", ""};
constexpr NumberRule kAnyPercent{-1e9, 1e9, "percent", ""};
constexpr NumberRule kConeAngle{0, 180, "degrees", "angles are full cone angles in degrees"};
constexpr NumberRule kZoom{0.01, 1e9, "pixels", "the distance at which one unit shows as one pixel"};
constexpr NumberRule kDistance{0, 1e9, "pixels", ""};
constexpr NumberRule kStretch{1, 9900, "percent", ""};
constexpr NumberRule kId{1, 1e9, "", "layer ids count from 1"};

const Names kEveryLayer = {"kind",  "name",    "id",    "note", "parent", "in",    "out",
                           "start", "stretch", "video", "solo", "shy",    "locked"};
const Names kPlaced = {"world_matrix"};
const Names kTurned = {"orientation", "rotation_x", "rotation_y", "rotation_z"};
const Names kShadow = {"casts_shadows", "shadow_darkness"};
const Names kFalloff = {"falloff", "falloff_start", "falloff_distance"};
const Names kFalloffs = {"none", "smooth", "inverse square"};  // by number

// Each once.
Names operator+(Names a, const Names& b) {
    for (const std::string& name : b)
        if (std::find(a.begin(), a.end(), name) == a.end()) a.push_back(name);
    return a;
}

// Where a layer stands, told in parts. A layer with a world matrix has none of it.
const Names kParts = Names{"three_d", "anchor", "position", "scale", "point_of_interest"} + kTurned;

// What a layer of this kind, and of this light type, may say besides kEveryLayer.
Names names_of(host::LayerKind kind, host::LightType type) {
    const Names body = Names{"three_d", "anchor", "position", "scale"} + kTurned + kPlaced;
    const Names aimed = Names{"position", "point_of_interest"} + kTurned + kPlaced;
    const Names shining = {"type", "intensity", "color"};
    switch (kind) {
        case host::LayerKind::solid:
            return Names{"size"} + body;
        case host::LayerKind::null_object:
            return body;
        case host::LayerKind::camera:
            return aimed + Names{"zoom"};
        case host::LayerKind::light:
            break;
    }
    switch (type) {
        case host::LightType::spot:
            return shining + aimed + kShadow + kFalloff +
                   Names{"cone_angle", "cone_feather", "shadow_diffusion"};
        case host::LightType::point:
            return shining + Names{"position", "shadow_diffusion"} + kPlaced + kShadow + kFalloff;
        case host::LightType::parallel:
            return shining + aimed + kShadow + kFalloff;
        case host::LightType::ambient:
            break;
    }
    return shining;
}

const Names& every_name() {
    static const Names names = kEveryLayer + names_of(host::LayerKind::solid, {}) +
                               names_of(host::LayerKind::camera, {}) +
                               names_of(host::LayerKind::light, host::LightType::spot);
    return names;
}

// One layer on its way from the file into a host::Layer.
class LayerReader {
  public:
    LayerReader(const JsonDocument& document, const JsonValue& value, std::size_t number,
                host::Composition& composition)
        : document_(document),
          value_(value),
          number_(number),
          composition_(composition),
          subject_(layer_subject(value, number)) {}

    host::Layer read() {
        check_members(document_, value_, subject_, every_name());
        read_kind();
        check_fitting_members();
        read_common();
        read_transform();
        if (layer_.kind == host::LayerKind::light) read_light();
        return std::move(layer_);
    }

  private:
    // Runs `use(value, subject)` for a member that is there.
    template <class Use>
    void with(const char* name, Use use) {
        if (const JsonValue* member = value_.find(name)) use(*member, subject_ + ": " + name);
    }
    void number(const char* name, host::Animated<double>& target, const NumberRule& rule) {
        with(name, [&](const JsonValue& v, const std::string& subject) {
            target = read_animated_number(document_, v, subject, frame_rate(), rule);
        });
    }
    void vec3(const char* name, host::Animated<host::Vec3>& target, const NumberRule& rule) {
        with(name, [&](const JsonValue& v, const std::string& subject) {
            target = read_animated_vec3(document_, v, subject, frame_rate(), rule);
        });
    }
    void fixed(const char* name, double& target, const NumberRule& rule) {
        with(name, [&](const JsonValue& v, const std::string& subject) {
            target = read_number(document_, v, subject, rule);
        });
    }
    void flag(const char* name, bool& target) {
        with(name, [&](const JsonValue& v, const std::string& subject) {
            target = read_flag(document_, v, subject);
        });
    }

    [[nodiscard]] double frame_rate() const { return composition_.frame_rate.value(); }

    void read_kind() {
        const JsonValue* kind = value_.find("kind");
        if (!kind)
            throw document_.error(value_, subject_ + " has no \"kind\"",
                                  R"(say "kind": "light", "camera", "solid" or "null")");
        const std::string word =
            read_choice(document_, *kind, subject_ + ": kind", {"light", "camera", "solid", "null"});
        layer_.kind = word == "light"    ? host::LayerKind::light
                      : word == "camera" ? host::LayerKind::camera
                      : word == "solid"  ? host::LayerKind::solid
                                         : host::LayerKind::null_object;
        kind_text_ = word;
        if (layer_.kind != host::LayerKind::light) return;
        std::string type = "spot";
        with("type", [&](const JsonValue& v, const std::string& subject) {
            type = read_choice(document_, v, subject, {"spot", "point", "parallel", "ambient"});
        });
        layer_.light.type = type == "spot"       ? host::LightType::spot
                            : type == "point"    ? host::LightType::point
                            : type == "parallel" ? host::LightType::parallel
                                                 : host::LightType::ambient;
        kind_text_ = type + " light";
    }

    void check_fitting_members() const {
        const Names own = names_of(layer_.kind, layer_.light.type);
        const Names allowed = kEveryLayer + own;
        const std::string a_kind = (kind_text_[0] == 'a' ? "an " : "a ") + kind_text_;
        for (const JsonValue& member : value_.children)
            if (std::find(allowed.begin(), allowed.end(), member.name) == allowed.end())
                throw document_.error_at_name(member, subject_ + ": " + a_kind + " has no " + member.name,
                                              a_kind + " takes " + join_or(own));
    }

    void read_common() {
        with("name", [&](const JsonValue& v, const std::string& subject) {
            layer_.name = read_text(document_, v, subject);
        });
        if (layer_.name.empty()) {
            layer_.name = kind_text_ + " " + std::to_string(number_);
            layer_.name[0] = static_cast<char>(layer_.name[0] - 'a' + 'A');
        }
        with("id", [&](const JsonValue& v, const std::string& subject) {
            layer_.id = read_whole(document_, v, subject, kId);
        });
        with("note", [&](const JsonValue& v, const std::string& subject) {
            static_cast<void>(read_text(document_, v, subject));
        });
        layer_.out_frame = composition_.duration;
        fixed("in", layer_.in_frame, kFrames);
        fixed("out", layer_.out_frame, kFrames);
        fixed("start", layer_.start_frame, kFrames);
        fixed("stretch", layer_.stretch, kStretch);
        if (layer_.out_frame <= layer_.in_frame) {
            const JsonValue* told = value_.find("out") ? value_.find("out") : value_.find("in");
            throw document_.error(*told,
                                  subject_ + ": out frame " + format_number(layer_.out_frame) +
                                      " does not come after in frame " + format_number(layer_.in_frame),
                                  "out is the first frame at which the layer is gone; it is the "
                                  "composition's duration unless given");
        }
        flag("video", layer_.video);
        flag("solo", layer_.solo);
        flag("shy", layer_.shy);
        flag("locked", layer_.locked);
    }

    void read_transform() {
        host::Transform& transform = layer_.transform;
        const host::Vec3 centre{composition_.width / 2.0, composition_.height / 2.0, 0.0};
        // A child's place counts from its parent's corner, so only layers without one start in the centre.
        if (!value_.find("parent")) transform.position = centre;
        if (layer_.kind == host::LayerKind::solid) add_source();
        if (layer_.kind == host::LayerKind::camera) {
            layer_.camera.zoom = composition_.width * 50.0 / 36.0;  // a 50 mm lens on 36 mm film
            number("zoom", layer_.camera.zoom, kZoom);
            if (!value_.find("parent"))
                transform.position = host::Vec3{centre.x, centre.y, -layer_.camera.zoom.at(0.0)};
        }
        if (value_.find("world_matrix")) {
            read_world_matrix();
            return;
        }
        flag("three_d", layer_.three_d);
        vec3("anchor", transform.anchor, kPixels);
        vec3("position", transform.position, kPixels);
        vec3("scale", transform.scale, kAnyPercent);
        vec3("orientation", transform.orientation, kDegrees);
        number("rotation_x", transform.rotation_x, kDegrees);
        number("rotation_y", transform.rotation_y, kDegrees);
        number("rotation_z", transform.rotation_z, kDegrees);
        with("point_of_interest", [&](const JsonValue& v, const std::string& subject) {
            transform.point_of_interest = read_animated_vec3(document_, v, subject, frame_rate(), kPixels);
        });
    }

    void read_world_matrix() {
        for (const std::string& part : kParts)
            if (const JsonValue* member = value_.find(part))
                throw document_.error_at_name(
                    *member, subject_ + ": " + part + " stands beside world_matrix",
                    "the matrix alone says where the layer is; remove one of the two");
        // Nothing of a transform is known; streams that ask for it are told that there is none.
        layer_.transform = {};
        with("world_matrix", [&](const JsonValue& v, const std::string& subject) {
            layer_.world = read_animated_matrix(document_, v, subject);
        });
    }

    void add_source() {
        host::Item item;
        item.id = static_cast<host::ItemId>(composition_.items.size()) + 1;
        item.name = layer_.name;
        item.width = composition_.width;
        item.height = composition_.height;
        with("size", [&](const JsonValue& v, const std::string& subject) {
            if (!v.is(JsonValue::Kind::array) || v.children.size() != 2)
                throw document_.error(v, subject + " is not a pair of numbers", "write [width, height]");
            item.width = read_whole(document_, v.children[0], subject + " width", kSize);
            item.height = read_whole(document_, v.children[1], subject + " height", kSize);
        });
        layer_.source = item.id;
        layer_.transform.anchor = host::Vec3{item.width / 2.0, item.height / 2.0, 0.0};
        composition_.items.push_back(std::move(item));
    }

    void read_light() {
        host::LightSettings& light = layer_.light;
        number("intensity", light.intensity, kAnyPercent);
        with("color", [&](const JsonValue& v, const std::string& subject) {
            light.color = read_animated_color(document_, v, subject, frame_rate());
        });
        number("cone_angle", light.cone_angle, kConeAngle);
        number("cone_feather", light.cone_feather, kPercent);
        flag("casts_shadows", light.casts_shadows);
        number("shadow_darkness", light.shadow_darkness, kPercent);
        number("shadow_diffusion", light.shadow_diffusion, kDistance);
        with("falloff", [&](const JsonValue& v, const std::string& subject) {
            light.falloff = read_animated<double>(document_, v, subject, kNoEases, [&](const JsonValue& one) {
                const std::string word = read_choice(document_, one, subject, kFalloffs);
                return static_cast<double>(std::find(kFalloffs.begin(), kFalloffs.end(), word) -
                                           kFalloffs.begin());
            });
            for (auto& key : light.falloff.keys) key.interpolation = host::Interpolation::hold;
        });
        number("falloff_start", light.falloff_start, kDistance);
        number("falloff_distance", light.falloff_distance, kDistance);
    }

    const JsonDocument& document_;
    const JsonValue& value_;
    std::size_t number_;
    host::Composition& composition_;
    std::string subject_;
    std::string kind_text_;  // "camera", "spot light" ...
    host::Layer layer_;
};

}  // namespace

std::string layer_subject(const JsonValue& value, std::size_t number) {
    const JsonValue* name = value.find("name");
    if (name && name->is(JsonValue::Kind::string) && !name->text.empty()) return "layer " + quote(name->text);
    return "layer " + std::to_string(number);
}

host::Layer read_layer(const JsonDocument& document, const JsonValue& value, std::size_t number,
                       host::Composition& composition) {
    return LayerReader(document, value, number, composition).read();
}

}  // namespace zam::io
