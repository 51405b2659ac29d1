#include "sorvane/imageio/imageio.h"

#include <cstdlib>
#include <cstring>
#include <stdexcept>
#include <vector>

#include "sorvane/core/RuntimeException.h"
#include "sorvane/core/file.h"
#include "sorvane/imageio/imageio_jpeg.h"
#include "sorvane/imageio/imageio_png.h"

namespace sorvane {

namespace detail {
long encodePngGrowing(std::vector<unsigned char>& out, const void* in, long inSize, long width, long height,
                      PixelFormat pixelFormat);
} // namespace detail

const char* pixelFormat2string(PixelFormat format) {
    switch (format) {
    case PixelFormat::RGB: return "RGB";
    case PixelFormat::RGBA: return "RGBA";
    case PixelFormat::GRAY: return "GRAY";
    default: return "INVALID";
    }
}

PixelFormat int2pixelFormat(long value) {
    return value >= 1 && value <= 3 ? static_cast<PixelFormat>(value) : PixelFormat::Invalid;
}

long getPixelFormatChannelCount(PixelFormat format) {
    switch (format) {
    case PixelFormat::RGB: return 3;
    case PixelFormat::RGBA: return 4;
    case PixelFormat::GRAY: return 1;
    default: return 0;
    }
}

PixelFormat guessPixelFormat(long channels) {
    switch (channels) {
    case 1: return PixelFormat::GRAY;
    case 3: return PixelFormat::RGB;
    case 4: return PixelFormat::RGBA;
    default: return PixelFormat::Invalid;
    }
}

const char* imageFormat2string(ImageFormat format) {
    switch (format) {
    case ImageFormat::XYC: return "XYC";
    case ImageFormat::YXC: return "YXC";
    case ImageFormat::CYX: return "CYX";
    default: return "INVALID";
    }
}

ImageFormat int2imageFormat(long value) {
    return value >= 1 && value <= 3 ? static_cast<ImageFormat>(value) : ImageFormat::Invalid;
}

std::vector<long> imageFormat2dims(ImageFormat format, long width, long height, long channels) {
    switch (format) {
    case ImageFormat::XYC: return {width, height, channels};
    case ImageFormat::YXC: return {height, width, channels};
    case ImageFormat::CYX: return {channels, height, width};
    default: SORVANE_THROW("Invalid image format %ld", static_cast<long>(format));
    }
}

std::vector<long> dims2imageFormat(ImageFormat format, const std::vector<long>& dims) {
    if (dims.size() != 2 && dims.size() != 3) SORVANE_THROW("Invalid dimension count");
    const bool three = dims.size() == 3;
    switch (format) {
    case ImageFormat::XYC: return {three ? dims[2] : 1, dims[1], dims[0]};
    case ImageFormat::YXC: return {three ? dims[2] : 1, dims[0], dims[1]};
    case ImageFormat::CYX: return {dims[0], dims[1], three ? dims[2] : 1};
    default: SORVANE_THROW("Invalid image format %ld", static_cast<long>(format));
    }
}

ImageInfo::~ImageInfo() {
    if (pixels && free) free(pixels);
}

namespace {

// width * height * channels * element size, refusing negatives and overflow.
long imageBytes(long width, long height, long channels, long elementSize) {
    long bytes = 0;
    if (width < 0 || height < 0 || channels < 0 || __builtin_mul_overflow(width, height, &bytes) ||
        __builtin_mul_overflow(bytes, channels, &bytes) || __builtin_mul_overflow(bytes, elementSize, &bytes))
        SORVANE_THROW("Invalid image size %ld x %ld x %ld", width, height, channels);
    return bytes;
}

} // namespace

void decodeImage(ImageInfo& info, const unsigned char* buffer, long size, const std::string& name) {
    if (imcodec_detect_png(buffer, size)) {
        imcodec_decode_png(info, buffer, size);
    } else if (imcodec_detect_jpeg(buffer, size)) {
        imcodec_decode_jpeg(info, buffer, size);
    } else {
        SORVANE_THROW("Unsupported image codec %s", name.c_str());
    }
}

long encodeImage(unsigned char* out, long outSize, const void* in, long inSize, long width, long height,
                 ScalarType scalarType, ImageFormat imageFormat, PixelFormat pixelFormat, const std::string& codec) {
    if (scalarType != ScalarType::UInteger8) SORVANE_THROW("Unsupported scalar type %s", scalarType2string(scalarType));
    std::vector<unsigned char> scratch;
    if (imageFormat != ImageFormat::YXC) {
        const long channels = getPixelFormatChannelCount(pixelFormat);
        const long bytes = imageBytes(width, height, channels, 1);
        if (bytes > inSize) SORVANE_THROW("Input buffer is too small");
        scratch.resize(static_cast<size_t>(bytes));
        setImageFormatBuffer(scratch.data(), ImageFormat::YXC, in, width, height, channels, imageFormat, scalarType);
        in = scratch.data();
        inSize = bytes;
    }
    if (codec == "png") return imcodec_encode_png(out, outSize, in, inSize, width, height, pixelFormat);
    if (codec == "jpeg") return imcodec_encode_jpeg(out, outSize, in, inSize, width, height, pixelFormat);
    SORVANE_THROW("Unsupported image codec %s", codec.c_str());
}

void loadImagePng(ImageInfo& info, const std::string& path) {
    const std::vector<unsigned char> bytes = loadFile(path);
    imcodec_decode_png(info, bytes.data(), static_cast<long>(bytes.size()));
}

void loadImageJpeg(ImageInfo& info, const std::string& path) {
    const std::vector<unsigned char> bytes = loadFile(path);
    imcodec_decode_jpeg(info, bytes.data(), static_cast<long>(bytes.size()));
}

void loadImage(ImageInfo& info, const std::string& path) {
    const std::string extension = getFileExtension(path);
    if (extension == ".png") return loadImagePng(info, path);
    if (extension == ".jpg" || extension == ".jpeg") return loadImageJpeg(info, path);
    SORVANE_THROW("Unsupported image format '%s'", extension.c_str());
}

void loadImage(ImageInfo& info, const char* path) { loadImage(info, std::string(path)); }

void loadImage(ImageInfo& info, const std::filesystem::path& path) { loadImage(info, path.string()); }

void saveImagePng(const std::string& path, const void* data, long dataSize, long width, long height, long channels,
                  ScalarType scalarType, ImageFormat imageFormat, PixelFormat pixelFormat) {
    if (pixelFormat == PixelFormat::Invalid) pixelFormat = guessPixelFormat(channels);
    const void* pixels = data;
    long pixelsSize = dataSize;
    std::vector<unsigned char> ordered;
    std::vector<unsigned char> bytes;
    try {
        if (pixelFormat != PixelFormat::Invalid && getPixelFormatChannelCount(pixelFormat) != channels)
            SORVANE_THROW("Pixel format %s does not match %ld channels", pixelFormat2string(pixelFormat), channels);
        const long count = imageBytes(width, height, channels, 1);
        // The conversions below read the whole image: its size is checked first.
        if (imageBytes(width, height, channels, getScalarSize(scalarType)) > dataSize)
            SORVANE_THROW("Input buffer is too small");
        if (imageFormat != ImageFormat::YXC) {
            ordered.resize(static_cast<size_t>(count * getScalarSize(scalarType)));
            setImageFormatBuffer(ordered.data(), ImageFormat::YXC, pixels, width, height, channels, imageFormat,
                                 scalarType);
            pixels = ordered.data();
            pixelsSize = static_cast<long>(ordered.size());
        }
        if (scalarType != ScalarType::UInteger8) {
            bytes.resize(static_cast<size_t>(count));
            setImageScalarTypeBuffer(bytes.data(), ScalarType::UInteger8, pixels, count, scalarType);
            pixels = bytes.data();
            pixelsSize = count;
        }
    } catch (const std::exception& e) {
        throw std::runtime_error(e.what());
    }
    try {
        // Starts at 1 MiB and grows while encoding, so a large image is still encoded once.
        std::vector<unsigned char> encoded;
        encoded.reserve(1u << 20);
        detail::encodePngGrowing(encoded, pixels, pixelsSize, width, height, pixelFormat);
        saveFile(path, encoded);
    } catch (const std::exception& e) {
        SORVANE_THROW("Error when creating '%s': %s", path.c_str(), e.what());
    }
}

void saveImageJpeg(const std::string& path, const void* data, long dataSize, long width, long height, long channels,
                   ScalarType scalarType, ImageFormat imageFormat, PixelFormat pixelFormat) {
    if (pixelFormat == PixelFormat::Invalid) pixelFormat = guessPixelFormat(channels);
    if (pixelFormat != PixelFormat::RGB)
        SORVANE_THROW("Invalid or unsupported pixel format %s", pixelFormat2string(pixelFormat));
    try {
        encodeImage(nullptr, 0, data, dataSize, width, height, scalarType, imageFormat, pixelFormat, "jpeg");
    } catch (const std::exception& e) {
        SORVANE_THROW("Error when creating '%s': %s", path.c_str(), e.what());
    }
}

void saveImage(const std::string& path, const void* data, long dataSize, long width, long height, long channels,
               ScalarType scalarType, ImageFormat imageFormat, PixelFormat pixelFormat) {
    const std::string extension = getFileExtension(path);
    if (extension != ".png") SORVANE_THROW("Unsupported image format '%s'", extension.c_str());
    saveImagePng(path, data, dataSize, width, height, channels, scalarType, imageFormat, pixelFormat);
}

void saveImage(const char* path, const void* data, long dataSize, long width, long height, long channels,
               ScalarType scalarType, ImageFormat imageFormat, PixelFormat pixelFormat) {
    saveImage(std::string(path), data, dataSize, width, height, channels, scalarType, imageFormat, pixelFormat);
}

void saveImage(const std::filesystem::path& path, const void* data, long dataSize, long width, long height,
               long channels, ScalarType scalarType, ImageFormat imageFormat, PixelFormat pixelFormat) {
    saveImage(path.string(), data, dataSize, width, height, channels, scalarType, imageFormat, pixelFormat);
}

void saveImage(const std::string& path, const DataTree& pixels, ImageFormat imageFormat, PixelFormat pixelFormat) {
    const std::vector<long> cyx = dims2imageFormat(imageFormat, pixels.getTensorSizes());
    saveImage(path, pixels.getBuffer(), pixels.getBufferSize(), cyx[2], cyx[1], cyx[0], pixels.getScalarType(),
              imageFormat, pixelFormat);
}

void saveImage(const std::string& path, const DataTree& image) {
    if (image.isObject()) {
        const ImageFormat imageFormat = int2imageFormat(image.getItem("imageFormat").getInteger());
        const PixelFormat pixelFormat = int2pixelFormat(image.getItem("pixelFormat").getInteger());
        return saveImage(path, image.getItem("pixels"), imageFormat, pixelFormat);
    }
    if (image.isTensor()) {
        if (image.getTensorDim() != 3) SORVANE_THROW("Invalid tensor dim, expect 3 dimensions");
        const long channels = image.getTensorSize(2);
        if (channels != 3 && channels != 4) SORVANE_THROW("Invalid or unsupported channel count %ld", channels);
        return saveImage(path, image, ImageFormat::YXC, guessPixelFormat(channels));
    }
    SORVANE_THROW("Image should be an Object or a Tensor");
}

namespace {

DataTree imageObject(DataTree pixels, ImageFormat from, PixelFormat pixelFormat, ImageFormat to) {
    DataTree image = DataTree::createObject();
    image.setItem("imageFormat", DataTree(static_cast<long>(from)));
    image.setItem("pixelFormat", DataTree(static_cast<long>(pixelFormat)));
    image.setItem("pixels", pixels);
    setImageFormat(image, to);
    return image;
}

// The decoded pixels move into the tensor instead of being copied.
DataTree takeImage(ImageInfo& info, ScalarType scalarType, ImageFormat imageFormat, bool ptrTexts) {
    if (!info.pixels) SORVANE_THROW("No pixels");
    if (scalarType != info.scalarType) {
        if (ptrTexts) SORVANE_THROW("Unsupported scalar type");
        SORVANE_THROW("Can't convert scalar type from %s to %s", scalarType2string(info.scalarType),
                      scalarType2string(scalarType));
    }
    const std::vector<long> dims = imageFormat2dims(info.imageFormat, info.width, info.height, info.channels);
    DataTree pixels = DataTree::createTensor(info.pixels, info.pixelsSize, dims, info.scalarType);
    info.pixels = nullptr;
    return imageObject(pixels, info.imageFormat, info.pixelFormat, imageFormat);
}

DataTree fromInfo(const ImageInfo& info, ScalarType scalarType, ImageFormat imageFormat, bool ptrTexts) {
    if (!info.pixels) SORVANE_THROW("No pixels");
    if (scalarType != info.scalarType) {
        if (ptrTexts) SORVANE_THROW("Unsupported scalar type");
        SORVANE_THROW("Can't convert scalar type from %s to %s", scalarType2string(info.scalarType),
                      scalarType2string(scalarType));
    }
    const std::vector<long> dims = imageFormat2dims(info.imageFormat, info.width, info.height, info.channels);
    const void* source = info.pixels;
    DataTree pixels = DataTree::createTensor(source, info.pixelsSize, dims, info.scalarType);
    return imageObject(pixels, info.imageFormat, info.pixelFormat, imageFormat);
}

DataTree decodeToImage(const unsigned char* buffer, long size, const std::string& name, ScalarType scalarType,
                       ImageFormat imageFormat, bool ptrTexts) {
    ImageInfo info;
    info.allocate = std::malloc;
    info.free = std::free;
    try {
        decodeImage(info, buffer, size, name);
    } catch (const std::exception& e) {
        SORVANE_THROW("Error decoding an image:\n%s", e.what());
    }
    return takeImage(info, scalarType, imageFormat, ptrTexts);
}

DataTree loadToImage(const std::string& path, ScalarType scalarType, ImageFormat imageFormat, bool ptrTexts) {
    ImageInfo info;
    info.allocate = std::malloc;
    info.free = std::free;
    loadImage(info, path);
    return takeImage(info, scalarType, imageFormat, ptrTexts);
}

} // namespace

DataTree createImage(const ImageInfo& info, ScalarType scalarType, ImageFormat imageFormat) {
    return fromInfo(info, scalarType, imageFormat, false);
}

DataTree* createImagePtr(const ImageInfo& info, ScalarType scalarType, ImageFormat imageFormat) {
    return new DataTree(fromInfo(info, scalarType, imageFormat, true));
}

DataTree createImage(const unsigned char* buffer, long size, const std::string& name, ScalarType scalarType,
                     ImageFormat imageFormat) {
    return decodeToImage(buffer, size, name, scalarType, imageFormat, false);
}

DataTree* createImagePtr(const unsigned char* buffer, long size, const std::string& name, ScalarType scalarType,
                         ImageFormat imageFormat) {
    return new DataTree(decodeToImage(buffer, size, name, scalarType, imageFormat, true));
}

DataTree loadImage(const std::string& path, ScalarType scalarType, ImageFormat imageFormat) {
    return loadToImage(path, scalarType, imageFormat, false);
}

DataTree* loadImagePtr(const std::string& path, ScalarType scalarType, ImageFormat imageFormat) {
    return new DataTree(loadToImage(path, scalarType, imageFormat, true));
}

void setImageFormat(DataTree& image, ImageFormat imageFormat) {
    const ImageFormat from = int2imageFormat(image.getItem("imageFormat").getInteger());
    setImageFormat(image, from, imageFormat);
}

void setImageFormat(DataTree& image, ImageFormat from, ImageFormat to) {
    DataTree pixels = image.isObject() ? image.getItem("pixels") : image;
    if (from != to) {
        const bool swap = (from == ImageFormat::YXC && to == ImageFormat::XYC) ||
                          (from == ImageFormat::XYC && to == ImageFormat::YXC);
        if (!swap) SORVANE_THROW("Unsupported image format conversion");
        const std::vector<long> sizes = pixels.getTensorSizes();
        const std::vector<long> cyx = dims2imageFormat(from, sizes);
        std::vector<long> newSizes = imageFormat2dims(to, cyx[2], cyx[1], cyx[0]);
        if (sizes.size() == 2) newSizes.pop_back();
        const ScalarType type = pixels.getScalarType();
        if (type != ScalarType::UInteger8) SORVANE_THROW("Unsupported scalar type");
        const long bytes = pixels.getBufferSize();
        void* block = std::malloc(bytes > 0 ? static_cast<size_t>(bytes) : 1);
        if (!block) SORVANE_THROW("Unable to allocate %ld bytes", bytes);
        setImageFormatBuffer(block, to, pixels.getBuffer(), cyx[2], cyx[1], cyx[0], from, type);
        // In place on the tensor node, so every handle on the pixels sees the new layout.
        pixels.giveTensorData(block, bytes, newSizes, type);
    }
    if (image.isObject()) image.setItem("imageFormat", DataTree(static_cast<long>(to)));
}

void setImageScalarTypeBuffer(void* out, ScalarType outType, const void* in, long count, ScalarType inType) {
    if (count < 0) SORVANE_THROW("Invalid count %ld", count);
    if (outType == inType) {
        if (count > 0) std::memmove(out, in, static_cast<size_t>(count * getScalarSize(inType)));
        return;
    }
    auto toByte = [](double v) -> unsigned char {
        // Truncated toward zero and held in 0..255; NaN counts as 0.
        if (!(v * 255 > 0)) return 0;
        if (v * 255 >= 255) return 255;
        return static_cast<unsigned char>(v * 255);
    };
    if (outType == ScalarType::UInteger8 && inType == ScalarType::Float) {
        auto* o = static_cast<unsigned char*>(out);
        const auto* i = static_cast<const float*>(in);
        for (long k = 0; k < count; ++k) {
            const float v = i[k] * 255.0f;
            o[k] = !(v > 0) ? 0 : v >= 255.0f ? 255 : static_cast<unsigned char>(v);
        }
        return;
    }
    if (outType == ScalarType::UInteger8 && inType == ScalarType::Double) {
        auto* o = static_cast<unsigned char*>(out);
        const auto* i = static_cast<const double*>(in);
        for (long k = 0; k < count; ++k) o[k] = toByte(i[k]);
        return;
    }
    if (outType == ScalarType::Float && inType == ScalarType::UInteger8) {
        auto* o = static_cast<float*>(out);
        const auto* i = static_cast<const unsigned char*>(in);
        for (long k = 0; k < count; ++k) o[k] = static_cast<float>(i[k]) / 255.0f;
        return;
    }
    if (outType == ScalarType::Double && inType == ScalarType::UInteger8) {
        auto* o = static_cast<double*>(out);
        const auto* i = static_cast<const unsigned char*>(in);
        for (long k = 0; k < count; ++k) o[k] = static_cast<double>(i[k]) / 255.0;
        return;
    }
    SORVANE_THROW("Unsupported scalar type conversion %s => %s", scalarType2string(inType),
                  scalarType2string(outType));
}

void setImageFormatBuffer(void* out, ImageFormat outFormat, const void* in, long width, long height, long channels,
                          ImageFormat inFormat, ScalarType type) {
    if (type != ScalarType::UInteger8) SORVANE_THROW("Unsupported scalar type");
    const long bytes = imageBytes(width, height, channels, 1);
    if (outFormat == inFormat) {
        if (bytes > 0) std::memmove(out, in, static_cast<size_t>(bytes));
        return;
    }
    auto* o = static_cast<unsigned char*>(out);
    const auto* i = static_cast<const unsigned char*>(in);
    const size_t c = static_cast<size_t>(channels);
    const size_t w = static_cast<size_t>(width);
    const size_t h = static_cast<size_t>(height);
    if (inFormat == ImageFormat::YXC && outFormat == ImageFormat::XYC) {
        for (size_t y = 0; y < h; ++y)
            for (size_t x = 0; x < w; ++x) std::memcpy(o + (x * h + y) * c, i + (y * w + x) * c, c);
        return;
    }
    if (inFormat == ImageFormat::XYC && outFormat == ImageFormat::YXC) {
        for (size_t y = 0; y < h; ++y)
            for (size_t x = 0; x < w; ++x) std::memcpy(o + (y * w + x) * c, i + (x * h + y) * c, c);
        return;
    }
    SORVANE_THROW("Unsupported image format conversion");
}

} // namespace sorvane
