#pragma once
// Our values as the interface's.
#include <cstring>

#include "host/composition/animated.h"
#include "host/composition/matrix.h"
#include "hostapi/scene_values.h"

namespace zam::host {

[[nodiscard]] inline A_Matrix4 interface_matrix(const Matrix& matrix) {
    A_Matrix4 given;
    static_assert(sizeof given.mat == sizeof matrix.at);
    std::memcpy(given.mat, matrix.at, sizeof given.mat);
    return given;
}

[[nodiscard]] inline AEGP_ThreeDVal interface_value(const Vec3& v) { return {v.x, v.y, v.z}; }
[[nodiscard]] inline AEGP_ColorVal interface_value(const Color& c) { return {1.0, c.red, c.green, c.blue}; }
[[nodiscard]] inline Vec3 from_interface(const AEGP_ThreeDVal& v) { return {v.x, v.y, v.z}; }
[[nodiscard]] inline Color from_interface(const AEGP_ColorVal& c) { return {c.redF, c.greenF, c.blueF}; }

}  // namespace zam::host
