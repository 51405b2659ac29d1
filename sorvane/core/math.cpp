#include "sorvane/core/math.h"

#ifdef __SSE2__
#include <emmintrin.h>
#endif

#include <cmath>
#include <cstring>
#include <stdexcept>

namespace sorvane {
namespace {

// Index of element (r, c) in the given layout.
inline int at(int r, int c, Matrix4x4Type type) {
    return type == MATRIX4X4_COLUMN_MAJOR ? c * 4 + r : r * 4 + c;
}

enum class Order { XYZ, ZYX };

// Exactly "XYZ" or "ZYX"; anything else (a null text too) is refused.
Order parseOrder(const char* order) {
    if (order != nullptr) {
        if (std::strcmp(order, "XYZ") == 0)
            return Order::XYZ;
        if (std::strcmp(order, "ZYX") == 0)
            return Order::ZYX;
    }
    throw std::runtime_error("Invalid euler order");
}

template <typename T> void init(T* m) {
    for (int i = 0; i < 16; ++i)
        m[i] = (i % 5 == 0) ? T(1) : T(0);
}

// Row-major product; a column-major product is the row-major one with the
// factors swapped, since the arrays then hold the transposes.
template <typename T> void mulRowMajor(T* out, const T* a, const T* b) {
    T r[16];
    for (int i = 0; i < 4; ++i) {
        const T a0 = a[i * 4], a1 = a[i * 4 + 1], a2 = a[i * 4 + 2], a3 = a[i * 4 + 3];
        for (int j = 0; j < 4; ++j)
            r[i * 4 + j] = a0 * b[j] + a1 * b[4 + j] + a2 * b[8 + j] + a3 * b[12 + j];
    }
    std::memcpy(out, r, sizeof(r));
}

template <typename T> void mul(T* out, const T* a, const T* b, Matrix4x4Type type) {
    if (type == MATRIX4X4_COLUMN_MAJOR)
        mulRowMajor(out, b, a);
    else
        mulRowMajor(out, a, b);
}

// Written out for each layout: it runs once per joint and frame.
template <typename T> void quaternion2matrix(T* m, const T* q, Matrix4x4Type type) {
    const T x = q[0], y = q[1], z = q[2], w = q[3];
    const T r00 = T(1) - T(2) * (y * y + z * z), r01 = T(2) * (x * y - z * w), r02 = T(2) * (x * z + y * w);
    const T r10 = T(2) * (x * y + z * w), r11 = T(1) - T(2) * (x * x + z * z), r12 = T(2) * (y * z - x * w);
    const T r20 = T(2) * (x * z - y * w), r21 = T(2) * (y * z + x * w), r22 = T(1) - T(2) * (x * x + y * y);
    // Stored one by one: a block built on the stack and copied would stall
    // on store forwarding.
    const bool column = type == MATRIX4X4_COLUMN_MAJOR;
    m[0] = r00, m[5] = r11, m[10] = r22, m[15] = T(1);
    m[3] = m[7] = m[11] = m[12] = m[13] = m[14] = T(0);
    if (column) {
        m[1] = r10, m[2] = r20, m[4] = r01, m[6] = r21, m[8] = r02, m[9] = r12;
    } else {
        m[1] = r01, m[2] = r02, m[4] = r10, m[6] = r12, m[8] = r20, m[9] = r21;
    }
}

template <typename T> void scaleLmul(T* a, const T* s, Matrix4x4Type type) {
    for (int r = 0; r < 3; ++r)
        for (int c = 0; c < 4; ++c)
            a[at(r, c, type)] *= s[r];
}

template <typename T> void scaleRmul(T* a, const T* s, Matrix4x4Type type) {
    for (int r = 0; r < 4; ++r)
        for (int c = 0; c < 3; ++c)
            a[at(r, c, type)] *= s[c];
}

template <typename T> void translationLmul(T* a, const T* t, Matrix4x4Type type) {
    for (int r = 0; r < 3; ++r)
        a[at(r, 3, type)] += t[r];
}

template <typename T> void translationRmul(T* a, const T* t, Matrix4x4Type type) {
    for (int r = 0; r < 4; ++r)
        a[at(r, 3, type)] += a[at(r, 0, type)] * t[0] + a[at(r, 1, type)] * t[1] + a[at(r, 2, type)] * t[2];
}

template <typename T> void quaternionLmul(T* a, const T* q, Matrix4x4Type type) {
    T r[16];
    quaternion2matrix(r, q, type);
    mul(a, r, a, type);
}

template <typename T> void quaternionRmul(T* a, const T* q, Matrix4x4Type type) {
    T r[16];
    quaternion2matrix(r, q, type);
    mul(a, a, r, type);
}

template <typename T> void scale2matrix(T* m, const T* s) {
    init(m);
    m[0] = s[0];
    m[5] = s[1];
    m[10] = s[2];
}

template <typename T> void translation2matrix(T* m, const T* t, Matrix4x4Type type) {
    init(m);
    for (int r = 0; r < 3; ++r)
        m[at(r, 3, type)] = t[r];
}

template <typename T> void euler2matrix(T* m, const T* e, const char* order, Matrix4x4Type type) {
    const Order o = parseOrder(order);
    const T sa = std::sin(e[0]), ca = std::cos(e[0]);
    const T sb = std::sin(e[1]), cb = std::cos(e[1]);
    const T sc = std::sin(e[2]), cc = std::cos(e[2]);
    const T rx[16] = {1, 0, 0, 0, 0, ca, -sa, 0, 0, sa, ca, 0, 0, 0, 0, 1};
    const T ry[16] = {cb, 0, sb, 0, 0, 1, 0, 0, -sb, 0, cb, 0, 0, 0, 0, 1};
    const T rz[16] = {cc, -sc, 0, 0, sc, cc, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
    T r[16];
    if (o == Order::XYZ) {
        mulRowMajor(r, rx, ry);
        mulRowMajor(r, r, rz);
    } else {
        mulRowMajor(r, rz, ry);
        mulRowMajor(r, r, rx);
    }
    for (int i = 0; i < 4; ++i)
        for (int j = 0; j < 4; ++j)
            m[at(i, j, type)] = r[i * 4 + j];
}

// Column lengths of the upper 3x3 block, then the single-branch rotation.
template <typename T> void matrix2quaternion(T* q, T* scale, const T* m, Matrix4x4Type type) {
    T s[3];
    for (int c = 0; c < 3; ++c) {
        const T x = m[at(0, c, type)], y = m[at(1, c, type)], z = m[at(2, c, type)];
        s[c] = std::sqrt(x * x + y * y + z * z);
    }
    const T w = std::sqrt(T(1) + m[at(0, 0, type)] / s[0] + m[at(1, 1, type)] / s[1] + m[at(2, 2, type)] / s[2]) / T(2);
    if (std::fabs(w) < T(0.00001))
        throw std::runtime_error("Invalid matrix transform");
    const T f = T(1) / (T(4) * w);
    q[0] = (m[at(2, 1, type)] / s[1] - m[at(1, 2, type)] / s[2]) * f;
    q[1] = (m[at(0, 2, type)] / s[2] - m[at(2, 0, type)] / s[0]) * f;
    q[2] = (m[at(1, 0, type)] / s[0] - m[at(0, 1, type)] / s[1]) * f;
    q[3] = w;
    if (scale != nullptr)
        for (int c = 0; c < 3; ++c)
            scale[c] = s[c];
}

template <typename T> void srt2matrix(T* m, const T* s, const T* q, const T* t, Matrix4x4Type type) {
    quaternion2matrix(m, q, type);
    for (int c = 0; c < 3; ++c)
        for (int r = 0; r < 3; ++r)
            m[at(r, c, type)] *= s[c];
    for (int r = 0; r < 3; ++r)
        m[at(r, 3, type)] = t[r];
}

template <typename T> void matrix2srt(T* s, T* q, T* t, const T* m, Matrix4x4Type type) {
    matrix2quaternion(q, s, m, type);
    for (int r = 0; r < 3; ++r)
        t[r] = m[at(r, 3, type)];
}

template <typename T> void euler2quaternion(T* q, const T* e, const char* order) {
    const Order o = parseOrder(order);
    // Half angles in single precision, their sine and cosine in double: the
    // results of both element types come from the same angles.
    const float ha = static_cast<float>(e[0]) / 2.0f;
    const float hb = static_cast<float>(e[1]) / 2.0f;
    const float hc = static_cast<float>(e[2]) / 2.0f;
    const T sa = static_cast<T>(std::sin(static_cast<double>(ha))), ca = static_cast<T>(std::cos(static_cast<double>(ha)));
    const T sb = static_cast<T>(std::sin(static_cast<double>(hb))), cb = static_cast<T>(std::cos(static_cast<double>(hb)));
    const T sc = static_cast<T>(std::sin(static_cast<double>(hc))), cc = static_cast<T>(std::cos(static_cast<double>(hc)));
    const T a0 = sa * cb * cc, a1 = ca * sb * cc, a2 = ca * cb * sc, a3 = ca * cb * cc;
    const T b0 = ca * sb * sc, b1 = sa * cb * sc, b2 = sa * sb * cc, b3 = sa * sb * sc;
    if (o == Order::XYZ) {
        q[0] = a0 - b0;
        q[1] = a1 + b1;
        q[2] = a2 - b2;
        q[3] = a3 + b3;
    } else {
        q[0] = a0 + b0;
        q[1] = a1 - b1;
        q[2] = a2 + b2;
        q[3] = a3 - b3;
    }
}

inline double atan2d(double y, double x) { return std::atan2(y, x); }

template <typename T> void quaternion2euler(T* e, const T* q, const char* order) {
    const Order o = parseOrder(order);
    const float half = 1.5707964f;
    const T x = q[0], y = q[1], z = q[2], w = q[3];
    if (o == Order::XYZ) {
        const T k = T(2) * (x * z - y * w);
        if (k > T(1)) {
            e[1] = -half;
        } else if (k < T(-1)) {
            e[1] = half;
        } else {
            e[1] = static_cast<T>(std::asin(static_cast<double>(-k)));
            if (std::fabs(k) < T(0.99999)) {
                e[0] = static_cast<T>(atan2d(T(2) * (y * z + x * w), T(1) - T(2) * (y * y + x * x)));
                e[2] = static_cast<T>(atan2d(T(2) * (x * y + z * w), T(1) - T(2) * (y * y + z * z)));
                return;
            }
        }
        e[0] = static_cast<T>(atan2d(T(-2) * (x * y - z * w), T(1) - T(2) * (z * z + x * x)));
        e[2] = T(0);
    } else {
        const T k = T(2) * (x * z + y * w);
        if (k < T(-1)) {
            e[1] = -half;
        } else if (k > T(1)) {
            e[1] = half;
        } else {
            e[1] = static_cast<T>(std::asin(static_cast<double>(k)));
            if (std::fabs(k) < T(0.99999)) {
                e[0] = static_cast<T>(atan2d(T(-2) * (y * z - x * w), T(1) - T(2) * (y * y + x * x)));
                e[2] = static_cast<T>(atan2d(T(-2) * (x * y - z * w), T(1) - T(2) * (y * y + z * z)));
                return;
            }
        }
        e[0] = static_cast<T>(atan2d(T(2) * (y * z + x * w), T(1) - T(2) * (z * z + x * x)));
        e[2] = T(0);
    }
}

template <typename T> void rotation2quaternion(T* q, const T* axis, T angle) {
    const double h = static_cast<double>(angle) / 2.0;
    const double s = std::sin(h), c = std::cos(h);
    const double ax = axis[0], ay = axis[1], az = axis[2];
    const double n = std::sqrt(ax * ax + ay * ay + az * az);
    if (n < 0.00001)
        throw std::runtime_error("Invalid rotation axis");
    q[0] = static_cast<T>(ax * s / n);
    q[1] = static_cast<T>(ay * s / n);
    q[2] = static_cast<T>(az * s / n);
    q[3] = static_cast<T>(c);
}

template <typename T> void quaternion2rotation(T* axis, T* angle, const T* q) {
    const T w = q[3];
    const T s = std::sqrt(T(1) - w * w);
    if (s < T(0.00001))
        throw std::runtime_error("Invalid quaternion rotation");
    axis[0] = q[0] / s;
    axis[1] = q[1] / s;
    axis[2] = q[2] / s;
    *angle = static_cast<T>(T(2) * std::atan2(s, w));
}

template <typename T> void print(std::ostream& stream, const T* m, Matrix4x4Type type) {
    for (int r = 0; r < 4; ++r) {
        for (int c = 0; c < 4; ++c)
            stream << (c == 0 ? "" : " ") << m[at(r, c, type)];
        stream << "\n";
    }
}

// Columns are handled in blocks held on the stack so that the inner loop runs
// over contiguous values (and vectorises) while the output stays interleaved.
template <typename T> void minmax(T* out, const T* in, int groups, int rows, int cols, int stride) {
    if (groups < 1 || rows < 1 || cols < 1)
        return;
    constexpr int block = 64;
    for (long g = 0; g < groups; ++g) {
        const T* group = in + g * rows * static_cast<long>(stride);
        for (int c0 = 0; c0 < cols; c0 += block) {
            const int n = cols - c0 < block ? cols - c0 : block;
            T lo[block], hi[block];
            for (int c = 0; c < n; ++c)
                lo[c] = hi[c] = group[c0 + c];
            for (long r = 1; r < rows; ++r) {
                const T* row = group + r * stride + c0;
                for (int c = 0; c < n; ++c) {
                    const T v = row[c];
                    lo[c] = v < lo[c] ? v : lo[c];
                    hi[c] = v > hi[c] ? v : hi[c];
                }
            }
            T* o = out + 2 * (g * cols + c0);
            for (int c = 0; c < n; ++c) {
                o[2 * c] = lo[c];
                o[2 * c + 1] = hi[c];
            }
        }
    }
}

} // namespace

#define SORVANE_MATH_FUNCTIONS(T, suffix)                                                                    \
    void matrix4x4_init_##suffix(T* m) { init(m); }                                                          \
    void matrix4x4_add_##suffix(T* a, const T* b) {                                                          \
        for (int i = 0; i < 16; ++i)                                                                         \
            a[i] += b[i];                                                                                    \
    }                                                                                                        \
    void matrix4x4_mul_##suffix(T* out, const T* a, const T* b, Matrix4x4Type type) { mul(out, a, b, type); } \
    void matrix4x4_rmul_##suffix(T* a, const T* b, Matrix4x4Type type) { mul(a, a, b, type); }               \
    void matrix4x4_lmul_##suffix(T* a, const T* b, Matrix4x4Type type) { mul(a, b, a, type); }               \
    void matrix4x4_scale_lmul_##suffix(T* a, const T* s, Matrix4x4Type type) { scaleLmul(a, s, type); }      \
    void matrix4x4_scale_rmul_##suffix(T* a, const T* s, Matrix4x4Type type) { scaleRmul(a, s, type); }      \
    void matrix4x4_translation_lmul_##suffix(T* a, const T* t, Matrix4x4Type type) {                         \
        translationLmul(a, t, type);                                                                         \
    }                                                                                                        \
    void matrix4x4_translation_rmul_##suffix(T* a, const T* t, Matrix4x4Type type) {                         \
        translationRmul(a, t, type);                                                                         \
    }                                                                                                        \
    void matrix4x4_quaternion_lmul_##suffix(T* a, const T* q, Matrix4x4Type type) {                          \
        quaternionLmul(a, q, type);                                                                          \
    }                                                                                                        \
    void matrix4x4_quaternion_rmul_##suffix(T* a, const T* q, Matrix4x4Type type) {                          \
        quaternionRmul(a, q, type);                                                                          \
    }                                                                                                        \
    void scale2matrix4x4_##suffix(T* m, const T* s) { scale2matrix(m, s); }                                  \
    void translation2matrix4x4_##suffix(T* m, const T* t, Matrix4x4Type type) { translation2matrix(m, t, type); } \
    void quaternion2matrix4x4_##suffix(T* m, const T* q, Matrix4x4Type type) { quaternion2matrix(m, q, type); } \
    void euler2matrix4x4_##suffix(T* m, const T* e, const char* order, Matrix4x4Type type) {                 \
        euler2matrix(m, e, order, type);                                                                     \
    }                                                                                                        \
    void srt2matrix4x4_##suffix(T* m, const T* s, const T* q, const T* t, Matrix4x4Type type) {              \
        srt2matrix(m, s, q, t, type);                                                                        \
    }                                                                                                        \
    void matrix4x42quaternion_##suffix(T* q, const T* m, Matrix4x4Type type) {                               \
        matrix2quaternion<T>(q, nullptr, m, type);                                                           \
    }                                                                                                        \
    void euler2quaternion_##suffix(T* q, const T* e, const char* order) { euler2quaternion(q, e, order); }   \
    void quaternion2euler_##suffix(T* e, const T* q, const char* order) { quaternion2euler(e, q, order); }   \
    void rotation2quaternion_##suffix(T* q, const T* axis, T angle) { rotation2quaternion(q, axis, angle); } \
    void quaternion2rotation_##suffix(T* axis, T* angle, const T* q) { quaternion2rotation(axis, angle, q); } \
    void matrix4x4_print_##suffix(std::ostream& stream, const T* m, Matrix4x4Type type) { print(stream, m, type); }

