#ifndef SORVANE_MESHIO_MESH_X3D_H
#define SORVANE_MESHIO_MESH_X3D_H

#include <string>

#include "sorvane/core/Export.h"
#include "sorvane/datatree/DataTree.h"

namespace sorvane {

// An X3D 3.1 text file of one indexed face set: "vertices" and
// "facesVertices" are required, "facesNormal" is optional, nothing else is held.
SORVANE_API void saveX3d(const std::string& path, const DataTree& mesh);

} // namespace sorvane

#endif
