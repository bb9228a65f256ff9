#pragma once
// 4x4 matrices in the host's own layout: row-major, row vectors multiplied on the left. In a transform row 3
// is the translation and rows 0, 1, 2 are the images of the local x, y and z axes.
#include "effect/scene/export.h"
#include "hostapi/effect.h"

namespace zam {

ZAM_EXPORT void IdentityMatrix4(A_Matrix4* matrix);

// 1 when all elements compare exactly equal, else 0. deliberate: no tolerance
ZAM_EXPORT int CmpMatrix(const A_Matrix4* a, const A_Matrix4* b);

// out = a * b; out may be a or b.
ZAM_EXPORT void MultiplyMatrix4(const A_Matrix4* a, const A_Matrix4* b, A_Matrix4* out);

// The adjugate over the determinant; out may be the input.
// deliberate: a matrix whose determinant is exactly 0 gives its adjugate as it is
ZAM_EXPORT void InverseMatrix4(const A_Matrix4* matrix, A_Matrix4* out);

// out = point * matrix, without division by w; 4 doubles each, out may be point. w is 1 for positions and 0
// for directions.
ZAM_EXPORT void TransformPoint4(const double* point, const A_Matrix4* matrix, double* out);

// Rotations by radians; a positive angle turns x to y (Z), y to z (X) and z to x (Y). Sine and cosine are the
// host's.
ZAM_EXPORT void BuildRotateXMatrix(PF_InData* in_data, A_Matrix4* matrix, double angle);
ZAM_EXPORT void BuildRotateYMatrix(PF_InData* in_data, A_Matrix4* matrix, double angle);
ZAM_EXPORT void BuildRotateZMatrix(PF_InData* in_data, A_Matrix4* matrix, double angle);

// Close to a rotation about x and y for small angles.
// deliberate: [2][2] is the mean of the cosines, not their product, and there are no cross terms
ZAM_EXPORT void BuildRotateXYMatrix(PF_InData* in_data, A_Matrix4* matrix, double angle_x, double angle_y);

// A layer's local transform T(-anchor) * S(scale) * Rz * Ry * Rx * T(position); 3 doubles each, scale as
// fractions, rotation as radians about x, y and z.
ZAM_EXPORT void BuildTranformMatrix(PF_InData* in_data, A_Matrix4* matrix, const double* anchor,
                                    const double* scale, const double* rotation, const double* position);

}  // namespace zam
