#pragma once
// A glTF light's values over time.
#include <algorithm>
#include <optional>

#include "io/gltf/channels.h"
#include "io/gltf/lights.h"
#include "io/gltf/timeline.h"

namespace zam::io::gltf {

class LightMotion {
  public:
    // Definition `index` of the file with the keys of what moves. Throws SceneError.
    LightMotion(Channels& channels, std::size_t index, const LightDefinition& definition);

    // Animated values that leave their bounds are held at them; `confined` is set when one did.
    [[nodiscard]] LightValues at(double seconds, bool* confined) const;

    [[nodiscard]] Variation color() const { return variation_of(color_); }
    [[nodiscard]] Variation intensity() const { return variation_of(intensity_); }
    [[nodiscard]] Variation range() const { return variation_of(range_); }
    [[nodiscard]] Variation cone() const {
        return std::max(variation_of(inner_angle_), variation_of(outer_angle_));
    }
    [[nodiscard]] Variation any() const { return std::max({color(), intensity(), range(), cone()}); }
    // What at() costs, and a layer's values made of it, in the units of Timeline::count_work.
    [[nodiscard]] double work() const;

  private:
    LightValues fixed_;
    std::optional<Track> color_, intensity_, range_, inner_angle_, outer_angle_;
};

}  // namespace zam::io::gltf
