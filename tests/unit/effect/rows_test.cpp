#include "effect/render/rows.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <limits>
#include <numbers>
#include <string>
#include <vector>

#include "tests/literal/literal_renderer.h"
#include "tests/literal/random_frame.h"

namespace zam {
namespace {

using literal::Boxes;
using literal::Cones;
using literal::Frame;
using literal::Scene;

// Every target renders as the literal renderer does: a channel may be off by one code, in one of a million.
struct Tally {
    long channels = 0, off_by_one = 0, wrong = 0;
    std::string first;  // wrong channel; one outside of the row is wrong in any case
};

class RowsTest : public testing::Test {
  protected:
    // Renders row y both ways, between guard pixels and over a pattern that shows which pixels are written.
    void Compare(const Frame& frame, A_long y, const std::string& what) {
        if (frame.data().deep) return CompareAs<A_u_short>(frame, y, what);
        CompareAs<A_u_char>(frame, y, what);
    }
    void CompareRows(const Frame& frame, A_long step, const std::string& what) {
        for (A_long y = 0; y < frame.data().height; y += step) Compare(frame, y, what);
    }

    void TearDown() override {
        for (std::size_t i = 0; i < tallies_.size(); ++i) {
            const Tally& tally = tallies_[i];
            const std::string name = RowTargets()[i].name;
            std::cout << name << ": " << tally.channels << " channels, " << tally.off_by_one
                      << " off by one, " << tally.wrong << " by more, "
                      << lit_ * 100 / std::max(1L, tally.channels) << " % lit\n";
            EXPECT_EQ(tally.wrong, 0) << name << ", first: " << tally.first;
            EXPECT_LE(tally.off_by_one, (tally.channels + 999999) / 1000000) << name;
        }
    }

    long lit_ = 0;  // channels that the literal renderer wrote

  private:
    template <class Channel>
    void CompareAs(const Frame& frame, A_long y, const std::string& what) {
        constexpr std::size_t kGuard = 4 * 16;  // channels, on either side
        const auto pattern = [](std::size_t i) { return static_cast<Channel>(i * 37 + 11); };
        const std::size_t size = 4 * static_cast<std::size_t>(frame.data().width);
        std::vector<Channel> blank(size + 2 * kGuard);
        for (std::size_t i = 0; i < blank.size(); ++i) blank[i] = pattern(i);

        std::vector<Channel> expected = blank;
        const auto first_pixel = [](std::vector<Channel>& row) {
            return reinterpret_cast<PF_Pixel*>(row.data() + kGuard);
        };
        literal::PixelFunc(const_cast<_RenderData*>(&frame.data()), 0, y, nullptr, first_pixel(expected));
        for (std::size_t i = 0; i < blank.size(); ++i) lit_ += expected[i] != blank[i];

        for (std::size_t t = 0; t < tallies_.size(); ++t) {
            std::vector<Channel> got = blank;
            RowTargets()[t].render(frame.data(), y, first_pixel(got));
            Tally& tally = tallies_[t];
            tally.channels += static_cast<long>(size);
            if (got == expected) continue;
            for (std::size_t i = 0; i < got.size(); ++i) {
                const int difference = std::abs(got[i] - expected[i]);
                if (difference == 0) continue;
                const bool outside = i < kGuard || i >= kGuard + size;
                if (difference == 1 && !outside) {
                    ++tally.off_by_one;
                } else if (++tally.wrong == 1) {
                    tally.first = what + " row " + std::to_string(y) + " channel " +
                                  std::to_string(static_cast<long>(i) - static_cast<long>(kGuard)) + ": " +
                                  std::to_string(got[i]) + ", literal " + std::to_string(expected[i]);
                }
            }
        }
    }

