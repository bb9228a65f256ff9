// The reference renderer against numbers worked out by hand.

#include "tests/reference/slow_renderer.h"

#include <gtest/gtest.h>

#include <cmath>
#include <initializer_list>
#include <numbers>

#include "tests/reference/quadrature.h"
#include "tests/reference/scene.h"
#include "tests/reference/spot_light.h"

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

TEST(Quadrature, KnownIntegrals) {
    for (const Real w : {1e-9L, 1.0L, 300.0L}) {
        const auto bell = [&](Real t) { return 1 / (t * t + w * w); };
        const auto from_to_infinity = [&](Real t) { return std::atan2(w, t) / w; };
        const auto wrong_by = [](Real got, Real want) {
            return static_cast<double>(std::fabs(got / want - 1));
        };
        for (const Real from : {-500.0L, 0.0L, 3 * w, 1000.0L}) {
            const Real tail = from_to_infinity(from);
            EXPECT_LT(wrong_by(integrate_to_infinity(bell, from, 0, w), tail), 1e-17) << double(from);
            const Real part = tail - from_to_infinity(9500);
            EXPECT_LT(wrong_by(integrate_around(bell, from, 9500, 0, w), part), 1e-17) << double(from);
        }
    }
}

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
Light crossing_spot(double feather = 0.0) {
    return {.spot = true,
            .pos = {-100, 0, 300},
            .dir = {1, 0, 0},
            .cone_angle = std::numbers::pi / 2,
            .cone_feather = feather};
}

// With a feather of 1 the inner cone is a line that the ray misses, and the weight is (c - cO) / (1 - cO).
TEST(SpotLight, FullyFeathered) {
    Light light = crossing_spot(1.0);
    light.pos[1] = 1e-3;  // the ray passes beside the axis, so it does not touch the inner cone
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

// In column 40 of the crossing spot a row's ray (0, y, 1) is inside while (y t)^2 + (t - 300)^2 <= 100^2: a
// stretch of half length sqrt(10000 - 80000 y^2) / (1 + y^2) around 300 / (1 + y^2), for y up to 0.35355 or
// row 44.14.  At a zoom of 40 row 44 hits and so do the samples at 43.4, 43.7; those at 44.3 and 44.6 miss.
// Row 45 hits nothing.
Stretch mean_of_rows(std::initializer_list<Real> rows) {
    Stretch sum;
    for (const Real row : rows) {
        const Real y = (row - 30) / 40;
        const Real middle = 300 / (1 + y * y);
        const Real half = std::sqrt(10000 - 80000 * y * y) / (1 + y * y);
        sum = {sum.near + middle - half, sum.far + middle + half};
    }
    const auto count = static_cast<Real>(rows.size());
    return {sum.near / count, sum.far / count};
}

TEST(RefinedStretch, EdgeOfTheCone) {
    Light light = crossing_spot();
    light.intensity = 10.0;  // the screen box then covers the middle column
    const Stretch mean = mean_of_rows({44, 43.4L, 43.7L});
    const Real middle = (mean.near + mean.far) / 2;
    const Real half = mean.length() * 3 / 5 / 2;
    const Real y = 14.0L / 40;  // the light is taken along the pixel's own ray
    const Real a = 1 + y * y;
    const Real root = std::sqrt(a * (90000 + 10001) - 90000);
    const auto primitive = [&](Real t) { return std::atan((a * t - 300) / root) / root; };
    const double want = static_cast<double>(600 * (primitive(middle + half) - primitive(middle - half)));
    EXPECT_REL(strength(light, linear(), 40, 44), want);
    EXPECT_EQ(strength(light, linear(), 40, 45), 0.0);

    // With a full feather the inner cone is empty, and at it the nearer pair of samples is cast: two of five
    // hit.
    const SpotCone spot = build_scene(small_view(), linear(), {}, {crossing_spot(1.0)}).spots.at(0);
    for (const int row : {44, 16}) {  // the lower and the upper edge
        const Stretch own = cone_stretch(ray_through(small_view(), 40, row), spot, spot.cos_outer);
        const Stretch edge = refined_stretch(small_view(), 40, row, spot, spot.cos_outer, own);
        EXPECT_NEAR(static_cast<double>(edge.length() / mean_of_rows({44, 43.4L}).length()), 0.4, 1e-15)
            << row;
    }
}

}  // namespace
}  // namespace zam::reference
