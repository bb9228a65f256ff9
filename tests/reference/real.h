#pragma once
// The number and vector types of the reference renderer.

#include <cmath>

namespace zam::reference {

using Real = long double;

inline constexpr Real kPi = 3.141592653589793238462643383279502884L;

struct Vec3 {
    Real x = 0, y = 0, z = 0;
};

inline Vec3 operator+(const Vec3& a, const Vec3& b) { return {a.x + b.x, a.y + b.y, a.z + b.z}; }
inline Vec3 operator-(const Vec3& a, const Vec3& b) { return {a.x - b.x, a.y - b.y, a.z - b.z}; }
inline Vec3 operator*(Real s, const Vec3& a) { return {s * a.x, s * a.y, s * a.z}; }
inline Real dot(const Vec3& a, const Vec3& b) { return a.x * b.x + a.y * b.y + a.z * b.z; }
inline Vec3 cross(const Vec3& a, const Vec3& b) {
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}
inline Real length(const Vec3& a) { return std::sqrt(dot(a, a)); }
inline Vec3 to_vec(const double (&a)[3]) { return {a[0], a[1], a[2]}; }

// How the view ray x(t) = t * ray passes a light at `pos`.
struct Passage {
    Real closest;   // t of the closest approach
    Real distance;  // pixels from the light there
};

inline Passage passage(const Vec3& ray, const Vec3& pos) {
    const Real closest = dot(ray, pos) / dot(ray, ray);
    return {closest, length(closest * ray - pos)};
}

}  // namespace zam::reference
