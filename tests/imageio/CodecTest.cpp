#include <gtest/gtest.h>

#include <unistd.h>

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>

#include "imageio/MakeImages.h"
#include "sorvane/core/RuntimeException.h"
#include "sorvane/core/file.h"
#include "sorvane/imageio/imageio.h"
#include "sorvane/imageio/imageio_jpeg.h"
#include "sorvane/imageio/imageio_png.h"

using namespace sorvane;
using testimages::Bytes;

namespace {

// The text after the location prefix.
std::string messageOf(const std::exception& e) {
    std::string text = e.what();
    const auto cut = text.find("(): ");
    return cut == std::string::npos ? text : text.substr(cut + 4);
}

template <class F>
std::string failure(F&& f) {
    try {
        f();
    } catch (const std::exception& e) {
        return messageOf(e);
    }
    return "no failure";
}

int allocations = 0;
void* countingAllocate(size_t size) {
    ++allocations;
    return std::malloc(size);
}

struct Decoded : ImageInfo {
    Decoded() {
        allocate = countingAllocate;
        free = std::free;
    }
    Bytes bytes() const {
        auto* p = static_cast<const unsigned char*>(pixels);
        return Bytes(p, p + pixelsSize);
    }
};

uint32_t crc32(const unsigned char* data, size_t size) {
    uint32_t crc = 0xffffffffu;
    for (size_t i = 0; i < size; ++i) {
        crc ^= data[i];
        for (int k = 0; k < 8; ++k) crc = (crc >> 1) ^ (0xedb88320u & (0u - (crc & 1u)));
    }
    return ~crc;
}

void put32(unsigned char* p, uint32_t v) {
    p[0] = static_cast<unsigned char>(v >> 24);
    p[1] = static_cast<unsigned char>(v >> 16);
    p[2] = static_cast<unsigned char>(v >> 8);
    p[3] = static_cast<unsigned char>(v);
}

// The same PNG with its IHDR claiming another size (CRC kept valid).
Bytes withPngSize(Bytes png, uint32_t width, uint32_t height) {
    put32(&png[16], width);
    put32(&png[20], height);
    put32(&png[29], crc32(&png[12], 17));
    return png;
}

std::filesystem::path tempDir() {
    auto dir = std::filesystem::temp_directory_path() / ("talvex_imageio_" + std::to_string(::getpid()));
    std::filesystem::create_directories(dir);
    return dir;
}

} // namespace

TEST(PngCodec, EightBitGrayRgbAndRgbaDecodeAndEncodeLikeLibpng) {
    struct Case {
        int colorType;
        PixelFormat format;
        int channels;
    };
    for (const Case& c : {Case{PNG_COLOR_TYPE_RGB, PixelFormat::RGB, 3}, Case{PNG_COLOR_TYPE_RGBA, PixelFormat::RGBA, 4},
                          Case{PNG_COLOR_TYPE_GRAY, PixelFormat::GRAY, 1}}) {
        SCOPED_TRACE(c.channels);
        const Bytes pixels = testimages::noise(static_cast<size_t>(7 * 5 * c.channels), c.channels);
        const Bytes file = testimages::writePng(7, 5, 8, c.colorType, pixels);
        Decoded info;
        decodeImage(info, file.data(), static_cast<long>(file.size()), "mem");
        EXPECT_EQ(info.width, 7);
        EXPECT_EQ(info.height, 5);
        EXPECT_EQ(info.channels, c.channels);
        EXPECT_EQ(info.pixelFormat, c.format);
        EXPECT_EQ(info.imageFormat, ImageFormat::YXC);
        EXPECT_EQ(info.scalarType, ScalarType::UInteger8);
        EXPECT_EQ(info.bytes(), pixels);

        // Our encoder's output read back by libpng: same header and samples.
        const long needed = imcodec_encode_png(nullptr, 0, pixels.data(), static_cast<long>(pixels.size()), 7, 5,
                                               c.format);
        Bytes encoded(static_cast<size_t>(needed));
        EXPECT_EQ(imcodec_encode_png(encoded.data(), needed, pixels.data(), static_cast<long>(pixels.size()), 7, 5,
                                     c.format),
                  needed);
        const testimages::Decoded back = testimages::readPng(encoded);
        EXPECT_EQ(back.colorType, c.colorType);
        EXPECT_EQ(back.pixels, pixels);
    }
}

