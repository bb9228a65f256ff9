#include "effect/render/spans.h"

#include <gtest/gtest.h>

#include "tests/literal/literal_renderer.h"
#include "tests/literal/random_frame.h"

namespace zam {
namespace {

using literal::Cones;
using literal::Scene;

// The columns that one light alone lights, by the literal renderer.
Columns lit_columns(const literal::Frame& frame, A_long y) {
    std::vector<PF_Pixel16> row(static_cast<std::size_t>(frame.data().width));
    literal::PixelFunc(const_cast<_RenderData*>(&frame.data()), 0, y, nullptr,
                       reinterpret_cast<PF_Pixel*>(row.data()));
    Columns lit{0, 0};
    for (int x = 0; x < frame.data().width; ++x) {
        const PF_Pixel16& p = row[static_cast<std::size_t>(x)];
        if (!(p.alpha | p.red | p.green | p.blue)) continue;
        lit = lit.end == 0 ? Columns{x, x + 1} : Columns{lit.first, x + 1};
    }
    return lit;
}

// Positions and axes on whole pixels and along the view's own axes, where rows run exactly through apexes.
_VisLightStruct aligned_spot(test::Random& random) {
    const Vec3 axes[] = {{1, 0, 0}, {-1, 0, 0}, {0, 1, 0},     {0, -1, 0},
                         {0, 0, 1}, {0, 0, -1}, {0.6, 0.8, 0}, {0.6, 0, 0.8}};
    _VisLightStruct light;
    const auto whole = [&](double low, double high) { return std::floor(random.between(low, high)); };
    light.pos = {whole(-60, 60), whole(-30, 30), whole(-50, 300)};
    light.dir = axes[static_cast<std::size_t>(random.between(0, 8))];
    light.coneAngle = random.between(2, 175) * kPi / 180;
    light.coneFeather = random.between(0, 1) < 0.5 ? 0.0 : 0.5;
    light.radius = random.over_decades(5, 400);
    light.color = {1, 1, 1};
    light.intensity = 40.0;
    return light;
}

TEST(Spans, HoldEveryLitColumn) {
    test::Random random(41);
    long lit_rows = 0;
    for (int i = 0; i < 1500; ++i) {
        Scene scene;
        scene.width = 120;
        scene.height = 60;
        scene.zoom = 100;
        scene.spots.model = 2 + i % 3;
        scene.spots.startDistance = i % 5 == 0 ? 5.0 : 0.0;
        scene.points.model = 1;
        scene.look = Look::strong;
        scene.boxes = i % 4 == 0 ? literal::Boxes::own : literal::Boxes::nowhere;
        scene.spot_lights.push_back(i % 3 ? aligned_spot(random)
                                          : literal::RandomSpot(random, Cones::typical, 0.5));
        const literal::Frame frame(scene);
        for (A_long y = 0; y < scene.height; y += i % 2 ? 1 : 7) {
            const Columns lit = lit_columns(frame, y), columns = SpotColumns(frame.data(), 0, y);
            if (lit.end == 0) continue;
            ++lit_rows;
            ASSERT_TRUE(columns.first <= lit.first && lit.end <= columns.end)
                << "case " << i << " row " << y << " lit " << lit.first << ".." << lit.end << " columns "
                << columns.first << ".." << columns.end;
        }
    }
    EXPECT_GT(lit_rows, 10000);
}

// Work, not time: how many pixels are looked at.
TEST(Spans, LookAtLittleMoreThanTheLight) {
    Scene scene;
    scene.width = 1920;
    scene.height = 1080;
    scene.zoom = 2000;
    scene.points.model = 3;
    scene.spots.model = 1;
    _VisLightStruct ball;
    ball.pos = {300, 100, 2000};
    ball.radius = 40;
    ball.intensity = 1;
    scene.point_lights.push_back(ball);
    const literal::Frame frame(scene);
    long looked_at = 0;
    for (A_long y = 0; y < 1080; ++y) {
        const Columns columns = SphereColumns(frame.data(), ball.pos, ball.radius, y);
        looked_at += std::max(0, columns.end - columns.first);
    }
    const double area = kPi * 40 * 40;
    EXPECT_GT(looked_at, area);
    EXPECT_LT(looked_at, area + 81 * 5);

    test::Random random(42);
    long outside = 0;
    for (int i = 0; i < 64; ++i) {
        Scene beam = scene;
        beam.points.model = 1;
        beam.spots.model = 2;
        beam.point_lights.clear();
        beam.boxes = literal::Boxes::nowhere;
        beam.spot_lights.push_back(literal::RandomSpot(random, Cones::outside, 0.5));
        const literal::Frame picture(beam);
        for (A_long y = 0; y < 1080; y += 10) {
            const Columns columns = SpotColumns(picture.data(), 0, y);
            outside += std::max(0, columns.end - columns.first);
        }
    }
    EXPECT_LT(outside, 64 * 108 * 1920 / 50) << "pixels looked at for lights outside the picture: over 2 %";
}

}  // namespace
}  // namespace zam
