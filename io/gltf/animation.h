#pragma once
// glTF animation: the movement of nodes over time.
#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "io/gltf/container.h"

namespace zam::io::gltf {

enum class NodePath { translation, rotation, scale };

// One animated property of one node.
class Track {
  public:
    enum class Interpolation { step, linear, cubic_spline };
    using Value = std::array<double, 4>;  // x, y, z and, for rotations, w

    // Reads times and values out of the sampler's accessors; throws SceneError.
    Track(const Container& file, const JsonValue& sampler, NodePath path);

    [[nodiscard]] NodePath path() const { return path_; }
    // Before the first time the first value holds, after the last time the last. Rotations are unit
    // quaternions.
    [[nodiscard]] Value at(double seconds) const;

  private:
    [[nodiscard]] Value value(std::size_t index) const;
    [[nodiscard]] Value cubic(std::size_t before, double t, double span) const;

    NodePath path_;
    Interpolation interpolation_ = Interpolation::linear;
    std::vector<double> times_;  // seconds, ascending
    std::vector<Value> values_;  // one for each time; for cubic splines in-tangent, value, out-tangent
};

// The unit quaternion between two, along the shorter arc.
[[nodiscard]] Track::Value slerp(const Track::Value& from, Track::Value to, double t);

struct Channel {
    std::size_t node = 0;
    NodePath path = NodePath::translation;
    const JsonValue* sampler = nullptr;
    const JsonValue* place = nullptr;  // of the channel, for messages
};

struct Channels {
    std::vector<Channel> nodes;         // channels that move nodes, of every animation of the file
    double last_second = 0.0;           // the latest time at which any channel has a key
    std::vector<std::string> warnings;  // what is left out
};

// Every animation plays from the start at once. Of two that move the same property the first counts.
[[nodiscard]] Channels read_channels(const Container& file);

}  // namespace zam::io::gltf
