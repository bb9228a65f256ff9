#include "tests/reference/slow_renderer.h"

#include <array>
#include <cmath>

#include "tests/reference/point_glow.h"
#include "tests/reference/scene.h"
#include "tests/reference/spot_light.h"

namespace zam::reference {
namespace {

using Sums = std::array<Real, 4>;  // alpha, red, green, blue

bool squares_each_light(Look look) {
    return look == Look::kWeak || look == Look::kNatural || look == Look::kAdjustableNatural;
}

Sums light_in_pixel(const View& view, const Controls& controls, const Scene& scene, int px, int py) {
    Sums sums{};
    const auto add = [&](const Contribution& c) {
        const Sums values{c.alpha, c.red, c.green, c.blue};
        for (std::size_t i = 0; i < 4; ++i) {
            sums[i] += squares_each_light(controls.look) ? values[i] * values[i] : values[i];
        }
    };
    const Vec3 ray = ray_through(view, px, py);
    for (const PointGlow& light : scene.points) add(point_glow(controls, light, ray));
    for (const SpotCone& spot : scene.spots) {
        const Real strength = spot_strength(view, controls.spot_model, spot, px, py);
        if (!(strength > 0)) continue;
        const Real lit = strength * spot.intensity;
        add({lit, lit * spot.color.x, lit * spot.color.y, lit * spot.color.z});
    }
    return sums;
}

double final_curve(const Controls& controls, Real sum) {
    const auto v = static_cast<double>(sum);
    if (v > 1.0) return 1.0;
    switch (controls.look) {
        case Look::kWeak:
        case Look::kLinear:
            return v;
        case Look::kNatural:
        case Look::kStrong:
            return std::sqrt(v);
        case Look::kAdjustableLinear:
        case Look::kAdjustableNatural:
            return std::pow(v, 1.0 / controls.gamma);
    }
    return v;
}

// A value of 1 is full scale.  Within the 32-bit range the low bits are kept, without a clamp; beyond it the
// code is full scale or 0, and 0 for what is no number.
std::uint16_t to_code(double v, bool deep) {
    const double full = deep ? 32768.0 : 255.0;
    const double scaled = v * full + 0.5;
    if (std::isnan(scaled)) return 0;
    if (scaled >= 2147483648.0) return static_cast<std::uint16_t>(full);
    if (scaled <= -2147483649.0) return 0;
    const auto bits = static_cast<std::uint32_t>(static_cast<std::int32_t>(scaled));
    return static_cast<std::uint16_t>(bits & (deep ? 0xffffU : 0xffU));
}

}  // namespace

Frame render(const View& view, const Controls& controls, const Reach& reach,
             const std::vector<Light>& lights) {
    Frame frame{.width = view.width, .height = view.height, .deep = view.deep, .argb = {}};
    if (view.width <= 0 || view.height <= 0) return frame;
    frame.argb.assign(4 * static_cast<std::size_t>(view.width) * static_cast<std::size_t>(view.height), 0);
    if (!has_rays(view)) return frame;

    const Scene scene = build_scene(view, controls, reach, lights);
    std::size_t at = 0;
    for (int y = 0; y < view.height; ++y) {
        for (int x = 0; x < view.width; ++x, at += 4) {
            const Sums sums = light_in_pixel(view, controls, scene, x, y);
            if (!(sums[0] > 0)) continue;  // no light: the pixel stays transparent black
            const double alpha = final_curve(controls, sums[0]);
            if (alpha == 0.0) continue;
            const double k = 1.0 / alpha;
            frame.argb[at] = to_code(alpha, view.deep);
            for (std::size_t i = 1; i < 4; ++i) {
                frame.argb[at + i] = to_code(final_curve(controls, sums[i]) * k, view.deep);
            }
        }
    }
    return frame;
}

}  // namespace zam::reference
