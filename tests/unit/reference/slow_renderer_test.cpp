// The reference renderer against numbers worked out by hand.

#include "tests/reference/slow_renderer.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

namespace zam::reference {
namespace {

constexpr double kExact = 1e-14;  // relative, for numbers that leave the renderer as double

// An 80 x 60 view with a zoom of 40: the ray of pixel (x, y) is ((x - 40) / 40, (y - 30) / 40, 1).
View small_view() { return {.zoom = 40.0, .width = 80, .height = 60}; }

Controls linear() { return {.look = Look::kLinear}; }

// Light summed up in pixel (x, y): alpha of the "Linear" look, not cut at 1.
double strength(const Light& light, const Controls& controls, int x, int y, const Reach& reach = {}) {
    const View view = small_view();
    const Frame frame = render(view, controls, reach, {light});
    return frame.sums.at(4 * static_cast<std::size_t>(y * view.width + x));
}

#define EXPECT_REL(got, want) EXPECT_NEAR(got, want, kExact* std::fabs(want))

// The ray of pixel (70, 30) is (0.75, 0, 1), 1.25 long; (0.8, 0, -0.6) is across it.  The light is 60 beside
// the point at t = 400, so a radius of 100 gives a chord of 160 pixels, 128 in t.
TEST(PointGlow, SlantedChord) {
    const Light light{.pos = {348, 0, 364}, .color = {0.5, 0.25, 1.0}, .intensity = 0.5};
    Controls controls = linear();
    controls.point_model = PointModel::kRadius;
    EXPECT_REL(strength(light, controls, 70, 30), 0.5 * 128.0 / 200.0);
    controls.individual_radius = Individual::kIntensityMult;  // radius 50: misses by 10
    EXPECT_EQ(strength(light, controls, 70, 30), 0.0);

    controls = linear();
    controls.point_model = PointModel::kRadiusAndSource;
    controls.source_radius = 100.0;
    controls.softness = 100.0;  // shapes the glow (0.32 of full), not the source
    const double s = 1.0 - std::sqrt(1.0 - 0.32 * 0.32);
    EXPECT_REL(strength(light, controls, 70, 30), s * s * (3 - 2 * s) + 0.25 * 0.64);
}

// A spot 100 left of the middle ray and 300 deep, shining to the right: the ray crosses a 90 degree cone at
// t = 200 .. 400, with s = t - 300 the distance^2 is s^2 + 100^2 and the cosine to the axis 100 / distance.
// With a feather of 1 the inner cone is a line that the ray misses, and the weight is (c - cO) / (1 - cO).
TEST(SpotLight, FullyFeathered) {
    const Light light{.spot = true,
                      .pos = {-100, 1e-3, 300},  // beside the axis, so that the inner cone is not touched
                      .dir = {1, 0, 0},
                      .cone_angle = std::numbers::pi / 2,
                      .cone_feather = 1.0};
    const double g = std::sqrt(1e4 + 1e-6);
    const double h = std::sqrt(1e4 + 1e-6 + 1.0);
    const double c = std::sqrt(0.5);
    const double end = std::sqrt(1e4 - 1e-6);  // where the ray leaves the outer cone
    Controls controls = linear();
    const double natural = 100 * 2 * end / (h * h * std::hypot(end, h)) - c * 2 / h * std::atan(end / h);
    EXPECT_NEAR(strength(light, controls, 40, 30), 60 * natural / (1 - c), 1e-14);
    controls.spot_model = SpotModel::kDistance;
    const double distance = 100 * 2 / h * std::atan(end / h) - c * 2 * std::asinh(end / h);
    EXPECT_NEAR(strength(light, controls, 40, 30), distance / (1 - c), 1e-14);
    controls.spot_model = SpotModel::kConstant;
    const double constant = 100 * 2 * std::asinh(end / g) - c * 2 * end;
    EXPECT_NEAR(strength(light, controls, 40, 30), constant / (1 - c) / 400, 1e-14);
}

// A beam along the view with the middle ray on its axis: from start distance to reach, or to the reach layer.
TEST(SpotLight, CapsOnTheAxis) {
    const Light ahead{.spot = true, .pos = {0, 0, 100}, .dir = {0, 0, 1}, .cone_angle = 0.5};
    const Light facing{.spot = true, .pos = {0, 0, 600}, .dir = {0, 0, -1}, .cone_angle = 0.5};
    Controls controls = linear();
    EXPECT_NEAR(strength(ahead, controls, 40, 30), 60 * (std::atan(400.0) - std::atan(10.0)), 1e-12);
    EXPECT_NEAR(strength(facing, controls, 40, 30), 60 * (std::atan(400.0) - std::atan(10.0)), 1e-12);

    controls.spot_model = SpotModel::kConstant;
    const double scale = std::max(400 * std::tan(0.25), 200 * std::cos(0.25));
    controls.reach_comp_layer = true;
    const Reach away{.found = true, .point = {0, 0, 350}, .normal = {0, 0, 2}};
    const Reach toward{.found = true, .point = {0, 0, 350}, .normal = {0, 0, -2}};
    EXPECT_REL(strength(ahead, controls, 40, 30, {}), 390 / scale);  // no layer: the reach counts
    EXPECT_REL(strength(ahead, controls, 40, 30, away), 240 / scale);
    EXPECT_REL(strength(ahead, controls, 40, 30, toward), 240 / scale);
    EXPECT_REL(strength(facing, controls, 40, 30, away), 240 / scale);
    controls.reach_both_sides = false;  // only what lies behind the normal is lit
    EXPECT_REL(strength(facing, controls, 40, 30, away), 350 / scale);
    EXPECT_REL(strength(ahead, controls, 40, 30, toward), (1e7 - 350) / scale);
}

}  // namespace
}  // namespace zam::reference
