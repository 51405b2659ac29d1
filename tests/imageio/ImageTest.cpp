#include <gtest/gtest.h>

#include <unistd.h>

#include <climits>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <string>

#include "imageio/MakeImages.h"
#include "sorvane/core/ErrorSlot.h"
#include "sorvane/core/file.h"
#include "sorvane/image/crop.h"
#include "sorvane/image/flip.h"
#include "sorvane/imageio/imageio.h"
#include "sorvane/sorvane.h"

using namespace sorvane;
using testimages::Bytes;

namespace {

std::string messageOf(const std::string& text) {
    const auto cut = text.find("(): ");
    return cut == std::string::npos ? text : text.substr(cut + 4);
}

template <class F>
std::string failure(F&& f) {
    try {
        f();
    } catch (const std::exception& e) {
        return messageOf(e.what());
    }
    return "no failure";
}

// A width x height RGB image whose pixel (x, y) is (x, y, 9).
DataTree rgbImage(long width, long height) {
    Bytes pixels(static_cast<size_t>(width * height * 3));
    for (long y = 0; y < height; ++y)
        for (long x = 0; x < width; ++x) {
            unsigned char* p = &pixels[static_cast<size_t>((y * width + x) * 3)];
            p[0] = static_cast<unsigned char>(x), p[1] = static_cast<unsigned char>(y), p[2] = 9;
        }
    const void* data = pixels.data();
    DataTree image = DataTree::createObject();
    image.setItem("imageFormat", DataTree(2L));
    image.setItem("pixelFormat", DataTree(1L));
    image.setItem("pixels", DataTree::createTensor(data, static_cast<long>(pixels.size()), {height, width, 3},
                                                   ScalarType::UInteger8));
    return image;
}

const unsigned char* px(const DataTree& image, long x, long y) {
    const DataTree& pixels = image.getItem("pixels");
    return pixels.getData<unsigned char>() + (y * pixels.getTensorSize(1) + x) * 3;
}

std::filesystem::path tempDir() {
    auto dir = std::filesystem::temp_directory_path() / ("talvex_image_" + std::to_string(::getpid()));
    std::filesystem::create_directories(dir);
    return dir;
}

} // namespace

TEST(ImageModel, EnumerationsAndDimensionOrders) {
    EXPECT_EQ(guessPixelFormat(1), PixelFormat::GRAY);
    EXPECT_EQ(guessPixelFormat(2), PixelFormat::Invalid);
    EXPECT_EQ(guessPixelFormat(4), PixelFormat::RGBA);
    EXPECT_STREQ(pixelFormat2string(int2pixelFormat(7)), "INVALID");
    EXPECT_EQ(imageFormat2dims(ImageFormat::XYC, 5, 4, 3), (std::vector<long>{5, 4, 3}));
    EXPECT_EQ(imageFormat2dims(ImageFormat::CYX, 5, 4, 3), (std::vector<long>{3, 4, 5}));
    EXPECT_EQ(failure([] { imageFormat2dims(ImageFormat::Invalid, 1, 1, 1); }), "Invalid image format 0");
    // channels, height, width; two dimensions mean no channel dimension.
    EXPECT_EQ(dims2imageFormat(ImageFormat::YXC, {4, 5, 3}), (std::vector<long>{3, 4, 5}));
    EXPECT_EQ(dims2imageFormat(ImageFormat::XYC, {5, 4}), (std::vector<long>{1, 4, 5}));
    EXPECT_EQ(dims2imageFormat(ImageFormat::CYX, {3, 4}), (std::vector<long>{3, 4, 1}));
    EXPECT_EQ(failure([] { dims2imageFormat(ImageFormat::YXC, {1}); }), "Invalid dimension count");
}

TEST(ImageModel, XycLayoutConvertsBothWaysAndSavesLikeYxc) {
    const DataTree yxc = rgbImage(3, 2);
    DataTree xyc(yxc.getNode().clone());
    setImageFormat(xyc, ImageFormat::XYC);
    EXPECT_EQ(xyc.getItem("imageFormat").getInteger(), 1);
    EXPECT_EQ(xyc.getItem("pixels").getTensorSizes(), (std::vector<long>{3, 2, 3}));
    // (x, y, c) at ((x * height) + y) * channels + c.
    const unsigned char* data = xyc.getItem("pixels").getData<unsigned char>();
    EXPECT_EQ(data[((2 * 2) + 1) * 3 + 0], 2);
    EXPECT_EQ(data[((2 * 2) + 1) * 3 + 1], 1);
    EXPECT_EQ(failure([&] { setImageFormat(xyc, ImageFormat::CYX); }), "Unsupported image format conversion");

    const auto dir = tempDir();
    const std::string path = (dir / "xyc.png").string();
    saveImage(path, xyc);
    const DataTree loaded = loadImage(path, ScalarType::UInteger8, ImageFormat::YXC);
    EXPECT_TRUE(loaded.getItem("pixels").equals(yxc.getItem("pixels")));
    const DataTree asXyc = loadImage(path, ScalarType::UInteger8, ImageFormat::XYC);
    EXPECT_TRUE(asXyc.getItem("pixels").equals(xyc.getItem("pixels")));
    EXPECT_EQ(failure([&] { loadImage(path, ScalarType::Float, ImageFormat::YXC); }),
              "Can't convert scalar type from UInteger8 to Float");

    // A bare tensor is YXC with 3 or 4 channels; other values are refused.
    EXPECT_EQ(failure([&] { saveImage(path, DataTree::createTensor({2, 2}, ScalarType::UInteger8)); }),
              "Invalid tensor dim, expect 3 dimensions");
    EXPECT_EQ(failure([&] { saveImage(path, DataTree::createTensor({2, 2, 2}, ScalarType::UInteger8)); }),
              "Invalid or unsupported channel count 2");
    EXPECT_EQ(failure([&] { saveImage(path, DataTree(3L)); }), "Image should be an Object or a Tensor");
    std::filesystem::remove_all(dir);
}

