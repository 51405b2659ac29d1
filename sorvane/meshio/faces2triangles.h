#ifndef SORVANE_MESHIO_FACES2TRIANGLES_H
#define SORVANE_MESHIO_FACES2TRIANGLES_H

#include "sorvane/core/Export.h"

namespace sorvane {

// Triangles from faces of 3 or 4 indices, per batch of faceCount faces. A
// quad (a, b, c, d) gives (a, b, c) and, when d is not negative, (a, c, d).
// `out` holds batchCount blocks of outSize triangles; a batch with fewer
// triangles is padded with -1. Returns the largest triangle count of a batch;
// with a null out only counts.
SORVANE_API long faces2triangles_int64_cpu(long* out, long outSize, const long* faces, long batchCount,
                                           long faceCount, long edgeCount);

// One index per distinct (a, b) pair of corners, in order of first use, so
// that separate vertex and uv indices become one index per corner. A negative
// corner stays -1. Returns the number of distinct pairs.
SORVANE_API long merge_face_indexes_int64_cpu(long* out, const long* a, const long* b, long faceCount,
                                              long edgeCount);

} // namespace sorvane

#endif
