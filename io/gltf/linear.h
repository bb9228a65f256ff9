#pragma once
// Vectors, quaternions and placements, as glTF counts them: column vectors, y up, right-handed.
#include <array>
#include <cmath>

#include "host/composition/animated.h"

namespace zam::io::gltf {

using host::Vec3;

inline Vec3 operator+(const Vec3& a, const Vec3& b) { return {a.x + b.x, a.y + b.y, a.z + b.z}; }
inline Vec3 operator-(const Vec3& a, const Vec3& b) { return {a.x - b.x, a.y - b.y, a.z - b.z}; }
inline Vec3 operator*(const Vec3& a, double s) { return {a.x * s, a.y * s, a.z * s}; }
inline double dot(const Vec3& a, const Vec3& b) { return a.x * b.x + a.y * b.y + a.z * b.z; }
inline double length(const Vec3& a) { return std::sqrt(dot(a, a)); }
inline Vec3 cross(const Vec3& a, const Vec3& b) {
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

struct Quaternion {
    double x = 0.0, y = 0.0, z = 0.0, w = 1.0;
};

// Where a node's axes and origin lie in another space; the axes carry the scale.
struct Placement {
    Vec3 x{1.0, 0.0, 0.0}, y{0.0, 1.0, 0.0}, z{0.0, 0.0, 1.0}, origin;

    [[nodiscard]] Vec3 direction(const Vec3& d) const { return x * d.x + y * d.y + z * d.z; }
};

// The child's placement seen from the outside of its parent.
inline Placement operator*(const Placement& parent, const Placement& child) {
    return {parent.direction(child.x), parent.direction(child.y), parent.direction(child.z),
            parent.direction(child.origin) + parent.origin};
}

// The axes of a rotation; a quaternion of any length but 0 is taken.
inline Placement rotated(const Quaternion& q) {
    const double n = 2.0 / (q.x * q.x + q.y * q.y + q.z * q.z + q.w * q.w);
    const double xx = n * q.x * q.x, yy = n * q.y * q.y, zz = n * q.z * q.z;
    const double xy = n * q.x * q.y, xz = n * q.x * q.z, yz = n * q.y * q.z;
    const double wx = n * q.w * q.x, wy = n * q.w * q.y, wz = n * q.w * q.z;
    return {{1.0 - yy - zz, xy + wz, xz - wy},
            {xy - wz, 1.0 - xx - zz, yz + wx},
            {xz + wy, yz - wx, 1.0 - xx - yy},
            {}};
}

}  // namespace zam::io::gltf
