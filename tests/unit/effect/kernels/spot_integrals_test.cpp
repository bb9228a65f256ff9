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

// The three models along one ray.
struct Fogs {
    NaturalFog<double> natural;
    DistanceFog<double> distance;
    ConstantFog<double> constant;

    explicit Fogs(const test::SpotCase& c) : Fogs(c, MakeRayOpt(c.dx, c.dy, 1.0, c.light)) {}

  private:
    Fogs(const test::SpotCase& c, const _RayOpt<double>& ray)
        : natural(Along(c, ray, 1.0)), distance(Along(c, ray, 1.0)), constant{Along(c, ray, 0.0)} {}
    static FogRay<double> Along(const test::SpotCase& c, const _RayOpt<double>& ray, double softening) {
        return MakeFogRay(c.a, 1.0 / std::sqrt(c.a), ray.rayDotAxis, ray.rayDotPos, c.opt, softening);
    }
};

// w over a stretch, from the integrals of the cosine and of 1.
template <class Fog, class... Ends>
double feather(const _OptSpotData& cone, const Fog& fog, double plain, const Ends&... ends) {
    return (fog.IntegrateCosine(ends...) - cone.cosOuter * plain) * cone.invFeather;
}

Integrals closed_forms(const test::SpotCase& c, double t0, double t1) {
    const Fogs fog(c);
    const auto n0 = fog.natural.At(t0), n1 = fog.natural.At(t1);
    const auto d0 = fog.distance.At(t0), d1 = fog.distance.At(t1);
    const auto c0 = fog.constant.At(t0), c1 = fog.constant.At(t1);
    const double natural = fog.natural.Integrate(n0, n1), distance = fog.distance.Integrate(d0, d1);
    return {natural, feather(c.opt, fog.natural, natural, n0, n1), distance,
            feather(c.opt, fog.distance, distance, d0, d1), feather(c.opt, fog.constant, t1 - t0, c0, c1)};
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

// The near and the far stretch of a feather in one, against one after the other.
TEST(SpotIntegrals, TwoStretchesInOneAreTheSumOfBoth) {
    test::Random random(14);
    for (int i = 0; i < 5000; ++i) {
        const test::SpotCase c = test::random_spot(random);
        double t[4] = {random.between(0, 500), 0, 0, 0};
        for (int n = 1; n < 4; ++n)
            t[n] = t[n - 1] + (random.between(0, 1) < 0.2 ? 0.0 : random.over_decades(0.01, 2000));
        const auto check = [&](const auto& fog) {
            const FeatherEnds<decltype(fog.At(0))> ends{fog.At(t[0]), fog.At(t[1]), fog.At(t[2]),
                                                        fog.At(t[3])};
            const double near = fog.IntegrateCosine(ends.f_in, ends.t_in),
                         far = fog.IntegrateCosine(ends.t_out, ends.f_out);
            ASSERT_NEAR(fog.IntegrateCosine(ends), near + far,
                        1e-10 * (1e-3 + std::fabs(near) + std::fabs(far)))
                << c;
        };
        const Fogs fog(c);
        check(fog.natural);
        check(fog.distance);
        check(fog.constant);
    }
}

// What is said not to be negative without looking is not, on stretches that end on the cones or anywhere inside the outer
// one; of stretches that are negative, some must have been met.
TEST(SpotIntegrals, StretchesKnownNotToBeNegativeAreNot) {
    test::Random random(15);
    int negative = 0, known = 0;
    for (int i = 0; i < 200000; ++i) {
        test::SpotCase c = test::random_spot(random);
        c.light.coneFeather = random.over_decades(1e-4, 1);
        test::derive(c);
        // Past the light within a few pixels, where the softened distance is another than the true one.
        const double depth = random.between(100, 1000);
        c.dx = (c.light.pos.x = c.dx * depth + random.between(-3, 3)) / depth;
        c.light.pos.z = depth;
        c.dx += random.between(-3, 3) / depth;
        c.dy = c.light.pos.y / depth + random.between(-3, 3) / depth;
        test::derive(c);
        const _RayOpt<double> products = MakeRayOpt(c.dx, c.dy, 1.0, c.light);
        const BetweenCaps<double> caps{0.0, kFarthest};
        double t[4];
        IntersectRayWithCone(c.light, c.opt, products, caps, c.dx, c.dy, 1.0, c.a, c.opt.coneCOuter,
                             c.opt.cosOuterSq, &t[0], &t[3]);
        IntersectRayWithCone(c.light, c.opt, products, caps, c.dx, c.dy, 1.0, c.a, c.opt.coneCInner,
                             c.opt.cosInnerSq, &t[1], &t[2]);
        if (!(t[2] > t[1])) continue;
        const auto check = [&](const auto& fog, double from, double to) {
            if (!(to > from)) return;
            const auto a = fog.At(from), b = fog.At(to);
            const double value = feather(c.opt, fog, fog.Integrate(a, b), a, b);
            const double rounding = 1e-9 * c.opt.invFeather * fog.Integrate(a, b);
            negative += value < -rounding;
            if (!fog.KnownNotNegative(c.opt, a, b)) return;
            ++known;
            ASSERT_GE(value, -rounding) << c;
        };
        const Fogs fog(c);
        check(fog.natural, t[0], t[1]);
        check(fog.natural, t[2], t[3]);
        check(fog.distance, t[0], t[1]);
        check(fog.distance, t[2], t[3]);
    }
    EXPECT_GT(negative, 100);
    EXPECT_GT(known, 10000);
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
