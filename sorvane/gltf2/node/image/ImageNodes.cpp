#include "sorvane/gltf2/node/image/ImageNodes.h"

#include <string>
#include <vector>

#include "sorvane/archive/FileProvider.h"
#include "sorvane/core/RuntimeException.h"
#include "sorvane/gltf2/node/RootNode.h"

namespace sorvane::gltf2 {

ImageNodes::ImageNodes(const NodeParent& parent_) : ItemList<ImageNode>(parent_) {}
ImageNodes::~ImageNodes() = default;

std::shared_ptr<ImageNode> ImageNodes::add() {
    auto item = std::make_shared<ImageNode>(shared_from_this());
    item->init();
    items.push_back(item);
    return item;
}

int64_t ImageNodes::addFile(const char* uri, bool embedded, const char* name) {
    if (embedded) SORVANE_THROW("Embeded images are not supported");
    if (!uri) SORVANE_THROW("Adding item to %s:\nNo file name", getNodePath().c_str());
    auto item = std::make_shared<ImageNode>(shared_from_this());
    item->init();
    item->setUri(uri);
    if (name) item->setName(name);
    items.push_back(item);
    return static_cast<int64_t>(items.size()) - 1;
}

int64_t ImageNodes::addPixels(const void* data, int64_t width, int64_t height, int64_t channels, int64_t size,
                              ScalarType scalarType, ImageFormat imageFormat, PixelFormat pixelFormat, bool embedded,
                              const char* name) {
    const std::string path = getNodePath();
    if (!data) SORVANE_THROW("Adding item to %s:\nNo data", path.c_str());
    // The encoder takes its channel count from the pixel format; a caller
    // who says otherwise describes other pixels than it would encode.
    if (channels != getPixelFormatChannelCount(pixelFormat))
        SORVANE_THROW("Adding item to %s:\nInvalid channel count %ld for pixel format %s", path.c_str(),
                      static_cast<long>(channels), pixelFormat2string(pixelFormat));
    const long encoded = encodeImage(nullptr, 0, data, static_cast<long>(size), static_cast<long>(width),
                                     static_cast<long>(height), scalarType, imageFormat, pixelFormat, "png");
    std::vector<unsigned char> png(static_cast<size_t>(encoded));
    encodeImage(png.data(), encoded, data, static_cast<long>(size), static_cast<long>(width),
                static_cast<long>(height), scalarType, imageFormat, pixelFormat, "png");

    std::shared_ptr<RootNode> rootNode = root.lock();
    if (!rootNode) SORVANE_THROW("Invalid node");
    auto item = std::make_shared<ImageNode>(shared_from_this());
    item->init();
    const int64_t count = static_cast<int64_t>(items.size());
    if (!embedded && rootNode->getStorageMode() == MULTIPLE_FILES) {
        const std::string fileName = rootNode->findFreeFileName(nullptr, name, count, ".png");
        if (!rootNode->getFileProvider()) SORVANE_THROW("Adding item to %s:\nNo file provider", path.c_str());
        rootNode->getFileProvider()->create(fileName, png.data(), static_cast<int64_t>(png.size()));
        item->setUri(fileName);
    } else {
        // A .glb's views land in its BIN chunk whatever `embedded` says.
        const int64_t pngSize = static_cast<int64_t>(png.size());
        item->setBufferView(rootNode->bufferViews().addData(png.data(), pngSize, pngSize, 1, std::nullopt, true, name));
    }
    item->setMimeType("image/png");
    if (name) item->setName(name);
    items.push_back(item);
    return count;
}

int64_t ImageNodes::addTensor(const DataTree& pixels, ImageFormat imageFormat, PixelFormat pixelFormat,
                              bool embedded, const char* name) {
    const std::vector<long> cyx = dims2imageFormat(imageFormat, pixels.getTensorSizes());
    return addPixels(pixels.getBuffer(), cyx[2], cyx[1], cyx[0], pixels.getBufferSize(), pixels.getScalarType(),
                     imageFormat, pixelFormat, embedded, name);
}

int64_t ImageNodes::addImage(const DataTree& image, bool embedded, const char* name) {
    const PixelFormat pixelFormat = int2pixelFormat(image.getItem("pixelFormat").getInteger());
    const ImageFormat imageFormat = int2imageFormat(image.getItem("imageFormat").getInteger());
    return addTensor(image.getItem("pixels"), imageFormat, pixelFormat, embedded, name);
}

} // namespace sorvane::gltf2
