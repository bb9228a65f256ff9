#pragma once
// The streams of a layer: which it has, and their values.
#include <optional>
#include <variant>

#include "host/composition/composition.h"
#include "hostapi/constants.h"
#include "hostapi/scene_values.h"

namespace zam::host {

// Points into the layer; a plain number is a property that is the same for all layers here.
using StreamData = std::variant<Animated<double>*, Animated<Vec3>*, Animated<Color>*, bool*, double>;

struct LayerStreamData {
    StreamData data;
    AEGP_StreamType type = AEGP_StreamType_OneD;
};

// Nothing when a layer of that kind has no such stream. Cameras and lights keep their point of interest where
// others have their anchor point.
[[nodiscard]] std::optional<LayerStreamData> find_stream(Layer& layer, AEGP_LayerStream stream);

[[nodiscard]] AEGP_StreamVal value_at(const StreamData& data, double frame);
// Keyframes, 0 for a constant; AEGP_NumKF_NO_DATA for what cannot have any.
[[nodiscard]] A_long keyframes(const StreamData& data);
// Frame of a keyframe; nothing beyond the last.
[[nodiscard]] std::optional<double> keyframe_frame(const StreamData& data, A_long index);
// False for a stream that is keyframed or fixed.
[[nodiscard]] bool set_value(const StreamData& data, const AEGP_StreamVal& value);

}  // namespace zam::host
