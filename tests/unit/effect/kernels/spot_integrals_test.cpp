#include "effect/render/kernels/spot_integrals.h"

#include <gtest/gtest.h>

#include "effect/render/kernels/cone.h"
#include "tests/reference/spot_light.h"
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
    using reference::Falloff;
    reference::SpotCone cone{};
    cone.apex = {c.light.pos.x, c.light.pos.y, c.light.pos.z};
    cone.axis = {c.light.dir.x, c.light.dir.y, c.light.dir.z};
    cone.cos_inner = c.opt.cosInner;
    cone.cos_outer = c.opt.cosOuter;
    const auto plain = [&](Falloff falloff) {
        return static_cast<double>(fog(falloff, {c.dx, c.dy, 1}, cone, t0, t1));
    };
    const auto weighted = [&](Falloff falloff) {
        return static_cast<double>(feathered_fog(falloff, {c.dx, c.dy, 1}, cone, t0, t1));
    };
    return {plain(Falloff::kInverseSquare), weighted(Falloff::kInverseSquare), plain(Falloff::kInverse),
            weighted(Falloff::kInverse), weighted(Falloff::kNone)};
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

}  // namespace
}  // namespace zam
