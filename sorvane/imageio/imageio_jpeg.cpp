#include "sorvane/imageio/imageio_jpeg.h"

// jpeglib.h needs size_t and FILE declared first.
#include <cstddef>
#include <cstdio>

#include <jpeglib.h>

#include <csetjmp>
#include <cstring>

#include "sorvane/core/RuntimeException.h"
#include "sorvane/imageio/detail/DecodeCheck.h"

// libjpeg leaves a failing call through error_exit, which jumps back to the
// setjmp of a small frame holding no object with a destructor; the text is
// raised as an exception from outside that frame.

namespace sorvane {

namespace {

struct JpegError {
    jpeg_error_mgr manager; // first, so libjpeg's pointer is ours
    std::jmp_buf jump;
    char message[JMSG_LENGTH_MAX];
};

void jpegErrorExit(j_common_ptr cinfo) {
    auto* error = reinterpret_cast<JpegError*>(cinfo->err);
    (*cinfo->err->format_message)(cinfo, error->message);
    std::longjmp(error->jump, 1);
}

struct Decompress {
    jpeg_decompress_struct cinfo;
    JpegError error;
    bool created = false;
    Decompress() {
        std::memset(&cinfo, 0, sizeof cinfo);
        std::memset(&error, 0, sizeof error);
        cinfo.err = jpeg_std_error(&error.manager);
        error.manager.error_exit = jpegErrorExit;
    }
    ~Decompress() {
        if (created) jpeg_destroy_decompress(&cinfo);
    }
};

// longjmp frames.
bool readHeaderFrame(Decompress* d, const unsigned char* buffer, unsigned long size) {
    if (setjmp(d->error.jump)) return false;
    jpeg_create_decompress(&d->cinfo);
    d->created = true;
    jpeg_mem_src(&d->cinfo, buffer, size);
    jpeg_read_header(&d->cinfo, TRUE);
    return true;
}

enum class ScanResult { Done, Failed, WrongRowSize };

ScanResult readScanlinesFrame(Decompress* d, unsigned char* pixels, size_t rowBytes) {
    if (setjmp(d->error.jump)) return ScanResult::Failed;
    jpeg_start_decompress(&d->cinfo);
    if (static_cast<size_t>(d->cinfo.output_width) * static_cast<size_t>(d->cinfo.output_components) != rowBytes)
        return ScanResult::WrongRowSize;
    JSAMPROW rows[16];
    while (d->cinfo.output_scanline < d->cinfo.output_height) {
        const JDIMENSION first = d->cinfo.output_scanline;
        JDIMENSION count = d->cinfo.output_height - first;
        if (count > 16) count = 16;
        for (JDIMENSION i = 0; i < count; ++i) rows[i] = pixels + (static_cast<size_t>(first) + i) * rowBytes;
        jpeg_read_scanlines(&d->cinfo, rows, count);
    }
    jpeg_finish_decompress(&d->cinfo);
    return ScanResult::Done;
}

// Named for the location of their failures.
void read_info(Decompress& d, const unsigned char* buffer, long size) {
    if (!readHeaderFrame(&d, buffer, static_cast<unsigned long>(size))) SORVANE_THROW("%s", d.error.message);
}

void read_image(Decompress& d, unsigned char* pixels, size_t rowBytes) {
    switch (readScanlinesFrame(&d, pixels, rowBytes)) {
    case ScanResult::Done: return;
    case ScanResult::Failed: SORVANE_THROW("%s", d.error.message);
    case ScanResult::WrongRowSize: SORVANE_THROW("Unsupported jpeg file format (pixel format)");
    }
}

} // namespace

bool imcodec_detect_jpeg(const unsigned char* buffer, long size) {
    if (!buffer || size < 4) return false;
    static const unsigned char jpeg2000[12] = {0, 0, 0, 12, 0x6A, 0x50, 0x20, 0x20, 13, 10, 135, 10};
    if (size >= 12 && std::memcmp(buffer, jpeg2000, 12) == 0) return false;
    if (buffer[0] != 0xFF || buffer[1] != 0xD8) return false;
    long pos = 2;
    while (pos < size) {
        while (pos < size && buffer[pos] != 0xFF) ++pos;
        while (pos < size && buffer[pos] == 0xFF) ++pos;
        if (pos >= size) break;
        const unsigned char marker = buffer[pos++];
        if (marker == 0xD9) return true;
        if ((marker >= 0xD0 && marker <= 0xD7) || marker == 0x01) continue;
        if (size - pos < 2) return false;
        const long length = (static_cast<long>(buffer[pos]) << 8) | buffer[pos + 1];
        if (length < 2 || length > size - pos) return false;
        pos += length;
        if (marker == 0xDA) {
            for (; pos + 1 < size; ++pos) {
                if (buffer[pos] == 0xFF && buffer[pos + 1] == 0xD9) return true;
            }
            break;
        }
    }
    return buffer[size - 2] == 0xFF && buffer[size - 1] == 0xD9;
}

void imcodec_decode_jpeg(ImageInfo& info, const unsigned char* buffer, long size) {
    if (!buffer || size <= 0) SORVANE_THROW("Empty jpeg buffer");
    Decompress d;
    read_info(d, buffer, size);
    if (d.cinfo.num_components != 3) SORVANE_THROW("Unsupported jpeg file format (pixel format)");
    if (!detail::acceptDecodedHeader(info, static_cast<long>(d.cinfo.image_width),
                                     static_cast<long>(d.cinfo.image_height), PixelFormat::RGB))
        return;
    read_image(d, static_cast<unsigned char*>(info.pixels), static_cast<size_t>(info.width) * 3);
}

long imcodec_encode_jpeg(unsigned char*, long, const void*, long, long, long, PixelFormat) {
    SORVANE_THROW("Not implemented");
}

} // namespace sorvane
