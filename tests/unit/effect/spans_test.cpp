#include "effect/render/spans.h"

#include <gtest/gtest.h>

#include "tests/counted/work.h"
#include "tests/literal/random_frame.h"

namespace zam {
namespace {

using literal::Cones;
using literal::Scene;

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
