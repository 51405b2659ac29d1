// Generated PNG and JPEG files of random sizes and encodings, decoded by the
// library and straight through libpng or libjpeg: the pixels must be equal
// byte for byte. Odd widths, one-pixel sides and every row filter reach the
// row handling that the fixed real-world files do not.
#include <gtest/gtest.h>

#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "hardening/DirectDecode.h"
#include "sorvane/imageio/imageio.h"

namespace fs = std::filesystem;

namespace {

struct Random {
    uint32_t state;
    uint32_t next() {
        state ^= state << 13;
        state ^= state >> 17;
        state ^= state << 5;
        return state;
    }
    uint32_t below(uint32_t n) { return next() % n; }
};

// Smooth gradients with noise: compressible like photographs, never constant.
std::vector<unsigned char> picture(Random& random, int width, int height, int channels) {
    std::vector<unsigned char> pixels(static_cast<size_t>(width) * static_cast<size_t>(height) * static_cast<size_t>(channels));
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            for (int c = 0; c < channels; ++c)
                pixels[(static_cast<size_t>(y) * static_cast<size_t>(width) + static_cast<size_t>(x)) * static_cast<size_t>(channels) + static_cast<size_t>(c)] =
                    static_cast<unsigned char>(x * (c + 1) + y * 3 + static_cast<int>(random.below(24)));
    return pixels;
}

bool writePng(const std::string& path, const std::vector<unsigned char>& pixels, int width, int height, int channels,
              bool interlaced, int filter, int level) {
    FILE* file = std::fopen(path.c_str(), "wb");
    if (!file) return false;
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png_create_info_struct(png);
    if (setjmp(png_jmpbuf(png))) {
        png_destroy_write_struct(&png, &info);
        std::fclose(file);
        return false;
    }
    png_init_io(png, file);
    const int type = channels == 1 ? PNG_COLOR_TYPE_GRAY : channels == 3 ? PNG_COLOR_TYPE_RGB : PNG_COLOR_TYPE_RGBA;
    png_set_IHDR(png, info, static_cast<png_uint_32>(width), static_cast<png_uint_32>(height), 8, type,
                 interlaced ? PNG_INTERLACE_ADAM7 : PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT,
                 PNG_FILTER_TYPE_DEFAULT);
    png_set_filter(png, PNG_FILTER_TYPE_BASE, filter);
    png_set_compression_level(png, level);
    png_write_info(png, info);
    std::vector<png_bytep> rows(static_cast<size_t>(height));
    for (int y = 0; y < height; ++y)
        rows[static_cast<size_t>(y)] = const_cast<png_bytep>(pixels.data()) + static_cast<size_t>(y) * static_cast<size_t>(width) * static_cast<size_t>(channels);
    png_write_image(png, rows.data());
    png_write_end(png, nullptr);
    png_destroy_write_struct(&png, &info);
    std::fclose(file);
    return true;
}

bool writeJpeg(const std::string& path, const std::vector<unsigned char>& pixels, int width, int height, int quality,
               int sampling, bool progressive, int restartRows) {
    FILE* file = std::fopen(path.c_str(), "wb");
    if (!file) return false;
    jpeg_compress_struct cinfo;
    jpeg_error_mgr error;
    cinfo.err = jpeg_std_error(&error);
    jpeg_create_compress(&cinfo);
    jpeg_stdio_dest(&cinfo, file);
    cinfo.image_width = static_cast<JDIMENSION>(width);
    cinfo.image_height = static_cast<JDIMENSION>(height);
    cinfo.input_components = 3;
    cinfo.in_color_space = JCS_RGB;
    jpeg_set_defaults(&cinfo);
    jpeg_set_quality(&cinfo, quality, TRUE);
    // 4:4:4, 4:2:2 or 4:2:0 through the luma sampling factors.
    cinfo.comp_info[0].h_samp_factor = sampling == 0 ? 1 : 2;
    cinfo.comp_info[0].v_samp_factor = sampling == 2 ? 2 : 1;
    if (progressive) jpeg_simple_progression(&cinfo);
    cinfo.restart_in_rows = restartRows;
    jpeg_start_compress(&cinfo, TRUE);
    while (cinfo.next_scanline < cinfo.image_height) {
        JSAMPROW row = const_cast<JSAMPROW>(pixels.data()) + static_cast<size_t>(cinfo.next_scanline) * static_cast<size_t>(width) * 3;
        jpeg_write_scanlines(&cinfo, &row, 1);
    }
    jpeg_finish_compress(&cinfo);
    jpeg_destroy_compress(&cinfo);
    std::fclose(file);
    return true;
}

std::vector<unsigned char> ours(const std::string& path, long& width, long& height) {
    sorvane::ImageInfo info;
    info.allocate = std::malloc;
    info.free = std::free;
    sorvane::loadImage(info, path);
    const auto* p = static_cast<const unsigned char*>(info.pixels);
    std::vector<unsigned char> pixels(p, p + info.pixelsSize);
    width = info.width;
    height = info.height;
    return pixels;
}

int side(Random& random) {
    // Mostly small, sometimes one pixel, sometimes past a few blocks.
    const uint32_t pick = random.below(10);
    return pick == 0 ? 1 : pick < 7 ? 1 + static_cast<int>(random.below(40)) : 40 + static_cast<int>(random.below(200));
}

} // namespace

TEST(Differential, GeneratedImagesDecodeAsLibpngAndLibjpegDoIt) {
    const fs::path dir = fs::temp_directory_path() / ("talvex-images-" + std::to_string(::getpid()));
    fs::create_directories(dir);
    Random random{20261124u};
    const int filters[] = {PNG_FILTER_NONE, PNG_FILTER_SUB, PNG_FILTER_UP, PNG_FILTER_AVG, PNG_FILTER_PAETH, PNG_ALL_FILTERS};
    for (int round = 0; round < 40; ++round) {
        const int width = side(random), height = side(random);
        const bool png = round % 2 == 0;
        const int channels = png ? (round / 2) % 3 == 0 ? 1 : (round / 2) % 3 == 1 ? 3 : 4 : 3;
        const std::vector<unsigned char> pixels = picture(random, width, height, channels);
        const std::string path = (dir / ("i" + std::to_string(round) + (png ? ".png" : ".jpg"))).string();
        SCOPED_TRACE(path + " " + std::to_string(width) + "x" + std::to_string(height));
        if (png) {
            ASSERT_TRUE(writePng(path, pixels, width, height, channels, random.below(3) == 0,
                                 filters[random.below(6)], static_cast<int>(random.below(10))));
        } else {
            ASSERT_TRUE(writeJpeg(path, pixels, width, height, 30 + static_cast<int>(random.below(71)),
                                  static_cast<int>(random.below(3)), random.below(3) == 0,
                                  random.below(3) == 0 ? 1 + static_cast<int>(random.below(3)) : 0));
        }
        std::vector<unsigned char> theirs;
        ASSERT_TRUE(png ? direct::libpngDecode(path, theirs) : direct::libjpegDecode(path, theirs));
        long w = 0, h = 0;
        const std::vector<unsigned char> mine = ours(path, w, h);
        EXPECT_EQ(w, width);
        EXPECT_EQ(h, height);
        EXPECT_TRUE(mine == theirs) << mine.size() << " bytes against " << theirs.size();
        // A lossless PNG also gives back what was written.
        if (png) {
            EXPECT_TRUE(mine == pixels);
        }
    }
    std::error_code ignored;
    fs::remove_all(dir, ignored);
}
