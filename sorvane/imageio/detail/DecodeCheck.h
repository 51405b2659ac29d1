#ifndef SORVANE_IMAGEIO_DETAIL_DECODECHECK_H
#define SORVANE_IMAGEIO_DETAIL_DECODECHECK_H

// Internal: what every decoder does once it knows the header.

#include "sorvane/imageio/imageio.h"

namespace sorvane::detail {

// Checks the caller's expectations against the header, refuses images whose
// pixel buffer would not fit kMaxImageBytes, fills in the rest and sizes or
// allocates the pixels. False when only the description was asked for.
bool acceptDecodedHeader(ImageInfo& info, long width, long height, PixelFormat pixelFormat);

} // namespace sorvane::detail

#endif