TEST(PngCodec, InterlacedDecodesLikePlain) {
    const Bytes pixels = testimages::noise(33 * 17 * 3, 9);
    Decoded plain, adam7;
    const Bytes a = testimages::writePng(33, 17, 8, PNG_COLOR_TYPE_RGB, pixels, false);
    const Bytes b = testimages::writePng(33, 17, 8, PNG_COLOR_TYPE_RGB, pixels, true);
    imcodec_decode_png(plain, a.data(), static_cast<long>(a.size()));
    imcodec_decode_png(adam7, b.data(), static_cast<long>(b.size()));
    EXPECT_EQ(adam7.bytes(), plain.bytes());
    EXPECT_EQ(plain.bytes(), pixels);
}

TEST(PngCodec, RefusesOtherDepthsAndColourTypesFromTheHeader) {
    const std::string depth = "Unsupported png file format (non 8 bit depth)";
    const std::string format = "Unsupported png file format (pixel format)";
    struct Case {
        int depth, colorType;
        size_t rowBytes;
        std::string text;
    };
    // 4 x 2 images; row sizes as libpng packs them.
    for (const Case& c : {Case{16, PNG_COLOR_TYPE_RGB, 24, depth}, Case{1, PNG_COLOR_TYPE_GRAY, 1, depth},
                          Case{4, PNG_COLOR_TYPE_GRAY, 2, depth}, Case{4, PNG_COLOR_TYPE_PALETTE, 2, depth},
                          Case{8, PNG_COLOR_TYPE_PALETTE, 4, format}, Case{8, PNG_COLOR_TYPE_GRAY_ALPHA, 8, format}}) {
        SCOPED_TRACE(std::to_string(c.depth) + "/" + std::to_string(c.colorType));
        const Bytes file = testimages::writePng(4, 2, c.depth, c.colorType, Bytes(c.rowBytes * 2, 3));
        allocations = 0;
        Decoded info;
        EXPECT_EQ(failure([&] { decodeImage(info, file.data(), static_cast<long>(file.size()), "x"); }), c.text);
        EXPECT_EQ(allocations, 0);
    }
}

TEST(PngCodec, ExpectationsHeaderOnlyAndCallerBuffers) {
    const Bytes pixels = testimages::noise(5 * 3 * 4);
    const Bytes file = testimages::writePng(5, 3, 8, PNG_COLOR_TYPE_RGBA, pixels);
    const long size = static_cast<long>(file.size());

    ImageInfo header; // no pixels, no allocate: only the description
    decodeImage(header, file.data(), size, "x");
    EXPECT_EQ(header.pixels, nullptr);
    EXPECT_EQ(header.pixelsSize, 60);
    EXPECT_EQ(header.pixelFormat, PixelFormat::RGBA);

    // Found value first, and in the stated order.
    ImageInfo wrong;
    wrong.width = 3;
    wrong.height = 9;
    EXPECT_EQ(failure([&] { decodeImage(wrong, file.data(), size, "x"); }), "Unexpected width 5 != 3");
    wrong.width = 5;
    EXPECT_EQ(failure([&] { decodeImage(wrong, file.data(), size, "x"); }), "Unexpected height 3 != 9");
    ImageInfo format;
    format.pixelFormat = PixelFormat::RGB;
    format.scalarType = ScalarType::Float;
    EXPECT_EQ(failure([&] { decodeImage(format, file.data(), size, "x"); }), "Unexpected pixel format RGBA != RGB");
    format.pixelFormat = PixelFormat::RGBA;
    EXPECT_EQ(failure([&] { decodeImage(format, file.data(), size, "x"); }),
              "Unexpected scalar type UInteger8 != Float");

    Bytes mine(59);
    ImageInfo small;
    small.pixels = mine.data();
    small.pixelsSize = 59;
    EXPECT_EQ(failure([&] { decodeImage(small, file.data(), size, "x"); }), "Pixel buffer is too small");
    mine.resize(60);
    small.pixels = mine.data();
    small.pixelsSize = 60;
    decodeImage(small, file.data(), size, "x");
    EXPECT_EQ(mine, pixels);
}

