#include "effect/render/kernels/cone.h"

#include <gtest/gtest.h>

#include "tests/unit/effect/kernels/random_spot.h"

namespace zam {
namespace {

struct Stretch {
    double near = 0.0, far = 0.0;
    [[nodiscard]] bool empty() const { return !(far > near); }
};

Stretch intersect(const test::SpotCase& c, bool outer) {
    const _RayOpt<double> ray = MakeRayOpt(c.dx, c.dy, 1.0, c.light);
    const BetweenCaps<double> caps = IntersectCaps(c.settings, c.light, c.opt, ray, c.dx, c.dy, 1.0);
    Stretch s;
    IntersectRayWithCone(c.light, c.opt, ray, caps, c.dx, c.dy, 1.0, c.a,
                         outer ? c.opt.coneCOuter : c.opt.coneCInner,
                         outer ? c.opt.cosOuterSq : c.opt.cosInnerSq, &s.near, &s.far);
    return s;
}

// Is the ray's point at t in the forward cone and between the caps? Geometry alone, in long double.
bool is_inside(const test::SpotCase& c, bool outer, long double t) {
    const Vec3 &p = c.light.pos, &d = c.light.dir;
    const long double x = t * c.dx - p.x, y = t * c.dy - p.y, z = t - p.z;
    const long double along = x * d.x + y * d.y + z * d.z;
    const double angle = 0.5 * c.light.coneAngle * (outer ? 1.0 : 1.0 - c.light.coneFeather);
    if (along < std::cos(angle) * std::sqrt(x * x + y * y + z * z)) return false;
    if (along < c.settings.startDistance) return false;
    if (!c.settings.reachActive) return along <= c.light.radius;
    const Vec3 &n = c.reach.direction, &on = c.reach.point;
    const double lights_side = dot(n, p) - dot(n, on);
    return (t * (c.dx * n.x + c.dy * n.y + n.z) - dot(n, on)) * lights_side >= 0.0;
}

// The kernel's stretch agrees with the inside test at many points of the ray, except close to its own ends.
void expect_same_inside(const test::SpotCase& c, bool outer, test::Random& random) {
    const Stretch s = intersect(c, outer);
    ASSERT_TRUE(s.near >= 0.0 && std::isfinite(s.near) && std::isfinite(s.far));
    const double centre = (c.dx * c.light.pos.x + c.dy * c.light.pos.y + c.light.pos.z) / c.a;
    for (int i = 0; i < 60; ++i) {
        const double t = i < 30 ? random.between(0, 2) * std::fabs(centre) : random.over_decades(0.1, 20000);
        const double slack = 1e-5 * (1 + t);
        const bool on_an_end = std::fabs(t - s.near) < slack || std::fabs(t - s.far) < slack;
        if (on_an_end || is_inside(c, outer, t - slack) != is_inside(c, outer, t + slack)) continue;
        ASSERT_EQ(!s.empty() && s.near < t && t < s.far, is_inside(c, outer, t))
            << "t " << t << " stretch [" << s.near << ", " << s.far << "] outer " << outer;
    }
}

TEST(Cone, StretchIsWhereThePointsAreInside) {
    test::Random random(21);
    int lit = 0;
    for (int i = 0; i < 30000 && !HasFatalFailure(); ++i) {
        SCOPED_TRACE(i);
        test::SpotCase c = test::random_spot(random);
        if (i % 3 == 0) {  // ends at a plane
            const Vec3& p = c.light.pos;
            const Vec3 n = random.direction();
            const double distance = random.between(-800, 800);
            c.reach = {{p.x + distance * n.x, p.y + distance * n.y, p.z + distance * n.z}, n};
            c.settings.reachActive = c.settings.reachBothSides = 1;
            test::derive(c);
            // With the ray leaving the half space a plane behind the camera is no end: that one is not geometry.
            if ((c.dx * n.x + c.dy * n.y + n.z) * c.opt.endSign <= 0.0 && c.opt.endPlane <= 0.0) continue;
        }
        expect_same_inside(c, i % 2 == 0, random);
        lit += !intersect(c, true).empty();
    }
    EXPECT_GT(lit, 6000);
}

}  // namespace
}  // namespace zam
