#include "sorvane/tools/geometry.h"

#include <cmath>
#include <cstring>
#include <initializer_list>

namespace sorvane {

namespace {

// Unnormalised (b - a) x (c - a).
void cross(float* n, const float* a, const float* b, const float* c) {
    const float u[3] = {b[0] - a[0], b[1] - a[1], b[2] - a[2]};
    const float v[3] = {c[0] - a[0], c[1] - a[1], c[2] - a[2]};
    n[0] = u[1] * v[2] - u[2] * v[1];
    n[1] = u[2] * v[0] - u[0] * v[2];
    n[2] = u[0] * v[1] - u[1] * v[0];
}

// Divides by the length, or zeroes a vector not longer than epsilon, so that
// a degenerate triangle never produces NaN.
void normalise(float* n, float epsilon) {
    const float length = std::sqrt(n[0] * n[0] + n[1] * n[1] + n[2] * n[2]);
    if (!(length > epsilon) || length == 0.0f) {
        n[0] = n[1] = n[2] = 0.0f;
        return;
    }
    n[0] /= length;
    n[1] /= length;
    n[2] /= length;
}

bool inside(long index, long vertexCount) { return index >= 0 && index < vertexCount; }

} // namespace

void distance_point2triangle_float(float*, float*, const float*, const float*, const float*, const float*) {}

void faces_max_index_cpu(long* out, const long* faces, long faceCount, long edgeCount, long batchCount, long stride) {
    if (stride < 0) stride = edgeCount;
    for (long b = 0; b < batchCount; ++b) {
        long largest = -1;
        const long* batch = faces + b * faceCount * stride;
        for (long f = 0; f < faceCount; ++f)
            for (long e = 0; e < edgeCount; ++e)
                if (batch[f * stride + e] > largest) largest = batch[f * stride + e];
        out[b] = largest;
    }
}

void triangles_normals_cpu(float* out, const float* vertices, long vertexCount, const long* faces, long faceCount,
                           long batchCount, long stride, float epsilon) {
    if (stride < 0) stride = 3;
    for (long b = 0; b < batchCount; ++b) {
        const float* v = vertices + b * vertexCount * 3;
        for (long f = 0; f < faceCount; ++f) {
            const long* face = faces + f * stride;
            float* n = out + (b * faceCount + f) * 3;
            if (!inside(face[0], vertexCount) || !inside(face[1], vertexCount) || !inside(face[2], vertexCount)) {
                n[0] = n[1] = n[2] = 0.0f;
                continue;
            }
            cross(n, v + face[0] * 3, v + face[1] * 3, v + face[2] * 3);
            normalise(n, epsilon);
        }
    }
}

void vertices_normals_cpu(float* out, long vertexCount, const float* vertices, const long* faces, long faceCount,
                          long edgeCount, long batchCount, long vertexStride, long faceStride, float epsilon) {
    if (vertexStride < 0) vertexStride = 3;
    if (faceStride < 0) faceStride = edgeCount;
    if (batchCount <= 0 || vertexCount <= 0) return;
    std::memset(out, 0, static_cast<size_t>(batchCount * vertexCount * 3) * sizeof(float));
    for (long b = 0; b < batchCount; ++b) {
        const float* v = vertices + b * vertexCount * vertexStride;
        float* o = out + b * vertexCount * 3;
        for (long f = 0; f < faceCount; ++f) {
            const long* face = faces + f * faceStride;
            for (long e = 2; e < edgeCount; ++e) {
                const long i0 = face[0], i1 = face[e - 1], i2 = face[e];
                if (!inside(i0, vertexCount) || !inside(i1, vertexCount) || !inside(i2, vertexCount)) continue;
                float n[3];
                cross(n, v + i0 * vertexStride, v + i1 * vertexStride, v + i2 * vertexStride);
                normalise(n, epsilon);
                for (long i : {i0, i1, i2})
                    for (int k = 0; k < 3; ++k) o[i * 3 + k] += n[k];
            }
        }
        for (long i = 0; i < vertexCount; ++i) normalise(o + i * 3, epsilon);
    }
}

} // namespace sorvane
