#ifndef SORVANE_TOOLS_GEOMETRY_H
#define SORVANE_TOOLS_GEOMETRY_H

#include "sorvane/core/Export.h"

namespace sorvane {

// Distance of a point to a triangle: declared for callers, computes nothing.
SORVANE_API void distance_point2triangle_float(float* out, float* closest, const float* point, const float* a,
                                               const float* b, const float* c);

// Per batch, the largest vertex index used by faceCount faces of edgeCount
// indices each (-1 when there is none). Faces lie `stride` indices apart
// (edgeCount when negative) and the batches one after the other, faceCount
// faces each; out holds batchCount values.
SORVANE_API void faces_max_index_cpu(long* out, const long* faces, long faceCount, long edgeCount, long batchCount,
                                     long stride);

// The unit normal of each triangle, (v1 - v0) x (v2 - v0) normalised; out
// holds batchCount * faceCount * 3 floats. Every batch has its own
// vertexCount vertices (3 floats each) and shares the faces, which lie
// `stride` indices apart (3 when negative). A triangle shorter than epsilon
// or with an index outside the vertices gets (0, 0, 0).
SORVANE_API void triangles_normals_cpu(float* out, const float* vertices, long vertexCount, const long* faces,
                                       long faceCount, long batchCount, long stride, float epsilon);

// The unit normal of each vertex: the normals of its triangles summed and
// normalised; out holds batchCount * vertexCount * 3 floats. Faces have
// edgeCount indices (fanned from the first one beyond three), lie faceStride
// indices apart (edgeCount when negative) and are shared by the batches,
// whose vertices lie vertexStride floats apart (3 when negative). A vertex
// no triangle touches, or whose sum is shorter than epsilon, stays (0, 0, 0).
SORVANE_API void vertices_normals_cpu(float* out, long vertexCount, const float* vertices, const long* faces,
                                      long faceCount, long edgeCount, long batchCount, long vertexStride,
                                      long faceStride, float epsilon);

} // namespace sorvane

#endif
