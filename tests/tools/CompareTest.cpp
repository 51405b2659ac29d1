#include <gtest/gtest.h>

#include <cmath>
#include <sstream>
#include <string>
#include <vector>

#include "sorvane/core/RuntimeException.h"
#include "sorvane/datatree/DataTree.h"
#include "sorvane/tools/compare.h"

using sorvane::DataTree;
using sorvane::ScalarType;

namespace {

long lines(const std::string& text) {
    long n = 0;
    for (char c : text) n += c == '\n';
    return n;
}

DataTree image(long pixelFormat, long imageFormat, const std::vector<unsigned char>& pixels, long channels) {
    DataTree object = DataTree::createObject();
    object["pixelFormat"] = DataTree(pixelFormat);
    object["imageFormat"] = DataTree(imageFormat);
    object["pixels"] = DataTree::createTensor(pixels.data(), static_cast<long>(pixels.size()),
                                              std::vector<long>{1, static_cast<long>(pixels.size()) / channels, channels},
                                              ScalarType::UInteger8);
    return object;
}

} // namespace

TEST(CompareTensors, ShapesThatDifferCompareNothing) {
    const float a[6] = {0, 0, 0, 0, 0, 0};
    const float b[6] = {1, 1, 1, 1, 1, 1};
    std::ostringstream out;
    EXPECT_EQ(sorvane::compare_tensors<float>(a, {2, 3}, b, {3, 2}, 0.f, true, out), 2147483647);
    EXPECT_EQ(out.str(), "Different shape for dim 0: 2 != 3\n");
    out.str("");
    EXPECT_EQ(sorvane::compare_tensors<float>(a, {2}, b, {2, 1}, 0.f, true, out), 2147483647);
    EXPECT_EQ(out.str(), "Different shape sizes 1 != 2\n");
}

TEST(CompareTensors, VerboseWritesTwentyLinesThenTheSummary) {
    std::vector<int> a(30, 0), b(30, 0);
    for (int i = 0; i < 25; ++i) b[static_cast<size_t>(i)] = i + 1;
    std::ostringstream out;
    EXPECT_EQ(sorvane::compare_tensors<int>(a.data(), {5, 6}, b.data(), {5, 6}, 0, true, out), 25);
    const std::string text = out.str();
    EXPECT_EQ(lines(text), 21);
    EXPECT_EQ(text.rfind("0,0: 0 != 1\n0,1: 0 != 2\n", 0), 0u);
    EXPECT_NE(text.find("3,1: 0 != 20\n25/30 differences (83.3333%)\n"), std::string::npos);
    // Quiet: the count only.
    std::ostringstream quiet;
    EXPECT_EQ(sorvane::compare_tensors<int>(a.data(), {30}, b.data(), {30}, 0, false, quiet), 25);
    EXPECT_EQ(quiet.str(), "");
}

TEST(CompareTensors, Tolerances) {
    std::ostringstream out;
    const double a[3] = {1, 2, 3}, b[3] = {2, 3, 4};
    EXPECT_EQ(sorvane::compare_tensors<double>(a, {3}, b, {3}, 1.0, true, out), 0);
    EXPECT_EQ(sorvane::compare_tensors<double>(a, {3}, b, {3}, 0.5, false, out), 3);
    // Unsigned: the larger minus the smaller, never a wrapped difference.
    const unsigned char u10[1] = {10}, u200[1] = {200};
    EXPECT_EQ(sorvane::compare_tensors<unsigned char>(u10, {1}, u200, {1}, 100, false, out), 1);
    EXPECT_EQ(sorvane::compare_tensors<unsigned char>(u200, {1}, u10, {1}, 190, false, out), 0);
    const unsigned int big[1] = {4000000000u}, small[1] = {1};
    EXPECT_EQ(sorvane::compare_tensors<unsigned int>(big, {1}, small, {1}, 10, false, out), 1);
    // Signed extremes do not overflow.
    const signed char lo[1] = {-128}, hi[1] = {127};
    EXPECT_EQ(sorvane::compare_tensors<signed char>(lo, {1}, hi, {1}, 127, false, out), 1);
    EXPECT_EQ(out.str(), "");
}

TEST(CompareTensors, ScalarsNaNAndRanks) {
    std::ostringstream out;
    const float one = 1.0f, two = 2.0f;
    EXPECT_EQ(sorvane::compare_tensors<float>(&one, {}, &two, {}, 0.f, false, out), 1);
    const float nan = std::nanf(""), zero = 0.f;
    EXPECT_EQ(sorvane::compare_tensors<float>(&nan, {1}, &nan, {1}, 0.f, false, out), 0);
    EXPECT_EQ(sorvane::compare_tensors<float>(&zero, {1}, &nan, {1}, 100.f, false, out), 1);
    const short a[16] = {}, b[16] = {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1};
    EXPECT_EQ(sorvane::compare_tensors<short>(a, {2, 2, 2, 2}, b, {2, 2, 2, 2}, 0, false, out), 1);
    EXPECT_THROW(sorvane::compare_tensors<short>(a, {2, 2, 2, 2}, b, {2, 2, 2, 2}, 0, true, out),
                 sorvane::RuntimeException);
    try {
        sorvane::compare_tensors<short>(a, {2, 2, 2, 2}, b, {2, 2, 2, 2}, 0, true, out);
    } catch (const std::exception& e) {
        EXPECT_NE(std::string(e.what()).find("Unsupported shape"), std::string::npos);
    }
    std::ostringstream rank3;
    EXPECT_EQ(sorvane::compare_tensors<short>(a, {2, 2, 4}, b, {2, 2, 4}, 0, true, rank3), 1);
    EXPECT_EQ(rank3.str(), "1,1,3: 0 != 1\n1/16 differences (6.25%)\n");
}

