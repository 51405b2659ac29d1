// Arbitrary bytes through decodeImage: first the header alone, then, when the
// header reads and the image is small, the whole decode into a fresh buffer.
// Every failure must be an exception, and a decode must fill exactly the
// size the header announced.
#include <cstdint>
#include <cstdlib>
#include <exception>

#include "sorvane/imageio/imageio.h"
#include "sorvane/imageio/imageio_jpeg.h"
#include "sorvane/imageio/imageio_png.h"

#if TALVEX_FUZZ_MUTATORS
#include "mutators/PngChunks.h"
#endif

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const long length = static_cast<long>(size);
    (void)sorvane::imcodec_detect_jpeg(data, length);
    sorvane::ImageInfo header;
    try {
        sorvane::decodeImage(header, data, length, "fuzz");
    } catch (const std::exception&) {
        return 0;
    }
    if (header.pixels || header.pixelsSize != header.width * header.height * header.channels) std::abort();
    // Large images would only measure the allocator.
    if (header.pixelsSize > (16L << 20)) return 0;
    sorvane::ImageInfo full;
    full.allocate = std::malloc;
    full.free = std::free;
    full.width = header.width;
    full.height = header.height;
    try {
        sorvane::decodeImage(full, data, length, "fuzz");
    } catch (const std::exception&) {
        return 0;
    }
    if (!full.pixels || full.pixelsSize != header.pixelsSize || full.pixelFormat != header.pixelFormat) std::abort();
    return 0;
}
