#include "sorvane/image/crop.h"

#include <algorithm>
#include <cstring>

#include "sorvane/core/RuntimeException.h"
#include "sorvane/image/detail/RgbImage.h"

namespace sorvane {

namespace detail {

void checkRgbImage(const DataTree& pixels, ImageFormat imageFormat, PixelFormat pixelFormat) {
    if (imageFormat != ImageFormat::YXC) SORVANE_THROW("Unsupported image format %s", imageFormat2string(imageFormat));
    if (pixelFormat != PixelFormat::RGB) SORVANE_THROW("Unsupported pixel format %s", pixelFormat2string(pixelFormat));
    if (pixels.getScalarType() != ScalarType::UInteger8)
        SORVANE_THROW("Unsupported scalar type %s", scalarType2string(pixels.getScalarType()));
    if (pixels.getTensorDim() != 3) SORVANE_THROW("Unsupported tensor dim %d", static_cast<int>(pixels.getTensorDim()));
}

DataTree rebuildImage(const DataTree& image, const DataTree& pixels) {
    DataTree result = DataTree::createObject();
    result.setItem("imageFormat", DataTree(image.getItem("imageFormat").getInteger()));
    result.setItem("pixelFormat", DataTree(image.getItem("pixelFormat").getInteger()));
    result.setItem("pixels", pixels);
    return result;
}

} // namespace detail

namespace {

ImageFormat formatOf(const DataTree& image) { return int2imageFormat(image.getItem("imageFormat").getInteger()); }
PixelFormat pixelsOf(const DataTree& image) { return int2pixelFormat(image.getItem("pixelFormat").getInteger()); }

} // namespace

void cropImage_yxc_uint8_cpu(unsigned char* out, const unsigned char* in, long width, long height, long channels,
                             long x0, long y0, long x1, long y1) {
    const long outWidth = x1 - x0;
    const size_t outRow = static_cast<size_t>(outWidth * channels);
    // Only the overlap of the window and the source is copied; the rest is zero.
    const long fromX = std::max(x0, 0L);
    const long toX = std::min(x1, width);
    for (long y = y0; y < y1; ++y) {
        unsigned char* row = out + static_cast<size_t>(y - y0) * outRow;
        if (y < 0 || y >= height || fromX >= toX) {
            std::memset(row, 0, outRow);
            continue;
        }
        const size_t before = static_cast<size_t>((fromX - x0) * channels);
        const size_t copied = static_cast<size_t>((toX - fromX) * channels);
        std::memset(row, 0, before);
        std::memcpy(row + before, in + (static_cast<size_t>(y) * static_cast<size_t>(width) + static_cast<size_t>(fromX)) *
                                           static_cast<size_t>(channels),
                    copied);
        std::memset(row + before + copied, 0, outRow - before - copied);
    }
}

DataTree cropImage(const DataTree& pixels, long x0, long y0, long x1, long y1, ImageFormat imageFormat,
                   PixelFormat pixelFormat) {
    detail::checkRgbImage(pixels, imageFormat, pixelFormat);
    long outWidth = 0;
    long outHeight = 0;
    if (__builtin_sub_overflow(x1, x0, &outWidth) || __builtin_sub_overflow(y1, y0, &outHeight) || outWidth < 1 ||
        outHeight < 1)
        SORVANE_THROW("Invalid crop");
    const long height = pixels.getTensorSize(0);
    const long width = pixels.getTensorSize(1);
    const long channels = pixels.getTensorSize(2);
    // The tensor refuses sizes it cannot hold before the kernel runs.
    DataTree out = DataTree::createTensor({outHeight, outWidth, channels}, ScalarType::UInteger8);
    cropImage_yxc_uint8_cpu(out.getData<unsigned char>(), pixels.getData<unsigned char>(), width, height, channels,
                            x0, y0, x1, y1);
    return out;
}

DataTree cropImage(const DataTree& image, long x0, long y0, long x1, long y1) {
    return detail::rebuildImage(image,
                                cropImage(image.getItem("pixels"), x0, y0, x1, y1, formatOf(image), pixelsOf(image)));
}

std::vector<long> smallestImageCrop(const DataTree& pixels, const std::vector<double>& color, ImageFormat imageFormat,
                                    PixelFormat pixelFormat) {
    detail::checkRgbImage(pixels, imageFormat, pixelFormat);
    const long height = pixels.getTensorSize(0);
    const long width = pixels.getTensorSize(1);
    const long channels = pixels.getTensorSize(2);
    if (static_cast<long>(color.size()) != channels)
        SORVANE_THROW("Invalid color size %d != %d", static_cast<int>(color.size()), static_cast<int>(channels));
    std::vector<unsigned char> target(color.size());
    for (size_t k = 0; k < color.size(); ++k) {
        const double v = color[k];
        target[k] = !(v > 0) ? 0 : v >= 255 ? 255 : static_cast<unsigned char>(v);
    }
    const unsigned char* data = pixels.getData<unsigned char>();
    const size_t c = static_cast<size_t>(channels);
    auto differs = [&](long x, long y) {
        return std::memcmp(data + (static_cast<size_t>(y) * static_cast<size_t>(width) + static_cast<size_t>(x)) * c,
                           target.data(), c) != 0;
    };
    auto rowDiffers = [&](long y) {
        for (long x = 0; x < width; ++x)
            if (differs(x, y)) return true;
        return false;
    };
    auto columnDiffers = [&](long x) {
        for (long y = 0; y < height; ++y)
            if (differs(x, y)) return true;
        return false;
    };
    long top = 0;
    for (long y = 0; y < height; ++y) {
        if (rowDiffers(y)) {
            top = y;
            break;
        }
    }
    long bottom = height - 1;
    if (top != height - 1) {
        for (long y = height - 1; y > top; --y) {
            if (rowDiffers(y)) {
                bottom = y + 1;
                break;
            }
        }
    }
    long left = 0;
    for (long x = 0; x < width; ++x) {
        if (columnDiffers(x)) {
            left = x;
            break;
        }
    }
    long right = width - 1;
    if (left < right) {
        for (long x = width - 1; x > left; --x) {
            if (columnDiffers(x)) {
                right = x + 1;
                break;
            }
        }
    }
    return {bottom, right, top, left};
}

std::vector<long> smallestImageCrop(const DataTree& image, const std::vector<double>& color) {
    return smallestImageCrop(image.getItem("pixels"), color, formatOf(image), pixelsOf(image));
}

} // namespace sorvane