SORVANE_MATH_FUNCTIONS(float, float)
SORVANE_MATH_FUNCTIONS(double, double)
#undef SORVANE_MATH_FUNCTIONS

void matrix4x42srt_float(float* s, float* q, float* t, const float* m, Matrix4x4Type type) {
    matrix2srt(s, q, t, m, type);
}
void matrix4x42srt_float(double* s, double* q, double* t, const double* m, Matrix4x4Type type) {
    matrix2srt(s, q, t, m, type);
}
void matrix4x42srt_double(double* s, double* q, double* t, const double* m, Matrix4x4Type type) {
    matrix2srt(s, q, t, m, type);
}

void clamp_float_cpu(float* data, long count, float min, float max) {
    long i = 0;
#ifdef __SSE2__
    // Sixteen values at a time, and a block already in range is not written
    // back: weights clamped every frame are mostly in range, and their lines
    // then stay clean (read traffic only).
    const __m128 low = _mm_set1_ps(min), high = _mm_set1_ps(max);
    for (; i + 16 <= count; i += 16) {
        __m128 v[4], below[4], above[4];
        __m128 outside = _mm_setzero_ps();
        for (int k = 0; k < 4; ++k) {
            v[k] = _mm_loadu_ps(data + i + 4 * k);
            below[k] = _mm_cmplt_ps(v[k], low);  // false for NaN, as the scalar test
            above[k] = _mm_cmpgt_ps(v[k], high);
            outside = _mm_or_ps(outside, _mm_or_ps(below[k], above[k]));
        }
        if (!_mm_movemask_ps(outside)) continue;
        for (int k = 0; k < 4; ++k) {
            // Below min wins over above max, as in the scalar form.
            const __m128 upper = _mm_or_ps(_mm_and_ps(above[k], high), _mm_andnot_ps(above[k], v[k]));
            _mm_storeu_ps(data + i + 4 * k, _mm_or_ps(_mm_and_ps(below[k], low), _mm_andnot_ps(below[k], upper)));
        }
    }
#endif
    // Below min is tested first, so with min above max a low value gets min.
    for (; i < count; ++i) {
        const float v = data[i];
        data[i] = v < min ? min : (v > max ? max : v);
    }
}

