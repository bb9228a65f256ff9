#include "effect/render/kernels/point_lights.h"

#include <gtest/gtest.h>

#include "tests/literal/random_frame.h"
#include "tests/reference/point_glow.h"

namespace zam {
namespace {

// A light anywhere around the camera, of white.
_VisLightStruct random_light(test::Random& random) {
    _VisLightStruct light;
    light.pos = {random.between(-900, 900), random.between(-600, 600), random.between(-800, 3000)};
    light.color = {1.0, 1.0, 1.0};
    light.intensity = random.between(0.1, 1.5);
    light.sourceIntensity = random.between(0.1, 2);
    light.radius = random.over_decades(1, 1500);
    return light;
}

// The reference renderer integrates, and finds the ends of chords by bisection.
TEST(PointLights, AreWhatQuadratureAndBisectionFind) {
    const literal::MathsHost host;
    test::Random random(1);
    for (int i = 0; i < 3000; ++i) {
        const _VisLightStruct light = random_light(random);
        const Vec3& p = light.pos;
        const double softness = random.between(0, 1) < 0.5 ? 0.0 : random.between(0, 1);
        const double source = random.over_decades(1, 300), k = 100.0 * softness + 1.0;
        const bool near = random.between(0, 1) < 0.5 && p.z > 1.0;  // half of the rays pass close by
        const double dx = near ? (p.x + random.between(-50, 50)) / p.z : random.between(-1, 1);
        const double dy = near ? (p.y + random.between(-50, 50)) / p.z : random.between(-1, 1);

        _LightData all;
        all.count = 1;
        all.sourceRadius = source;
        _OptPointData opt;
        PreparePoints(HostMaths(&host.in_data), k * k, all, &light, &opt);
        const double a = dx * dx + dy * dy + 1.0, rp = dx * p.x + dy * p.y + p.z;
        const PointSettings settings{.softKSq = k * k};
        const double rho = std::sqrt(NaturalRhoSquare<true>(a, rp, opt, settings));
        const auto chord = [&](double c) { return ChordInSphere(a, 1.0 / a, rp, c); };

        const auto expect = [&](reference::PointModel model, double alpha, double tolerance) {
            const reference::PointGlow glow{
                {p.x, p.y, p.z}, {1, 1, 1}, light.intensity, light.sourceIntensity, light.radius};
            const reference::Controls controls{
                .point_model = model, .softness = 100.0 * softness, .source_radius = source};
            const auto expected = static_cast<double>(point_glow(controls, glow, {dx, dy, 1}).alpha);
            ASSERT_NEAR(alpha, expected, tolerance * std::max(1e-3, expected)) << "case " << i;
        };
        expect(reference::PointModel::kNatural,
               AngleAbove(rho, -rp) / rho * 2.0 * std::pow(k, 0.25) * light.intensity, 1e-9);
        expect(reference::PointModel::kRadius,
               SoftEdge(chord(opt.distSqMinusRadiusSq) * opt.intensityOverDiameter, softness), 1e-6);
        expect(reference::PointModel::kSource,
               chord(opt.distSqMinusSourceRadiusSq) * light.sourceIntensity / (2.0 * source), 1e-6);
    }
}

}  // namespace
}  // namespace zam
