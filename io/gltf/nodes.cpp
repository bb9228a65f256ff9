#include "io/gltf/nodes.h"

#include <algorithm>
#include <set>

#include "host/text.h"
#include "io/gltf/lights.h"

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
    const JsonValue* extensions = file.object(node, "extensions");
    const JsonValue* extension = extensions ? file.object(*extensions, "KHR_lights_punctual") : nullptr;
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

bool own_visibility(const Container& file, const JsonValue& node) {
    const JsonValue* extensions = file.object(node, "extensions");
    const JsonValue* extension = extensions ? file.object(*extensions, "KHR_node_visibility") : nullptr;
    const JsonValue* visible = extension ? extension->find("visible") : nullptr;
    if (!visible) return true;
    if (!visible->is(Kind::boolean))
        throw file.error(*visible, std::string("visible is ") + visible->kind_name(), "write true or false");
    return visible->truth;
}

}  // namespace

NodeTree::NodeTree(const Container& file, Channels& channels) {
    const std::size_t lights = light_list(file).size();
    const std::vector<JsonValue>& values = file.objects(file.root(), "nodes");
    nodes_.reserve(values.size());
    for (const JsonValue& value : values) {
        read_node(file, value);
        nodes_.back().light = light_index(file, value, lights);
        nodes_.back().visible = own_visibility(file, value);
    }
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
        for (const JsonValue& child : file.list(*nodes_[i].place, "children")) {
            static_cast<void>(file.element("nodes", child));
            const auto index = static_cast<std::size_t>(child.number);
            if (nodes_[index].parent || index == i)
                throw file.error(child, "node " + std::to_string(index) + " has two parents",
                                 "a node hangs below one other node at most; export the file again");
            nodes_[index].parent = i;
            nodes_[i].children.push_back(index);
        }
    }
    // Every node has one parent at most: what no node without a parent leads to hangs in a circle.
    std::vector<bool> reached(nodes_.size(), false);
    std::vector<std::size_t> open;
    for (std::size_t i = 0; i < nodes_.size(); ++i)
        if (!nodes_[i].parent) open.push_back(i);
    while (!open.empty()) {
        const std::size_t index = open.back();
        open.pop_back();
        reached[index] = true;
        open.insert(open.end(), nodes_[index].children.begin(), nodes_[index].children.end());
    }
    const auto lost = std::find(reached.begin(), reached.end(), false);
    if (lost == reached.end()) return;
    const auto index = static_cast<std::size_t>(lost - reached.begin());
    throw file.error(*nodes_[index].place, "node " + std::to_string(index) + " hangs below itself",
                     "export the file again; its nodes form a circle");
}

