#include "effect/scene/matrix.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

namespace zam {
namespace {

A_Matrix4 random_matrix(std::mt19937_64& engine) {
    std::uniform_real_distribution<double> element(-2, 2);
    A_Matrix4 m;
    for (auto& row : m.mat) {
        for (double& e : row) e = element(engine);
    }
    return m;
}

TEST(Matrix, InverseTimesMatrixIsTheIdentity) {
    std::mt19937_64 engine(5);
    for (int i = 0; i < 1000; ++i) {
        const A_Matrix4 m = random_matrix(engine);
        A_Matrix4 inverse, product = m;
        InverseMatrix4(&m, &inverse);
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
    PF_UtilCallbacks utils{};
    utils.ansi.cos = std::cos;
    utils.ansi.sin = std::sin;
    PF_InData in_data{};
    in_data.utils = &utils;
    const double quarter = std::acos(0.0);
    const struct {
        void (*build)(PF_InData*, A_Matrix4*, double);
        int from, to;
    } rows[] = {{BuildRotateXMatrix, 1, 2}, {BuildRotateYMatrix, 2, 0}, {BuildRotateZMatrix, 0, 1}};
    for (const auto& row : rows) {
        A_Matrix4 m;
        row.build(&in_data, &m, quarter);
        double p[4] = {};
        p[row.from] = 1.0;
        TransformPoint4(p, &m, p);
        EXPECT_NEAR(p[row.to], 1.0, 1e-15) << row.from;
    }
    A_Matrix4 xy, x;
    BuildRotateXYMatrix(&in_data, &xy, 0.7, 0.0);
    BuildRotateXMatrix(&in_data, &x, 0.7);
    EXPECT_DOUBLE_EQ(xy.mat[2][2], 0.5 * (std::cos(0.7) + 1));
    xy.mat[2][2] = x.mat[2][2];
    EXPECT_EQ(CmpMatrix(&xy, &x), 1);

    // A whole layer transform: the anchor point lands on the position, its x axis turned by z and scaled.
    const double anchor[3] = {5, 6, 0}, scale[3] = {2, 2, 2}, rotation[3] = {0, 0, quarter},
                 position[3] = {100, 0, 7};
    A_Matrix4 layer;
    BuildTranformMatrix(&in_data, &layer, anchor, scale, rotation, position);
    double at_anchor[4] = {5, 6, 0, 1}, beside[4] = {6, 6, 0, 1};
    TransformPoint4(at_anchor, &layer, at_anchor);
    TransformPoint4(beside, &layer, beside);
    EXPECT_NEAR(at_anchor[0], 100, 1e-12);
    EXPECT_NEAR(at_anchor[2], 7, 1e-12);
    EXPECT_NEAR(beside[1], 2, 1e-12);
    double direction[4] = {1, 0, 0, 0};  // does not move
    TransformPoint4(direction, &layer, direction);
    EXPECT_NEAR(direction[0], 0, 1e-12);
    EXPECT_NEAR(direction[1], 2, 1e-12);
}

}  // namespace
}  // namespace zam
