#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <sstream>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "sorvane/core/math.h"

using namespace sorvane;

namespace {

// The float and double families under one name, so each test runs on both.
template <typename T> struct Math;

#define MATH_TRAITS(T, suffix)                                                                               \
    template <> struct Math<T> {                                                                             \
        static constexpr double tolerance = sizeof(T) == 4 ? 1e-5 : 1e-12;                                   \
        static void init(T* m) { matrix4x4_init_##suffix(m); }                                               \
        static void mul(T* o, const T* a, const T* b, Matrix4x4Type t) { matrix4x4_mul_##suffix(o, a, b, t); } \
        static void rmul(T* a, const T* b, Matrix4x4Type t) { matrix4x4_rmul_##suffix(a, b, t); }            \
        static void lmul(T* a, const T* b, Matrix4x4Type t) { matrix4x4_lmul_##suffix(a, b, t); }            \
        static void scaleL(T* a, const T* s, Matrix4x4Type t) { matrix4x4_scale_lmul_##suffix(a, s, t); }    \
        static void scaleR(T* a, const T* s, Matrix4x4Type t) { matrix4x4_scale_rmul_##suffix(a, s, t); }    \
        static void transL(T* a, const T* v, Matrix4x4Type t) { matrix4x4_translation_lmul_##suffix(a, v, t); } \
        static void transR(T* a, const T* v, Matrix4x4Type t) { matrix4x4_translation_rmul_##suffix(a, v, t); } \
        static void quatL(T* a, const T* q, Matrix4x4Type t) { matrix4x4_quaternion_lmul_##suffix(a, q, t); } \
        static void quatR(T* a, const T* q, Matrix4x4Type t) { matrix4x4_quaternion_rmul_##suffix(a, q, t); } \
        static void scale(T* m, const T* s) { scale2matrix4x4_##suffix(m, s); }                              \
        static void translation(T* m, const T* v, Matrix4x4Type t) { translation2matrix4x4_##suffix(m, v, t); } \
        static void q2m(T* m, const T* q, Matrix4x4Type t) { quaternion2matrix4x4_##suffix(m, q, t); }        \
        static void e2m(T* m, const T* e, const char* o, Matrix4x4Type t) { euler2matrix4x4_##suffix(m, e, o, t); } \
        static void srt(T* m, const T* s, const T* q, const T* v, Matrix4x4Type t) {                         \
            srt2matrix4x4_##suffix(m, s, q, v, t);                                                           \
        }                                                                                                    \
        static void m2srt(T* s, T* q, T* v, const T* m, Matrix4x4Type t) { matrix4x42srt_float(s, q, v, m, t); } \
        static void m2q(T* q, const T* m, Matrix4x4Type t) { matrix4x42quaternion_##suffix(q, m, t); }        \
        static void e2q(T* q, const T* e, const char* o) { euler2quaternion_##suffix(q, e, o); }              \
        static void q2e(T* e, const T* q, const char* o) { quaternion2euler_##suffix(e, q, o); }              \
        static void r2q(T* q, const T* axis, T angle) { rotation2quaternion_##suffix(q, axis, angle); }       \
        static void q2r(T* axis, T* angle, const T* q) { quaternion2rotation_##suffix(axis, angle, q); }      \
        static void print(std::ostream& s, const T* m, Matrix4x4Type t) { matrix4x4_print_##suffix(s, m, t); } \
    };
MATH_TRAITS(float, float)
MATH_TRAITS(double, double)

template <typename T> class MathTest : public ::testing::Test {};
using Precisions = ::testing::Types<float, double>;
TYPED_TEST_SUITE(MathTest, Precisions);

const Matrix4x4Type kLayouts[] = {MATRIX4X4_ROW_MAJOR, MATRIX4X4_COLUMN_MAJOR};

inline int at(int r, int c, Matrix4x4Type type) { return type == MATRIX4X4_COLUMN_MAJOR ? c * 4 + r : r * 4 + c; }

template <typename T> void expectNear(const T* a, const T* b, int n, double tol) {
    for (int i = 0; i < n; ++i)
        EXPECT_NEAR(a[i], b[i], tol) << "element " << i;
}

template <typename T> std::string runtimeError(void (*f)(T*, const T*, Matrix4x4Type), const T* in) {
    T out[16];
    try {
        f(out, in, MATRIX4X4_ROW_MAJOR);
    } catch (const std::runtime_error& e) {
        return e.what();
    }
    return "";
}

// A general affine matrix with distinct entries, in row-major logical order.
template <typename T> void sample(T* m, Matrix4x4Type type) {
    const T v[16] = {1, 2, 3, 4, -5, 6, 7, 8, 9, -10, 11, 12, 0, 0, 0, 1};
    for (int r = 0; r < 4; ++r)
        for (int c = 0; c < 4; ++c)
            m[at(r, c, type)] = v[r * 4 + c];
}

} // namespace

TYPED_TEST(MathTest, LayoutsPlaceTranslationAndMultiplyInOrder) {
    using T = TypeParam;
    using M = Math<T>;
    const T t[3] = {1, 2, 3};
    T m[16];
    M::translation(m, t, MATRIX4X4_ROW_MAJOR);
    EXPECT_EQ(m[3], 1);
    EXPECT_EQ(m[7], 2);
    EXPECT_EQ(m[11], 3);
    EXPECT_EQ(m[12], 0);
    M::translation(m, t, MATRIX4X4_COLUMN_MAJOR);
    EXPECT_EQ(m[12], 1);
    EXPECT_EQ(m[13], 2);
    EXPECT_EQ(m[14], 3);
    EXPECT_EQ(m[3], 0);

    for (Matrix4x4Type type : kLayouts) {
        SCOPED_TRACE(type);
        T a[16], id[16], out[16];
        sample(a, type);
        M::init(id);
        M::mul(out, id, a, type);
        expectNear(out, a, 16, 0);
        M::mul(out, a, id, type);
        expectNear(out, a, 16, 0);

        // T * S keeps the translation, S * T scales it.
        const T tx[3] = {1, 0, 0}, s2[3] = {2, 2, 2};
        T tm[16], sm[16];
        M::translation(tm, tx, type);
        M::scale(sm, s2);
        M::mul(out, tm, sm, type);
        EXPECT_EQ(out[at(0, 3, type)], 1);
        M::mul(out, sm, tm, type);
        EXPECT_EQ(out[at(0, 3, type)], 2);
        // The product may be written over a factor.
        T b[16];
        sample(b, type);
        M::mul(b, sm, b, type);
        T expected[16];
        sample(a, type);
        M::mul(expected, sm, a, type);
        expectNear(b, expected, 16, 0);
    }
}

TYPED_TEST(MathTest, InPlaceProductsMatchTheFullProduct) {
    using T = TypeParam;
    using M = Math<T>;
    const T s[3] = {2, -3, 0.5}, t[3] = {4, 5, -6};
    const T q[4] = {0.1, -0.4, 0.3, 0.8}; // not unit: used as it is
    for (Matrix4x4Type type : kLayouts) {
        SCOPED_TRACE(type);
        T a[16], f[16], expected[16], got[16];
        sample(a, type);
        M::scale(f, s);
        M::mul(expected, f, a, type);
        std::copy(a, a + 16, got);
        M::scaleL(got, s, type);
        expectNear(got, expected, 16, M::tolerance);
        M::mul(expected, a, f, type);
        std::copy(a, a + 16, got);
        M::scaleR(got, s, type);
        expectNear(got, expected, 16, M::tolerance);

        M::translation(f, t, type);
        M::mul(expected, f, a, type);
        std::copy(a, a + 16, got);
        M::transL(got, t, type);
        expectNear(got, expected, 16, M::tolerance);
        M::mul(expected, a, f, type);
        std::copy(a, a + 16, got);
        M::transR(got, t, type);
        expectNear(got, expected, 16, M::tolerance);

        M::q2m(f, q, type);
        M::mul(expected, f, a, type);
        std::copy(a, a + 16, got);
        M::quatL(got, q, type);
        expectNear(got, expected, 16, M::tolerance);
        std::copy(a, a + 16, got);
        M::lmul(got, f, type);
        expectNear(got, expected, 16, M::tolerance);
        M::mul(expected, a, f, type);
        std::copy(a, a + 16, got);
        M::quatR(got, q, type);
        expectNear(got, expected, 16, M::tolerance);
        std::copy(a, a + 16, got);
        M::rmul(got, f, type);
        expectNear(got, expected, 16, M::tolerance);
    }
    T a[16], b[16];
    sample(a, MATRIX4X4_ROW_MAJOR);
    sample(b, MATRIX4X4_ROW_MAJOR);
    if constexpr (sizeof(T) == 4)
        matrix4x4_add_float(a, b);
    else
        matrix4x4_add_double(a, b);
    EXPECT_EQ(a[4], -10);
    EXPECT_EQ(a[15], 2);
}

TYPED_TEST(MathTest, EulerOrderOfTheQuaternionIsTheReverseOfTheMatrix) {
    using T = TypeParam;
    using M = Math<T>;
    const T e[3] = {0.3, -0.2, 0.5};
    for (Matrix4x4Type type : kLayouts) {
        T q[4], fromQ[16], xyz[16], zyx[16];
        M::e2m(xyz, e, "XYZ", type);
        M::e2m(zyx, e, "ZYX", type);
        M::e2q(q, e, "XYZ");
        M::q2m(fromQ, q, type);
        expectNear(fromQ, zyx, 16, 1e-6);
        double differs = 0;
        for (int i = 0; i < 16; ++i)
            differs = std::max(differs, std::fabs(double(fromQ[i] - xyz[i])));
        EXPECT_GT(differs, 1e-3);
        M::e2q(q, e, "ZYX");
        M::q2m(fromQ, q, type);
        expectNear(fromQ, xyz, 16, 1e-6);
    }
    // "XYZ" matrix is Rx * Ry * Rz: its first row ends in sin(e[1]).
    T m[16];
    M::e2m(m, e, "XYZ", MATRIX4X4_ROW_MAJOR);
    EXPECT_NEAR(m[2], std::sin(T(-0.2)), M::tolerance);
}

TYPED_TEST(MathTest, EulerRoundTripsAndGimbalLock) {
    using T = TypeParam;
    using M = Math<T>;
    const T e[3] = {0.1, 0.2, 0.3};
    for (const char* order : {"XYZ", "ZYX"}) {
        SCOPED_TRACE(order);
        T q[4], back[3];
        M::e2q(q, e, order);
        M::q2e(back, q, order);
        expectNear(back, e, 3, 1e-6);
    }
    const T lock[3] = {0.4, T(M_PI / 2), 0.25};
    T q[4], back[3];
    M::e2q(q, lock, "ZYX");
    M::q2e(back, q, "ZYX");
    EXPECT_NEAR(back[0], 0.65, 1e-3);
    EXPECT_NEAR(back[1], M_PI / 2, 1e-3);
    EXPECT_EQ(back[2], T(0));

    // A k just past 1 (from an unnormalised quaternion) takes the fixed half angle.
    const T beyond[4] = {0.8, 0, 0.8, 0};
    M::q2e(back, beyond, "XYZ");
    EXPECT_EQ(back[1], T(-1.5707964f));
    EXPECT_EQ(back[2], T(0));
    M::q2e(back, beyond, "ZYX");
    EXPECT_EQ(back[1], T(1.5707964f));

    for (const char* bad : {"xyz", "XZY", "", "XYZ "}) {
        T m[16];
        EXPECT_THROW(
            try { M::e2m(m, e, bad, MATRIX4X4_ROW_MAJOR); } catch (const std::runtime_error& x) {
                EXPECT_STREQ(x.what(), "Invalid euler order");
                throw;
            },
            std::runtime_error);
        EXPECT_THROW(M::e2q(q, e, bad), std::runtime_error);
        EXPECT_THROW(M::q2e(back, q, bad), std::runtime_error);
    }
}

TYPED_TEST(MathTest, MatrixToQuaternionAndBackToScaleRotationTranslation) {
    using T = TypeParam;
    using M = Math<T>;
    T id[16], q[4];
    M::init(id);
    M::m2q(q, id, MATRIX4X4_ROW_MAJOR);
    const T unit[4] = {0, 0, 0, 1};
    expectNear(q, unit, 4, 0);

    T halfTurn[16];
    M::init(halfTurn);
    halfTurn[5] = -1;
    halfTurn[10] = -1;
    EXPECT_EQ(runtimeError<T>(M::m2q, halfTurn), "Invalid matrix transform");

    const T r = T(std::sqrt(0.5));
    const T s[3] = {2, 3, 4}, rot[4] = {0, 0, r, r}, t[3] = {5, 6, 7};
    for (Matrix4x4Type type : kLayouts) {
        SCOPED_TRACE(type);
        T m[16];
        M::srt(m, s, rot, t, type);
        const T columns[3][3] = {{0, 2, 0}, {-3, 0, 0}, {0, 0, 4}};
        for (int c = 0; c < 3; ++c)
            for (int row = 0; row < 3; ++row)
                EXPECT_NEAR(m[at(row, c, type)], columns[c][row], M::tolerance) << row << "," << c;
        EXPECT_EQ(m[at(0, 3, type)], 5);
        EXPECT_EQ(m[at(2, 3, type)], 7);
        EXPECT_EQ(m[at(3, 3, type)], 1);
        EXPECT_EQ(m[at(3, 0, type)], 0);

        T s2[3], q2[4], t2[3];
        M::m2srt(s2, q2, t2, m, type);
        expectNear(s2, s, 3, M::tolerance);
        expectNear(q2, rot, 4, M::tolerance);
        expectNear(t2, t, 3, 0);
        // The scaled rotation alone gives the rotation.
        M::m2q(q2, m, type);
        expectNear(q2, rot, 4, M::tolerance);
    }
}

TYPED_TEST(MathTest, AxisAngle) {
    using T = TypeParam;
    using M = Math<T>;
    const T axis[3] = {0, 0, 2};
    T q[4];
    M::r2q(q, axis, T(M_PI / 2));
    const T r = T(std::sqrt(0.5));
    const T expected[4] = {0, 0, r, r};
    expectNear(q, expected, 4, M::tolerance);
    T back[3], angle = 0;
    M::q2r(back, &angle, q);
    EXPECT_NEAR(angle, M_PI / 2, M::tolerance);
    EXPECT_NEAR(back[2], 1, M::tolerance);

    const T zero[3] = {0, 0, 0};
    try {
        M::r2q(q, zero, 1);
        FAIL();
    } catch (const std::runtime_error& e) {
        EXPECT_STREQ(e.what(), "Invalid rotation axis");
    }
    const T identity[4] = {0, 0, 0, 1};
    try {
        M::q2r(back, &angle, identity);
        FAIL();
    } catch (const std::runtime_error& e) {
        EXPECT_STREQ(e.what(), "Invalid quaternion rotation");
    }
}

TYPED_TEST(MathTest, PrintWritesLogicalRows) {
    using T = TypeParam;
    using M = Math<T>;
    const T t[3] = {1, 2, 3};
    T m[16];
    M::translation(m, t, MATRIX4X4_COLUMN_MAJOR);
    std::ostringstream column, row;
    M::print(column, m, MATRIX4X4_COLUMN_MAJOR);
    M::translation(m, t, MATRIX4X4_ROW_MAJOR);
    M::print(row, m, MATRIX4X4_ROW_MAJOR);
    EXPECT_EQ(column.str(), row.str());
    EXPECT_EQ(row.str().substr(0, 8), "1 0 0 1\n");
}

TEST(MathKernels, Clamp) {
    const float nan = std::numeric_limits<float>::quiet_NaN();
    float v[4] = {-1, 0.5f, 2, nan};
    clamp_float_cpu(v, 4, 0, 1);
    EXPECT_EQ(v[0], 0);
    EXPECT_EQ(v[1], 0.5f);
    EXPECT_EQ(v[2], 1);
    EXPECT_TRUE(std::isnan(v[3]));
    // min above max: below min is tested first.
    float w[3] = {0, 5, 10};
    clamp_float_cpu(w, 3, 6, 4);
    EXPECT_EQ(w[0], 6);
    EXPECT_EQ(w[1], 6);
    EXPECT_EQ(w[2], 4);
    // Long enough for the blocks and the tail: NaN, a range with min above
    // max, a block with a single value out of range among values in range
    // (the whole block written right), and blocks left as they were.
    auto reference = [](float v, float min, float max) { return v < min ? min : (v > max ? max : v); };
    for (const auto& range : {std::pair<float, float>{-10, 20}, {6, 4}, {-1000, 1000}}) {
        std::vector<float> many(1003), expected(1003);
        for (size_t i = 0; i < many.size(); ++i) {
            many[i] = i % 97 == 5 ? nan : i < 100 ? float(i) - 50 : i == 300 ? 25.f : float(i % 7);
            expected[i] = reference(many[i], range.first, range.second);
        }
        clamp_float_cpu(many.data(), long(many.size()), range.first, range.second);
        for (size_t i = 0; i < many.size(); ++i) {
            if (std::isnan(expected[i])) ASSERT_TRUE(std::isnan(many[i])) << i;
            else ASSERT_EQ(many[i], expected[i]) << i << " in [" << range.first << ", " << range.second << "]";
        }
    }
}

TEST(MathKernels, LinearAddAccumulatesInVectorOrder) {
    const long size = 37, count = 7;
    std::vector<float> vectors(size * count), weights(count), out(size), expected(size);
    for (long j = 0; j < count; ++j) {
        weights[j] = 0.1f * float(j + 1);
        for (long k = 0; k < size; ++k)
            vectors[j * size + k] = float((j * 31 + k * 7) % 11) - 5.3f;
    }
    for (long k = 0; k < size; ++k)
        out[k] = expected[k] = float(k);
    for (long j = 0; j < count; ++j)
        for (long k = 0; k < size; ++k)
            expected[k] += vectors[j * size + k] * weights[j];
    linearAdd_float_cpu(out.data(), size, weights.data(), vectors.data(), count);
    for (long k = 0; k < size; ++k)
        EXPECT_EQ(out[k], expected[k]) << k; // same order of additions, so exact

    std::vector<float> before = out;
    linearAdd_float_cpu(out.data(), size, weights.data(), vectors.data(), 0);
    linearAdd_float_cpu(out.data(), 0, weights.data(), vectors.data(), count);
    linearAdd_float_cpu(out.data(), -1, weights.data(), vectors.data(), count);
    EXPECT_EQ(out, before);
}

TEST(MathKernels, MinMaxPerGroupAndColumn) {
    const float x = 99;
    const float in[12] = {1, 5, x, 3, 2, x, 7, 0, x, 4, 9, x};
    float out[8] = {};
    minmax_float_cpu(out, in, 2, 2, 2, 3);
    const float expected[8] = {1, 3, 2, 5, 4, 7, 0, 9};
    for (int i = 0; i < 8; ++i)
        EXPECT_EQ(out[i], expected[i]) << i;

    // Other element types, and more columns than one block holds.
    const int cols = 70, rows = 3;
    std::vector<uint8_t> bytes(rows * cols);
    std::vector<int64_t> longs(rows * cols);
    std::vector<uint32_t> words(rows * cols);
    for (int r = 0; r < rows; ++r)
        for (int c = 0; c < cols; ++c) {
            bytes[r * cols + c] = uint8_t((c + r * 100) % 256);
            longs[r * cols + c] = int64_t(c) * (r - 1) * 1000000000000LL;
            words[r * cols + c] = uint32_t(c * (r + 1));
        }
    std::vector<uint8_t> ob(2 * cols);
    std::vector<int64_t> ol(2 * cols);
    std::vector<uint32_t> ow(2 * cols);
    minmax_uint8_cpu(ob.data(), bytes.data(), 1, rows, cols, cols);
    minmax_int64_cpu(ol.data(), longs.data(), 1, rows, cols, cols);
    minmax_uint32_cpu(ow.data(), words.data(), 1, rows, cols, cols);
    for (int c = 0; c < cols; ++c) {
        EXPECT_EQ(ob[2 * c], c < 56 ? c : (c + 200) % 256) << c;
        EXPECT_EQ(ob[2 * c + 1], c < 56 ? c + 200 : c + 100) << c;
        EXPECT_EQ(ol[2 * c], -int64_t(c) * 1000000000000LL);
        EXPECT_EQ(ol[2 * c + 1], int64_t(c) * 1000000000000LL);
        EXPECT_EQ(ow[2 * c], uint32_t(c));
        EXPECT_EQ(ow[2 * c + 1], uint32_t(3 * c));
    }

    float untouched[2] = {-7, -7};
    minmax_float_cpu(untouched, in, 0, 2, 1, 3);
    minmax_float_cpu(untouched, in, 1, 0, 1, 3);
    EXPECT_EQ(untouched[0], -7);
    EXPECT_EQ(untouched[1], -7);
}
