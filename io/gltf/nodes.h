#pragma once
// The node hierarchy of a glTF file and its movement.
#include <optional>
#include <string>
#include <vector>

#include "io/gltf/channels.h"
#include "io/gltf/container.h"
#include "io/gltf/linear.h"
#include "io/gltf/timeline.h"

namespace zam::io::gltf {

struct Node {
    std::string name;
    const JsonValue* place = nullptr;
    std::optional<std::size_t> parent;
    std::vector<std::size_t> children;
    std::optional<std::size_t> light, camera;  // indices of definitions
    std::optional<Placement> matrix;           // instead of the three below
    Vec3 translation, scale{1.0, 1.0, 1.0};
    Quaternion rotation;
    bool visible = true;  // the node's own word; hidden parents hide it as well
    std::vector<std::pair<Property, Track>> tracks;
};

// The nodes of the file's scene (or, without scenes, all). Only the tracks of nodes that carry lights and
// cameras, or their ancestors, are read: other animation may lack its buffers.
class NodeTree {
  public:
    // Throws SceneError.
    NodeTree(const Container& file, Channels& channels);

    [[nodiscard]] const Node& node(std::size_t index) const { return nodes_[index]; }
    // The nodes with a light or a camera, parents before children, otherwise in the order of the file.
    [[nodiscard]] const std::vector<std::size_t>& carriers() const { return carriers_; }
    // What pose() and visible() cost for a frame, in the units of Timeline::count_work.
    [[nodiscard]] double pose_work(std::size_t index) const;
    [[nodiscard]] double visible_work(std::size_t index) const;
    // How the node's placement varies, with those of all above it.
    [[nodiscard]] Variation placement(std::size_t index) const;
    // How its visibility varies: still or steps.
    [[nodiscard]] Variation visibility(std::size_t index) const;
    // Whether the node and all above it are visible.
    [[nodiscard]] bool visible(std::size_t index, double seconds) const;
    // Its place in the world, with unit axes: -z is where a light shines and a camera looks. Scale can tilt the
    // axes of a hierarchy; z then keeps its direction and the others are set upright to it.
    [[nodiscard]] Placement pose(std::size_t index, double seconds) const;

  private:
    // A node in its parent's space. With a matrix, `turned` is its rotation alone.
    struct Local {
        Placement turned;
        Vec3 scale{1.0, 1.0, 1.0};
        const Placement* matrix = nullptr;

        [[nodiscard]] Placement scaled() const;
    };

    void read_node(const Container& file, const JsonValue& value);
    void link(const Container& file);
    void walk(const Container& file);
    void read_tracks(const Container& file, Channels& channels);
    [[nodiscard]] Local local(std::size_t index, double seconds) const;

    std::vector<Node> nodes_;
    std::vector<std::size_t> carriers_;
    mutable std::vector<Local> chain_;  // pose()'s, from the node outwards
};

}  // namespace zam::io::gltf
