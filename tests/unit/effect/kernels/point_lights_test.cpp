#include "effect/render/kernels/point_lights.h"

#include <gtest/gtest.h>

#include "tests/reference/point_glow.h"
#include "tests/unit/effect/kernels/random_scene.h"

namespace zam {
namespace {

struct PointCase {
    double dx = 0.0, dy = 0.0, a = 1.0;
    _VisLightStruct light;
    _OptPointData opt;
    PointSettings settings;
};

void derive(PointCase& c) {
    const double dist_sq = dot(c.light.pos, c.light.pos), r = c.light.radius, s = c.settings.sourceRadius;
    const double k = 100.0 * c.settings.softness + 1.0;
    const double over = c.light.intensity / (2.0 * r);
    c.a = c.dx * c.dx + c.dy * c.dy + 1.0;
    c.settings.softKSq = k * k;
    c.settings.softKRoot = 2.0 * std::pow(k, 0.25);
    c.opt.distSqMinusRadiusSq = dist_sq - r * r;
    c.opt.distSqMinusSourceRadiusSq = dist_sq - s * s;
    c.opt.colorOverDiameter = {c.light.color.x * over, c.light.color.y * over, c.light.color.z * over};
    c.opt.intensityOverDiameter = over;
    c.opt.softDenominator = 4.0 * (dist_sq + c.settings.softKSq);
    c.opt.colorIntensity = {c.light.color.x * c.light.intensity, c.light.color.y * c.light.intensity,
                            c.light.color.z * c.light.intensity};
}

PointCase random_point(test::Random& random, PointModel model) {
    PointCase c;
    c.light.pos = {random.between(-900, 900), random.between(-600, 600), random.between(-800, 3000)};
    c.light.color = {random.between(0, 1), random.between(0, 1), random.between(0, 1)};
    c.light.intensity = random.between(0.1, 1.5);
    c.light.sourceIntensity = random.between(0.1, 2);
    c.light.radius = random.over_decades(1, 1500);
    c.settings.model = model;
    c.settings.softness = random.between(0, 1) < 0.5 ? 0.0 : random.between(0, 1);
    c.settings.sourceRadius = random.over_decades(1, 300);
    // Half of the rays close to the light.
    const bool near = random.between(0, 1) < 0.5 && c.light.pos.z > 1.0;
    c.dx = near ? (c.light.pos.x + random.between(-50, 50)) / c.light.pos.z : random.between(-1, 1);
    c.dy = near ? (c.light.pos.y + random.between(-50, 50)) / c.light.pos.z : random.between(-1, 1);
    derive(c);
    return c;
}

double dot_ray(const PointCase& c) { return c.dx * c.light.pos.x + c.dy * c.light.pos.y + c.light.pos.z; }

double natural_alpha(const PointCase& c) {
    const double rp = dot_ray(c), rho_sq = NaturalRhoSquare<true>(c.a, rp, c.opt, c.settings);
    return AngleAbove(std::sqrt(rho_sq), -rp) / std::sqrt(rho_sq) * c.settings.softKRoot * c.light.intensity;
}

double chord(const PointCase& c, double dist_sq_minus_radius_sq) {
    return ChordInSphere(c.a, 1.0 / c.a, dot_ray(c), dist_sq_minus_radius_sq);
}
double glow_alpha(const PointCase& c) {
    return chord(c, c.opt.distSqMinusRadiusSq) * c.opt.intensityOverDiameter;
}
double source_alpha(const PointCase& c) {
    return chord(c, c.opt.distSqMinusSourceRadiusSq) * c.light.sourceIntensity /
           (2.0 * c.settings.sourceRadius);
}

// The reference renderer integrates, and finds the ends of chords by bisection.
TEST(PointLights, AreWhatQuadratureAndBisectionFind) {
    const std::tuple<PointModel, reference::PointModel, double (*)(const PointCase&), double> models[] = {
        {PointModel::natural, reference::PointModel::kNatural, natural_alpha, 1e-9},
        {PointModel::radius, reference::PointModel::kRadius, glow_alpha, 1e-7},
        {PointModel::source, reference::PointModel::kSource, source_alpha, 1e-7}};
    test::Random random(1);
    for (const auto& [model, of_reference, alpha, tolerance] : models) {
        const bool natural = model == PointModel::natural;
        for (int i = 0; i < (natural ? 3000 : 400); ++i) {
            PointCase c = random_point(random, model);
            if (!natural) c.settings.softness = 0.0;
            derive(c);
            const reference::PointGlow light{{c.light.pos.x, c.light.pos.y, c.light.pos.z},
                                             {1, 1, 1},
                                             c.light.intensity,
                                             c.light.sourceIntensity,
                                             c.light.radius};
            const reference::Controls controls{.point_model = of_reference,
                                               .softness = 100 * c.settings.softness,
                                               .source_radius = c.settings.sourceRadius};
            const auto expected = static_cast<double>(point_glow(controls, light, {c.dx, c.dy, 1}).alpha);
            ASSERT_NEAR(alpha(c), expected, tolerance * (natural ? expected : 2)) << "case " << i;
        }
    }
}

}  // namespace
}  // namespace zam
