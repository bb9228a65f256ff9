#include "io/euler.h"

#include <cmath>
#include <numbers>

namespace zam::io {
namespace {

// The layer's axes are the rows of Rz(oz) Ry(oy) Rx(ox), with s and c the sines and cosines of the angles:
//
//   x  =  ( cz cy    sz cx + cz sy sx    sz sx - cz sy cx )
//   y  =  (-sz cy    cz cx - sz sy sx    cz sx + sz sy cx )
//   z  =  ( sy      -cy sx               cy cx            )
//
// With cy = 0 only the sum (sy = 1) or the difference (sy = -1) of oz and ox is determined.
constexpr double kLocked = 1e-7;  // cy below this counts as 0

constexpr double kDegrees = 180.0 / std::numbers::pi;

// `angle` plus as many turns as bring it next to `near`.
double unwrap(double angle, double near) { return angle + 360.0 * std::round((near - angle) / 360.0); }

host::Vec3 unwrap(const host::Vec3& angles, const host::Vec3& near) {
    return {unwrap(angles.x, near.x), unwrap(angles.y, near.y), unwrap(angles.z, near.z)};
}

double distance(const host::Vec3& a, const host::Vec3& b) {
    return std::abs(a.x - b.x) + std::abs(a.y - b.y) + std::abs(a.z - b.z);
}

}  // namespace

host::Vec3 orientation_of(const Axes& axes, const host::Vec3& near) {
    const double cosine = std::hypot(axes.z.y, axes.z.z);
    const double oy = std::atan2(axes.z.x, cosine) * kDegrees;
    if (cosine < kLocked) {
        const double turned = std::atan2(axes.x.y, axes.y.y) * kDegrees;  // oz + ox, or oz - ox
        const double ox = axes.z.x > 0.0 ? turned - near.z : near.z - turned;
        return unwrap({ox, oy, near.z}, near);
    }
    const double ox = std::atan2(-axes.z.y, axes.z.z) * kDegrees;
    const double oz = std::atan2(-axes.y.x, axes.x.x) * kDegrees;
    const host::Vec3 one = unwrap({ox, oy, oz}, near);
    const host::Vec3 other = unwrap({ox + 180.0, 180.0 - oy, oz + 180.0}, near);
    return distance(other, near) < distance(one, near) ? other : one;
}

}  // namespace zam::io
