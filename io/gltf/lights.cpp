#include "io/gltf/lights.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "host/text.h"

namespace zam::io::gltf {
namespace {

using Kind = JsonValue::Kind;

constexpr double kRightAngle = std::numbers::pi / 2.0;
// Exporters store angles in single precision, where a right angle comes out a little larger.
constexpr double kLargestAngle = 1.5707964;
constexpr double kRounding = 1e-5;

std::string name_of(const JsonValue& object) {
    const JsonValue* name = object.find("name");
    return name && name->is(Kind::string) ? name->text : std::string();
}

double number(const Container& file, const JsonValue& object, const char* member, double fallback,
              const char* hint) {
    const JsonValue* value = object.find(member);
    if (!value) return fallback;
    if (!value->is(Kind::number))
        throw file.error(*value, std::string(member) + " is " + value->kind_name() + ", not a number", hint);
    return value->number;
}

host::Color read_color(const Container& file, const JsonValue& light) {
    const JsonValue* color = light.find("color");
    if (!color) return {};
    bool valid = color->is(Kind::array) && color->children.size() == 3;
    if (valid)
        for (const JsonValue& part : color->children)
            valid = valid && part.is(Kind::number) && part.number >= 0.0 && part.number <= 1.0 + kRounding;
    if (!valid)
        throw file.error(*color, "the colour is not three numbers from 0 to 1",
                         "write red, green and blue as fractions; put brightness into intensity");
    const auto part = [&](std::size_t i) { return std::min(color->children[i].number, 1.0); };
    return {part(0), part(1), part(2)};
}

void read_cone(const Container& file, const JsonValue& light, LightValues& result) {
    const JsonValue* spot = light.find("spot");
    if (!spot || !spot->is(Kind::object))
        throw file.error(spot ? *spot : light, "a spot light needs an object \"spot\"",
                         "add \"spot\": {}; its angles have defaults");
    const char* hint = "angles are radians from the axis: 0 <= innerConeAngle <= outerConeAngle <= pi/2";
    const double inner = number(file, *spot, "innerConeAngle", 0.0, hint);
    const double outer = number(file, *spot, "outerConeAngle", std::numbers::pi / 4.0, hint);
    if (outer <= 0.0 || outer > kLargestAngle)
        throw file.error(*spot, "outerConeAngle " + format_number(outer) + " is outside 0..pi/2", hint);
    // Equal angles should not be, but exporters write them for sharp edges.
    if (inner < 0.0 || inner > outer)
        throw file.error(*spot,
                         "innerConeAngle " + format_number(inner) +
                             " does not lie between 0 and outerConeAngle " + format_number(outer),
                         hint);
    result.outer_angle = std::min(outer, kRightAngle);
    result.inner_angle = std::min(inner, result.outer_angle);
}

// Members that a light of its type should not have are told once for all lights.
struct Ignored {
    const char* reason;
    const JsonValue* first = nullptr;
    std::size_t count = 0;

    void add(const JsonValue& value) {
        if (++count == 1) first = &value;
    }
    void tell(const Container& file, std::vector<std::string>& warnings) const {
        if (count == 0) return;
        const std::string more = count > 1 ? " (and " + std::to_string(count - 1) + " more)" : "";
        warnings.push_back(file.document().where(*first) + ": " + file.document().pointer(*first) + more +
                           " is ignored: " + reason);
    }
};

// An older draft of the extension lit whole scenes.
Ignored scene_lights(const Container& file) {
    Ignored ignored{"lights hang on nodes"};
    for (const JsonValue& scene : file.objects(file.root(), "scenes"))
        if (const JsonValue* extensions = scene.find("extensions"))
            if (const JsonValue* light = extensions->find("KHR_lights_punctual")) ignored.add(*light);
    return ignored;
}

struct IgnoredMembers {
    Ignored spot{"the light is no spot"};
    Ignored range{"a directional light has no range"};
};

LightDefinition read_light(const Container& file, const JsonValue& light, IgnoredMembers& ignored) {
    LightDefinition result;
    result.name = name_of(light);
    const JsonValue* type = light.find("type");
    const char* types = "the type is \"point\", \"spot\" or \"directional\"";
    if (!type) throw file.error(light, "the light has no type", types);
    if (type->text == "spot") {
        result.type = host::LightType::spot;
    } else if (type->text == "directional") {
        result.type = host::LightType::parallel;
    } else if (type->text != "point") {
        throw file.error(*type,
                         type->is(Kind::string)
                             ? "light type " + quote(type->text) + " is not known"
                             : std::string("the light's type is ") + type->kind_name() + ", not a text",
                         types);
    }
    LightValues& values = result.values;
    values.color = read_color(file, light);
    values.intensity = number(file, light, "intensity", 1.0, "intensity is a number in candela or lux");
    if (values.intensity < 0.0)
        throw file.error(*light.find("intensity"), "intensity is negative", "use 0 to switch a light off");
    const JsonValue* range = light.find("range");
    values.range = number(file, light, "range", 0.0, "range is a number in metres");
    if (range && values.range <= 0.0)
        throw file.error(*range, "range is not above 0", "leave range out for a light without end");
    if (result.type == host::LightType::spot) {
        read_cone(file, light, values);
    } else if (const JsonValue* spot = light.find("spot")) {
        ignored.spot.add(*spot);
    }
    if (range && result.type == host::LightType::parallel) {
        ignored.range.add(*range);
        values.range = 0.0;
    }
    return result;
}

}  // namespace

const std::vector<JsonValue>& light_list(const Container& file) {
    static const std::vector<JsonValue> kNone;
    const JsonValue* extensions = file.object(file.root(), "extensions");
    const JsonValue* extension = extensions ? file.object(*extensions, "KHR_lights_punctual") : nullptr;
    return extension ? file.list(*extension, "lights") : kNone;
}

std::vector<LightDefinition> read_lights(const Container& file, std::vector<std::string>& warnings) {
    std::vector<LightDefinition> result;
    scene_lights(file).tell(file, warnings);
    IgnoredMembers ignored;
    for (const JsonValue& light : light_list(file)) {
        file.check_kind(light, Kind::object);
        result.push_back(read_light(file, light, ignored));
    }
    ignored.spot.tell(file, warnings);
    ignored.range.tell(file, warnings);
    return result;
}

std::vector<CameraDefinition> read_cameras(const Container& file) {
    std::vector<CameraDefinition> result;
    for (const JsonValue& camera : file.objects(file.root(), "cameras")) {
        CameraDefinition& definition = result.emplace_back();
        definition.name = name_of(camera);
        const JsonValue* type = camera.find("type");
        if (!type || (type->text != "perspective" && type->text != "orthographic"))
            throw file.error(type ? *type : camera, "the camera's type is not known",
                             "the type is \"perspective\" or \"orthographic\"");
        definition.perspective = type->text == "perspective";
        if (!definition.perspective) continue;
        const JsonValue* lens = camera.find("perspective");
        if (!lens || !lens->is(Kind::object))
            throw file.error(camera, "the camera has no \"perspective\"",
                             "add \"perspective\": {\"yfov\": 0.4, \"znear\": 0.1}");
        const char* hint = "yfov is the vertical angle of view in radians, between 0 and pi";
        definition.yfov = number(file, *lens, "yfov", 0.0, hint);
        if (definition.yfov <= 0.0 || definition.yfov >= std::numbers::pi)
            throw file.error(*lens, "yfov " + format_number(definition.yfov) + " is outside 0..pi", hint);
        definition.aspect_ratio = number(file, *lens, "aspectRatio", 0.0, "aspectRatio is width over height");
    }
    return result;
}

}  // namespace zam::io::gltf
