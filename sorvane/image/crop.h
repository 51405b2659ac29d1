#ifndef SORVANE_IMAGE_CROP_H
#define SORVANE_IMAGE_CROP_H

// Cropping of 8-bit RGB images in YXC layout.

#include <vector>

#include "sorvane/core/Export.h"
#include "sorvane/datatree/DataTree.h"
#include "sorvane/imageio/imageio.h"

namespace sorvane {

// The window [x0, x1) x [y0, y1) of a width x height x channels image; the
// parts of the window outside the source are zero.
SORVANE_API void cropImage_yxc_uint8_cpu(unsigned char* out, const unsigned char* in, long width, long height,
                                         long channels, long x0, long y0, long x1, long y1);

// On an image object: a new object whose pixels are the window.
SORVANE_API DataTree cropImage(const DataTree& image, long x0, long y0, long x1, long y1);
// On a pixel tensor: a new tensor.
SORVANE_API DataTree cropImage(const DataTree& pixels, long x0, long y0, long x1, long y1, ImageFormat imageFormat,
                               PixelFormat pixelFormat);

// bottom, right, top, left of the content that differs from `color`. bottom
// and right are exclusive when such content was found, else height - 1 and
// width - 1.
SORVANE_API std::vector<long> smallestImageCrop(const DataTree& image, const std::vector<double>& color);
SORVANE_API std::vector<long> smallestImageCrop(const DataTree& pixels, const std::vector<double>& color,
                                                ImageFormat imageFormat, PixelFormat pixelFormat);

} // namespace sorvane

#endif