TEST(PngCodec, HostileHeadersAndCutFilesFailWithoutAllocating) {
    const Bytes file = testimages::writePng(4, 4, 8, PNG_COLOR_TYPE_RGB, testimages::noise(48));
    for (auto size : {std::pair<uint32_t, uint32_t>{1000000, 1000000}, {0x7fffffff, 0x7fffffff}, {40000, 20000}}) {
        const Bytes huge = withPngSize(file, size.first, size.second);
        allocations = 0;
        Decoded info;
        const std::string text = failure([&] { decodeImage(info, huge.data(), static_cast<long>(huge.size()), "x"); });
        EXPECT_NE(text, "no failure");
        EXPECT_EQ(allocations, 0) << text;
        EXPECT_EQ(info.pixels, nullptr);
    }
    EXPECT_EQ(failure([&] {
                  const Bytes huge = withPngSize(file, 1000000, 1000000);
                  ImageInfo info;
                  decodeImage(info, huge.data(), static_cast<long>(huge.size()), "x");
              }),
              "Image too large (1000000 x 1000000 x 3)");

    // Every prefix of a valid file fails cleanly, from the signature on.
    for (size_t cut = 0; cut < file.size(); ++cut) {
        Decoded info;
        const std::string text = failure([&] { imcodec_decode_png(info, file.data(), static_cast<long>(cut)); });
        EXPECT_NE(text, "no failure") << cut;
        if (cut < 8) {
            EXPECT_EQ(text, "Buffer size is less than 8 bytes");
        }
    }
    const Bytes cut(file.begin(), file.begin() + 40);
    Decoded info;
    EXPECT_EQ(failure([&] { imcodec_decode_png(info, cut.data(), static_cast<long>(cut.size())); }),
              "Buffer overflow (pos=33,new pos=41,buffer size=40)");
    Bytes notPng = file;
    notPng[1] = 'Q';
    EXPECT_EQ(failure([&] { imcodec_decode_png(info, notPng.data(), static_cast<long>(notPng.size())); }),
              "PNG signature not found");
}

TEST(JpegCodec, RgbDecodesLikeLibjpegAndOtherComponentCountsAreRefused) {
    const Bytes rgb = testimages::gradient(40, 24, 3);
    for (bool progressive : {false, true}) {
        const Bytes file = testimages::writeJpeg(40, 24, 3, JCS_RGB, rgb, progressive);
        Decoded info;
        decodeImage(info, file.data(), static_cast<long>(file.size()), "x");
        EXPECT_EQ(info.width, 40);
        EXPECT_EQ(info.height, 24);
        EXPECT_EQ(info.pixelFormat, PixelFormat::RGB);
        EXPECT_EQ(info.imageFormat, ImageFormat::YXC);
        EXPECT_EQ(info.bytes(), testimages::readJpeg(file));
    }
    const Bytes gray = testimages::writeJpeg(8, 8, 1, JCS_GRAYSCALE, Bytes(64, 100));
    const Bytes cmyk = testimages::writeJpeg(8, 8, 4, JCS_CMYK, Bytes(256, 100));
    for (const Bytes* file : {&gray, &cmyk}) {
        allocations = 0;
        Decoded info;
        EXPECT_EQ(failure([&] { decodeImage(info, file->data(), static_cast<long>(file->size()), "x"); }),
                  "Unsupported jpeg file format (pixel format)");
        EXPECT_EQ(allocations, 0);
    }
}

TEST(JpegCodec, BrokenStreamsRaiseAndHugeHeadersAreRefused) {
    const Bytes file = testimages::writeJpeg(16, 16, 3, JCS_RGB, testimages::gradient(16, 16, 3));
    // libjpeg's own message, at the header read.
    Bytes noSof(file.begin(), file.begin() + 20);
    Decoded info;
    const std::string text = failure([&] { imcodec_decode_jpeg(info, noSof.data(), static_cast<long>(noSof.size())); });
    EXPECT_NE(text, "no failure");
    EXPECT_NE(std::string(text), "");

    // Each marker's length byte broken in turn, and every prefix: a failure or an image, never a crash.
    for (size_t i = 2; i + 1 < file.size(); ++i) {
        if (file[i] != 0xFF || file[i + 1] == 0 || file[i + 1] == 0xFF) continue;
        for (unsigned char value : {0x00, 0x01, 0xFF}) {
            Bytes broken = file;
            if (i + 2 < broken.size()) broken[i + 2] = value;
            Decoded d;
            try {
                imcodec_decode_jpeg(d, broken.data(), static_cast<long>(broken.size()));
            } catch (const std::exception&) {
            }
        }
    }
    for (size_t cut = 0; cut < file.size(); cut += 7) {
        Decoded d;
        try {
            imcodec_decode_jpeg(d, file.data(), static_cast<long>(cut));
        } catch (const std::exception&) {
        }
    }

    // Start of frame claiming 65500 x 65500: refused before any pixel buffer.
    Bytes huge = file;
    for (size_t i = 2; i + 8 < huge.size(); ++i) {
        if (huge[i] == 0xFF && huge[i + 1] == 0xC0) {
            huge[i + 5] = 0xFF, huge[i + 6] = 0xDC, huge[i + 7] = 0xFF, huge[i + 8] = 0xDC;
            break;
        }
    }
    allocations = 0;
    Decoded big;
    EXPECT_EQ(failure([&] { imcodec_decode_jpeg(big, huge.data(), static_cast<long>(huge.size())); }),
              "Image too large (65500 x 65500 x 3)");
    EXPECT_EQ(allocations, 0);
}