void NodeTree::walk(const Container& file) {
    std::vector<std::pair<std::size_t, int>> open;  // nodes to visit, with their depth; the next one last
    const std::vector<JsonValue>& scenes = file.objects(file.root(), "scenes");
    if (!scenes.empty()) {
        const JsonValue* chosen = file.root().find("scene");
        const JsonValue& scene = chosen ? file.element("scenes", *chosen) : scenes.front();
        std::vector<bool> listed(nodes_.size(), false);
        for (const JsonValue& root : file.list(scene, "nodes")) {
            static_cast<void>(file.element("nodes", root));
            const auto index = static_cast<std::size_t>(root.number);
            if (nodes_[index].parent)
                throw file.error(root, "node " + std::to_string(index) + " is no root: it has a parent",
                                 "a scene lists nodes without parents; export the file again");
            if (!listed[index]) open.push_back({index, 0});
            listed[index] = true;
        }
    } else {
        for (std::size_t i = 0; i < nodes_.size(); ++i)
            if (!nodes_[i].parent) open.push_back({i, 0});
    }
    std::reverse(open.begin(), open.end());
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

void NodeTree::read_tracks(const Container& file, Channels& channels) {
    std::set<std::size_t> needed, lit;  // those that place something, those that can hide a light
    for (const std::size_t carrier : carriers_) {
        for (std::optional<std::size_t> at = carrier; at && needed.insert(*at).second;)
            at = nodes_[*at].parent;
        if (!nodes_[carrier].light) continue;
        for (std::optional<std::size_t> at = carrier; at && lit.insert(*at).second;) at = nodes_[*at].parent;
    }
    for (const std::size_t index : needed) {
        Node& node = nodes_[index];
        for (const Property property : {Property::translation, Property::rotation, Property::scale}) {
            if (node.matrix && channels.moves(property, index))
                throw file.error(channels.place(property, index),
                                 "node " + std::to_string(index) + " has a matrix and cannot be animated",
                                 "give the node translation, rotation and scale instead of a matrix");
            if (auto track = channels.track(property, index))
                node.tracks.emplace_back(property, std::move(*track));
        }
    }
    for (const std::size_t index : lit)
        if (auto track = channels.track(Property::visible, index))
            nodes_[index].tracks.emplace_back(Property::visible, std::move(*track));
}

double NodeTree::pose_work(std::size_t index) const {
    double work = kLayerWork;
    for (std::optional<std::size_t> at = index; at; at = nodes_[*at].parent) {
        work += kNodeWork;
        for (const auto& [property, track] : nodes_[*at].tracks)
            if (property != Property::visible) work += track.work();
    }
    return work;
}

double NodeTree::visible_work(std::size_t index) const {
    double work = 0.0;
    for (std::optional<std::size_t> at = index; at; at = nodes_[*at].parent) {
        work += 1.0;
        for (const auto& [property, track] : nodes_[*at].tracks)
            if (property == Property::visible) work += track.work();
    }
    return work;
}

Variation NodeTree::placement(std::size_t index) const {
    Variation variation = Variation::still;
    for (std::optional<std::size_t> at = index; at; at = nodes_[*at].parent)
        for (const auto& [property, track] : nodes_[*at].tracks)
            if (property != Property::visible)
                variation = std::max(variation, track.steps() ? Variation::steps : Variation::moves);
    return variation;
}

Variation NodeTree::visibility(std::size_t index) const {
    for (std::optional<std::size_t> at = index; at; at = nodes_[*at].parent)
        for (const auto& [property, track] : nodes_[*at].tracks)
            if (property == Property::visible) return Variation::steps;
    return Variation::still;
}

bool NodeTree::visible(std::size_t index, double seconds) const {
    for (std::optional<std::size_t> at = index; at; at = nodes_[*at].parent) {
        bool visible = nodes_[*at].visible;
        for (const auto& [property, track] : nodes_[*at].tracks)
            if (property == Property::visible) visible = track.at(seconds)[0] != 0.0;
        if (!visible) return false;
    }
    return true;
}

Placement NodeTree::Local::scaled() const {
    if (matrix) return *matrix;
    return {turned.x * scale.x, turned.y * scale.y, turned.z * scale.z, turned.origin};
}

NodeTree::Local NodeTree::local(std::size_t index, double seconds) const {
    const Node& node = nodes_[index];
    if (node.matrix) return {upright(*node.matrix).value_or(Placement{}), {}, &*node.matrix};
    Vec3 translation = node.translation, scale = node.scale;
    Quaternion rotation = node.rotation;
    for (const auto& [property, track] : node.tracks) {
        if (property == Property::visible) continue;
        const Track::Value v = track.at(seconds);
        if (property == Property::translation) translation = {v[0], v[1], v[2]};
        if (property == Property::rotation) rotation = {v[0], v[1], v[2], v[3]};
        if (property == Property::scale) scale = {v[0], v[1], v[2]};
    }
    Placement turned = rotated(rotation);
    turned.origin = translation;
    return {turned, scale, nullptr};
}

Placement NodeTree::pose(std::size_t index, double seconds) const {
    chain_.clear();
    for (std::optional<std::size_t> at = index; at; at = nodes_[*at].parent)
        chain_.push_back(local(*at, seconds));
    Placement world = chain_.front().scaled();
    for (std::size_t i = 1; i < chain_.size(); ++i) world = chain_[i].scaled() * world;
    std::optional<Placement> axes = upright(world);
    if (!axes) {
        // Scaled to nothing somewhere on the way, as is done to hide things: the rotations alone still tell.
        Placement turned = chain_.front().turned;
        for (std::size_t i = 1; i < chain_.size(); ++i) turned = chain_[i].turned * turned;
        axes = upright(turned).value_or(Placement{});
    }
    axes->origin = world.origin;
    return *axes;
}

}  // namespace zam::io::gltf
