// Frames as a whole: resolutions, sizes.
#include "tests/contract/zam_fixture.h"

namespace zam::test {
namespace {

Composition mixed_lights(int width, int height) {
    Composition comp = make_composition(width, height);
    const double w = width, h = height;
    for (int i = 0; i < 4; ++i) {
        Layer& point = add_point(comp, {w * (0.1 + 0.25 * i), h * 0.3, 100.0 * i});
        point.light.color = Color{1.0 - 0.2 * i, 0.4, 0.2 + 0.2 * i};
        point.light.intensity = 20.0;
        Layer& spot = add_spot(comp, {w * (0.9 - 0.25 * i), 0.05 * h, -50.0 * i}, {w * 0.5, h, 60.0});
        spot.light.color = Color{0.3, 1.0 - 0.2 * i, 0.5};
        spot.light.cone_angle = 25.0 + 10 * i;
        spot.light.cone_feather = 30.0 * i;
    }
    return comp;
}

TEST(Frames, HalfResolutionTakesEverySecondPixel) {
    Composition comp = mixed_lights(96, 54);
    Running running(comp);
    running.set("Spot Light Model",
                3);  // without the natural model's refinement, which is one of output pixels
    const Frame full = running.render(0, {.depth = Depth::bits16});
    const Frame half = running.render(0, {Depth::bits16, {1, 2}, {1, 2}});
    ASSERT_EQ(half.width, 48);
    ASSERT_EQ(half.height, 27);
    for (std::size_t y = 0; y < 27; ++y) {
        for (std::size_t x = 0; x < 48 * 4; ++x) {
            const std::size_t channel = x % 4, from = (2 * y * 96 + 2 * (x / 4)) * 4 + channel;
            ASSERT_NEAR(half.argb[y * 48 * 4 + x], full.argb[from], 1) << x << " " << y;
        }
    }
    // A quarter across and half down.
    const Frame thin = running.render(0, {Depth::bits16, {1, 4}, {1, 2}});
    EXPECT_EQ(thin.width, 24);
    EXPECT_NEAR(thin.argb[(13 * 24 + 12) * 4], full.argb[(26 * 96 + 48) * 4], 1);
}

TEST(Frames, NoLightsLeaveThemClear) {
    for (const Depth depth : {Depth::bits8, Depth::bits16}) {
        EXPECT_TRUE(is_black(Running(make_composition()).render(0, {.depth = depth})));
    }
}

TEST(Frames, AnyWidthWorks) {
    for (const int width : {1, 2, 3, 255, 256, 257, 30000}) {
        const Frame frame = Running(mixed_lights(width, 3)).render(0, {.depth = Depth::bits16});
        EXPECT_TRUE(frame.outcome.ok()) << width;
        EXPECT_FALSE(is_black(frame)) << width;
    }
}

}  // namespace
}  // namespace zam::test
