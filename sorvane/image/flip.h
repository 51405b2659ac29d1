#ifndef SORVANE_IMAGE_FLIP_H
#define SORVANE_IMAGE_FLIP_H

// Vertical flips of YXC images: rows in reverse order.

#include "sorvane/core/Export.h"
#include "sorvane/datatree/DataTree.h"
#include "sorvane/imageio/imageio.h"

namespace sorvane {

SORVANE_API void vflipImage_yxc_uint8_cpu(unsigned char* out, const unsigned char* in, long width, long height,
                                          long channels);
SORVANE_API void vflipImage_yxc_float_cpu(float* out, const float* in, long width, long height, long channels);

// On an image object: a new object with flipped pixels (8-bit RGB, YXC).
SORVANE_API DataTree vflipImage(const DataTree& image);
// On a pixel tensor: a new tensor.
SORVANE_API DataTree vflipImage(const DataTree& pixels, ImageFormat imageFormat, PixelFormat pixelFormat);

} // namespace sorvane

#endif
