#pragma once
// The scenes whose rows are timed.
#include <string>
#include <vector>

#include "tests/literal/random_frame.h"

namespace zam::bench {

struct Case {
    std::string name;
    literal::Scene scene;
    int lights = 0;  // pixel-lights per pixel
};

// Eight lights of one kind each, 1920 x 1080, 16 bits, look "Natural".
std::vector<Case> LightCases();

// As many point lights and "Natural" spot lights with a feather of 50 %, in typical beams.
literal::Scene MixedScene(int points, int spots);

// Four point lights alone, and with 64 spot lights outside the picture.
literal::Scene FourPoints(bool with_outside_spots);

// A sphere around the camera: all pixels are lit, none in full.
literal::Scene SphereAroundTheCamera(Look look);

// The scene with lights of strength 0: they cost what they cost, but leave nothing to finish. No target looks at a
// light's strength before it has computed its light.
literal::Scene Dark(literal::Scene scene);

}  // namespace zam::bench
