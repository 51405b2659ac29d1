#ifndef SORVANE_MESHIO_MESH_PTS_H
#define SORVANE_MESHIO_MESH_PTS_H

#include <string>

#include "sorvane/core/Export.h"

namespace sorvane {

// The count on the first line, then one "x y z" line per point.
SORVANE_API void savePts(const std::string& path, const float* points, long count);

} // namespace sorvane

#endif
