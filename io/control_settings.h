#pragma once
// The effect's controls as files give them: in a scene, and alone as a preset.
#include <string>
#include <vector>

#include "host/composition/composition.h"
#include "io/json_document.h"

namespace zam::io {

// The settings of an object {"Look": "Strong", "Spot Lights": {"Reach": 800}}, in its order. Throws SceneError; whether
// there are such controls, and whether they take the values, is left to the host. Frames per second give the speeds of
// eased keys.
[[nodiscard]] std::vector<host::ControlSetting> read_controls(const JsonDocument& document,
                                                              const JsonValue& controls, double frame_rate);

// The settings of a preset file, {"note": "...", "controls": {...}}. Throws SceneError.
[[nodiscard]] std::vector<host::ControlSetting> read_preset(const std::string& file, double frame_rate);

}  // namespace zam::io
