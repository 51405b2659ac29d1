#ifndef SORVANE_IMAGEIO_IMAGEIO_H
#define SORVANE_IMAGEIO_IMAGEIO_H

// Images as tensors: the pixel and layout enumerations, the decoder's
// request/result descriptor, the DataTree image object ("imageFormat",
// "pixelFormat", "pixels") and the file-level load and save calls.

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "sorvane/core/Export.h"
#include "sorvane/datatree/DataTree.h"
#include "sorvane/datatree/ScalarType.h"

namespace sorvane {

enum class PixelFormat : int32_t {
    Invalid = 0,
    RGB = 1,
    RGBA = 2,
    GRAY = 3,
};

// Order of the three dimensions of a pixel tensor.
enum class ImageFormat : int32_t {
    Invalid = 0,
    XYC = 1, // width, height, channels
    YXC = 2, // height, width, channels
    CYX = 3, // channels, height, width
};

SORVANE_API const char* pixelFormat2string(PixelFormat format);
SORVANE_API PixelFormat int2pixelFormat(long value);
SORVANE_API long getPixelFormatChannelCount(PixelFormat format);
// 1 GRAY, 3 RGB, 4 RGBA; anything else (2 included) Invalid.
SORVANE_API PixelFormat guessPixelFormat(long channels);

SORVANE_API const char* imageFormat2string(ImageFormat format);
SORVANE_API ImageFormat int2imageFormat(long value);
// The tensor sizes of an image in that layout.
SORVANE_API std::vector<long> imageFormat2dims(ImageFormat format, long width, long height, long channels);
// Channels, height, width from tensor sizes in that layout; two sizes mean an
// absent channel dimension.
SORVANE_API std::vector<long> dims2imageFormat(ImageFormat format, const std::vector<long>& dims);

// What a decoder is asked for and what it found. Every non-zero field on
// entry is an expectation the image must meet; zero fields are filled in.
// With pixels and allocate both null only the description is filled in.
struct SORVANE_API ImageInfo {
    void* pixels = nullptr;
    long pixelsSize = 0;
    long width = 0;
    long height = 0;
    long channels = 0;
    PixelFormat pixelFormat = PixelFormat::Invalid;
    ImageFormat imageFormat = ImageFormat::Invalid;
    ScalarType scalarType = ScalarType::Invalid;
    // Used by a decoder when pixels is null; may be null.
    void* (*allocate)(size_t size) = nullptr;
    // Releases pixels in the destructor when set.
    void (*free)(void* block) = nullptr;

    ImageInfo() = default;
    ImageInfo(const ImageInfo&) = delete;
    ImageInfo& operator=(const ImageInfo&) = delete;
    ~ImageInfo();
};

// Decoded images larger than this many bytes are refused from their header.
constexpr long kMaxImageBytes = 0x7fffffffL;

// PNG first, then JPEG, by content; "Unsupported image codec %s" with name.
SORVANE_API void decodeImage(ImageInfo& info, const unsigned char* buffer, long size, const std::string& name);
// Returns the encoded size, which may exceed outSize (nothing beyond it is
// written). codec is "png" ("jpeg" exists and is not implemented).
SORVANE_API long encodeImage(unsigned char* out, long outSize, const void* in, long inSize, long width, long height,
                             ScalarType scalarType, ImageFormat imageFormat, PixelFormat pixelFormat,
                             const std::string& codec);

// By extension, case-sensitive: ".png", ".jpg", ".jpeg".
SORVANE_API void loadImage(ImageInfo& info, const char* path);
SORVANE_API void loadImage(ImageInfo& info, const std::string& path);
SORVANE_API void loadImage(ImageInfo& info, const std::filesystem::path& path);
SORVANE_API void loadImagePng(ImageInfo& info, const std::string& path);
SORVANE_API void loadImageJpeg(ImageInfo& info, const std::string& path);

// ".png" only.
SORVANE_API void saveImage(const char* path, const void* data, long dataSize, long width, long height, long channels,
                           ScalarType scalarType, ImageFormat imageFormat, PixelFormat pixelFormat);
SORVANE_API void saveImage(const std::string& path, const void* data, long dataSize, long width, long height,
                           long channels, ScalarType scalarType, ImageFormat imageFormat, PixelFormat pixelFormat);
SORVANE_API void saveImage(const std::filesystem::path& path, const void* data, long dataSize, long width,
                           long height, long channels, ScalarType scalarType, ImageFormat imageFormat,
                           PixelFormat pixelFormat);
// `pixels` is the tensor.
SORVANE_API void saveImage(const std::string& path, const DataTree& pixels, ImageFormat imageFormat,
                           PixelFormat pixelFormat);
// An image object, or a bare YXC tensor of 3 or 4 channels.
SORVANE_API void saveImage(const std::string& path, const DataTree& image);

SORVANE_API void saveImagePng(const std::string& path, const void* data, long dataSize, long width, long height,
                              long channels, ScalarType scalarType, ImageFormat imageFormat, PixelFormat pixelFormat);
SORVANE_API void saveImageJpeg(const std::string& path, const void* data, long dataSize, long width, long height,
                               long channels, ScalarType scalarType, ImageFormat imageFormat,
                               PixelFormat pixelFormat);

// The image object over a copy of info's pixels, in imageFormat. No scalar
// conversion is made.
SORVANE_API DataTree createImage(const ImageInfo& info, ScalarType scalarType, ImageFormat imageFormat);
SORVANE_API DataTree* createImagePtr(const ImageInfo& info, ScalarType scalarType, ImageFormat imageFormat);
SORVANE_API DataTree createImage(const unsigned char* buffer, long size, const std::string& name,
                                 ScalarType scalarType, ImageFormat imageFormat);
SORVANE_API DataTree* createImagePtr(const unsigned char* buffer, long size, const std::string& name,
                                     ScalarType scalarType, ImageFormat imageFormat);
SORVANE_API DataTree loadImage(const std::string& path, ScalarType scalarType, ImageFormat imageFormat);
SORVANE_API DataTree* loadImagePtr(const std::string& path, ScalarType scalarType, ImageFormat imageFormat);

// In place: the image object's pixels and its "imageFormat". Only YXC and
// XYC convert into each other.
SORVANE_API void setImageFormat(DataTree& image, ImageFormat imageFormat);
// On an image object or a bare pixel tensor whose layout is `from`.
SORVANE_API void setImageFormat(DataTree& image, ImageFormat from, ImageFormat to);

SORVANE_API void setImageScalarTypeBuffer(void* out, ScalarType outType, const void* in, long count,
                                          ScalarType inType);
SORVANE_API void setImageFormatBuffer(void* out, ImageFormat outFormat, const void* in, long width, long height,
                                      long channels, ImageFormat inFormat, ScalarType type);

} // namespace sorvane

#endif