void linearAdd_float_cpu(float* out, long size, const float* weights, const float* vectors, long count) {
    if (size < 1 || count < 1)
        return;
    // Four vectors per pass over `out`: a quarter of the traffic on `out`,
    // and each element still sums in the order j = 0, 1, 2, ...
    long j = 0;
    for (; j + 4 <= count; j += 4) {
        const float w0 = weights[j], w1 = weights[j + 1], w2 = weights[j + 2], w3 = weights[j + 3];
        const float* v0 = vectors + j * size;
        const float* v1 = v0 + size;
        const float* v2 = v1 + size;
        const float* v3 = v2 + size;
        for (long k = 0; k < size; ++k)
            out[k] = (((out[k] + v0[k] * w0) + v1[k] * w1) + v2[k] * w2) + v3[k] * w3;
    }
    for (; j < count; ++j) {
        const float w = weights[j];
        const float* v = vectors + j * size;
        for (long k = 0; k < size; ++k)
            out[k] += v[k] * w;
    }
}

void minmax_uint8_cpu(uint8_t* out, const uint8_t* in, int groups, int rows, int cols, int stride) {
    minmax(out, in, groups, rows, cols, stride);
}
void minmax_uint32_cpu(uint32_t* out, const uint32_t* in, int groups, int rows, int cols, int stride) {
    minmax(out, in, groups, rows, cols, stride);
}
void minmax_int64_cpu(int64_t* out, const int64_t* in, int groups, int rows, int cols, int stride) {
    minmax(out, in, groups, rows, cols, stride);
}
void minmax_float_cpu(float* out, const float* in, int groups, int rows, int cols, int stride) {
    minmax(out, in, groups, rows, cols, stride);
}

} // namespace sorvane
