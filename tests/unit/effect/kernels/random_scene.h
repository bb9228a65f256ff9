#pragma once
// Seeded random rays and lights for the kernels' tests.
#include <cmath>
#include <ostream>
#include <random>

#include "effect/render/kernels/elementary.h"
#include "effect/render/kernels/records.h"

namespace zam::test {

class Random {
  public:
    explicit Random(unsigned seed) : engine_(seed) {}
    double between(double low, double high) {
        return std::uniform_real_distribution<double>(low, high)(engine_);
    }
    // Evenly over the orders of magnitude.
    double over_decades(double low, double high) { return std::exp(between(std::log(low), std::log(high))); }
    Vec3 direction() {
        for (;;) {
            const Vec3 v{between(-1, 1), between(-1, 1), between(-1, 1)};
            const double length_sq = dot(v, v);
            if (length_sq > 0.01 && length_sq <= 1.0)
                return {v.x / std::sqrt(length_sq), v.y / std::sqrt(length_sq), v.z / std::sqrt(length_sq)};
        }
    }

  private:
    std::mt19937_64 engine_;
};

// A view ray through the image, and a spot light in front of the camera that it passes at any distance.
struct SpotCase {
    double dx = 0.0, dy = 0.0, a = 1.0;
    _VisLightStruct light;
    _OptSpotData opt;
    _LightData settings;
};

// Fills what follows from pos, dir, cone and caps, by definition.
inline void derive(SpotCase& c) {
    _VisLightStruct& l = c.light;
    c.a = c.dx * c.dx + c.dy * c.dy + 1.0;
    c.opt.distSq = dot(l.pos, l.pos);
    c.opt.dist = std::sqrt(c.opt.distSq);
    c.opt.cosOuter = std::cos(l.coneAngle * 0.5);
    c.opt.cosInner = std::cos(l.coneAngle * 0.5 * (1.0 - l.coneFeather));
    c.opt.cosOuterSq = c.opt.cosOuter * c.opt.cosOuter;
    c.opt.cosInnerSq = c.opt.cosInner * c.opt.cosInner;
    c.opt.axisDotPos = dot(l.dir, l.pos);
    c.opt.coneCOuter = c.opt.axisDotPos * c.opt.axisDotPos - c.opt.cosOuterSq * c.opt.distSq;
    c.opt.coneCInner = c.opt.axisDotPos * c.opt.axisDotPos - c.opt.cosInnerSq * c.opt.distSq;
    c.opt.startPlane = c.opt.axisDotPos + c.settings.startDistance * dot(l.dir, l.dir);
    c.opt.endPlane = c.opt.axisDotPos + l.radius * dot(l.dir, l.dir);
    const double feather = c.opt.cosInner - c.opt.cosOuter;
    c.opt.invFeather = feather != 0.0 ? 1.0 / feather : 0.0;
}

inline SpotCase random_spot(Random& random) {
    SpotCase c;
    c.light.pos = {random.between(-600, 600), random.between(-400, 400), random.between(-300, 2500)};
    // Aim at something that is usually in the cone.
    const double reach = random.over_decades(50, 3000);
    c.light.dir = random.direction();
    const double along = random.between(0, reach);
    const Vec3 aim{c.light.pos.x + c.light.dir.x * along + random.between(-60, 60),
                   c.light.pos.y + c.light.dir.y * along + random.between(-60, 60),
                   std::max(1.0, c.light.pos.z + c.light.dir.z * along)};
    c.dx = aim.x / aim.z;
    c.dy = aim.y / aim.z;
    if (std::fabs(c.dx) > 2.0) c.dx = random.between(-1, 1);
    if (std::fabs(c.dy) > 2.0) c.dy = random.between(-1, 1);
    c.light.coneAngle = random.between(1, 178) * kPi / 180.0;
    c.light.coneFeather = random.between(0.02, 1.0);
    c.light.radius = reach;
    c.settings.startDistance = random.between(0, 1) < 0.5 ? 0.0 : random.between(0, 100);
    derive(c);
    return c;
}

inline std::ostream& operator<<(std::ostream& out, const SpotCase& c) {
    const Vec3 &p = c.light.pos, &d = c.light.dir;
    out.precision(17);
    return out << "ray (" << c.dx << ", " << c.dy << ", 1) pos (" << p.x << ", " << p.y << ", " << p.z
               << ") dir (" << d.x << ", " << d.y << ", " << d.z << ") cone " << c.light.coneAngle
               << " feather " << c.light.coneFeather << " reach " << c.light.radius << " start "
               << c.settings.startDistance;
}

}  // namespace zam::test
