#include "tests/reference/point_glow.h"

#include <algorithm>
#include <cmath>

#include "tests/reference/bisection.h"
#include "tests/reference/quadrature.h"

namespace zam::reference {
namespace {

Contribution colored(Real strength, const Vec3& color) {
    return {strength, strength * color.x, strength * color.y, strength * color.z};
}

// 2 k^(1/4) times the integral of 1 / (distance^2 + k^2) from the camera to infinity; k = softness in percent
// + 1.
Real natural_glow(const PointGlow& light, const Vec3& ray, Real softness_percent) {
    const Real k = softness_percent + 1;
    const auto brightness = [&](Real t) {
        const Vec3 from_light = t * ray - light.pos;
        return 1 / (dot(from_light, from_light) + k * k);
    };
    const Passage pass = passage(ray, light.pos);
    const Real width = std::hypot(pass.distance, k) / length(ray);
    return 2 * std::pow(k, Real(0.25L)) * integrate_to_infinity(brightness, 0, pass.closest, width);
}

// Darkens the thin rim of a glow sphere; values of 1 and more stay.
Real soften(Real v, Real softness) {
    if (!(v < 1)) return v;
    const Real s = 1 - std::sqrt(1 - v * v);
    return s * s * (3 - 2 * s) * softness + (1 - softness) * v;
}

// Length of the ray inside a sphere in front of the camera, in units of t; 0 when it misses.
Real sphere_chord(const Vec3& ray, const Vec3& centre, Real radius) {
    const auto inside = [&](Real t) { return length(t * ray - centre) < radius; };
    const Real closest = passage(ray, centre).closest;
    if (!inside(closest)) return 0;
    const Real outside = 2 * radius;  // |ray| >= 1, so this far along the ray lies outside
    const Real near = last_true(inside, closest, closest - outside);
    const Real far = last_true(inside, closest, closest + outside);
    return std::max(far, Real(0)) - std::max(near, Real(0));
}

}  // namespace

Contribution point_glow(const Controls& controls, const PointGlow& light, const Vec3& ray) {
    if (controls.point_model == PointModel::kNatural) {
        return colored(natural_glow(light, ray, controls.softness) * light.intensity, light.color);
    }

    Contribution sum;
    const bool both = controls.point_model == PointModel::kRadiusAndSource;
    if (both || controls.point_model == PointModel::kRadius) {
        // deliberate: the chord is a length in t, so the same sphere is a little fainter away from the centre
        const Real chord = sphere_chord(ray, light.pos, light.radius);
        if (chord > 0) sum = colored(chord * light.intensity / (2 * light.radius), light.color);
        if (chord > 0 && controls.softness > 0.0) {
            const Real softness = Real(controls.softness) / 100;
            for (Real* v : {&sum.alpha, &sum.red, &sum.green, &sum.blue}) *v = soften(*v, softness);
        }
    }
    if (both || controls.point_model == PointModel::kSource) {
        const Real chord = sphere_chord(ray, light.pos, controls.source_radius);
        if (chord > 0) {
            const Real diameter = 2 * Real(controls.source_radius);
            const Contribution ball = colored(light.source_intensity / diameter * chord, light.color);
            sum = {sum.alpha + ball.alpha, sum.red + ball.red, sum.green + ball.green, sum.blue + ball.blue};
        }
    }
    return sum;
}

}  // namespace zam::reference
