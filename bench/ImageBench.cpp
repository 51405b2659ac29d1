// Image codecs against the libraries they are built on, in the same run:
// PNG decode of 4096x4096 RGB and RGBA and JPEG decode of 4096x4096 RGB
// against a direct libpng / libjpeg-turbo decode into the same buffer, and PNG
// encode of 2048x2048 RGB against a direct libpng encode with the same
// (default) settings. Compare the Lib* line with the one above it.
#include <benchmark/benchmark.h>

#include <csetjmp>
#include <cstdio>
#include <cstring>
#include <stdexcept>
#include <vector>

#include <jpeglib.h>
#include <png.h>

#include "sorvane/imageio/imageio.h"

namespace {

using Bytes = std::vector<unsigned char>;

// A smooth picture with fine noise: compresses like a photograph, not like noise or flat colour.
Bytes picture(long width, long height, int channels) {
    Bytes out(static_cast<size_t>(width * height * channels));
    unsigned state = 1;
    for (long y = 0; y < height; ++y)
        for (long x = 0; x < width; ++x)
            for (int c = 0; c < channels; ++c) {
                state = state * 1103515245u + 12345u;
                const long base = (x * (c + 1) / 16 + y / (c + 8) + ((x ^ y) >> 6)) & 0xff;
                out[static_cast<size_t>((y * width + x) * channels + c)] =
                    static_cast<unsigned char>(base + ((state >> 16) & 7));
            }
    return out;
}

void pngAppend(png_structp png, png_bytep data, size_t length) {
    auto* out = static_cast<Bytes*>(png_get_io_ptr(png));
    out->insert(out->end(), data, data + length);
}
void pngNoFlush(png_structp) {}

// Direct libpng encode, default compression and filters.
Bytes libpngEncode(const Bytes& pixels, long width, long height, int channels) {
    Bytes out;
    out.reserve(1u << 20);
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png_create_info_struct(png);
    if (setjmp(png_jmpbuf(png))) throw std::runtime_error("libpng encode failed");
    png_set_write_fn(png, &out, pngAppend, pngNoFlush);
    png_set_IHDR(png, info, static_cast<png_uint_32>(width), static_cast<png_uint_32>(height), 8,
                 channels == 4 ? PNG_COLOR_TYPE_RGB_ALPHA : PNG_COLOR_TYPE_RGB, PNG_INTERLACE_NONE,
                 PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    png_write_info(png, info);
    std::vector<png_bytep> rows(static_cast<size_t>(height));
    for (long y = 0; y < height; ++y)
        rows[static_cast<size_t>(y)] = const_cast<png_bytep>(pixels.data() + y * width * channels);
    png_write_image(png, rows.data());
    png_write_end(png, info);
    png_destroy_write_struct(&png, &info);
    return out;
}

struct Source {
    const Bytes* bytes;
    size_t pos;
};
void pngTake(png_structp png, png_bytep data, size_t length) {
    auto* src = static_cast<Source*>(png_get_io_ptr(png));
    if (src->pos + length > src->bytes->size()) png_error(png, "short");
    std::memcpy(data, src->bytes->data() + src->pos, length);
    src->pos += length;
}

void libpngDecode(const Bytes& file, unsigned char* pixels) {
    Source source{&file, 0};
    png_structp png = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png_create_info_struct(png);
    if (setjmp(png_jmpbuf(png))) throw std::runtime_error("libpng decode failed");
    png_set_read_fn(png, &source, pngTake);
    png_read_info(png, info);
    png_read_update_info(png, info);
    const size_t rowBytes = png_get_rowbytes(png, info);
    const png_uint_32 height = png_get_image_height(png, info);
    std::vector<png_bytep> rows(height);
    for (png_uint_32 y = 0; y < height; ++y) rows[y] = pixels + y * rowBytes;
    png_read_image(png, rows.data());
    png_read_end(png, nullptr);
    png_destroy_read_struct(&png, &info, nullptr);
}

Bytes libjpegEncode(const Bytes& pixels, unsigned width, unsigned height) {
    jpeg_compress_struct cinfo;
    jpeg_error_mgr error;
    cinfo.err = jpeg_std_error(&error);
    jpeg_create_compress(&cinfo);
    unsigned char* buffer = nullptr;
    unsigned long size = 0;
    jpeg_mem_dest(&cinfo, &buffer, &size);
    cinfo.image_width = width;
    cinfo.image_height = height;
    cinfo.input_components = 3;
    cinfo.in_color_space = JCS_RGB;
    jpeg_set_defaults(&cinfo);
    jpeg_set_quality(&cinfo, 90, TRUE);
    jpeg_start_compress(&cinfo, TRUE);
    while (cinfo.next_scanline < height) {
        JSAMPROW row = const_cast<JSAMPROW>(pixels.data() + static_cast<size_t>(cinfo.next_scanline) * width * 3);
        jpeg_write_scanlines(&cinfo, &row, 1);
    }
    jpeg_finish_compress(&cinfo);
    jpeg_destroy_compress(&cinfo);
    Bytes out(buffer, buffer + size);
    std::free(buffer);
    return out;
}

// Direct libjpeg-turbo decode straight into the buffer, a few rows per call.
void libjpegDecode(const Bytes& file, unsigned char* pixels) {
    jpeg_decompress_struct cinfo;
    jpeg_error_mgr error;
    cinfo.err = jpeg_std_error(&error);
    jpeg_create_decompress(&cinfo);
    jpeg_mem_src(&cinfo, file.data(), file.size());
    jpeg_read_header(&cinfo, TRUE);
    jpeg_start_decompress(&cinfo);
    const size_t row = static_cast<size_t>(cinfo.output_width) * cinfo.output_components;
    JSAMPROW rows[16];
    while (cinfo.output_scanline < cinfo.output_height) {
        JDIMENSION count = cinfo.output_height - cinfo.output_scanline;
        if (count > 16) count = 16;
        for (JDIMENSION i = 0; i < count; ++i) rows[i] = pixels + (cinfo.output_scanline + i) * row;
        jpeg_read_scanlines(&cinfo, rows, count);
    }
    jpeg_finish_decompress(&cinfo);
    jpeg_destroy_decompress(&cinfo);
}

constexpr long kSide = 4096;
constexpr long kEncodeSide = 2048;

const Bytes& pngFile(int channels) {
    static const Bytes rgb = libpngEncode(picture(kSide, kSide, 3), kSide, kSide, 3);
    static const Bytes rgba = libpngEncode(picture(kSide, kSide, 4), kSide, kSide, 4);
    return channels == 4 ? rgba : rgb;
}

const Bytes& jpegFile() {
    static const Bytes file = libjpegEncode(picture(kSide, kSide, 3), kSide, kSide);
    return file;
}

void decodeInto(const Bytes& file, Bytes& pixels) {
    sorvane::ImageInfo info;
    info.pixels = pixels.data();
    info.pixelsSize = static_cast<long>(pixels.size());
    sorvane::decodeImage(info, file.data(), static_cast<long>(file.size()), "bench");
}

void BM_PngDecode(benchmark::State& state) {
    const int channels = static_cast<int>(state.range(0));
    const Bytes& file = pngFile(channels);
    Bytes pixels(static_cast<size_t>(kSide * kSide * channels));
    for (auto _ : state) {
        decodeInto(file, pixels);
        benchmark::DoNotOptimize(pixels.data());
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * static_cast<int64_t>(pixels.size()));
}

void BM_PngDecode_Libpng(benchmark::State& state) {
    const int channels = static_cast<int>(state.range(0));
    const Bytes& file = pngFile(channels);
    Bytes pixels(static_cast<size_t>(kSide * kSide * channels));
    for (auto _ : state) {
        libpngDecode(file, pixels.data());
        benchmark::DoNotOptimize(pixels.data());
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * static_cast<int64_t>(pixels.size()));
}

void BM_JpegDecode(benchmark::State& state) {
    const Bytes& file = jpegFile();
    Bytes pixels(static_cast<size_t>(kSide * kSide * 3));
    for (auto _ : state) {
        decodeInto(file, pixels);
        benchmark::DoNotOptimize(pixels.data());
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * static_cast<int64_t>(pixels.size()));
}

void BM_JpegDecode_Libjpeg(benchmark::State& state) {
    const Bytes& file = jpegFile();
    Bytes pixels(static_cast<size_t>(kSide * kSide * 3));
    for (auto _ : state) {
        libjpegDecode(file, pixels.data());
        benchmark::DoNotOptimize(pixels.data());
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * static_cast<int64_t>(pixels.size()));
}

const Bytes& encodePixels() {
    static const Bytes pixels = picture(kEncodeSide, kEncodeSide, 3);
    return pixels;
}

void BM_PngEncode(benchmark::State& state) {
    const Bytes& pixels = encodePixels();
    Bytes out(pixels.size() * 2);
    for (auto _ : state) {
        const long size = sorvane::encodeImage(out.data(), static_cast<long>(out.size()), pixels.data(),
                                               static_cast<long>(pixels.size()), kEncodeSide, kEncodeSide,
                                               sorvane::ScalarType::UInteger8, sorvane::ImageFormat::YXC,
                                               sorvane::PixelFormat::RGB, "png");
        benchmark::DoNotOptimize(size);
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * static_cast<int64_t>(pixels.size()));
}

void BM_PngEncode_Libpng(benchmark::State& state) {
    const Bytes& pixels = encodePixels();
    for (auto _ : state) {
        Bytes out = libpngEncode(pixels, kEncodeSide, kEncodeSide, 3);
        benchmark::DoNotOptimize(out.data());
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * static_cast<int64_t>(pixels.size()));
}

} // namespace

BENCHMARK(BM_PngDecode)->Arg(3)->Arg(4)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_PngDecode_Libpng)->Arg(3)->Arg(4)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_JpegDecode)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_JpegDecode_Libjpeg)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_PngEncode)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_PngEncode_Libpng)->Unit(benchmark::kMillisecond);
