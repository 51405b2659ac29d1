#include "sorvane/gltf2/node/buffer/BufferNodes.h"

#include "sorvane/archive/DocumentUri.h"
#include "sorvane/archive/FileProvider.h"
#include "sorvane/gltf2/node/RootNode.h"

namespace sorvane::gltf2 {

BufferNodes::BufferNodes(const NodeParent& parent_) : ItemList<BufferNode>(parent_) {}
BufferNodes::~BufferNodes() = default;

std::shared_ptr<BufferNode> BufferNodes::add(std::optional<int64_t> byteLength, const char* name) {
    auto item = std::make_shared<BufferNode>(shared_from_this());
    item->init(byteLength, name);
    items.push_back(item);
    return item;
}

int64_t BufferNodes::addData(const void* data, int64_t byteLength, const char* uri, const char* name) {
    const std::string path = getNodePath();
    if (!data) SORVANE_THROW("Adding item to %s:\nNo data", path.c_str());
    if (byteLength < 1) SORVANE_THROW("Adding item to %s:\nInvalid byte length %ld", path.c_str(), static_cast<long>(byteLength));
    auto item = std::make_shared<BufferNode>(shared_from_this());
    item->init(byteLength, name);
    if (uri) {
        std::shared_ptr<RootNode> rootNode = root.lock();
        if (rootNode && rootNode->getStorageMode() == MEMORY_ONLY)
            SORVANE_THROW("Adding item to %s:\nFiles are not allowed with MEMORY_ONLY storage mode", path.c_str());
        if (!*uri) SORVANE_THROW("Adding item to %s:\nNo file name", path.c_str());
        if (!rootNode || !rootNode->getFileProvider()) SORVANE_THROW("Adding item to %s:\nNo file provider", path.c_str());
        rootNode->getFileProvider()->create(uri, data, byteLength);
        item->setUri(uri);
    } else {
        item->setUri(archive::makeDataUri("application/gltf-buffer", data, byteLength));
    }
    items.push_back(item);
    return static_cast<int64_t>(items.size()) - 1;
}

} // namespace sorvane::gltf2
