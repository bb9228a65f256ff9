#pragma once
// A rotation as the three orientation angles of a layer.
#include "host/composition/animated.h"

namespace zam::io {

// Where a layer's own axes point in the world: orthogonal unit vectors, right-handed.
struct Axes {
    host::Vec3 x{1.0, 0.0, 0.0}, y{0.0, 1.0, 0.0}, z{0.0, 0.0, 1.0};
};

// The orientation (degrees) with which a layer without other rotations has these axes: turned about z first,
// then y, then x. Of the many that do, the one nearest to `near`, so that a sequence does not jump.
[[nodiscard]] host::Vec3 orientation_of(const Axes& axes, const host::Vec3& near);

}  // namespace zam::io
