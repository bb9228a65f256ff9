#include "io/gltf/channels.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "host/text.h"
#include "io/gltf/lights.h"

namespace zam::io::gltf {
namespace {

using Kind = JsonValue::Kind;

// A pointer is a list's place, an index and the rest.
struct Pattern {
    const char *list, *rest;
    Property property;
};
constexpr const char* kNodes = "/nodes/";
constexpr const char* kLights = "/extensions/KHR_lights_punctual/lights/";
constexpr const char* kCameras = "/cameras/";
constexpr Pattern kPatterns[] = {
    {kNodes, "/translation", Property::translation},
    {kNodes, "/rotation", Property::rotation},
    {kNodes, "/scale", Property::scale},
    {kNodes, "/extensions/KHR_node_visibility/visible", Property::visible},
    {kLights, "/color", Property::color},
    {kLights, "/intensity", Property::intensity},
    {kLights, "/range", Property::range},
    {kLights, "/spot/innerConeAngle", Property::inner_angle},
    {kLights, "/spot/outerConeAngle", Property::outer_angle},
    {kCameras, "/perspective/yfov", Property::yfov},
};

// What moves without any light or view changing, and is passed over without a word.
bool is_harmless(const std::string& pointer) {
    for (const char* list : {"/materials/", "/meshes/", "/textures/", "/images/", "/samplers/", "/skins/"})
        if (pointer.starts_with(list)) return true;
    if (pointer.starts_with(kNodes))
        return pointer.ends_with("/weights") || pointer.find("/weights/") != std::string::npos;
    if (!pointer.starts_with(kCameras)) return false;
    return pointer.find("/orthographic/") != std::string::npos || pointer.ends_with("/aspectRatio") ||
           pointer.ends_with("/znear") || pointer.ends_with("/zfar");
}

Shape shape_of(Property property) {
    switch (property) {
        case Property::rotation:
            return Shape::rotation;
        case Property::visible:
            return Shape::truth;
        case Property::translation:
        case Property::scale:
        case Property::color:
            return Shape::vector;
        default:
            return Shape::scalar;
    }
}

}  // namespace

Channels::Channels(const Container& file, std::vector<std::string>& warnings) : file_(file) {
    for (const JsonValue& animation : file.objects(file.root(), "animations")) {
        static_cast<void>(file.required(animation, "samplers"));
        static_cast<void>(file.required(animation, "channels"));
        const std::vector<JsonValue>& samplers = file.objects(animation, "samplers");
        for (const JsonValue& channel : file.objects(animation, "channels")) read_channel(channel, samplers);
    }
    if (unknown_ > 0)
        warnings.push_back("animation channels are left out that move " + quote(first_unknown_) +
                           (unknown_ > 1 ? " and " + std::to_string(unknown_ - 1) + " more" : "") +
                           ": only nodes, lights and yfov are animated here");
    if (doubles_ > 0)
        warnings.push_back(std::to_string(doubles_) +
                           " animation channels move what another animation moves already and are "
                           "left out: the first counts");
}

void Channels::read_channel(const JsonValue& channel, const std::vector<JsonValue>& samplers) {
    const JsonValue& index = file_.required(channel, "sampler");
    const bool valid = index.is(Kind::number) && index.number >= 0.0 &&
                       index.number == std::floor(index.number) &&
                       index.number < static_cast<double>(samplers.size());
    if (!valid) throw file_.error(index, "there is no such sampler", "export the file again");
    const JsonValue& sampler = samplers[static_cast<std::size_t>(index.number)];
    // The accessor's "max" tells the last time without its buffer.
    const JsonValue& input = file_.element("accessors", file_.required(sampler, "input"));
    if (const JsonValue* max = input.find("max"); max && !max->children.empty())
        last_second_ = std::max(last_second_, max->children[0].number);

    const JsonValue& target = file_.required(channel, "target");
    const JsonValue& path = file_.required(target, "path");
    if (path.text == "weights") return;
    const auto moved = path.text == "pointer" ? pointer_target(target) : node_target(target, path);
    if (moved && !found_.insert({*moved, Channel{&sampler, &channel}}).second) ++doubles_;
}

std::optional<Channels::Target> Channels::node_target(const JsonValue& target, const JsonValue& path) const {
    if (path.text != "translation" && path.text != "rotation" && path.text != "scale")
        throw file_.error(path, "path " + quote(path.text) + " is not known",
                          "nodes are animated by translation, rotation, scale or weights");
    const JsonValue* node = target.find("node");
    if (!node) return std::nullopt;  // meant for an extension
    static_cast<void>(file_.element("nodes", *node));
    return Target{path.text == "rotation" ? Property::rotation
                  : path.text == "scale"  ? Property::scale
                                          : Property::translation,
                  static_cast<std::size_t>(node->number)};
}

std::optional<Channels::Target> Channels::pointer_target(const JsonValue& target) {
    const JsonValue* extensions = target.find("extensions");
    const JsonValue* extension = extensions ? extensions->find("KHR_animation_pointer") : nullptr;
    const JsonValue* pointer = extension ? extension->find("pointer") : nullptr;
    if (!pointer || !pointer->is(Kind::string))
        throw file_.error(target, "the target has no pointer",
                          "path \"pointer\" needs extensions/KHR_animation_pointer/pointer");
    const std::string& text = pointer->text;
    for (const Pattern& pattern : kPatterns) {
        const std::string_view list = pattern.list, rest = pattern.rest;
        if (!text.starts_with(list) || !text.ends_with(rest) || text.size() <= list.size() + rest.size())
            continue;
        const char* begin = text.data() + list.size();
        const char* end = text.data() + text.size() - rest.size();
        if (std::find(begin, end, '/') != end) continue;
        std::size_t index = 0;
        const auto [stop, code] = std::from_chars(begin, end, index);
        const std::string array(list.substr(1, list.size() - 2));
        const std::size_t count =
            list == kLights ? light_list(file_).size() : file_.list(file_.root(), array.c_str()).size();
        if (code != std::errc() || stop != end || index >= count)
            throw file_.error(
                *pointer,
                quote(text) + " points at nothing: there are " + std::to_string(count) + " in that list",
                "export the file again; references like this one are broken");
        return Target{pattern.property, index};
    }
    if (!is_harmless(text) && ++unknown_ == 1) first_unknown_ = text;
    return std::nullopt;
}

std::optional<Track> Channels::track(Property property, std::size_t index) {
    const auto found = found_.find({property, index});
    if (found == found_.end()) return std::nullopt;
    Track track(file_, *found->second.sampler, shape_of(property));
    last_second_ = std::max(last_second_, track.last_second());
    return track;
}

}  // namespace zam::io::gltf
