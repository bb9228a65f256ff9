#pragma once
// What the animations of a glTF file move: nodes by their own channels or by pointers, lights and cameras by
// pointers (KHR_animation_pointer).
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "io/gltf/container.h"
#include "io/gltf/track.h"

namespace zam::io::gltf {

enum class Property {
    translation,  // of a node
    rotation,
    scale,
    visible,
    color,  // of a light
    intensity,
    range,
    inner_angle,
    outer_angle,
    yfov,  // of a camera
};

// Every animation plays from the start at once. Of two that move the same property the first counts.
class Channels {
  public:
    // Reads no buffers. Throws SceneError; `warnings` gains what is left out.
    Channels(const Container& file, std::vector<std::string>& warnings);

    [[nodiscard]] bool moves(Property property, std::size_t index) const {
        return found_.count({property, index}) > 0;
    }
    // The channel that moves a property of the node, light or camera `index`, for messages; it must be there.
    [[nodiscard]] const JsonValue& place(Property property, std::size_t index) const {
        return *found_.at({property, index}).place;
    }
    // Its keys, read from the buffers; none when nothing moves it. Throws SceneError.
    [[nodiscard]] std::optional<Track> track(Property property, std::size_t index);
    // The latest time at which any channel has a key.
    [[nodiscard]] double last_second() const { return last_second_; }

  private:
    struct Channel {
        const JsonValue* sampler = nullptr;
        const JsonValue* place = nullptr;
    };
    using Target = std::pair<Property, std::size_t>;

    void read_channel(const JsonValue& channel, const std::vector<JsonValue>& samplers);
    [[nodiscard]] std::optional<Target> node_target(const JsonValue& target, const JsonValue& path) const;
    [[nodiscard]] std::optional<Target> pointer_target(const JsonValue& target);

    const Container& file_;
    std::map<Target, Channel> found_;
    double last_second_ = 0.0;
    std::size_t doubles_ = 0, unknown_ = 0;
    std::string first_unknown_;
};

}  // namespace zam::io::gltf