TEST(JpegCodec, DetectorWalksTheMarkers) {
    const Bytes file = testimages::writeJpeg(32, 32, 3, JCS_RGB, testimages::noise(32 * 32 * 3));
    EXPECT_TRUE(imcodec_detect_jpeg(file.data(), static_cast<long>(file.size())));
    size_t scan = 0;
    for (size_t i = 2; i + 1 < file.size() && !scan; ++i)
        if (file[i] == 0xFF && file[i + 1] == 0xDA) scan = i;
    ASSERT_GT(scan, 0u);
    const size_t middle = scan + (file.size() - scan) / 2;
    // Cut inside the scan but still ending in an end-of-image marker.
    Bytes cut(file.begin(), file.begin() + static_cast<long>(middle));
    cut.push_back(0xFF);
    cut.push_back(0xD9);
    EXPECT_TRUE(imcodec_detect_jpeg(cut.data(), static_cast<long>(cut.size())));
    // Cut there with no end marker: off the end, and not ending FF D9.
    EXPECT_FALSE(imcodec_detect_jpeg(file.data(), static_cast<long>(middle)));
    // Cut inside a table segment: its length leaves the buffer.
    EXPECT_FALSE(imcodec_detect_jpeg(file.data(), 30));

    const unsigned char badLength[] = {0xFF, 0xD8, 0xFF, 0xE0, 0x00, 0x01};
    EXPECT_FALSE(imcodec_detect_jpeg(badLength, sizeof badLength));
    const unsigned char pastEnd[] = {0xFF, 0xD8, 0xFF, 0xE0, 0x00, 0x10, 0, 0};
    EXPECT_FALSE(imcodec_detect_jpeg(pastEnd, sizeof pastEnd));
    const unsigned char jp2[] = {0, 0, 0, 12, 0x6A, 0x50, 0x20, 0x20, 13, 10, 135, 10, 0xFF, 0xD9};
    EXPECT_FALSE(imcodec_detect_jpeg(jp2, sizeof jp2));
    const unsigned char restartThenEnd[] = {0xFF, 0xD8, 0xFF, 0xFF, 0xD0, 0x12, 0xFF, 0xD9};
    EXPECT_TRUE(imcodec_detect_jpeg(restartThenEnd, sizeof restartThenEnd));
    EXPECT_FALSE(imcodec_detect_jpeg(nullptr, 10));
    EXPECT_FALSE(imcodec_detect_jpeg(file.data(), 3));
}

