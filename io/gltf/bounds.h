#pragma once
// glTF bounds neither places nor intensities; a composition's numbers do not go beyond these.
#include <algorithm>
#include <cmath>

#include "host/composition/animated.h"

namespace zam::io::gltf {

inline constexpr double kLargest = 1e9;  // as in our own scenes

// The nearest number that a composition may have, 0 for what is none. `confined` is set when it is another one.
inline double bounded(double value, bool* confined) {
    if (std::abs(value) <= kLargest) return value;
    *confined = true;
    return std::isnan(value) ? 0.0 : std::clamp(value, -kLargest, kLargest);
}
inline host::Vec3 bounded(const host::Vec3& v, bool* confined) {
    return {bounded(v.x, confined), bounded(v.y, confined), bounded(v.z, confined)};
}

}  // namespace zam::io::gltf
