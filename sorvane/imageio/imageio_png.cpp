#include "sorvane/imageio/imageio_png.h"

#include <png.h>

#include <csetjmp>
#include <cstdio>
#include <cstring>
#include <exception>
#include <stdexcept>
#include <string>
#include <vector>

#include "sorvane/core/RuntimeException.h"
#include "sorvane/imageio/detail/DecodeCheck.h"

// libpng reports errors by longjmp. Every call into it runs in a small frame
// that holds the setjmp and no object with a destructor, so the jump skips no
// C++ cleanup; the failure is turned into an exception once back outside.

namespace sorvane {

namespace {

// Shared by reading and writing: where a failure is parked until the frame
// that called libpng has been left.
struct PngFailure {
    std::exception_ptr pending; // thrown by one of our own callbacks
    std::string message;        // libpng's own error text
    bool failed = false;

    [[noreturn]] void raise() const {
        if (pending) std::rethrow_exception(pending);
        throw std::runtime_error(message);
    }
};

struct PngReader {
    PngFailure failure;
    const unsigned char* buffer = nullptr;
    long size = 0;
    long pos = 0;
};

struct PngWriter {
    PngFailure failure;
    unsigned char* out = nullptr;
    long capacity = 0;
    long count = 0;
    std::vector<unsigned char>* grow = nullptr; // when set, bytes are appended there instead
};

void pngError(png_structp png, png_const_charp text) {
    auto* failure = static_cast<PngFailure*>(png_get_error_ptr(png));
    if (failure) {
        failure->failed = true;
        if (!failure->pending) {
            try {
                failure->message = text ? text : "libpng error";
            } catch (...) {
                failure->pending = std::current_exception();
            }
        }
    }
    png_longjmp(png, 1);
}

// libpng only warns about a chunk longer than the chunk limit, then
// allocates its declared length anyway: that one warning is an error here.
void pngWarning(png_structp png, png_const_charp text) {
    if (png && text && std::strstr(text, "chunk data is too large")) png_error(png, text);
    std::fprintf(stderr, "%s\n", text ? text : "");
}

void pngRead(png_structp png, png_bytep data, size_t length) {
    if (!png) return; // libpng always passes itself; nothing can be reported without it
    auto* reader = static_cast<PngReader*>(png_get_io_ptr(png));
    if (!reader) png_error(png, "No io_ptr");
    const long left = reader->size - reader->pos;
    if (length > static_cast<size_t>(left)) {
        try {
            SORVANE_THROW("Buffer overflow (pos=%ld,new pos=%ld,buffer size=%ld)", reader->pos,
                          reader->pos + static_cast<long>(length), reader->size);
        } catch (...) {
            reader->failure.pending = std::current_exception();
        }
        png_error(png, "read past the end");
    }
    std::memcpy(data, reader->buffer + reader->pos, length);
    reader->pos += static_cast<long>(length);
}

void pngWrite(png_structp png, png_bytep data, size_t length) {
    auto* writer = static_cast<PngWriter*>(png_get_io_ptr(png));
    if (writer->grow) {
        bool grown = false;
        try {
            writer->grow->insert(writer->grow->end(), data, data + length);
            grown = true;
        } catch (...) {
            writer->failure.pending = std::current_exception();
        }
        if (!grown) png_error(png, "out of memory");
    } else if (writer->out && writer->count + static_cast<long>(length) <= writer->capacity) {
        std::memcpy(writer->out + writer->count, data, length);
    }
    writer->count += static_cast<long>(length);
}

void pngFlush(png_structp) {}

struct ReadStructs {
    png_structp png = nullptr;
    png_infop info = nullptr;
    ~ReadStructs() {
        if (png) png_destroy_read_struct(&png, info ? &info : nullptr, nullptr);
    }
};

struct WriteStructs {
    png_structp png = nullptr;
    png_infop info = nullptr;
    ~WriteStructs() {
        if (png) png_destroy_write_struct(&png, info ? &info : nullptr);
    }
};

struct Header {
    png_uint_32 width = 0;
    png_uint_32 height = 0;
    int bitDepth = 0;
    int colorType = 0;
    int interlace = 0;
    bool haveIhdr = false;
};

// longjmp frames: no objects with destructors below this line's functions.
bool readHeader(png_structp png, png_infop info, Header* header) {
    if (setjmp(png_jmpbuf(png))) return false;
    png_read_info(png, info);
    header->haveIhdr = png_get_IHDR(png, info, &header->width, &header->height, &header->bitDepth,
                                    &header->colorType, &header->interlace, nullptr, nullptr) != 0;
    if (!header->haveIhdr) return true;
    png_set_strip_16(png);
    png_set_packing(png);
    if (header->colorType == PNG_COLOR_TYPE_PALETTE) png_set_palette_to_rgb(png);
    if (header->colorType == PNG_COLOR_TYPE_GRAY && header->bitDepth < 8) png_set_expand_gray_1_2_4_to_8(png);
    return true;
}

bool updateInfo(png_structp png, png_infop info, size_t* rowBytes) {
    if (setjmp(png_jmpbuf(png))) return false;
    png_set_interlace_handling(png);
    png_read_update_info(png, info);
    *rowBytes = png_get_rowbytes(png, info);
    return true;
}

bool readRows(png_structp png, png_bytep* rows) {
    if (setjmp(png_jmpbuf(png))) return false;
    png_read_image(png, rows);
    png_read_end(png, nullptr);
    return true;
}

bool writeImage(png_structp png, png_infop info, png_uint_32 width, png_uint_32 height, int colorType,
                png_bytep* rows) {
    if (setjmp(png_jmpbuf(png))) return false;
    png_set_IHDR(png, info, width, height, 8, colorType, PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT,
                 PNG_FILTER_TYPE_DEFAULT);
    png_write_info(png, info);
    png_write_image(png, rows);
    png_write_end(png, info);
    return true;
}

} // namespace

bool imcodec_detect_png(const unsigned char* buffer, long size) {
    return buffer && size >= 8 && png_sig_cmp(buffer, 0, 8) == 0;
}

void imcodec_decode_png(ImageInfo& info, const unsigned char* buffer, long size) {
    if (!buffer || size < 8) SORVANE_THROW("Buffer size is less than 8 bytes");
    if (png_sig_cmp(buffer, 0, 8) != 0) SORVANE_THROW("PNG signature not found");

    PngReader reader;
    reader.buffer = buffer;
    reader.size = size;
    ReadStructs structs;
    structs.png = png_create_read_struct(PNG_LIBPNG_VER_STRING, &reader.failure, pngError, pngWarning);
    if (!structs.png) SORVANE_THROW("png_create_read_struct()");
    structs.info = png_create_info_struct(structs.png);
    if (!structs.info) SORVANE_THROW("png_create_info_struct()");
    png_set_read_fn(structs.png, &reader, pngRead);
    // libpng allocates a chunk's declared length before reading it: no chunk
    // is longer than the input, and text a chunk inflates stays under 8 MiB
    // unless the input itself is larger.
    png_set_chunk_malloc_max(structs.png, static_cast<png_alloc_size_t>(size > (8L << 20) ? size : (8L << 20)));

    Header header;
    if (!readHeader(structs.png, structs.info, &header)) reader.failure.raise();
    if (!header.haveIhdr) SORVANE_THROW("png_get_IHDR");
    // Decided on the header as read: the transformations above do not widen what is accepted.
    if (header.bitDepth != 8) SORVANE_THROW("Unsupported png file format (non 8 bit depth)");
    PixelFormat pixelFormat;
    switch (header.colorType) {
    case PNG_COLOR_TYPE_GRAY: pixelFormat = PixelFormat::GRAY; break;
    case PNG_COLOR_TYPE_RGB: pixelFormat = PixelFormat::RGB; break;
    case PNG_COLOR_TYPE_RGB_ALPHA: pixelFormat = PixelFormat::RGBA; break;
    default: SORVANE_THROW("Unsupported png file format (pixel format)");
    }
    if (!detail::acceptDecodedHeader(info, static_cast<long>(header.width), static_cast<long>(header.height),
                                     pixelFormat))
        return;

    // Rows are read straight into the caller's buffer: 8-bit samples are already tightly packed.
    const size_t rowBytes = static_cast<size_t>(info.width) * static_cast<size_t>(info.channels);
    std::vector<png_bytep> rows(static_cast<size_t>(info.height));
    auto* pixels = static_cast<png_bytep>(info.pixels);
    for (size_t y = 0; y < rows.size(); ++y) rows[y] = pixels + y * rowBytes;
    size_t libRowBytes = 0;
    // The row size libpng will write is checked before any row is read.
    if (!updateInfo(structs.png, structs.info, &libRowBytes)) reader.failure.raise();
    if (libRowBytes != rowBytes) SORVANE_THROW("Unexpected png row size %zu != %zu", libRowBytes, rowBytes);
    if (!readRows(structs.png, rows.data())) reader.failure.raise();
}

namespace {

long encodePng(PngWriter& writer, const void* in, long inSize, long width, long height, PixelFormat pixelFormat) {
    if (width < 0 || height < 0 || width > 0x7fffffffL || height > 0x7fffffffL)
        SORVANE_THROW("Invalid image size %ld x %ld", width, height);
    const long channels = getPixelFormatChannelCount(pixelFormat);
    long needed = 0;
    if (__builtin_mul_overflow(width, height, &needed) || __builtin_mul_overflow(needed, channels, &needed) ||
        needed > inSize || (needed > 0 && !in))
        SORVANE_THROW("Input buffer is too small");
    WriteStructs structs;
    structs.png = png_create_write_struct(PNG_LIBPNG_VER_STRING, &writer.failure, pngError, pngWarning);
    if (!structs.png) SORVANE_THROW("png_create_read_struct()");
    structs.info = png_create_info_struct(structs.png);
    if (!structs.info) SORVANE_THROW("png_create_info_struct()");
    png_set_write_fn(structs.png, &writer, pngWrite, pngFlush);
    int colorType;
    switch (pixelFormat) {
    case PixelFormat::RGB: colorType = PNG_COLOR_TYPE_RGB; break;
    case PixelFormat::RGBA: colorType = PNG_COLOR_TYPE_RGB_ALPHA; break;
    case PixelFormat::GRAY: colorType = PNG_COLOR_TYPE_GRAY; break;
    default: SORVANE_THROW("Unsupported pixel format %ld", static_cast<long>(pixelFormat));
    }
    const size_t rowBytes = static_cast<size_t>(width) * static_cast<size_t>(channels);
    std::vector<png_bytep> rows(static_cast<size_t>(height));
    auto* pixels = static_cast<png_bytep>(const_cast<void*>(in));
    for (size_t y = 0; y < rows.size(); ++y) rows[y] = pixels + y * rowBytes;
    if (!writeImage(structs.png, structs.info, static_cast<png_uint_32>(width), static_cast<png_uint_32>(height),
                    colorType, rows.data()))
        writer.failure.raise();
    return writer.count;
}

} // namespace

long imcodec_encode_png(unsigned char* out, long outSize, const void* in, long inSize, long width, long height,
                        PixelFormat pixelFormat) {
    PngWriter writer;
    writer.out = out;
    writer.capacity = outSize;
    return encodePng(writer, in, inSize, width, height, pixelFormat);
}

namespace detail {

// The encoder appending to a growing buffer, for saving: one pass whatever the size.
long encodePngGrowing(std::vector<unsigned char>& out, const void* in, long inSize, long width, long height,
                      PixelFormat pixelFormat) {
    PngWriter writer;
    writer.grow = &out;
    return encodePng(writer, in, inSize, width, height, pixelFormat);
}

} // namespace detail

} // namespace sorvane
