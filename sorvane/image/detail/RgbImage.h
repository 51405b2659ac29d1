#ifndef SORVANE_IMAGE_DETAIL_RGBIMAGE_H
#define SORVANE_IMAGE_DETAIL_RGBIMAGE_H

// Internal: the one image shape the crop and flip kernels accept.

#include "sorvane/datatree/DataTree.h"
#include "sorvane/imageio/imageio.h"

namespace sorvane::detail {

// YXC, RGB, UInteger8 and three dimensions, checked in that order.
void checkRgbImage(const DataTree& pixels, ImageFormat imageFormat, PixelFormat pixelFormat);

// A new image object with the same formats as `image` around `pixels`.
DataTree rebuildImage(const DataTree& image, const DataTree& pixels);

} // namespace sorvane::detail

#endif
