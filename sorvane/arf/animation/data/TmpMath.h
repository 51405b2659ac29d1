// Temporary stand-ins for the core math kernels until they land; removed then.
#ifndef SORVANE_ARF_ANIMATION_DATA_TMPMATH_H
#define SORVANE_ARF_ANIMATION_DATA_TMPMATH_H
#include <cmath>
#include <cstring>
namespace sorvane::tmpmath {
inline void matrix4x4_lmul_float(float* a, const float* b, int) {
    float r[16];
    for (int i = 0; i < 4; ++i)
        for (int j = 0; j < 4; ++j) {
            float s = 0;
            for (int k = 0; k < 4; ++k) s += b[i * 4 + k] * a[k * 4 + j];
            r[i * 4 + j] = s;
        }
    std::memcpy(a, r, sizeof r);
}
inline void quaternion2matrix4x4_float(float* m, const float* q, int) {
    float x = q[0], y = q[1], z = q[2], w = q[3];
    float r[16] = {1 - 2 * (y * y + z * z), 2 * (x * y - z * w), 2 * (x * z + y * w), 0,
                   2 * (x * y + z * w), 1 - 2 * (x * x + z * z), 2 * (y * z - x * w), 0,
                   2 * (x * z - y * w), 2 * (y * z + x * w), 1 - 2 * (x * x + y * y), 0,
                   0, 0, 0, 1};
    std::memcpy(m, r, sizeof r);
}
inline void euler2quaternion_float(float* q, const float* e, const char*) {
    double sa = std::sin(e[0] / 2.0f), ca = std::cos(e[0] / 2.0f), sb = std::sin(e[1] / 2.0f),
           cb = std::cos(e[1] / 2.0f), sc = std::sin(e[2] / 2.0f), cc = std::cos(e[2] / 2.0f);
    q[0] = float(sa * cb * cc - ca * sb * sc);
    q[1] = float(ca * sb * cc + sa * cb * sc);
    q[2] = float(ca * cb * sc - sa * sb * cc);
    q[3] = float(ca * cb * cc + sa * sb * sc);
}
inline void translation2matrix4x4_float(float* m, const float* t, int) {
    float r[16] = {1, 0, 0, t[0], 0, 1, 0, t[1], 0, 0, 1, t[2], 0, 0, 0, 1};
    std::memcpy(m, r, sizeof r);
}
inline void scale2matrix4x4_float(float* m, const float* s) {
    float r[16] = {s[0], 0, 0, 0, 0, s[1], 0, 0, 0, 0, s[2], 0, 0, 0, 0, 1};
    std::memcpy(m, r, sizeof r);
}
} // namespace sorvane::tmpmath
#endif
