#ifndef TALVEX_TESTS_HARDENING_DIRECT_DECODE_H
#define TALVEX_TESTS_HARDENING_DIRECT_DECODE_H

// Images decoded straight through libpng and libjpeg, the references the
// library's own decodes are compared with.

#include <png.h>
#include <stdio.h>
#include <jpeglib.h>

#include <csetjmp>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace direct {

// libpng directly, with the transforms the library documents for its output:
// 8 bits a sample, palette to RGB(A), low gray depths widened.
inline bool libpngDecode(const std::string& path, std::vector<unsigned char>& pixels) {
    FILE* file = std::fopen(path.c_str(), "rb");
    if (!file) return false;
    png_structp png = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png_create_info_struct(png);
    std::vector<png_bytep> rows;
    if (setjmp(png_jmpbuf(png))) {
        png_destroy_read_struct(&png, &info, nullptr);
        std::fclose(file);
        return false;
    }
    png_init_io(png, file);
    png_read_info(png, info);
    png_set_strip_16(png);
    png_set_packing(png);
    if (png_get_color_type(png, info) == PNG_COLOR_TYPE_PALETTE) png_set_palette_to_rgb(png);
    if (png_get_color_type(png, info) == PNG_COLOR_TYPE_GRAY && png_get_bit_depth(png, info) < 8)
        png_set_expand_gray_1_2_4_to_8(png);
    png_set_interlace_handling(png);
    png_read_update_info(png, info);
    const size_t rowBytes = png_get_rowbytes(png, info);
    const png_uint_32 height = png_get_image_height(png, info);
    pixels.assign(rowBytes * height, 0);
    rows.resize(height);
    for (png_uint_32 y = 0; y < height; ++y) rows[y] = pixels.data() + y * rowBytes;
    png_read_image(png, rows.data());
    png_read_end(png, nullptr);
    png_destroy_read_struct(&png, &info, nullptr);
    std::fclose(file);
    return true;
}

struct JpegError {
    jpeg_error_mgr manager;
    std::jmp_buf jump;
};

inline bool libjpegDecode(const std::string& path, std::vector<unsigned char>& pixels) {
    std::ifstream in(path, std::ios::binary);
    const std::vector<unsigned char> bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    jpeg_decompress_struct cinfo;
    JpegError error;
    cinfo.err = jpeg_std_error(&error.manager);
    error.manager.error_exit = [](j_common_ptr c) { std::longjmp(reinterpret_cast<JpegError*>(c->err)->jump, 1); };
    error.manager.output_message = [](j_common_ptr) {};
    if (setjmp(error.jump)) {
        jpeg_destroy_decompress(&cinfo);
        return false;
    }
    jpeg_create_decompress(&cinfo);
    jpeg_mem_src(&cinfo, bytes.data(), static_cast<unsigned long>(bytes.size()));
    jpeg_read_header(&cinfo, TRUE);
    jpeg_start_decompress(&cinfo);
    const size_t rowBytes = static_cast<size_t>(cinfo.output_width) * static_cast<size_t>(cinfo.output_components);
    pixels.assign(rowBytes * cinfo.output_height, 0);
    while (cinfo.output_scanline < cinfo.output_height) {
        JSAMPROW row = pixels.data() + cinfo.output_scanline * rowBytes;
        jpeg_read_scanlines(&cinfo, &row, 1);
    }
    jpeg_finish_decompress(&cinfo);
    jpeg_destroy_decompress(&cinfo);
    return true;
}

} // namespace direct

#endif