    std::vector<Tally> tallies_{RowTargets().size()};
};

template <class T, std::size_t n>
T OneOf(test::Random& random, const T (&choices)[n]) {
    return choices[static_cast<std::size_t>(random.between(0, n))];
}

// A light of either kind anywhere around the camera.
_VisLightStruct AnyLight(test::Random& random) {
    _VisLightStruct light;
    const double distance = random.over_decades(1, 20000);
    const Vec3 p = random.direction();
    light.pos = {p.x * distance, p.y * distance, p.z * distance};
    light.dir = random.direction();
    light.coneAngle = random.between(1, 179) * std::numbers::pi / 180;
    const double feathers[] = {0.0, 0.25, 0.5, 1.0};
    light.coneFeather = OneOf(random, feathers);
    light.radius = random.between(0, 1) < 0.05 ? 0.0 : random.over_decades(0.01, 3) * distance;
    light.color = {random.between(0, 1), random.between(0, 1), random.between(0, 1)};
    light.intensity = random.over_decades(0.02, 4);
    light.sourceIntensity = random.over_decades(0.02, 4);
    return light;
}

Scene AnyScene(test::Random& random) {
    const A_long widths[] = {1, 7, 8, 9, 255, 256, 257, 333};
    const double downsamples[] = {1.0, 0.5, 0.25};
    const Boxes boxes[] = {Boxes::own, Boxes::everywhere, Boxes::nowhere};
    Scene scene;
    scene.width = OneOf(random, widths);
    scene.height = static_cast<A_long>(random.between(1, 200));
    scene.downsample_x = OneOf(random, downsamples);
    scene.downsample_y = OneOf(random, downsamples);
    scene.aspect = random.between(0, 1) < 0.5 ? 1.0 : random.between(0.5, 2);
    scene.zoom = random.over_decades(50, 3000);
    scene.deep = random.between(0, 1) < 0.7;
    scene.look = Look{static_cast<std::int32_t>(random.between(1, 7))};
    scene.gamma = random.over_decades(0.3, 5);
    scene.boxes = OneOf(random, boxes);

    scene.points.model = static_cast<std::int32_t>(random.between(1, 6));
    scene.points.softness = random.between(0, 1) < 0.4 ? 0.0 : random.between(0, 1);
    scene.points.sourceRadius = random.between(0, 1) < 0.1 ? 0.0 : random.over_decades(1, 500);
    scene.spots.model = static_cast<std::int32_t>(random.between(1, 5));
    scene.spots.startDistance = random.between(0, 1) < 0.5 ? 0.0 : random.between(0, 200);
    scene.spots.reachActive = random.between(0, 1) < 0.4;
    scene.spots.reachBothSides = random.between(0, 1) < 0.5;
    const Vec3 p = random.direction();
    const double distance = random.over_decades(10, 3000);
    scene.reach = {{p.x * distance, p.y * distance, p.z * distance}, random.direction()};

    for (int i = static_cast<int>(random.between(0, 4)); i > 0; --i) {
        scene.point_lights.push_back(random.between(0, 1) < 0.6 ? literal::RandomPoint(random)
                                                                : AnyLight(random));
    }
    for (int i = static_cast<int>(random.between(0, 5)); i > 0; --i) {
        scene.spot_lights.push_back(AnyLight(random));
        if (random.between(0, 1) < 0.1) scene.spot_lights.back().pos = {0.0, 0.0, 0.0};  // at the camera
    }
    return scene;
}

TEST_F(RowsTest, RandomFrames) {
    for (unsigned seed = 1; seed <= 2500; ++seed) {
        test::Random random(seed);
        const Scene scene = AnyScene(random);
        CompareRows(Frame(scene), std::max(1, scene.height / 9), "seed " + std::to_string(seed));
    }
    EXPECT_GT(lit_, 1000000);
}

// The picture as it usually is: lights in view, beams that cross it, in every combination of models.
TEST_F(RowsTest, UsualFrames) {
    test::Random random(7);
    for (int point_model = 1; point_model <= 5; ++point_model) {
        for (int spot_model = 1; spot_model <= 4; ++spot_model) {
            for (const double feather : {0.0, 0.5, 1.0}) {
                Scene scene;
                scene.look = Look{(point_model + spot_model) % 6 + 1};
                scene.points.model = point_model;
                scene.points.softness = feather;
                scene.points.sourceRadius = 60.0;
                scene.spots.model = spot_model;
                literal::AddPoints(random, 2, &scene);
                literal::AddSpots(random, 3, Cones::typical, feather, &scene);
                literal::AddSpots(random, 1, Cones::filling, feather, &scene);
                literal::AddSpots(random, 2, Cones::outside, feather, &scene);
                CompareRows(Frame(literal::Resized(scene, 333, 187)), 6,
                            "models " + std::to_string(point_model) + " and " + std::to_string(spot_model) +
                                " feather " + std::to_string(feather));
            }
        }
    }
    EXPECT_GT(lit_, 1000000);
}

// Rays across the axis, through the apex, along a generator, and axes that point at the camera or away from it.
TEST_F(RowsTest, DegenerateRays) {
    const struct {
        const char* name;
        Vec3 pos, dir;
        double degrees, reach;
    } cones[] = {
        {"axis down, apex on a pixel", {0, 0, 100}, {0, 1, 0}, 60, 200},
        {"axis down, a row across the cone", {0, -25, 100}, {0, 1, 0}, 60, 200},
        {"axis down, a row across the cone, reach before the apex", {0, -25, 100}, {0, 1, 0}, 60, 90},
        {"axis to the right, a column across it", {-25, 0, 100}, {1, 0, 0}, 60, 200},
        {"axis at the camera", {0, 0, 100}, {0, 0, -1}, 30, 90},
        {"axis at the camera, camera inside", {0, 0, 100}, {0, 0, -1}, 90, 400},
        {"axis away from the camera", {0, 0, 100}, {0, 0, 1}, 30, 90},
        {"apex at the camera", {0, 0, 0}, {0, 0, 1}, 60, 90},
        {"apex at the camera, looking back", {0, 0, 0}, {0, 0, -1}, 60, 90},
        {"camera on the cone", {-100, 0, 0}, {0.5, 0, 0.8660254037844386}, 120, 900},
        {"a ray along a generator", {-50, 0, 100}, {0.5, 0, 0.8660254037844386}, 60, 900},
        {"camera inside, behind the apex", {30, 10, -100}, {0, 0, 1}, 70, 900},
        {"half space", {0, 25, 100}, {0, 1, 0}, 180, 300},
        {"no axis", {0, 0, 100}, {0, 0, 0}, 60, 300},
        {"long axis", {0, 0, 100}, {0, 100, 0}, 60, 3},
        {"far away", {3e4, 0, 4e4}, {-0.6, 0, -0.8}, 20, 1e6},
    };
    for (const auto& cone : cones) {
        for (const int model : {2, 3, 4}) {
            for (const double feather : {0.0, 0.5, 1.0}) {
                for (const Boxes boxes : {Boxes::nowhere, Boxes::everywhere}) {
                    // Pixels that fall on the apex, and rows and columns across the axis.
                    Scene scene{.width = 40, .height = 20, .zoom = 16.0};
                    scene.boxes = boxes;
                    scene.spots.model = model;
                    _VisLightStruct light;
                    light.pos = cone.pos;
                    light.dir = cone.dir;
                    light.coneAngle = cone.degrees * std::numbers::pi / 180;
                    light.coneFeather = feather;
                    light.radius = cone.reach;
                    light.color = {1.0, 0.5, 0.25};
                    light.intensity = 0.8;
                    scene.spot_lights = {light};
                    CompareRows(Frame(scene), 1,
                                std::string(cone.name) + ", model " + std::to_string(model) + " feather " +
                                    std::to_string(feather));
                }
            }
        }
    }
    EXPECT_GT(lit_, 50000);
}

// Columns that a cone cannot reach are passed over, and no others; also where positions on whole pixels and axes along
// the view's own make rows run exactly through apexes.
TEST_F(RowsTest, ConesAlongTheViewsAxes) {
    const Vec3 axes[] = {{1, 0, 0}, {-1, 0, 0}, {0, 1, 0},     {0, -1, 0},
                         {0, 0, 1}, {0, 0, -1}, {0.6, 0.8, 0}, {0.6, 0, 0.8}};
    test::Random random(41);
    const auto whole = [&](double low, double high) { return std::floor(random.between(low, high)); };
    for (int i = 0; i < 1500; ++i) {
        Scene scene{.width = 120, .height = 60, .zoom = 100.0};
        scene.spots.model = 2 + i % 3;
        scene.spots.startDistance = i % 5 == 0 ? 5.0 : 0.0;
        scene.look = Look::strong;
        scene.boxes = i % 4 == 0 ? Boxes::own : Boxes::nowhere;
        _VisLightStruct light = i % 3 ? AnyLight(random) : literal::RandomSpot(random, Cones::typical, 0.5);
        if (i % 3) {
            light.pos = {whole(-60, 60), whole(-30, 30), whole(-50, 300)};
            light.dir = OneOf(random, axes);
            light.radius = random.over_decades(5, 400);
            light.intensity = 40.0;
        }
        scene.spot_lights = {light};
        CompareRows(Frame(scene), i % 2 ? 1 : 7, "case " + std::to_string(i));
    }
    EXPECT_GT(lit_, 100000);
}

// Many blocks, and more spots than have their columns kept for the row.
TEST_F(RowsTest, WideRowsWithManySpots) {
    test::Random random(9);
    Scene scene;
    scene.spots.model = 2;
    literal::AddSpots(random, 300, Cones::typical, 0.5, &scene);
    Compare(Frame(literal::Resized(scene, 30000, 3)), 1, "30000 pixels, 300 spots");
    EXPECT_GT(lit_, 100000);
}

// Points so far away that rounding takes all of the glow's width from it, seen through pixels that hit them.
TEST_F(RowsTest, FarPoints) {
    const double far = 1 << 30;
    Scene scene{.width = 40, .height = 20, .zoom = 16.0};
    scene.points.model = 2;
    for (const Vec3 direction : {Vec3{0, 0, 1}, Vec3{0.75, 0, 1}, Vec3{0.25, -0.25, -1}}) {
        _VisLightStruct light;
        light.pos = {direction.x * far, direction.y * far, direction.z * far};
        light.color = {1.0, 0.5, 0.25};
        light.intensity = 0.01;
        scene.point_lights.push_back(light);
    }
    CompareRows(Frame(scene), 1, "far points");
    EXPECT_GE(lit_, 2 * 4);
}

// Lights whose codes or powers leave the usual ways.
TEST_F(RowsTest, OddStrengths) {
    const double infinity = std::numeric_limits<double>::infinity();
    const struct {
        double intensity, gamma;
        Vec3 color;
    } odd[] = {
        {infinity, 2.0, {0.0, 1.0, 0.4}},  // no number where its colour has nothing of it
        {-0.5, 2.0, {0.0, 1.0, 0.4}},      // takes light away
        {0.01, 0.5, {3.0, -2.0, 0.4}},     // keeps low bits, and the power of what is below zero
        {1e-8, 1.0, {1e12, -1e12, 2.0}},   // what no integer holds
        {1e-8, 0.02, {0.0, 1.0, 0.4}},     // its powers are lost: pixels stay as they were
    };
    test::Random random(9);
    for (const auto& [intensity, gamma, color] : odd) {
        for (int look = 1; look <= 6; ++look) {
            Scene scene{.width = 37, .height = 2, .zoom = 2000.0};
            scene.deep = look % 2;
            scene.look = Look{look};
            scene.gamma = gamma;
            scene.points.model = 2;
            literal::AddPoints(random, 1, &scene);
            scene.point_lights[0].color = color;
            scene.point_lights[0].intensity = intensity;
            const long before = lit_;
            CompareRows(Frame(scene), 1,
                        "intensity " + std::to_string(intensity) + " look " + std::to_string(look));
            if (gamma == 0.02 && scene.look >= Look::adjustable_linear) {
                EXPECT_EQ(lit_, before) << look;
            }
        }
    }
    EXPECT_GT(lit_, 0);
}

}  // namespace
}  // namespace zam
