// Flat functions over image operations and mesh files.
#include <vector>

#include "sorvane/datatree/DataTree.h"
#include "sorvane/flat/Frame.h"
#include "sorvane/flat/sorvane_media.h"
#include "sorvane/image/crop.h"
#include "sorvane/image/flip.h"
#include "sorvane/meshio/meshio.h"

namespace flat = sorvane::flat;
using sorvane::DataTree;

extern "C" {

int32_t sorvane_cropImagePtr(DataTree** out, const DataTree* image, int64_t x0, int64_t y0, int64_t x1, int64_t y1) {
    return flat::get(out, "image is NULL", image, [&](const DataTree& img) {
        return new DataTree(sorvane::cropImage(img, static_cast<long>(x0), static_cast<long>(y0),
                                               static_cast<long>(x1), static_cast<long>(y1)));
    });
}

int32_t sorvane_vflipImagePtr(DataTree** out, const DataTree* image) {
    return flat::get(out, "image is NULL", image,
                     [&](const DataTree& img) { return new DataTree(sorvane::vflipImage(img)); });
}

int32_t sorvane_smallestImageCrop(int64_t* out, const DataTree* image, const double* color, int64_t colorCount) {
    if (!image) return flat::fail("image is NULL");
    if (!out) return flat::fail("out is NULL");
    if (!color) return flat::fail("color is NULL");
    return flat::guard([&] {
        const std::vector<long> box = sorvane::smallestImageCrop(*image, flat::array(color, colorCount));
        for (size_t i = 0; i < 4; ++i) out[i] = i < box.size() ? box[i] : 0;
    });
}

int32_t sorvane_loadObjPtr(DataTree** out, const char* path) {
    if (!path) return flat::fail("path is NULL");
    return flat::create(out, [&] { return new DataTree(sorvane::loadObj(path)); });
}

int32_t sorvane_saveObj(const char* path, const DataTree* mesh) {
    if (!path) return flat::fail("path is NULL");
    return flat::call("mesh is NULL", mesh, [&](const DataTree& m) { sorvane::saveObj(path, m); });
}

int32_t sorvane_loadMeshPtr(DataTree** out, const char* path) {
    if (!path) return flat::fail("path is NULL");
    return flat::create(out, [&] { return new DataTree(sorvane::loadMesh(path)); });
}

int32_t sorvane_saveMesh(const char* path, const DataTree* mesh, bool embedded) {
    if (!path) return flat::fail("path is NULL");
    return flat::call("mesh is NULL", mesh, [&](const DataTree& m) { sorvane::saveMesh(path, m, embedded); });
}

} // extern "C"
