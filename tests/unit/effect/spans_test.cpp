#include "effect/render/spans.h"

#include <gtest/gtest.h>

#include "tests/counted/work.h"
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

// The roots that a picture takes beyond the one of each pixel's ray. The look must take none itself.
long roots_of_lights(const Scene& scene, A_long step) {
    const literal::Frame frame(scene);
    std::vector<PF_Pixel16> row(static_cast<std::size_t>(scene.width));
    Work work;
    for (A_long y = 0; y < scene.height; y += step) {
        CountRow(frame.data(), y, reinterpret_cast<PF_Pixel*>(row.data()), &work);
        work.roots -= scene.width;
    }
    return work.roots + work.inverse_roots;
}

// Work, not time: what the renderer computes for pixels that a light cannot reach.
TEST(Spans, LeaveLittleWorkBesideTheLight) {
    Scene ball;
    ball.look = Look::linear;
    ball.points.model = static_cast<std::int32_t>(PointModel::radius);
    ball.point_lights.emplace_back();
    ball.point_lights[0].pos = {300, 100, 2000};
    ball.point_lights[0].radius = 40;
    ball.point_lights[0].intensity = 1;
    const double area = kPi * 40 * 40;
    const long roots = roots_of_lights(ball, 1);
    EXPECT_GT(roots, area);
    EXPECT_LT(roots, area + 81 * 5);

    test::Random random(42);
    Scene beams;
    beams.look = Look::linear;
    beams.boxes = literal::Boxes::nowhere;
    beams.spots.model = static_cast<std::int32_t>(SpotModel::natural);
    literal::AddSpots(random, 64, Cones::outside, 0.5, &beams);
    // A root for either cone.
    EXPECT_LT(roots_of_lights(beams, 10) / 2, 64 * 108 * 1920 / 50) << "over 2 % of the pixels outside";
}

}  // namespace
}  // namespace zam
