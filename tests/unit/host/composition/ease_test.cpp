// Eased keys, against the Bezier curve drawn point by point and against shapes known in closed form.
#include <gtest/gtest.h>

#include <random>

#include "host/composition/animated.h"

namespace zam::host {
namespace {

Animated<double> two_keys(double from_frame, double from, std::optional<Ease> out, double to_frame, double to,
                          std::optional<Ease> in) {
    Animated<double> value;
    value.keys = {{from_frame, from, Interpolation::linear, {}, out},
                  {to_frame, to, Interpolation::linear, in, {}}};
    return value;
}

struct Point {
    long double x, y;
};
Point between(Point a, Point b, long double u) { return {a.x + (b.x - a.x) * u, a.y + (b.y - a.y) * u}; }
// De Casteljau: no equation is solved, the curve's parameter is chosen.
Point on_curve(Point a, Point b, Point c, Point d, long double u) {
    const Point ab = between(a, b, u), bc = between(b, c, u), cd = between(c, d, u);
    return between(between(ab, bc, u), between(bc, cd, u), u);
}

TEST(Ease, GoesAlongTheBezierCurveOfBothHandles) {
    std::mt19937 random(11);
    const auto draw = [&](double least, double most) {
        return std::uniform_real_distribution<double>(least, most)(random);
    };
    for (int run = 0; run < 200; ++run) {
        const double from = draw(-50, 50), span = draw(0.5, 200), a = draw(-300, 300), b = draw(-300, 300);
        const Ease out{draw(-9, 9), draw(0, 0.95)}, in{draw(-9, 9), draw(0, 0.95)};
        const Animated<double> value = two_keys(from, a, out, from + span, b, in);
        const Point start{from, a}, end{from + span, b};
        const Point first{from + out.influence * span, a + out.influence * span * out.speed};
        const Point second{from + span - in.influence * span, b - in.influence * span * in.speed};
        for (long double u = 0.03L; u < 1.0L; u += 0.06L) {
            const Point p = on_curve(start, first, second, end, u);
            const auto frame = static_cast<double>(p.x);
            EXPECT_NEAR(value.at(frame), static_cast<double>(p.y), 1e-8) << "run " << run << " u " << u;
        }
    }
}

TEST(Ease, KnownShapes) {
    const Ease easy{0.0, 1.0 / 3.0};
    const Animated<double> s_curve = two_keys(10, 100, easy, 30, 200, easy);
    EXPECT_EQ(s_curve.at(10), 100.0);
    EXPECT_EQ(s_curve.at(30), 200.0);

    // A side without an ease keeps to the straight line.
    const Animated<double> one_side = two_keys(0, 0, {}, 10, 20, easy);
    EXPECT_NEAR(one_side.at(1e-6) / 1e-6, 2.0, 1e-4);
    EXPECT_NEAR((20 - one_side.at(10 - 1e-6)) / 1e-6, 0.0, 1e-4);
    const Animated<double> line = two_keys(0, 0, Ease{2.0, 0.7}, 10, 20, Ease{2.0, 0.1});
    EXPECT_NEAR(line.at(3.7), 7.4, 1e-12);

    // Full influence on both sides: time stands still in the middle.
    const Animated<double> jump = two_keys(0, 0, Ease{0.0, 1.0}, 10, 1, Ease{0.0, 1.0});
    double before = 0.0;
    for (double frame = 0.0; frame <= 10.0; frame += 0.01) {
        EXPECT_GE(jump.at(frame), before) << frame;
        before = jump.at(frame);
    }
    EXPECT_NEAR(jump.at(5.0), 0.5, 1e-5);

    Animated<double> held = s_curve;
    held.keys[0].interpolation = Interpolation::hold;
    EXPECT_EQ(held.at(29.9), 100.0);
}

TEST(Ease, PointsAndColoursEaseByTheDistance) {
    Animated<Vec3> point;  // 50 pixels to go
    point.keys = {{0, {10, 0, 0}, Interpolation::linear, {}, Ease{2.0, 0.3}},
                  {20, {40, 40, 0}, Interpolation::linear, Ease{7.0, 0.5}, {}}};
    const Animated<double> way = two_keys(0, 0, Ease{2.0, 0.3}, 20, 50, Ease{7.0, 0.5});
    for (const double frame : {1.0, 7.5, 19.0}) {
        EXPECT_NEAR(point.at(frame).x, 10 + 30 * way.at(frame) / 50, 1e-12);
        EXPECT_NEAR(point.at(frame).y, 40 * way.at(frame) / 50, 1e-12);
    }
    point.keys[1].value = point.keys[0].value;
    EXPECT_EQ(point.at(5), point.keys[0].value);

    Animated<Color> color;
    color.keys = {{0, {0, 0, 0.5}, Interpolation::linear, {}, Ease{-0.5, 0.5}},
                  {10, {1, 0, 0.5}, Interpolation::linear, Ease{}, {}}};
    EXPECT_EQ(color.at(1), (Color{0, 0, 0.5})) << "below 0";
}

TEST(Ease, NumbersStayWithinTheirRange) {
    Animated<double> angle = two_keys(0, 170, Ease{90.0, 0.5}, 10, 170, Ease{});
    EXPECT_GT(angle.at(2), 180.0);
    angle.least = 0.0;
    angle.most = 180.0;
    EXPECT_EQ(angle.at(2), 180.0);
}

}  // namespace
}  // namespace zam::host
