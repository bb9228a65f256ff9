#include "effect/render/kernels/point_lights.h"

#include <gtest/gtest.h>

#include "tests/reference/quadrature.h"
#include "tests/unit/effect/kernels/random_scene.h"

namespace zam {
namespace {

const StdMaths maths;

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

Light4<double> render(const PointCase& c) {
    return PointLight(maths, c.dx, c.dy, c.a, c.light, c.opt, c.settings);
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
        const Light4<double> light = render(c);
        const double expected = static_cast<double>(glow) * c.light.intensity;
        ASSERT_NEAR(light.alpha, expected, 1e-9 * expected) << "case " << i;
        ASSERT_NEAR(light.green, expected * c.light.color.y, 1e-9 * expected) << "case " << i;
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
        ASSERT_TRUE(std::isfinite(render(c).alpha)) << distance;
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
        ASSERT_NEAR(render(c).alpha, expected, 1e-7 * strength) << "case " << i;
    }
}

TEST(PointLights, KnownValues) {
    PointCase c;  // straight ahead through the image centre
    c.light.pos = {0, 0, 1000};
    c.light.color = {1, 0.5, 0.25};
    c.light.intensity = 0.5;
    c.light.sourceIntensity = 2.0;
    c.light.radius = 100;
    c.settings.sourceRadius = 200;
    const auto alpha = [&](PointModel model, double softness) {
        c.settings.model = model;
        c.settings.softness = softness;
        derive(c);
        return render(c).alpha;
    };
    EXPECT_NEAR(alpha(PointModel::natural, 0.25),
                0.5 * (kPi + 2 * std::atan(1000 / 26.0)) * std::pow(26.0, -0.75), 1e-12);
    EXPECT_NEAR(alpha(PointModel::radius, 0.0), 0.5, 1e-12);
    EXPECT_NEAR(render(c).blue, 0.125, 1e-12);
    EXPECT_NEAR(alpha(PointModel::radius, 1.0), 0.0490, 5e-5);  // the soft edge at half strength
    EXPECT_NEAR(alpha(PointModel::source, 1.0), 2.0, 1e-12);    // which the source ball does not have
    EXPECT_NEAR(alpha(PointModel::radius_source, 0.0), 2.5,
                1e-12);  // even where the source is the larger ball
    EXPECT_EQ(alpha(PointModel::off, 0.0), 0.0);
    c.light.pos.z = 50;  // camera inside the sphere: from the eye to the far side
    EXPECT_NEAR(alpha(PointModel::radius, 0.0), 0.5 * 150 / 200, 1e-12);
    c.light.pos.z = -1000;  // behind: no sphere, but the tail of the natural glow
    EXPECT_EQ(alpha(PointModel::radius, 0.0), 0.0);
    EXPECT_GT(alpha(PointModel::natural, 0.0), 0.0);
}

TEST(PointLights, ASphereWithoutSizeAddsNothing) {
    test::Random random(4);
    for (int i = 0; i < 20000; ++i) {
        PointCase c = random_point(random, PointModel::radius_source);
        c.light.radius = c.settings.sourceRadius = 0.0;
        c.dx = c.light.pos.x /
               c.light.pos.z;  // through its centre, where rounding decides the discriminant's sign
        c.dy = c.light.pos.y / c.light.pos.z;
        derive(c);
        const Light4<double> light = render(c);
        ASSERT_TRUE(light.alpha == 0.0 && light.red == 0.0) << i;
    }
}

}  // namespace
}  // namespace zam
