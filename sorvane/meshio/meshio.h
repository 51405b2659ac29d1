#ifndef SORVANE_MESHIO_MESHIO_H
#define SORVANE_MESHIO_MESHIO_H

// Mesh files to and from one DataTree object: "vertices" (Float [n, 3]),
// "facesVertices" / "facesUvs" / "facesNormals" (Integer64 [faces, edges],
// zero-based), "faces" (Integer64 triangles), "uvs" (Float [n, 2]),
// "normals", "colors", "texture" (image object or file name) and the keys of
// a material file.

#include <string>

#include "sorvane/core/Export.h"
#include "sorvane/meshio/faces2triangles.h"
#include "sorvane/meshio/mesh_obj.h"
#include "sorvane/meshio/mesh_pts.h"
#include "sorvane/meshio/mesh_x3d.h"

namespace sorvane {

// Non-overlapping occurrences of `pattern` (0 for an empty pattern).
SORVANE_API long countPatterns(const std::string& text, const char* pattern);
SORVANE_API long countChars(const std::string& text, char c);
// Words separated by blanks (spaces and tabs).
SORVANE_API long countWords(const std::string& text);

// By extension, exactly: ".obj", ".gltf", ".glb"; anything else raises "Unsupported file
// extension %s".
SORVANE_API DataTree loadMesh(const std::string& path);
SORVANE_API void saveMesh(const std::string& path, const DataTree& mesh, bool embedded);

} // namespace sorvane

#endif
