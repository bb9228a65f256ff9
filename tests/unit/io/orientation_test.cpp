// World axes taken apart into a layer's orientation, and put together again by the host.
#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "host/composition/transforms.h"
#include "io/euler.h"

namespace zam::io {
namespace {

using host::Vec3;

host::Matrix matrix_of(const Vec3& orientation) {
    host::Layer layer;
    layer.kind = host::LayerKind::light;
    layer.transform.orientation = orientation;
    return host::parent_from_layer(layer, 0.0);
}

Axes axes_of(const host::Matrix& m) {
    const auto row = [&](int i) { return Vec3{m.at[i][0], m.at[i][1], m.at[i][2]}; };
    return {row(0), row(1), row(2)};
}

TEST(Orientation, RoundTripOfRandomRotations) {
    std::mt19937 random(11);
    std::uniform_real_distribution<double> angle(-180.0, 180.0);
    Vec3 near;
    for (int i = 0; i < 5000; ++i) {
        // Every fourth looks exactly sideways, where two of the angles turn about one axis.
        const Vec3 turned{angle(random), i % 4 ? angle(random) : i % 8 ? 90.0 : -90.0, angle(random)};
        const host::Matrix expected = matrix_of(turned);
        near = orientation_of(axes_of(expected), near);
        const host::Matrix got = matrix_of(near);
        for (int k = 0; k < 9; ++k) EXPECT_NEAR(got.at[k / 3][k % 3], expected.at[k / 3][k % 3], 1e-9) << i;
    }
}

TEST(Orientation, SequencesDoNotJump) {
    // A turn about y leads through the two places where the angles are ambiguous; about z it winds up.
    Vec3 about_y, about_z;
    for (int degrees = 0; degrees <= 720; degrees += 3) {
        const Vec3 y = orientation_of(axes_of(matrix_of({20, degrees * 1.0, 0})), about_y);
        const Vec3 z = orientation_of(axes_of(matrix_of({10, 20, degrees * 1.0})), about_z);
        if (degrees > 0) {
            EXPECT_LT(std::abs(y.x - about_y.x) + std::abs(y.y - about_y.y) + std::abs(y.z - about_y.z), 3.1);
            EXPECT_LT(std::abs(z.z - about_z.z), 3.1);
        }
        about_y = y;
        about_z = z;
    }
    EXPECT_NEAR(about_y.y, 720.0, 1e-6);
    EXPECT_NEAR(about_z.z, 720.0, 1e-6);
}

}  // namespace
}  // namespace zam::io