TEST(ImageModel, CreateFromBytesWrapsDecodingFailures) {
    const Bytes png = testimages::writePng(3, 2, 8, PNG_COLOR_TYPE_RGB, Bytes(18, 4));
    const DataTree image = createImage(png.data(), static_cast<long>(png.size()), "m", ScalarType::UInteger8,
                                       ImageFormat::YXC);
    EXPECT_EQ(image.getItem("pixelFormat").getInteger(), 1);
    EXPECT_EQ(image.getItem("pixels").getTensorSizes(), (std::vector<long>{2, 3, 3}));
    const std::string text = failure([&] {
        createImage(png.data(), 10, "m", ScalarType::UInteger8, ImageFormat::YXC);
    });
    EXPECT_EQ(text.rfind("Error decoding an image:\n", 0), 0u) << text;

    ImageInfo empty;
    EXPECT_EQ(failure([&] { createImage(empty, ScalarType::UInteger8, ImageFormat::YXC); }), "No pixels");
    Bytes pixels(18, 1);
    ImageInfo info;
    info.pixels = pixels.data();
    info.pixelsSize = 18;
    info.width = 3, info.height = 2, info.channels = 3;
    info.pixelFormat = PixelFormat::RGB, info.imageFormat = ImageFormat::YXC, info.scalarType = ScalarType::UInteger8;
    EXPECT_EQ(failure([&] { delete createImagePtr(info, ScalarType::Double, ImageFormat::YXC); }),
              "Unsupported scalar type");
    DataTree* copy = createImagePtr(info, ScalarType::UInteger8, ImageFormat::XYC);
    pixels[0] = 200; // a copy, not a view
    EXPECT_EQ(copy->getItem("pixels").getData<unsigned char>()[0], 1);
    delete copy;
}

TEST(ImageOps, CropFillsOutsideWithZeroAndChecksItsInput) {
    const DataTree image = rgbImage(4, 4);
    const DataTree crop = cropImage(image, -2, 0, 2, 4);
    EXPECT_EQ(crop.getItem("pixels").getTensorSizes(), (std::vector<long>{4, 4, 3}));
    for (long y = 0; y < 4; ++y) {
        EXPECT_EQ(px(crop, 0, y)[2], 0);
        EXPECT_EQ(px(crop, 1, y)[2], 0);
        EXPECT_EQ(px(crop, 2, y)[0], 0); // source column 0
        EXPECT_EQ(px(crop, 3, y)[0], 1);
        EXPECT_EQ(px(crop, 3, y)[1], y);
    }
    const DataTree beyond = cropImage(image, 3, 3, 6, 5);
    EXPECT_EQ(px(beyond, 0, 0)[0], 3);
    EXPECT_EQ(px(beyond, 1, 0)[2], 0);
    EXPECT_EQ(px(beyond, 0, 1)[2], 0);
    const DataTree outside = cropImage(image, -10, -10, -8, -9);
    EXPECT_EQ(outside.getItem("pixels").getValueCount(), 6);
    EXPECT_EQ(px(outside, 1, 0)[2], 0);

    EXPECT_EQ(failure([&] { cropImage(image, 2, 0, 2, 4); }), "Invalid crop");
    EXPECT_EQ(failure([&] { cropImage(image, LONG_MIN, 0, LONG_MAX, 4); }), "Invalid crop");
    const DataTree& pixels = image.getItem("pixels");
    EXPECT_EQ(failure([&] { cropImage(pixels, 0, 0, 1, 1, ImageFormat::XYC, PixelFormat::RGB); }),
              "Unsupported image format XYC");
    EXPECT_EQ(failure([&] { cropImage(pixels, 0, 0, 1, 1, ImageFormat::YXC, PixelFormat::RGBA); }),
              "Unsupported pixel format RGBA");
    EXPECT_EQ(failure([&] {
                  cropImage(DataTree::createTensor({2, 2, 3}, ScalarType::Float), 0, 0, 1, 1, ImageFormat::YXC,
                            PixelFormat::RGB);
              }),
              "Unsupported scalar type Float");
    EXPECT_EQ(failure([&] {
                  cropImage(DataTree::createTensor({6}, ScalarType::UInteger8), 0, 0, 1, 1, ImageFormat::YXC,
                            PixelFormat::RGB);
              }),
              "Unsupported tensor dim 1");
}

