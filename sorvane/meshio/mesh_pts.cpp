#include "sorvane/meshio/mesh_pts.h"

#include "sorvane/core/RuntimeException.h"
#include "sorvane/meshio/detail/TextWriter.h"

namespace sorvane {

void savePts(const std::string& path, const float* points, long count) {
    if (count < 0 || (count > 0 && !points)) SORVANE_THROW("Invalid points (%ld)", count);
    detail::TextWriter file(path);
    file << count << '\n';
    for (long i = 0; i < count; ++i) {
        const float* p = points + i * 3;
        file << static_cast<double>(p[0]) << ' ' << static_cast<double>(p[1]) << ' ' << static_cast<double>(p[2])
             << '\n';
    }
    file.close();
}

} // namespace sorvane
