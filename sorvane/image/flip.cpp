#include "sorvane/image/flip.h"

#include <cstring>

#include "sorvane/core/RuntimeException.h"
#include "sorvane/image/detail/RgbImage.h"

namespace sorvane {

void vflipImage_yxc_uint8_cpu(unsigned char* out, const unsigned char* in, long width, long height, long channels) {
    const size_t row = static_cast<size_t>(width) * static_cast<size_t>(channels);
    for (long y = 0; y < height; ++y)
        std::memcpy(out + static_cast<size_t>(height - 1 - y) * row, in + static_cast<size_t>(y) * row, row);
}

void vflipImage_yxc_float_cpu(float* out, const float* in, long width, long height, long channels) {
    const size_t row = static_cast<size_t>(width) * static_cast<size_t>(channels);
    for (long y = 0; y < height; ++y)
        std::memcpy(out + static_cast<size_t>(height - 1 - y) * row, in + static_cast<size_t>(y) * row,
                    row * sizeof(float));
}

DataTree vflipImage(const DataTree& pixels, ImageFormat imageFormat, PixelFormat pixelFormat) {
    detail::checkRgbImage(pixels, imageFormat, pixelFormat);
    const std::vector<long> sizes = pixels.getTensorSizes();
    DataTree out = DataTree::createTensor(sizes, ScalarType::UInteger8);
    vflipImage_yxc_uint8_cpu(out.getData<unsigned char>(), pixels.getData<unsigned char>(), sizes[1], sizes[0],
                             sizes[2]);
    return out;
}

DataTree vflipImage(const DataTree& image) {
    return detail::rebuildImage(image, vflipImage(image.getItem("pixels"),
                                                  int2imageFormat(image.getItem("imageFormat").getInteger()),
                                                  int2pixelFormat(image.getItem("pixelFormat").getInteger())));
}

} // namespace sorvane
