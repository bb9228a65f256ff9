#include "effect/render/kernels/point_lights.h"

#include <gtest/gtest.h>

#include "tests/reference/quadrature.h"
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

// Squared distance of the ray's point at t from the light, in long double.
long double distance_sq(const PointCase& c, long double t) {
    const long double x = t * c.dx - c.light.pos.x, y = t * c.dy - c.light.pos.y, z = t - c.light.pos.z;
    return x * x + y * y + z * z;
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

TEST(PointLights, NaturalIsTheIntegralOfTheSoftenedInverseSquare) {
    test::Random random(1);
    for (int i = 0; i < 3000; ++i) {
        const PointCase c = random_point(random, PointModel::natural);
        const long double k_sq = c.settings.softKSq;
        const long double closest =
            (static_cast<long double>(c.dx) * c.light.pos.x + c.dy * c.light.pos.y + c.light.pos.z) / c.a;
        const long double width = std::sqrt((distance_sq(c, closest) + k_sq) / c.a);
        const long double glow =
            c.settings.softKRoot *
            reference::integrate_to_infinity([&](long double t) { return 1 / (distance_sq(c, t) + k_sq); }, 0,
                                             closest, width);
        const double expected = static_cast<double>(glow) * c.light.intensity;
        ASSERT_NEAR(natural_alpha(c), expected, 1e-9 * expected) << "case " << i;
    }
}

TEST(PointLights, NaturalStaysFiniteFarAway) {
    test::Random random(2);
    for (int i = 0; i < 2000; ++i) {
        PointCase c;
        const Vec3 far = random.direction();
        const double distance = random.over_decades(1e6, 1e30);
        c.light.pos = {far.x * distance, far.y * distance, far.z * distance};
        c.light.intensity = 1.0;
        c.settings.model = PointModel::natural;
        c.dx = far.z > 0.1 ? far.x / far.z : 0.0;
        c.dy = far.z > 0.1 ? far.y / far.z : 0.0;
        derive(c);
        ASSERT_TRUE(std::isfinite(natural_alpha(c))) << distance;
    }
}

TEST(PointLights, SphereModelsAreTheLengthInsideTheSphere) {
    test::Random random(3);
    for (int i = 0; i < 400; ++i) {
        PointCase c = random_point(random, i % 2 ? PointModel::radius : PointModel::source);
        c.settings.softness = 0.0;
        derive(c);
        const double radius = i % 2 ? c.light.radius : c.settings.sourceRadius;
        const double strength = i % 2 ? c.light.intensity : c.light.sourceIntensity;
        const long double closest = std::max(
            0.0L,
            (static_cast<long double>(c.dx) * c.light.pos.x + c.dy * c.light.pos.y + c.light.pos.z) / c.a);
        long double inside = 0;  // of [0, ...), by bisection from the closest point on either side
        const auto is_inside = [&](long double t) {
            return distance_sq(c, t) < static_cast<long double>(radius) * radius;
        };
        if (is_inside(closest)) {
            for (const long double end : {closest + 2 * radius, std::max(0.0L, closest - 2 * radius)}) {
                long double in = closest, out = end;
                if (is_inside(out)) in = out;
                for (int step = 0; step < 80 && !is_inside(out); ++step) {
                    const long double mid = (in + out) / 2;
                    (is_inside(mid) ? in : out) = mid;
                    if (in == out) break;
                }
                inside += std::fabs(in - closest);
            }
        }
        const double expected = static_cast<double>(inside) * strength / (2 * radius);
        ASSERT_NEAR(i % 2 ? glow_alpha(c) : source_alpha(c), expected, 1e-7 * strength) << "case " << i;
    }
}

}  // namespace
}  // namespace zam
