#ifndef TALVEX_TESTS_IMAGEIO_MAKEIMAGES_H
#define TALVEX_TESTS_IMAGEIO_MAKEIMAGES_H

// Test images written and read by libpng and libjpeg directly, so the
// library's codecs are checked against the reference ones.

#include <cstddef>
#include <cstdio>
#include <cstring>
#include <stdexcept>
#include <vector>

#include <jpeglib.h>
#include <png.h>

namespace testimages {

using Bytes = std::vector<unsigned char>;

inline void pngAppend(png_structp png, png_bytep data, size_t length) {
    auto* out = static_cast<Bytes*>(png_get_io_ptr(png));
    out->insert(out->end(), data, data + length);
}
inline void pngNoFlush(png_structp) {}

// A PNG of the given header; `rows` holds height rows of packed samples as
// libpng expects them for that depth and colour type.
inline Bytes writePng(unsigned width, unsigned height, int bitDepth, int colorType, const Bytes& rows,
                      bool interlace = false) {
    Bytes out;
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png_create_info_struct(png);
    if (setjmp(png_jmpbuf(png))) {
        png_destroy_write_struct(&png, &info);
        throw std::runtime_error("test png writer failed");
    }
    png_set_write_fn(png, &out, pngAppend, pngNoFlush);
    png_set_IHDR(png, info, width, height, bitDepth, colorType,
                 interlace ? PNG_INTERLACE_ADAM7 : PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT,
                 PNG_FILTER_TYPE_DEFAULT);
    if (colorType == PNG_COLOR_TYPE_PALETTE) {
        png_color palette[16];
        for (int i = 0; i < 16; ++i) palette[i] = {static_cast<png_byte>(i * 16), 0, static_cast<png_byte>(255 - i)};
        png_set_PLTE(png, info, palette, 16);
    }
    png_write_info(png, info);
    const size_t rowBytes = png_get_rowbytes(png, info);
    std::vector<png_bytep> pointers(height);
    for (unsigned y = 0; y < height; ++y) pointers[y] = const_cast<png_bytep>(rows.data() + y * rowBytes);
    png_write_image(png, pointers.data());
    png_write_end(png, info);
    png_destroy_write_struct(&png, &info);
    return out;
}

struct Decoded {
    unsigned width = 0, height = 0;
    int colorType = 0;
    Bytes pixels;
};

struct PngSource {
    const Bytes* bytes;
    size_t pos;
};
inline void pngTake(png_structp png, png_bytep data, size_t length) {
    auto* src = static_cast<PngSource*>(png_get_io_ptr(png));
    if (src->pos + length > src->bytes->size()) png_error(png, "short");
    std::memcpy(data, src->bytes->data() + src->pos, length);
    src->pos += length;
}

inline Decoded readPng(const Bytes& bytes) {
    Decoded d;
    PngSource source{&bytes, 0};
    png_structp png = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png_create_info_struct(png);
    if (setjmp(png_jmpbuf(png))) {
        png_destroy_read_struct(&png, &info, nullptr);
        throw std::runtime_error("test png reader failed");
    }
    png_set_read_fn(png, &source, pngTake);
    png_read_info(png, info);
    d.width = png_get_image_width(png, info);
    d.height = png_get_image_height(png, info);
    d.colorType = png_get_color_type(png, info);
    png_set_interlace_handling(png);
    png_read_update_info(png, info);
    const size_t rowBytes = png_get_rowbytes(png, info);
    d.pixels.resize(rowBytes * d.height);
    std::vector<png_bytep> rows(d.height);
    for (unsigned y = 0; y < d.height; ++y) rows[y] = d.pixels.data() + y * rowBytes;
    png_read_image(png, rows.data());
    png_read_end(png, nullptr);
    png_destroy_read_struct(&png, &info, nullptr);
    return d;
}

// A baseline JPEG from `pixels` (width * height * components samples).
inline Bytes writeJpeg(unsigned width, unsigned height, int components, J_COLOR_SPACE space, const Bytes& pixels,
                       bool progressive = false) {
    jpeg_compress_struct cinfo;
    jpeg_error_mgr error;
    cinfo.err = jpeg_std_error(&error);
    jpeg_create_compress(&cinfo);
    unsigned char* buffer = nullptr;
    unsigned long size = 0;
    jpeg_mem_dest(&cinfo, &buffer, &size);
    cinfo.image_width = width;
    cinfo.image_height = height;
    cinfo.input_components = components;
    cinfo.in_color_space = space;
    jpeg_set_defaults(&cinfo);
    jpeg_set_quality(&cinfo, 90, TRUE);
    if (progressive) jpeg_simple_progression(&cinfo);
    jpeg_start_compress(&cinfo, TRUE);
    while (cinfo.next_scanline < height) {
        JSAMPROW row = const_cast<JSAMPROW>(pixels.data() + cinfo.next_scanline * width * components);
        jpeg_write_scanlines(&cinfo, &row, 1);
    }
    jpeg_finish_compress(&cinfo);
    jpeg_destroy_compress(&cinfo);
    Bytes out(buffer, buffer + size);
    std::free(buffer);
    return out;
}

inline Bytes readJpeg(const Bytes& bytes, unsigned* width = nullptr, unsigned* height = nullptr) {
    jpeg_decompress_struct cinfo;
    jpeg_error_mgr error;
    cinfo.err = jpeg_std_error(&error);
    jpeg_create_decompress(&cinfo);
    jpeg_mem_src(&cinfo, bytes.data(), bytes.size());
    jpeg_read_header(&cinfo, TRUE);
    jpeg_start_decompress(&cinfo);
    const size_t row = cinfo.output_width * cinfo.output_components;
    Bytes out(row * cinfo.output_height);
    while (cinfo.output_scanline < cinfo.output_height) {
        JSAMPROW line = out.data() + cinfo.output_scanline * row;
        jpeg_read_scanlines(&cinfo, &line, 1);
    }
    if (width) *width = cinfo.output_width;
    if (height) *height = cinfo.output_height;
    jpeg_finish_decompress(&cinfo);
    jpeg_destroy_decompress(&cinfo);
    return out;
}

// Deterministic pseudo-random bytes.
inline Bytes noise(size_t count, unsigned seed = 1) {
    Bytes out(count);
    unsigned state = seed;
    for (auto& b : out) {
        state = state * 1103515245u + 12345u;
        b = static_cast<unsigned char>(state >> 16);
    }
    return out;
}

// A smooth gradient, which JPEG keeps close.
inline Bytes gradient(unsigned width, unsigned height, int components) {
    Bytes out(static_cast<size_t>(width) * height * components);
    for (unsigned y = 0; y < height; ++y)
        for (unsigned x = 0; x < width; ++x)
            for (int c = 0; c < components; ++c)
                out[(static_cast<size_t>(y) * width + x) * components + c] =
                    static_cast<unsigned char>((x * 4 + y * 2 + c * 40) & 0xff);
    return out;
}

} // namespace testimages

#endif
