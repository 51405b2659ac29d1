#ifndef SORVANE_IMAGEIO_IMAGEIO_JPEG_H
#define SORVANE_IMAGEIO_IMAGEIO_JPEG_H

// JPEG decoding from memory on libjpeg-turbo (three-component images only).

#include "sorvane/core/Export.h"
#include "sorvane/imageio/imageio.h"

namespace sorvane {

// Walks the marker stream; a JPEG 2000 signature is not a JPEG.
SORVANE_API bool imcodec_detect_jpeg(const unsigned char* buffer, long size);
SORVANE_API void imcodec_decode_jpeg(ImageInfo& info, const unsigned char* buffer, long size);
// There is no JPEG encoder: always "Not implemented".
SORVANE_API long imcodec_encode_jpeg(unsigned char* out, long outSize, const void* in, long inSize, long width,
                                     long height, PixelFormat pixelFormat);

} // namespace sorvane

#endif
