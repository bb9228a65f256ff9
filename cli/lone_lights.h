#pragma once
// One pixel of a frame, with all lights and with each of them alone. Only in the look Linear do lights add up: the
// others square them or bend the sum.
#include <string>
#include <vector>

#include "cli/open_scene.h"

namespace zam::cli {

// Straight colour with alpha, fractions of full scale in steps of 1/32768.
struct PixelColor {
    double alpha = 0.0;
    host::Color color{0.0, 0.0, 0.0};
};

struct LoneLight {
    host::LayerId layer = 0;
    PixelColor alone;       // the pixel, with this light only
    double light = 0.0;     // what it adds in the look Linear, 1 as full; negative: what it takes away
    bool at_least = false;  // it adds more than can be rendered
};

struct ExplainedPixel {
    PixelColor all;                      // the pixel of the frame as it is
    std::string look;                    // that it has
    std::vector<LoneLight> lights;       // those that take part, from the top of the stack
    [[nodiscard]] double light() const;  // what all lights add together, those that take some away left out
};

// Renders the frame twice for each light that takes part, and leaves the session in the look Linear. x and y lie
// within the frame. Throws host::PluginError, and Interrupted.
[[nodiscard]] ExplainedPixel explain_pixel(OpenScene& scene, int frame, int x, int y);

}  // namespace zam::cli