TEST(ImageFiles, DispatchAndUnsupportedFormats) {
    const Bytes png = testimages::writePng(2, 2, 8, PNG_COLOR_TYPE_RGB, Bytes(12, 7));
    const auto dir = tempDir();
    saveFile((dir / "a.PNG").string(), png);
    saveFile((dir / "a.png").string(), png);
    saveFile((dir / "b.jpg").string(), png); // PNG content behind a JPEG name
    ImageInfo info;
    EXPECT_EQ(failure([&] { loadImage(info, (dir / "a.PNG").string()); }), "Unsupported image format '.PNG'");
    loadImage(info, (dir / "a.png").string());
    EXPECT_EQ(info.width, 2);
    EXPECT_NE(failure([&] { loadImage(info, (dir / "b.jpg").string()); }), "no failure");
    EXPECT_EQ(failure([&] { decodeImage(info, png.data(), 7, "short.bin"); }), "Unsupported image codec short.bin");

    const Bytes pixels(12, 1);
    EXPECT_EQ(failure([&] {
                  saveImage((dir / "c.jpg").string(), pixels.data(), 12, 2, 2, 3, ScalarType::UInteger8,
                            ImageFormat::YXC, PixelFormat::RGB);
              }),
              "Unsupported image format '.jpg'");
    EXPECT_EQ(failure([&] {
                  encodeImage(nullptr, 0, pixels.data(), 12, 2, 2, ScalarType::UInteger8, ImageFormat::YXC,
                              PixelFormat::RGB, "jpeg");
              }),
              "Not implemented");
    EXPECT_EQ(failure([&] {
                  encodeImage(nullptr, 0, pixels.data(), 12, 2, 2, ScalarType::Float, ImageFormat::YXC,
                              PixelFormat::RGB, "png");
              }),
              "Unsupported scalar type Float");
    EXPECT_EQ(failure([&] {
                  imcodec_encode_png(nullptr, 0, pixels.data(), 11, 2, 2, PixelFormat::RGB);
              }),
              "Input buffer is too small");
    std::filesystem::remove_all(dir);
}

TEST(ImageFiles, FloatPixelsAreScaledTruncatedAndClampedWhenSaved) {
    const float values[6] = {0.0f, 0.5f, 1.0f, 1.5f, -0.2f, 0.999f};
    const auto dir = tempDir();
    const std::string path = (dir / "f.png").string();
    saveImage(path, values, sizeof values, 2, 1, 3, ScalarType::Float, ImageFormat::YXC, PixelFormat::RGB);
    const testimages::Decoded back = testimages::readPng(loadFile(path));
    EXPECT_EQ(back.pixels, (Bytes{0, 127, 255, 255, 0, 254}));

    unsigned char bytes[2] = {0, 0};
    const double doubles[2] = {std::nan(""), 2.0};
    setImageScalarTypeBuffer(bytes, ScalarType::UInteger8, doubles, 2, ScalarType::Double);
    EXPECT_EQ(bytes[0], 0);
    EXPECT_EQ(bytes[1], 255);
    float unit[2];
    const unsigned char full[2] = {255, 51};
    setImageScalarTypeBuffer(unit, ScalarType::Float, full, 2, ScalarType::UInteger8);
    EXPECT_FLOAT_EQ(unit[0], 1.0f);
    EXPECT_FLOAT_EQ(unit[1], 0.2f);
    double wide[2];
    EXPECT_EQ(failure([&] { setImageScalarTypeBuffer(wide, ScalarType::Double, unit, 2, ScalarType::Float); }),
              "Unsupported scalar type conversion Float => Double");
    // Conversion failures are rethrown as the standard runtime error, with the same text.
    try {
        saveImage(path, values, sizeof values, 1, 2, 3, ScalarType::Integer16, ImageFormat::YXC, PixelFormat::RGB);
        ADD_FAILURE();
    } catch (const RuntimeException&) {
        ADD_FAILURE() << "expected std::runtime_error";
    } catch (const std::runtime_error& e) {
        EXPECT_EQ(messageOf(e), "Unsupported scalar type conversion Integer16 => UInteger8");
    }
    std::filesystem::remove_all(dir);
}

TEST(ImageFiles, LargeNoiseOverOneMebibyteRoundTrips) {
    const Bytes pixels = testimages::noise(1024 * 1024 * 4, 3);
    const auto dir = tempDir();
    const std::string path = (dir / "noise.png").string();
    saveImage(path, pixels.data(), static_cast<long>(pixels.size()), 1024, 1024, 4, ScalarType::UInteger8,
              ImageFormat::YXC, PixelFormat::Invalid);
    EXPECT_GT(std::filesystem::file_size(path), 1u << 20);
    Decoded info;
    loadImage(info, path);
    EXPECT_EQ(info.pixelFormat, PixelFormat::RGBA); // guessed from 4 channels
    EXPECT_EQ(info.bytes(), pixels);
    // Write failures carry the path.
    EXPECT_EQ(failure([&] {
                  saveImage((dir / "nodir" / "deeper" / "x.png").string(), pixels.data(), 12, 2, 2, 3,
                            ScalarType::UInteger8, ImageFormat::YXC, PixelFormat::RGB);
              }).rfind("Error when creating '", 0),
              0u);
    std::filesystem::remove_all(dir);
}