TEST(CompareDataTensors, TypesAndConvertedTolerance) {
    std::ostringstream out;
    const float f[2] = {1, 2};
    const double d[2] = {1, 2};
    DataTree floats = DataTree::createTensor(f, sizeof f, std::vector<long>{2}, ScalarType::Float);
    DataTree doubles = DataTree::createTensor(d, sizeof d, std::vector<long>{2}, ScalarType::Double);
    EXPECT_EQ(sorvane::compare_data_tensors(floats, doubles, 0, false, out), 2147483647);
    EXPECT_EQ(out.str(), "Different scalar types: Float != Double\n");

    // 0.9 becomes 0 for an integer type, so a difference of 1 counts.
    const unsigned char u[2] = {1, 2}, v[2] = {2, 2};
    DataTree ua = DataTree::createTensor(u, 2, std::vector<long>{2}, ScalarType::UInteger8);
    DataTree ub = DataTree::createTensor(v, 2, std::vector<long>{2}, ScalarType::UInteger8);
    EXPECT_EQ(sorvane::compare_data_tensors(ua, ub, 0.9, false, out), 1);
    EXPECT_EQ(sorvane::compare_data_tensors(ua, ub, 1.0, false, out), 0);
    EXPECT_EQ(sorvane::compare_data_tensors(ua, ub, -5.0, false, out), 1);  // clamped, not wrapped
    const float g[2] = {1.5f, 2};
    DataTree floats2 = DataTree::createTensor(g, sizeof g, std::vector<long>{2}, ScalarType::Float);
    EXPECT_EQ(sorvane::compare_data_tensors(floats, floats2, 0.6, false, out), 0);

    const int64_t l[1] = {1};
    DataTree longs = DataTree::createTensor(l, sizeof l, std::vector<long>{1}, ScalarType::Integer64);
    out.str("");
    EXPECT_EQ(sorvane::compare_data_tensors(longs, longs, 0, false, out), 2147483647);
    EXPECT_EQ(out.str(), "Unsupported scalar type Integer64\n");
    out.str("");
    EXPECT_EQ(sorvane::compare_data_tensors(DataTree(1L), floats, 0, false, out), 2147483647);
    EXPECT_EQ(out.str(), "First data is not a tensor\n");
}

TEST(CompareDataImages, FormatsAndPixels) {
    std::ostringstream out;
    DataTree rgb = image(1, 2, {1, 2, 3, 4, 5, 6}, 3);
    DataTree rgbOther = image(1, 2, {1, 2, 3, 4, 5, 7}, 3);
    DataTree rgba = image(2, 2, {1, 2, 3, 4, 5, 6, 7, 8}, 4);
    EXPECT_EQ(sorvane::compare_data_images(rgb, rgb, false, out), 0);
    EXPECT_EQ(sorvane::compare_data_images(rgb, rgbOther, false, out), 1);
    EXPECT_EQ(out.str(), "");
    EXPECT_EQ(sorvane::compare_data_images(rgb, rgba, false, out), 2147483647);
    EXPECT_EQ(out.str(), "Different pixel formats: RGB != RGBA\n");

    const std::pair<DataTree, std::string> bad[] = {
        {DataTree(1L), "First image is not an object\n"},
        {DataTree::createObject(), "First image has no image data (pixelFormat, imageFormat and pixels)\n"},
        {image(4, 2, {1, 2, 3}, 3), "Invalid pixel format in first image\n"},
        {image(1, 0, {1, 2, 3}, 3), "Invalid image format in first image\n"},
        {image(1, 1, {1, 2, 3, 4, 5, 6}, 3), "Different image formats: XYC != YXC\n"},
    };
    for (const auto& [first, text] : bad) {
        out.str("");
        EXPECT_EQ(sorvane::compare_data_images(first, rgb, false, out), 2147483647) << text;
        EXPECT_EQ(out.str(), text);
    }
    DataTree flatPixels = image(1, 2, {1, 2, 3}, 3);
    flatPixels["pixels"] = DataTree(7L);
    out.str("");
    EXPECT_EQ(sorvane::compare_data_images(rgb, flatPixels, false, out), 2147483647);
    EXPECT_EQ(out.str(), "Pixels in second image must be a tensor\n");
}
