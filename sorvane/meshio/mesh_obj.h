#ifndef SORVANE_MESHIO_MESH_OBJ_H
#define SORVANE_MESHIO_MESH_OBJ_H

// Wavefront .obj meshes with their .mtl material and texture.

#include <string>

#include "sorvane/core/Export.h"
#include "sorvane/datatree/DataTree.h"

namespace sorvane {

SORVANE_API DataTree loadObj(const std::string& path);
// Each line's first word as a key and the rest as its text; a "map_Kd"
// texture is read beside the .mtl into "textureFile" and "texture".
SORVANE_API void loadMtl(DataTree& out, const std::string& path);
// Writes the .obj, and with a texture the .mtl (and a .png for an image) beside it.
SORVANE_API void saveObj(const std::string& path, const DataTree& mesh);

} // namespace sorvane

#endif
