/* Flat C interface, extensions for media: image crops and flips, and mesh
 * files as DataTree objects. Included by sorvane/sorvane.h.
 *
 * Images are the image objects of sorvane_image.h; a mesh is a DataTree object
 * with "vertices" (Float [n, 3]), "faces" or "facesVertices" (Integer64,
 * zero-based), and optionally "uvs", "facesUvs", "colors", "texture". */
#ifndef SORVANE_FLAT_SORVANE_MEDIA_H
#define SORVANE_FLAT_SORVANE_MEDIA_H

#include <stdint.h>
#ifndef __cplusplus
#include <stdbool.h>
#endif

#include "sorvane/core/Export.h"
#include "sorvane/flat/sorvane_datatree.h"

#ifdef __cplusplus
extern "C" {
#endif

/* A new image object holding the window [x0, x1) x [y0, y1) of an 8-bit image
 * object; parts of the window outside the image are zero. */
SORVANE_API int32_t sorvane_cropImagePtr(DataTree** out, const DataTree* image, int64_t x0, int64_t y0, int64_t x1,
                                         int64_t y1);
/* A new image object with the rows of an 8-bit image object in reverse order. */
SORVANE_API int32_t sorvane_vflipImagePtr(DataTree** out, const DataTree* image);
/* The smallest window holding every pixel that differs from color (one value
 * per channel): out receives bottom, right, top and left, four values. */
SORVANE_API int32_t sorvane_smallestImageCrop(int64_t* out, const DataTree* image, const double* color,
                                              int64_t colorCount);

/* A Wavefront .obj with its material file and texture, as a new mesh object. */
SORVANE_API int32_t sorvane_loadObjPtr(DataTree** out, const char* path);
/* Writes a mesh object as .obj (and its .mtl and texture .png beside it). */
SORVANE_API int32_t sorvane_saveObj(const char* path, const DataTree* mesh);
/* A mesh file, by its extension (.obj, .gltf, .glb), as a new mesh object. */
SORVANE_API int32_t sorvane_loadMeshPtr(DataTree** out, const char* path);
/* Writes a mesh object in the format its extension names (.obj; .gltf and .glb always embed their buffers). */
SORVANE_API int32_t sorvane_saveMesh(const char* path, const DataTree* mesh, bool embedded);

#ifdef __cplusplus
}
#endif

#endif
