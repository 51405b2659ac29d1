#include "sorvane/meshio/faces2triangles.h"

#include <algorithm>
#include <cstring>
#include <unordered_map>

#include "sorvane/core/RuntimeException.h"

namespace sorvane {

long faces2triangles_int64_cpu(long* out, long outSize, const long* faces, long batchCount, long faceCount,
                               long edgeCount) {
    if (batchCount < 0 || faceCount < 0) SORVANE_THROW("Invalid face count %ld x %ld", batchCount, faceCount);
    if (edgeCount == 3) {
        if (out) {
            if (outSize < faceCount) SORVANE_THROW("Invalid output size %ld < %ld", outSize, faceCount);
            for (long b = 0; b < batchCount; ++b) {
                long* o = out + b * outSize * 3;
                std::memcpy(o, faces + b * faceCount * 3, static_cast<size_t>(faceCount * 3) * sizeof(long));
                std::fill(o + faceCount * 3, o + outSize * 3, -1L);
            }
        }
        return faceCount;
    }
    if (edgeCount != 4) SORVANE_THROW("Unable to convert from polygons with %d edges", static_cast<int>(edgeCount));
    long largest = 0;
    for (long b = 0; b < batchCount; ++b) {
        const long* f = faces + b * faceCount * 4;
        long count = 0;
        for (long i = 0; i < faceCount; ++i) count += f[i * 4 + 3] < 0 ? 1 : 2;
        largest = std::max(largest, count);
        if (!out) continue;
        // The output is sized by the caller: a batch that does not fit is refused, not written past.
        if (count > outSize) SORVANE_THROW("Invalid output size %ld < %ld", outSize, count);
        long* o = out + b * outSize * 3;
        for (long i = 0; i < faceCount; ++i) {
            const long* q = f + i * 4;
            *o++ = q[0], *o++ = q[1], *o++ = q[2];
            if (q[3] >= 0) *o++ = q[0], *o++ = q[2], *o++ = q[3];
        }
        std::fill(o, out + (b + 1) * outSize * 3, -1L);
    }
    return largest;
}

long merge_face_indexes_int64_cpu(long* out, const long* a, const long* b, long faceCount, long edgeCount) {
    struct PairHash {
        size_t operator()(const std::pair<long, long>& p) const {
            return std::hash<long>()(p.first) * 1000003u ^ std::hash<long>()(p.second);
        }
    };
    std::unordered_map<std::pair<long, long>, long, PairHash> ids;
    const long count = faceCount * edgeCount;
    ids.reserve(static_cast<size_t>(count > 0 ? count : 0));
    for (long i = 0; i < count; ++i) {
        if (a[i] < 0 || b[i] < 0) {
            out[i] = -1;
            continue;
        }
        const auto found = ids.emplace(std::make_pair(a[i], b[i]), static_cast<long>(ids.size()));
        out[i] = found.first->second;
    }
    return static_cast<long>(ids.size());
}

} // namespace sorvane
