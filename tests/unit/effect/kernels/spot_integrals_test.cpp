#include "effect/render/kernels/spot_integrals.h"

#include <gtest/gtest.h>

#include "effect/render/kernels/cone.h"
#include "tests/reference/quadrature.h"
#include "tests/unit/effect/kernels/random_scene.h"

namespace zam {
namespace {

struct Integrals {
    double natural, natural_feather, distance, distance_feather, constant_feather;
};

Integrals closed_forms(const test::SpotCase& c, double t0, double t1) {
    const _RayOpt<double> opt = MakeRayOpt(c.dx, c.dy, 1.0, c.light);
    const double inv_root_a = 1.0 / std::sqrt(c.a);
    const FogRay<double> soft = MakeFogRay(c.a, inv_root_a, opt, c.opt, 1.0);
    const FogRay<double> sharp = MakeFogRay(c.a, inv_root_a, opt, c.opt, 0.0);
    const FogEnd<double> from = MakeFogEnd(soft, t0), to = MakeFogEnd(soft, t1);
    const NaturalFog<double> natural(soft);
    const DistanceFog<double> distance(soft);
    const ConstantFog<double> constant{sharp};
    const FogEnd<double> sharp_from = MakeFogEnd(sharp, t0), sharp_to = MakeFogEnd(sharp, t1);
    return {natural.IntegrateNatural(from, to),
            natural.IntegrateNaturalConeF(c.opt, from, natural.Rational(from), to, natural.Rational(to)),
            distance.Integrate(from, to),
            distance.IntegrateConeF(c.opt, from, distance.Logarithmic(from), to, distance.Logarithmic(to)),
            constant.IntegrateConeF(c.opt, sharp_from, constant.Logarithmic(sharp_from), sharp_to,
                                    constant.Logarithmic(sharp_to))};
}

// The same by quadrature of the definitions.
Integrals quadratures(const test::SpotCase& c, double t0, double t1) {
    const Vec3 &p = c.light.pos, &d = c.light.dir;
    const long double cos_outer = c.opt.cosOuter, cos_inner = c.opt.cosInner;
    const long double closest = (static_cast<long double>(c.dx) * p.x + c.dy * p.y + p.z) / c.a;
    const auto q0 = [&](long double t) {
        const long double x = t * c.dx - p.x, y = t * c.dy - p.y, z = t - p.z;
        return x * x + y * y + z * z;
    };
    const auto along = [&](long double t) {
        return (t * c.dx - p.x) * d.x + (t * c.dy - p.y) * d.y + (t - p.z) * d.z;
    };
    const auto weight = [&](long double t, long double root) {
        return (along(t) / root - cos_outer) / (cos_inner - cos_outer);
    };
    const auto integral = [&](auto f, long double width) {
        return static_cast<double>(reference::integrate_around(f, t0, t1, closest, width));
    };
    const long double soft = std::sqrt((q0(closest) + 1) / c.a), sharp = std::sqrt(q0(closest) / c.a);
    return {
        integral([&](long double t) { return 1 / (q0(t) + 1); }, soft),
        integral([&](long double t) { return weight(t, std::sqrt(q0(t) + 1)) / (q0(t) + 1); }, soft),
        integral([&](long double t) { return 1 / std::sqrt(q0(t) + 1); }, soft),
        integral([&](long double t) { return weight(t, std::sqrt(q0(t) + 1)) / std::sqrt(q0(t) + 1); }, soft),
        integral([&](long double t) { return weight(t, std::sqrt(q0(t))); }, sharp)};
}

// Absolute error against the size of what cancels: F(t1) - F(t0), and a division by cosInner - cosOuter.
TEST(SpotIntegrals, ClosedFormsAreTheIntegrals) {
    test::Random random(11);
    for (int i = 0; i < 5000; ++i) {
        const test::SpotCase c = test::random_spot(random);
        const double centre =
            std::max(0.0, (c.dx * c.light.pos.x + c.dy * c.light.pos.y + c.light.pos.z) / c.a);
        const double t0 = std::max(0.0, centre + random.between(-800, 800)),
                     t1 = t0 + random.over_decades(0.01, 2000);
        const Integrals got = closed_forms(c, t0, t1), expected = quadratures(c, t0, t1);
        const double feather = 1.0 / (c.opt.cosInner - c.opt.cosOuter);
        ASSERT_NEAR(got.natural, expected.natural, 1e-9 * (1e-3 + expected.natural)) << c;
        ASSERT_NEAR(got.distance, expected.distance, 1e-9 * (1 + expected.distance)) << c;
        ASSERT_NEAR(got.natural_feather, expected.natural_feather, 1e-8 * feather) << c;
        ASSERT_NEAR(got.distance_feather, expected.distance_feather, 1e-8 * feather) << c;
        ASSERT_NEAR(got.constant_feather, expected.constant_feather, 1e-8 * feather * (1 + t1 - t0)) << c;
    }
}

TEST(SpotIntegrals, EmptyStretchesAreZeroAndHalvesAddUp) {
    test::Random random(12);
    for (int i = 0; i < 500; ++i) {
        const test::SpotCase c = test::random_spot(random);
        const double t0 = random.between(0, 1000), t1 = t0 + 300, mid = t0 + 100;
        const Integrals none = closed_forms(c, t0, t0), whole = closed_forms(c, t0, t1);
        const Integrals left = closed_forms(c, t0, mid), right = closed_forms(c, mid, t1);
        for (double Integrals::*which :
             {&Integrals::natural, &Integrals::natural_feather, &Integrals::distance,
              &Integrals::distance_feather, &Integrals::constant_feather}) {
            ASSERT_EQ(none.*which, 0.0) << c;
            ASSERT_NEAR(left.*which + right.*which, whole.*which,
                        1e-9 * (1 + std::fabs(whole.*which) + std::fabs(left.*which)))
                << c;
        }
    }
}

TEST(SpotIntegrals, ConstantModelStaysFiniteThroughTheApex) {
    test::Random random(13);
    for (int i = 0; i < 20000; ++i) {
        test::SpotCase c = test::random_spot(random);
        c.light.pos.z = random.between(1, 3000);
        c.dx = c.light.pos.x / c.light.pos.z;
        c.dy = c.light.pos.y / c.light.pos.z;
        test::derive(c);
        // Beyond the apex the cosine stands still, so the integral is a length times the weight.
        const double apex = c.light.pos.z, length = 100.0;
        const double cosine = (c.dx * c.light.dir.x + c.dy * c.light.dir.y + c.light.dir.z) / std::sqrt(c.a);
        const double weight = (cosine - c.opt.cosOuter) / (c.opt.cosInner - c.opt.cosOuter);
        const double feather = 1.0 / (c.opt.cosInner - c.opt.cosOuter);
        ASSERT_NEAR(closed_forms(c, apex, apex + length).constant_feather, weight * length, 1e-4 * feather)
            << c;
    }
}

}  // namespace
}  // namespace zam