TEST(ImageOps, SmallestCropKeepsItsBottomRightAsymmetry) {
    auto plain = [](long width, long height) {
        DataTree image = rgbImage(width, height);
        std::memset(image.getItem("pixels").getBuffer(), 0, static_cast<size_t>(width * height * 3));
        return image;
    };
    auto mark = [](DataTree& image, long x, long y) {
        DataTree& pixels = image.getItem("pixels");
        pixels.getData<unsigned char>()[(y * pixels.getTensorSize(1) + x) * 3 + 1] = 255;
    };
    DataTree image = plain(5, 4);
    // All background: inclusive ends.
    EXPECT_EQ(smallestImageCrop(image, {0, 0, 0}), (std::vector<long>{3, 4, 0, 0}));
    mark(image, 1, 0);
    mark(image, 2, 1);
    EXPECT_EQ(smallestImageCrop(image, {0, 0, 0}), (std::vector<long>{2, 3, 0, 1}));
    DataTree corner = plain(5, 4);
    mark(corner, 4, 3);
    EXPECT_EQ(smallestImageCrop(corner, {0, 0, 0}), (std::vector<long>{3, 4, 3, 4}));
    // Colour values are truncated and held in 0..255: 255.9 and 300 both mean 255.
    DataTree white = plain(2, 2);
    std::memset(white.getItem("pixels").getBuffer(), 255, 12);
    EXPECT_EQ(smallestImageCrop(white, {255.9, 300, 1e9}), (std::vector<long>{1, 1, 0, 0}));
    EXPECT_EQ(failure([&] { smallestImageCrop(white, {0, 0}); }), "Invalid color size 2 != 3");
}

TEST(ImageOps, VerticalFlipReversesRows) {
    const DataTree image = rgbImage(3, 4);
    const DataTree flipped = vflipImage(image);
    for (long y = 0; y < 4; ++y) EXPECT_EQ(px(flipped, 2, y)[1], 3 - y);
    EXPECT_EQ(px(image, 2, 0)[1], 0); // the source is left alone
    EXPECT_EQ(flipped.getItem("imageFormat").getInteger(), 2);
    float in[6] = {1, 2, 3, 4, 5, 6}, out[6];
    vflipImage_yxc_float_cpu(out, in, 1, 2, 3);
    EXPECT_EQ(out[0], 4);
    EXPECT_EQ(out[5], 3);
}

TEST(ImageFlat, NullChecksAndResults) {
    const Bytes png = testimages::writePng(2, 1, 8, PNG_COLOR_TYPE_RGB, Bytes{255, 0, 0, 0, 255, 0});
    DataTree* image = nullptr;
    EXPECT_EQ(sorvane_createImagePtr(&image, nullptr, 3, "n", 2, 2), -1);
    EXPECT_EQ(std::string(sorvane_errorMessage), "buffer is NULL");
    EXPECT_EQ(sorvane_createImagePtr(nullptr, png.data(), 3, "n", 2, 2), -1);
    EXPECT_EQ(std::string(sorvane_errorMessage), "out is NULL");
    EXPECT_EQ(sorvane_createImagePtr(&image, png.data(), 5, "short", 2, 2), -1);
    const std::string text = messageOf(sorvane_errorMessage);
    EXPECT_EQ(text.rfind("Error decoding an image:\n", 0), 0u) << text;
    EXPECT_NE(text.find("(): Unsupported image codec short"), std::string::npos) << text;
    ASSERT_EQ(sorvane_createImagePtr(&image, png.data(), static_cast<int64_t>(png.size()), "n", 2, 2), 0);
    EXPECT_EQ(image->getItem("pixels").getData<unsigned char>()[4], 255);

    EXPECT_EQ(sorvane_saveImage("x.png", nullptr), -1);
    EXPECT_EQ(std::string(sorvane_errorMessage), "image is NULL");
    const auto dir = tempDir();
    const std::string path = (dir / "flat.png").string();
    ASSERT_EQ(sorvane_saveImage(path.c_str(), image), 0);
    sorvane_datatree_DataTree_delete(image);

    EXPECT_EQ(sorvane_loadImagePtr(&image, nullptr, 2, 2), -1);
    EXPECT_EQ(std::string(sorvane_errorMessage), "fileName is NULL");
    EXPECT_EQ(sorvane_loadImagePtr(nullptr, path.c_str(), 2, 2), -1);
    EXPECT_EQ(std::string(sorvane_errorMessage), "out is NULL");
    EXPECT_EQ(sorvane_loadImagePtr(&image, path.c_str(), 10, 2), -1);
    EXPECT_EQ(messageOf(sorvane_errorMessage), "Unsupported scalar type");
    ASSERT_EQ(sorvane_loadImagePtr(&image, path.c_str(), 2, 1), 0);
    EXPECT_EQ(image->getItem("pixels").getTensorSizes(), (std::vector<long>{2, 1, 3}));
    sorvane_datatree_DataTree_delete(image);
    std::filesystem::remove_all(dir);
}
