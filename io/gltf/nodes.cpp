#include "io/gltf/nodes.h"

#include <algorithm>
#include <set>

#include "io/text.h"

namespace zam::io::gltf {
namespace {

using Kind = JsonValue::Kind;

constexpr int kDeepest = 1000;  // levels of a hierarchy

// `count` numbers of a node's array, or none when the node has no such member.
std::vector<double> numbers(const Container& file, const JsonValue& node, const char* member,
                            std::size_t count) {
    const JsonValue* value = node.find(member);
    if (!value) return {};
    bool valid = value->is(Kind::array) && value->children.size() == count;
    if (valid)
        for (const JsonValue& part : value->children)
            valid = valid && part.is(Kind::number) && std::abs(part.number) <= 1e9;
    if (!valid)
        throw file.error(*value,
                         std::string(member) + " is not an array of " + std::to_string(count) + " numbers",
                         "export the file again");
    std::vector<double> result;
    for (const JsonValue& part : value->children) result.push_back(part.number);
    return result;
}

// Unit axes with the same z; none when z or y have no direction.
std::optional<Placement> upright(const Placement& placement) {
    constexpr double kNothing = 1e-12;
    const double z_length = length(placement.z), y_length = length(placement.y);
    if (z_length < kNothing || y_length < kNothing) return std::nullopt;
    const Vec3 z = placement.z * (1.0 / z_length);
    const Vec3 y = placement.y * (1.0 / y_length);
    const Vec3 across = y - z * dot(y, z);
    if (length(across) < kNothing) return std::nullopt;
    const Vec3 up = across * (1.0 / length(across));
    return Placement{cross(up, z), up, z, {}};
}

std::optional<std::size_t> light_index(const Container& file, const JsonValue& node, std::size_t lights) {
    const JsonValue* extensions = node.find("extensions");
    const JsonValue* extension = extensions ? extensions->find("KHR_lights_punctual") : nullptr;
    if (!extension) return std::nullopt;
    const JsonValue* light = extension->find("light");
    if (!light)
        throw file.error(*extension, "the node does not say which light", "add \"light\": and an index");
    const bool known = light->is(Kind::number) && light->number >= 0.0 &&
                       light->number < static_cast<double>(lights) &&
                       light->number == std::floor(light->number);
    if (!known)
        throw file.error(*light, "there is no such light: the file defines " + std::to_string(lights),
                         "lights are listed in /extensions/KHR_lights_punctual/lights, counted from 0");
    return static_cast<std::size_t>(light->number);
}

std::size_t defined_lights(const Container& file) {
    const JsonValue* extensions = file.root().find("extensions");
    const JsonValue* extension = extensions ? extensions->find("KHR_lights_punctual") : nullptr;
    const JsonValue* lights = extension ? extension->find("lights") : nullptr;
    return lights ? lights->children.size() : 0;
}

}  // namespace

NodeTree::NodeTree(const Container& file, const Channels& channels, std::vector<std::string>& warnings) {
    const std::size_t lights = defined_lights(file);
    bool hides = false;
    if (const JsonValue* list = file.root().find("nodes")) {
        nodes_.reserve(list->children.size());
        for (const JsonValue& value : list->children) {
            read_node(file, value);
            nodes_.back().light = light_index(file, value, lights);
            const JsonValue* extensions = value.find("extensions");
            hides = hides || (extensions && extensions->find("KHR_node_visibility"));
        }
    }
    if (hides) warnings.push_back("KHR_node_visibility is ignored: lights of hidden nodes shine too");
    link(file);
    walk(file);
    read_tracks(file, channels);
}

void NodeTree::read_node(const Container& file, const JsonValue& value) {
    Node& node = nodes_.emplace_back();
    node.place = &value;
    if (const JsonValue* name = value.find("name")) node.name = name->text;
    if (const JsonValue* camera = value.find("camera")) {
        static_cast<void>(file.element("cameras", *camera));
        node.camera = static_cast<std::size_t>(camera->number);
    }
    if (const auto m = numbers(file, value, "matrix", 16); !m.empty())
        node.matrix = Placement{{m[0], m[1], m[2]},
                                {m[4], m[5], m[6]},
                                {m[8], m[9], m[10]},
                                {m[12], m[13], m[14]}};  // stored column by column
    if (const auto t = numbers(file, value, "translation", 3); !t.empty())
        node.translation = {t[0], t[1], t[2]};
    if (const auto s = numbers(file, value, "scale", 3); !s.empty()) node.scale = {s[0], s[1], s[2]};
    if (const auto r = numbers(file, value, "rotation", 4); !r.empty()) {
        node.rotation = {r[0], r[1], r[2], r[3]};
        if (r[0] * r[0] + r[1] * r[1] + r[2] * r[2] + r[3] * r[3] < 1e-24)
            throw file.error(*value.find("rotation"), "the rotation is no unit quaternion",
                             "write [0, 0, 0, 1] for no rotation");
    }
}

void NodeTree::link(const Container& file) {
    for (std::size_t i = 0; i < nodes_.size(); ++i) {
        const JsonValue* children = nodes_[i].place->find("children");
        if (!children) continue;
        for (const JsonValue& child : children->children) {
            static_cast<void>(file.element("nodes", child));
            const auto index = static_cast<std::size_t>(child.number);
            if (nodes_[index].parent || index == i)
                throw file.error(child, "node " + std::to_string(index) + " has two parents",
                                 "a node hangs below one other node at most; export the file again");
            nodes_[index].parent = i;
            nodes_[i].children.push_back(index);
        }
    }
}

void NodeTree::walk(const Container& file) {
    std::vector<std::pair<std::size_t, int>> open;  // nodes to visit, with their depth; the next one last
    const JsonValue* scenes = file.root().find("scenes");
    if (scenes && !scenes->children.empty()) {
        const JsonValue* chosen = file.root().find("scene");
        const JsonValue& scene = chosen ? file.element("scenes", *chosen) : scenes->children.front();
        if (const JsonValue* roots = scene.find("nodes"))
            for (const JsonValue& root : roots->children) {
                static_cast<void>(file.element("nodes", root));
                const auto index = static_cast<std::size_t>(root.number);
                if (nodes_[index].parent)
                    throw file.error(root, "node " + std::to_string(index) + " is no root: it has a parent",
                                     "a scene lists nodes without parents; export the file again");
                const bool twice = std::any_of(open.begin(), open.end(),
                                               [&](const auto& entry) { return entry.first == index; });
                if (!twice) open.push_back({index, 0});
            }
    } else {
        for (std::size_t i = 0; i < nodes_.size(); ++i)
            if (!nodes_[i].parent) open.push_back({i, 0});
    }
    std::reverse(open.begin(), open.end());
    // Roots have no parent and every other node one: no circle can be reached from here.
    while (!open.empty()) {
        const auto [index, depth] = open.back();
        open.pop_back();
        const Node& node = nodes_[index];
        if (depth > kDeepest)
            throw file.error(*node.place,
                             "the hierarchy is deeper than " + std::to_string(kDeepest) + " nodes",
                             "flatten it before the export");
        if (node.light || node.camera) carriers_.push_back(index);
        for (auto child = node.children.rbegin(); child != node.children.rend(); ++child)
            open.push_back({*child, depth + 1});
    }
}

void NodeTree::read_tracks(const Container& file, const Channels& channels) {
    std::set<std::size_t> needed;
    for (const std::size_t carrier : carriers_)
        for (std::optional<std::size_t> at = carrier; at && needed.insert(*at).second;)
            at = nodes_[*at].parent;
    for (const Channel& channel : channels.nodes) {
        if (needed.count(channel.node) == 0) continue;
        Node& node = nodes_[channel.node];
        if (node.matrix)
            throw file.error(*channel.place,
                             "node " + std::to_string(channel.node) + " has a matrix and cannot be animated",
                             "give the node translation, rotation and scale instead of a matrix");
        node.tracks.emplace_back(file, *channel.sampler, channel.path);
    }
}

bool NodeTree::moves(std::size_t index) const {
    for (std::optional<std::size_t> at = index; at; at = nodes_[*at].parent)
        if (!nodes_[*at].tracks.empty()) return true;
    return false;
}

Placement NodeTree::local(std::size_t index, double seconds, bool with_scale) const {
    const Node& node = nodes_[index];
    if (node.matrix) return with_scale ? *node.matrix : upright(*node.matrix).value_or(Placement{});
    Vec3 translation = node.translation, scale = node.scale;
    Quaternion rotation = node.rotation;
    for (const Track& track : node.tracks) {
        const Track::Value v = track.at(seconds);
        switch (track.path()) {
            case NodePath::translation:
                translation = {v[0], v[1], v[2]};
                break;
            case NodePath::rotation:
                rotation = {v[0], v[1], v[2], v[3]};
                break;
            case NodePath::scale:
                scale = {v[0], v[1], v[2]};
                break;
        }
    }
    Placement placement = rotated(rotation);
    if (with_scale) {
        placement.x = placement.x * scale.x;
        placement.y = placement.y * scale.y;
        placement.z = placement.z * scale.z;
    }
    placement.origin = translation;
    return placement;
}

Placement NodeTree::world(std::size_t index, double seconds) const {
    Placement placement = local(index, seconds, true);
    for (std::optional<std::size_t> at = nodes_[index].parent; at; at = nodes_[*at].parent)
        placement = local(*at, seconds, true) * placement;
    return placement;
}

Placement NodeTree::world_axes(std::size_t index, double seconds) const {
    if (const auto axes = upright(world(index, seconds))) return *axes;
    // Scaled to nothing somewhere on the way, as is done to hide things: the rotations alone still tell.
    Placement placement = local(index, seconds, false);
    for (std::optional<std::size_t> at = nodes_[index].parent; at; at = nodes_[*at].parent)
        placement = local(*at, seconds, false) * placement;
    return upright(placement).value_or(Placement{});
}

}  // namespace zam::io::gltf
