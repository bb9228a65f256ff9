#include "effect/render/kernels/spot_integrals.h"

#include <gtest/gtest.h>

#include "effect/render/kernels/cone.h"
#include "tests/reference/spot_light.h"
#include "tests/unit/effect/kernels/random_spot.h"

namespace zam {
namespace {

using reference::Falloff;

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
template <class Fog>
double feather(const _OptSpotData& cone, const Fog& fog, double plain, double from, double to) {
    return (fog.IntegrateCosine(fog.At(from), fog.At(to)) - cone.cosOuter * plain) * cone.invFeather;
}

// Against quadrature of the definitions. Absolute error against the size of what cancels: F(t1) - F(t0), and a
// division by cosInner - cosOuter.
TEST(SpotIntegrals, ClosedFormsAreTheIntegrals) {
    test::Random random(11);
    for (int i = 0; i < 5000; ++i) {
        const test::SpotCase c = test::random_spot(random);
        const Vec3 &p = c.light.pos, &d = c.light.dir;
        const double centre = std::max(0.0, (c.dx * p.x + c.dy * p.y + p.z) / c.a);
        const double t0 = std::max(0.0, centre + random.between(-800, 800)),
                     t1 = t0 + random.over_decades(0.01, 2000);
        const reference::Vec3 ray{c.dx, c.dy, 1};
        reference::SpotCone cone{};
        cone.apex = {p.x, p.y, p.z};
        cone.axis = {d.x, d.y, d.z};
        cone.cos_inner = c.opt.cosInner;
        cone.cos_outer = c.opt.cosOuter;
        const auto expect = [&](Falloff falloff, const auto& closed, double plain, double least) {
            const auto expected = static_cast<double>(fog(falloff, ray, cone, t0, t1));
            ASSERT_NEAR(plain, expected, 1e-9 * (least + expected)) << "case " << i;
            const auto weighted = static_cast<double>(feathered_fog(falloff, ray, cone, t0, t1));
            ASSERT_NEAR(feather(c.opt, closed, plain, t0, t1), weighted,
                        1e-8 * c.opt.invFeather * (1 + plain))
                << "case " << i;
        };
        const Fogs fogs(c);
        const auto& [natural, distance, constant] = fogs;
        expect(Falloff::kInverseSquare, natural, natural.Integrate(natural.At(t0), natural.At(t1)), 1e-3);
        expect(Falloff::kInverse, distance, distance.Integrate(distance.At(t0), distance.At(t1)), 1);
        expect(Falloff::kNone, constant, t1 - t0, 0);
    }
}

// What is said not to be negative without looking is not, on stretches that end on the cones or anywhere inside the
// outer one; of stretches that are negative, some must have been met.
TEST(SpotIntegrals, StretchesKnownNotToBeNegativeAreNot) {
    test::Random random(15);
    int negative = 0, known = 0;
    for (int i = 0; i < 200000; ++i) {
        test::SpotCase c = test::random_spot(random);
        c.light.coneFeather = random.over_decades(1e-4, 1);
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
            const double plain = fog.Integrate(fog.At(from), fog.At(to));
            const double value = feather(c.opt, fog, plain, from, to);
            const double rounding = 1e-9 * c.opt.invFeather * plain;
            negative += value < -rounding;
            if (!fog.KnownNotNegative(c.opt, fog.At(from), fog.At(to))) return;
            ++known;
            ASSERT_GE(value, -rounding) << "case " << i;
        };
        const Fogs fogs(c);
        check(fogs.natural, t[0], t[1]);
        check(fogs.natural, t[2], t[3]);
        check(fogs.distance, t[0], t[1]);
        check(fogs.distance, t[2], t[3]);
    }
    EXPECT_GT(negative, 100);
    EXPECT_GT(known, 10000);
}

}  // namespace
}  // namespace zam
