#ifndef SORVANE_IMAGEIO_IMAGEIO_PNG_H
#define SORVANE_IMAGEIO_IMAGEIO_PNG_H

// PNG from and to memory on libpng: 8-bit gray, RGB and RGBA only.

#include "sorvane/core/Export.h"
#include "sorvane/imageio/imageio.h"

namespace sorvane {

SORVANE_API bool imcodec_detect_png(const unsigned char* buffer, long size);
SORVANE_API void imcodec_decode_png(ImageInfo& info, const unsigned char* buffer, long size);
// Returns the encoded size; with a null out (or one too small) only counts.
SORVANE_API long imcodec_encode_png(unsigned char* out, long outSize, const void* in, long inSize, long width,
                                    long height, PixelFormat pixelFormat);

} // namespace sorvane

#endif
