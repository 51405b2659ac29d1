#include "sorvane/imageio/detail/DecodeCheck.h"

#include "sorvane/core/RuntimeException.h"

namespace sorvane::detail {

bool acceptDecodedHeader(ImageInfo& info, long width, long height, PixelFormat pixelFormat) {
    if (info.width != 0 && info.width != width) SORVANE_THROW("Unexpected width %ld != %ld", width, info.width);
    if (info.height != 0 && info.height != height)
        SORVANE_THROW("Unexpected height %ld != %ld", height, info.height);
    if (info.pixelFormat != PixelFormat::Invalid && info.pixelFormat != pixelFormat)
        SORVANE_THROW("Unexpected pixel format %s != %s", pixelFormat2string(pixelFormat),
                      pixelFormat2string(info.pixelFormat));
    if (info.scalarType != ScalarType::Invalid && info.scalarType != ScalarType::UInteger8)
        SORVANE_THROW("Unexpected scalar type %s != %s", scalarType2string(ScalarType::UInteger8),
                      scalarType2string(info.scalarType));
    const long channels = getPixelFormatChannelCount(pixelFormat);
    // Headers are untrusted: a declared size is refused before anything is sized from it.
    long bytes = 0;
    if (width <= 0 || height <= 0 || __builtin_mul_overflow(width, height, &bytes) ||
        __builtin_mul_overflow(bytes, channels, &bytes) || bytes > kMaxImageBytes)
        SORVANE_THROW("Image too large (%ld x %ld x %ld)", width, height, channels);
    info.width = width;
    info.height = height;
    info.pixelFormat = pixelFormat;
    info.scalarType = ScalarType::UInteger8;
    info.imageFormat = ImageFormat::YXC;
    info.channels = channels;
    if (info.pixels) {
        if (info.pixelsSize < bytes) SORVANE_THROW("Pixel buffer is too small");
        return true;
    }
    info.pixelsSize = bytes;
    if (!info.allocate) return false;
    info.pixels = info.allocate(static_cast<size_t>(bytes));
    if (!info.pixels) SORVANE_THROW("Unable to allocate %ld bytes of pixels", bytes);
    return true;
}

} // namespace sorvane::detail
