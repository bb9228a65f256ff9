#include "effect/scene/matrix.h"

#include <gtest/gtest.h>

#include "tests/literal/random_frame.h"

namespace zam {
namespace {

TEST(Matrix, InverseTimesMatrixIsTheIdentity) {
    test::Random random(5);
    for (int i = 0; i < 1000; ++i) {
        A_Matrix4 m, inverse, product;
        for (auto& row : m.mat) {
            for (double& element : row) element = random.between(-2, 2);
        }
        InverseMatrix4(&m, &inverse);
        product = m;
        MultiplyMatrix4(&product, &inverse, &product);  // in place
        double size = 0.0;
        for (const auto& row : inverse.mat) {
            for (double e : row) size = std::max(size, std::fabs(e));
        }
        for (int r = 0; r < 4; ++r) {
            for (int c = 0; c < 4; ++c) ASSERT_NEAR(product.mat[r][c], r == c, 1e-13 * size) << i;
        }
    }
}

TEST(Matrix, SingularMatricesGiveTheirAdjugate) {
    A_Matrix4 m{}, out;
    InverseMatrix4(&m, &out);
    EXPECT_EQ(CmpMatrix(&m, &out), 1);  // of nothing, nothing
    m.mat[0][0] = 2;                    // diag(2, 3, 5, 0): the one cofactor that is left is 30
    m.mat[1][1] = 3;
    m.mat[2][2] = 5;
    InverseMatrix4(&m, &out);
    A_Matrix4 expected{};
    expected.mat[3][3] = 30;
    EXPECT_EQ(CmpMatrix(&out, &expected), 1);
    expected.mat[0][1] = 1e-300;
    EXPECT_EQ(CmpMatrix(&out, &expected), 0);  // no tolerance
}

TEST(Matrix, RotationsTurnTheRightWay) {
    literal::MathsHost host;
    PF_InData* in_data = &host.in_data;
    const double quarter = std::acos(0.0), none[3] = {}, same[3] = {1, 1, 1};
    void (*const builders[])(PF_InData*, A_Matrix4*, double) = {BuildRotateXMatrix, BuildRotateYMatrix,
                                                                BuildRotateZMatrix};
    for (int axis = 0; axis < 3; ++axis) {  // the next axis goes to the one after it
        A_Matrix4 alone, layer;
        builders[axis](in_data, &alone, quarter);
        EXPECT_NEAR(alone.mat[(axis + 1) % 3][(axis + 2) % 3], 1.0, 1e-15) << axis;
        double rotation[3] = {};
        rotation[axis] = quarter;
        BuildTranformMatrix(in_data, &layer, none, same, rotation, none);
        EXPECT_EQ(CmpMatrix(&alone, &layer), 1) << axis;
    }
    A_Matrix4 xy, x;
    BuildRotateXYMatrix(in_data, &xy, 0.7, 0.0);
    BuildRotateXMatrix(in_data, &x, 0.7);
    EXPECT_DOUBLE_EQ(xy.mat[2][2], 0.5 * (std::cos(0.7) + 1));
    xy.mat[2][2] = x.mat[2][2];
    EXPECT_EQ(CmpMatrix(&xy, &x), 1);

    // A whole layer transform: the anchor point lands on the position, its x axis turned by z and scaled.
    const double anchor[3] = {5, 6, 0}, scale[3] = {2, 2, 2}, rotation[3] = {0, 0, quarter},
                 position[3] = {100, 0, 7};
    A_Matrix4 layer;
    BuildTranformMatrix(in_data, &layer, anchor, scale, rotation, position);
    double at_anchor[4] = {5, 6, 0, 1}, direction[4] = {1, 0, 0, 0};  // which does not move
    TransformPoint4(at_anchor, &layer, at_anchor);
    TransformPoint4(direction, &layer, direction);
    for (int i = 0; i < 3; ++i) {
        EXPECT_NEAR(at_anchor[i], position[i], 1e-12) << i;
        EXPECT_NEAR(direction[i], i == 1 ? 2 : 0, 1e-12) << i;
    }
}

}  // namespace
}  // namespace zam
