#ifndef SORVANE_GLTF2_PROPERTY_IMAGE_IMAGELISTADDS_H
#define SORVANE_GLTF2_PROPERTY_IMAGE_IMAGELISTADDS_H

#include <cstdint>

#include "sorvane/datatree/DataTree.h"
#include "sorvane/gltf2/node/image/ImageNodes.h"
#include "sorvane/gltf2/property/RootListProperty.h"
#include "sorvane/gltf2/property/image/Image.h"

namespace sorvane::gltf2 {

// The adding operations of the image list's accessor.
class SORVANE_API ImageListAdds : public RootListProperty<ImageNodes, Image> {
public:
    using RootListProperty::add;
    using RootListProperty::addPtr;
    using RootListProperty::RootListProperty;

    Image addFile(const char* uri, bool embedded = false, const char* name = nullptr) {
        return added(writable().addFile(uri, embedded, name));
    }
    Image* addFilePtr(const char* uri, bool embedded = false, const char* name = nullptr) {
        return new Image(addFile(uri, embedded, name));
    }
    Image addPixels(const void* data, int64_t width, int64_t height, int64_t channels, int64_t size,
                    ScalarType scalarType, ImageFormat imageFormat, PixelFormat pixelFormat, bool embedded = false,
                    const char* name = nullptr) {
        return added(writable().addPixels(data, width, height, channels, size, scalarType, imageFormat, pixelFormat,
                                          embedded, name));
    }
    Image* addPixelsPtr(const void* data, int64_t width, int64_t height, int64_t channels, int64_t size,
                        ScalarType scalarType, ImageFormat imageFormat, PixelFormat pixelFormat,
                        bool embedded = false, const char* name = nullptr) {
        return new Image(
            addPixels(data, width, height, channels, size, scalarType, imageFormat, pixelFormat, embedded, name));
    }
    Image addTensor(const DataTree& pixels, ImageFormat imageFormat, PixelFormat pixelFormat, bool embedded = false,
                    const char* name = nullptr) {
        return added(writable().addTensor(pixels, imageFormat, pixelFormat, embedded, name));
    }
    Image* addTensorPtr(const DataTree& pixels, ImageFormat imageFormat, PixelFormat pixelFormat,
                        bool embedded = false, const char* name = nullptr) {
        return new Image(addTensor(pixels, imageFormat, pixelFormat, embedded, name));
    }
    Image addImage(const DataTree& image, bool embedded = false, const char* name = nullptr) {
        return added(writable().addImage(image, embedded, name));
    }
    Image* addImagePtr(const DataTree& image, bool embedded = false, const char* name = nullptr) {
        return new Image(addImage(image, embedded, name));
    }

private:
    ImageNodes& writable() { return writableList(); }
    Image added(int64_t index) { return Image(propertyRoot, node().getByIndex(index), false); }
};

} // namespace sorvane::gltf2

#endif
