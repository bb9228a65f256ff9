#pragma once
// What a glTF file says of its lights and cameras.
#include <string>
#include <vector>

#include "host/composition/composition.h"
#include "io/gltf/container.h"

namespace zam::io::gltf {

// What animation may change of a light.
struct LightValues {
    host::Color color;                            // linear, 0 to 1
    double intensity = 1.0;                       // candela; lux for parallel lights
    double range = 0.0;                           // metres; 0 = without end
    double inner_angle = 0.0, outer_angle = 0.0;  // spots: radians from the axis, inner <= outer <= pi/2
};

struct LightDefinition {
    std::string name;
    host::LightType type = host::LightType::point;  // point, spot or parallel
    LightValues values;
};

struct CameraDefinition {
    std::string name;
    bool perspective = true;
    double yfov = 0.0;          // radians, the full vertical angle
    double aspect_ratio = 0.0;  // 0 = not given
};

// The lights' definitions; empty when the file has none. Throws SceneError.
[[nodiscard]] const std::vector<JsonValue>& light_list(const Container& file);

// Both check every definition, used or not, and throw SceneError; `warnings` gains what is ignored.
[[nodiscard]] std::vector<LightDefinition> read_lights(const Container& file,
                                                       std::vector<std::string>& warnings);
[[nodiscard]] std::vector<CameraDefinition> read_cameras(const Container& file);

}  // namespace zam::io::gltf
