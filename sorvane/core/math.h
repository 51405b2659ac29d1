#ifndef SORVANE_CORE_MATH_H
#define SORVANE_CORE_MATH_H

// Fixed-size vector, matrix and rotation math on plain arrays: 16-element 4x4
// matrices, quaternions (x, y, z, w, scalar last), 3-vectors and Euler
// triples in radians (e[0] about X, e[1] about Y, e[2] about Z).
//
// Matrices use column vectors (v' = M v, translation in the last column) in
// both layouts; the layout only says where element (r, c) lies. Nothing here
// allocates or checks pointers; the few failures are std::runtime_error.
//
// The Euler order text of euler2quaternion/quaternion2euler is the reverse of
// that of euler2matrix4x4: the quaternion of "XYZ" has the matrix Rz*Ry*Rx.
// Callers depend on this, so it is kept.

#include <cstdint>
#include <ostream>

#include "sorvane/core/Export.h"

namespace sorvane {

enum Matrix4x4Type {
    MATRIX4X4_ROW_MAJOR = 0,    // (r, c) at r * 4 + c, translation at 3, 7, 11
    MATRIX4X4_COLUMN_MAJOR = 1, // (r, c) at c * 4 + r, translation at 12, 13, 14
};

// --- single precision -------------------------------------------------------

SORVANE_API void matrix4x4_init_float(float* m);
SORVANE_API void matrix4x4_add_float(float* a, const float* b);
// out may be a or b.
SORVANE_API void matrix4x4_mul_float(float* out, const float* a, const float* b,
                                     Matrix4x4Type type = MATRIX4X4_ROW_MAJOR);
SORVANE_API void matrix4x4_rmul_float(float* a, const float* b, Matrix4x4Type type = MATRIX4X4_ROW_MAJOR);
SORVANE_API void matrix4x4_lmul_float(float* a, const float* b, Matrix4x4Type type = MATRIX4X4_ROW_MAJOR);
SORVANE_API void matrix4x4_scale_lmul_float(float* a, const float* s, Matrix4x4Type type = MATRIX4X4_ROW_MAJOR);
SORVANE_API void matrix4x4_scale_rmul_float(float* a, const float* s, Matrix4x4Type type = MATRIX4X4_ROW_MAJOR);
// Adds t to the translation elements (T * a for an affine a).
SORVANE_API void matrix4x4_translation_lmul_float(float* a, const float* t,
                                                  Matrix4x4Type type = MATRIX4X4_ROW_MAJOR);
SORVANE_API void matrix4x4_translation_rmul_float(float* a, const float* t,
                                                  Matrix4x4Type type = MATRIX4X4_ROW_MAJOR);
SORVANE_API void matrix4x4_quaternion_lmul_float(float* a, const float* q,
                                                 Matrix4x4Type type = MATRIX4X4_ROW_MAJOR);
SORVANE_API void matrix4x4_quaternion_rmul_float(float* a, const float* q,
                                                 Matrix4x4Type type = MATRIX4X4_ROW_MAJOR);
SORVANE_API void scale2matrix4x4_float(float* m, const float* s);
SORVANE_API void translation2matrix4x4_float(float* m, const float* t, Matrix4x4Type type = MATRIX4X4_ROW_MAJOR);
// The quaternion is used as it is, not normalised.
SORVANE_API void quaternion2matrix4x4_float(float* m, const float* q, Matrix4x4Type type = MATRIX4X4_ROW_MAJOR);
// "XYZ": Rx*Ry*Rz, "ZYX": Rz*Ry*Rx; else "Invalid euler order".
SORVANE_API void euler2matrix4x4_float(float* m, const float* e, const char* order,
                                       Matrix4x4Type type = MATRIX4X4_ROW_MAJOR);
// T(t) * R(q) * S(s).
SORVANE_API void srt2matrix4x4_float(float* m, const float* s, const float* q, const float* t,
                                     Matrix4x4Type type = MATRIX4X4_ROW_MAJOR);
SORVANE_API void matrix4x42srt_float(float* s, float* q, float* t, const float* m,
                                     Matrix4x4Type type = MATRIX4X4_ROW_MAJOR);
// One branch only: a half turn fails with "Invalid matrix transform".
SORVANE_API void matrix4x42quaternion_float(float* q, const float* m, Matrix4x4Type type = MATRIX4X4_ROW_MAJOR);
SORVANE_API void euler2quaternion_float(float* q, const float* e, const char* order);
SORVANE_API void quaternion2euler_float(float* e, const float* q, const char* order);
SORVANE_API void rotation2quaternion_float(float* q, const float* axis, float angle);
// The identity quaternion has no axis: "Invalid quaternion rotation".
SORVANE_API void quaternion2rotation_float(float* axis, float* angle, const float* q);
SORVANE_API void matrix4x4_print_float(std::ostream& stream, const float* m, Matrix4x4Type type = MATRIX4X4_ROW_MAJOR);

// --- double precision -------------------------------------------------------

SORVANE_API void matrix4x4_init_double(double* m);
SORVANE_API void matrix4x4_add_double(double* a, const double* b);
SORVANE_API void matrix4x4_mul_double(double* out, const double* a, const double* b,
                                      Matrix4x4Type type = MATRIX4X4_ROW_MAJOR);
SORVANE_API void matrix4x4_rmul_double(double* a, const double* b, Matrix4x4Type type = MATRIX4X4_ROW_MAJOR);
SORVANE_API void matrix4x4_lmul_double(double* a, const double* b, Matrix4x4Type type = MATRIX4X4_ROW_MAJOR);
SORVANE_API void matrix4x4_scale_lmul_double(double* a, const double* s, Matrix4x4Type type = MATRIX4X4_ROW_MAJOR);
SORVANE_API void matrix4x4_scale_rmul_double(double* a, const double* s, Matrix4x4Type type = MATRIX4X4_ROW_MAJOR);
SORVANE_API void matrix4x4_translation_lmul_double(double* a, const double* t,
                                                   Matrix4x4Type type = MATRIX4X4_ROW_MAJOR);
SORVANE_API void matrix4x4_translation_rmul_double(double* a, const double* t,
                                                   Matrix4x4Type type = MATRIX4X4_ROW_MAJOR);
SORVANE_API void matrix4x4_quaternion_lmul_double(double* a, const double* q,
                                                  Matrix4x4Type type = MATRIX4X4_ROW_MAJOR);
SORVANE_API void matrix4x4_quaternion_rmul_double(double* a, const double* q,
                                                  Matrix4x4Type type = MATRIX4X4_ROW_MAJOR);
SORVANE_API void scale2matrix4x4_double(double* m, const double* s);
SORVANE_API void translation2matrix4x4_double(double* m, const double* t, Matrix4x4Type type = MATRIX4X4_ROW_MAJOR);
SORVANE_API void quaternion2matrix4x4_double(double* m, const double* q, Matrix4x4Type type = MATRIX4X4_ROW_MAJOR);
SORVANE_API void euler2matrix4x4_double(double* m, const double* e, const char* order,
                                        Matrix4x4Type type = MATRIX4X4_ROW_MAJOR);
SORVANE_API void srt2matrix4x4_double(double* m, const double* s, const double* q, const double* t,
                                      Matrix4x4Type type = MATRIX4X4_ROW_MAJOR);
// The double form of matrix4x42srt keeps the name of the float one (an
// overload); the _double name is the same function.
SORVANE_API void matrix4x42srt_float(double* s, double* q, double* t, const double* m,
                                     Matrix4x4Type type = MATRIX4X4_ROW_MAJOR);
SORVANE_API void matrix4x42srt_double(double* s, double* q, double* t, const double* m,
                                      Matrix4x4Type type = MATRIX4X4_ROW_MAJOR);
SORVANE_API void matrix4x42quaternion_double(double* q, const double* m, Matrix4x4Type type = MATRIX4X4_ROW_MAJOR);
SORVANE_API void euler2quaternion_double(double* q, const double* e, const char* order);
SORVANE_API void quaternion2euler_double(double* e, const double* q, const char* order);
SORVANE_API void rotation2quaternion_double(double* q, const double* axis, double angle);
SORVANE_API void quaternion2rotation_double(double* axis, double* angle, const double* q);
SORVANE_API void matrix4x4_print_double(std::ostream& stream, const double* m,
                                        Matrix4x4Type type = MATRIX4X4_ROW_MAJOR);

// --- array kernels (vectorised) ---------------------------------------------

// Below min becomes min, else above max becomes max; NaN stays.
SORVANE_API void clamp_float_cpu(float* data, long count, float min, float max);
// out[k] += vectors[j * size + k] * weights[j] for j < count, k < size.
SORVANE_API void linearAdd_float_cpu(float* out, long size, const float* weights, const float* vectors, long count);
// `in` holds groups * rows rows of cols values, `stride` elements apart. For
// group g and column c, out[2 * (g * cols + c)] and the element after it get
// the minimum and maximum over the group's rows.
SORVANE_API void minmax_uint8_cpu(uint8_t* out, const uint8_t* in, int groups, int rows, int cols, int stride);
SORVANE_API void minmax_uint32_cpu(uint32_t* out, const uint32_t* in, int groups, int rows, int cols, int stride);
SORVANE_API void minmax_int64_cpu(int64_t* out, const int64_t* in, int groups, int rows, int cols, int stride);
SORVANE_API void minmax_float_cpu(float* out, const float* in, int groups, int rows, int cols, int stride);

} // namespace sorvane

#endif
