#pragma once
// What reading a scene file gives, and the choices that the file itself leaves open.
#include <optional>
#include <string>
#include <vector>

#include "host/composition/composition.h"

namespace zam::io {

struct Scene {
    host::Composition composition;
    std::vector<std::string> warnings;  // what the file says and is left out, one line each
    std::vector<std::string> notes;     // choices made while reading that the user may want to change
};

// glTF knows neither pixels nor frames, and brightness in candela only.
struct GltfOptions {
    int width = 1920, height = 1080;    // of the composition, pixels
    host::Ratio frame_rate{24, 1};      // frames per second
    double pixels_per_metre = 100.0;    // 0.001 to 100,000
    std::optional<double> light_scale;  // candela for 100 %, 1e-12 to 1e12; none: the brightest light
    std::string camera;                 // name of the camera to look through; empty: the first
};

}  // namespace zam::io
