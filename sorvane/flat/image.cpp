// Flat functions over images.
#include "sorvane/datatree/DataTree.h"
#include "sorvane/flat/Frame.h"
#include "sorvane/flat/sorvane_image.h"
#include "sorvane/imageio/imageio.h"

namespace flat = sorvane::flat;
using sorvane::ImageFormat;
using sorvane::ScalarType;

extern "C" {

int32_t sorvane_saveImage(const char* path, const DataTree* image) {
    return flat::call("image is NULL", image, [&](const DataTree& img) { sorvane::saveImage(flat::str(path), img); });
}

int32_t sorvane_createImagePtr(DataTree** out, const uint8_t* buffer, int64_t size, const char* name,
                               sorvane_ScalarType scalarType, int32_t imageFormat) {
    if (!buffer) return flat::fail("buffer is NULL");
    return flat::create(out, [&] {
        return sorvane::createImagePtr(buffer, static_cast<long>(size), flat::str(name),
                                       static_cast<ScalarType>(scalarType), static_cast<ImageFormat>(imageFormat));
    });
}

int32_t sorvane_loadImagePtr(DataTree** out, const char* fileName, sorvane_ScalarType scalarType,
                             int32_t imageFormat) {
    if (!fileName) return flat::fail("fileName is NULL");
    return flat::create(out, [&] {
        return sorvane::loadImagePtr(fileName, static_cast<ScalarType>(scalarType),
                                     static_cast<ImageFormat>(imageFormat));
    });
}

} // extern "C"
