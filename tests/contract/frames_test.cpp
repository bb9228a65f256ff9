// Frames as a whole: sizes, many lights.
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

TEST(Frames, NoLightsLeaveThemClear) {
    for (const Depth depth : {Depth::bits8, Depth::bits16}) {
        EXPECT_TRUE(is_black(Running(make_composition()).render(0, {.depth = depth})));
    }
}

TEST(Frames, HoldHundredsOfSpots) {
    Composition few = make_composition();
    add_camera(few, {32, 18, -50}, {32, 18, 0}, 50);
    add_spot(few, {10, 5, 20}, {50, 30, 30});
    const Frame expected = Running(few).render();
    EXPECT_FALSE(is_black(expected));
    // The first that a row does not keep the columns of.
    for (int i = 0; i < 256; ++i) add_spot(few, {32, 18, -60}, {32, 18, -90}, "Behind the camera");
    EXPECT_EQ(Running(few).render().argb, expected.argb);
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
