#pragma once
// Seeded random rays through the cones of spot lights, for the kernels' tests.
#include <algorithm>

#include "effect/render/kernels/elementary.h"
#include "tests/literal/random_frame.h"

namespace zam::test {

// A view ray through the image, and a spot light in front of the camera that it passes at any distance.
struct SpotCase {
    double dx = 0.0, dy = 0.0, a = 1.0;
    _VisLightStruct light;
    _OptSpotData opt;
    _LightData settings;
    ReachPlane reach;
};

// Fills what follows from the rest: a, opt, and the reach plane in settings.
inline void derive(SpotCase& c) {
    static const literal::MathsHost host;
    c.a = c.dx * c.dx + c.dy * c.dy + 1.0;
    c.settings.count = 1;
    const A_Matrix4 same{{{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}}};
    PrepareSpots(HostMaths(&host.in_data), {.camera_from_world = same}, 60.0, c.reach, &c.settings, &c.light,
                 &c.opt);
}

inline SpotCase random_spot(Random& random) {
    SpotCase c;
    c.light.pos = {random.between(-600, 600), random.between(-400, 400), random.between(-300, 2500)};
    // Aim at something that is usually in the cone.
    c.light.radius = random.over_decades(50, 3000);
    c.light.dir = random.direction();
    const double along = random.between(0, c.light.radius);
    const Vec3 aim{c.light.pos.x + c.light.dir.x * along + random.between(-60, 60),
                   c.light.pos.y + c.light.dir.y * along + random.between(-60, 60),
                   std::max(1.0, c.light.pos.z + c.light.dir.z * along)};
    c.dx = aim.x / aim.z;
    c.dy = aim.y / aim.z;
    if (std::fabs(c.dx) > 2.0) c.dx = random.between(-1, 1);
    if (std::fabs(c.dy) > 2.0) c.dy = random.between(-1, 1);
    c.light.coneAngle = random.between(1, 178) * kPi / 180.0;
    c.light.coneFeather = random.between(0.02, 1.0);
    c.settings.startDistance = random.between(0, 1) < 0.5 ? 0.0 : random.between(0, 100);
    derive(c);
    return c;
}

}  // namespace zam::test
