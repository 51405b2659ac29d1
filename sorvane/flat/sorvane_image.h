/* Flat C interface: images. Included by sorvane/sorvane.h.
 *
 * An image is a DataTree object with the items "imageFormat" (1 XYC,
 * 2 YXC, 3 CYX), "pixelFormat" (1 RGB, 2 RGBA, 3 GRAY) and "pixels" (a
 * tensor in that layout). PNG and JPEG are read; PNG is written. */
#ifndef SORVANE_FLAT_SORVANE_IMAGE_H
#define SORVANE_FLAT_SORVANE_IMAGE_H

#include <stdint.h>

#include "sorvane/core/Export.h"
#include "sorvane/flat/sorvane_datatree.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Saves an image object (or a bare YXC tensor of 3 or 4 channels) as PNG. */
SORVANE_API int32_t sorvane_saveImage(const char* path, const DataTree* image);
/* Decodes PNG or JPEG bytes (detected by content; name is for messages) into
 * a new image handle. */
SORVANE_API int32_t sorvane_createImagePtr(DataTree** out, const uint8_t* buffer, int64_t size, const char* name,
                                           sorvane_ScalarType scalarType, int32_t imageFormat);
/* Loads a .png, .jpg or .jpeg file into a new image handle. */
SORVANE_API int32_t sorvane_loadImagePtr(DataTree** out, const char* fileName, sorvane_ScalarType scalarType,
                                         int32_t imageFormat);

#ifdef __cplusplus
}
#endif

#endif
