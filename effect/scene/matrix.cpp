#include "effect/scene/matrix.h"

namespace zam {
namespace {

// Determinant of the 3x3 matrix that is left without this row and column.
double Minor(const A_Matrix4& m, int row, int column) {
    int r[3], c[3];
    for (int i = 0, n = 0; i < 4; ++i) {
        if (i != row) r[n++] = i;
    }
    for (int i = 0, n = 0; i < 4; ++i) {
        if (i != column) c[n++] = i;
    }
    const auto at = [&](int i, int j) { return m.mat[r[i]][c[j]]; };
    return at(0, 0) * (at(1, 1) * at(2, 2) - at(1, 2) * at(2, 1)) -
           at(0, 1) * (at(1, 0) * at(2, 2) - at(1, 2) * at(2, 0)) +
           at(0, 2) * (at(1, 0) * at(2, 1) - at(1, 1) * at(2, 0));
}

}  // namespace

ZAM_EXPORT void IdentityMatrix4(A_Matrix4* matrix) {
    *matrix = A_Matrix4{};
    for (int i = 0; i < 4; ++i) matrix->mat[i][i] = 1.0;
}

ZAM_EXPORT int CmpMatrix(const A_Matrix4* a, const A_Matrix4* b) {
    for (int i = 0; i < 4; ++i) {
        for (int j = 0; j < 4; ++j) {
            if (!(a->mat[i][j] == b->mat[i][j])) return 0;
        }
    }
    return 1;
}

ZAM_EXPORT void MultiplyMatrix4(const A_Matrix4* a, const A_Matrix4* b, A_Matrix4* out) {
    A_Matrix4 product{};
    for (int i = 0; i < 4; ++i) {
        for (int j = 0; j < 4; ++j) {
            for (int k = 0; k < 4; ++k) product.mat[i][j] += a->mat[i][k] * b->mat[k][j];
        }
    }
    *out = product;
}

ZAM_EXPORT void InverseMatrix4(const A_Matrix4* matrix, A_Matrix4* out) {
    A_Matrix4 adjugate{};
    for (int i = 0; i < 4; ++i) {
        for (int j = 0; j < 4; ++j) {
            const double minor = Minor(*matrix, i, j);
            adjugate.mat[j][i] = (i + j) % 2 == 0 ? minor : -minor;
        }
    }
    double determinant = 0.0;
    for (int j = 0; j < 4; ++j) determinant += matrix->mat[0][j] * adjugate.mat[j][0];
    if (determinant != 0.0) {
        for (auto& row : adjugate.mat) {
            for (double& element : row) element /= determinant;
        }
    }
    *out = adjugate;
}

ZAM_EXPORT void TransformPoint4(const double* point, const A_Matrix4* matrix, double* out) {
    const double p[4] = {point[0], point[1], point[2], point[3]};
    for (int j = 0; j < 4; ++j) {
        out[j] = p[0] * matrix->mat[0][j] + p[1] * matrix->mat[1][j] + p[2] * matrix->mat[2][j] +
                 p[3] * matrix->mat[3][j];
    }
}

ZAM_EXPORT void BuildRotateXMatrix(PF_InData* in_data, A_Matrix4* matrix, double angle) {
    const double c = in_data->utils->ansi.cos(angle), s = in_data->utils->ansi.sin(angle);
    IdentityMatrix4(matrix);
    matrix->mat[1][1] = c;
    matrix->mat[1][2] = s;
    matrix->mat[2][1] = -s;
    matrix->mat[2][2] = c;
}

ZAM_EXPORT void BuildRotateYMatrix(PF_InData* in_data, A_Matrix4* matrix, double angle) {
    const double c = in_data->utils->ansi.cos(angle), s = in_data->utils->ansi.sin(angle);
    IdentityMatrix4(matrix);
    matrix->mat[0][0] = c;
    matrix->mat[0][2] = -s;
    matrix->mat[2][0] = s;
    matrix->mat[2][2] = c;
}

ZAM_EXPORT void BuildRotateZMatrix(PF_InData* in_data, A_Matrix4* matrix, double angle) {
    const double c = in_data->utils->ansi.cos(angle), s = in_data->utils->ansi.sin(angle);
    IdentityMatrix4(matrix);
    matrix->mat[0][0] = c;
    matrix->mat[0][1] = s;
    matrix->mat[1][0] = -s;
    matrix->mat[1][1] = c;
}

ZAM_EXPORT void BuildRotateXYMatrix(PF_InData* in_data, A_Matrix4* matrix, double angle_x, double angle_y) {
    const double cx = in_data->utils->ansi.cos(angle_x), sx = in_data->utils->ansi.sin(angle_x);
    const double cy = in_data->utils->ansi.cos(angle_y), sy = in_data->utils->ansi.sin(angle_y);
    IdentityMatrix4(matrix);
    matrix->mat[1][1] = cx;
    matrix->mat[1][2] = sx;
    matrix->mat[2][1] = -sx;
    matrix->mat[0][0] = cy;
    matrix->mat[0][2] = -sy;
    matrix->mat[2][0] = sy;
    matrix->mat[2][2] = 0.5 * (cx + cy);  // deliberate: the mean, not the product
}

ZAM_EXPORT void BuildTranformMatrix(PF_InData* in_data, A_Matrix4* matrix, const double* anchor,
                                    const double* scale, const double* rotation, const double* position) {
    // T(-anchor) * S(scale) in one.
    A_Matrix4 product{};
    for (int i = 0; i < 3; ++i) {
        product.mat[i][i] = scale[i];
        product.mat[3][i] = -anchor[i] * scale[i];
    }
    product.mat[3][3] = 1.0;

    A_Matrix4 turn;
    BuildRotateZMatrix(in_data, &turn, rotation[2]);
    MultiplyMatrix4(&product, &turn, &product);
    BuildRotateYMatrix(in_data, &turn, rotation[1]);
    MultiplyMatrix4(&product, &turn, &product);
    BuildRotateXMatrix(in_data, &turn, rotation[0]);
    MultiplyMatrix4(&product, &turn, &product);
    for (int i = 0; i < 3; ++i) product.mat[3][i] += position[i];
    *matrix = product;
}

}  // namespace zam
