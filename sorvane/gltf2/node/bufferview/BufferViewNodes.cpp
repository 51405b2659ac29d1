#include "sorvane/gltf2/node/bufferview/BufferViewNodes.h"

#include "sorvane/gltf2/node/RootNode.h"

namespace sorvane::gltf2 {

BufferViewNodes::BufferViewNodes(const NodeParent& parent_) : ItemList<BufferViewNode>(parent_) {}
BufferViewNodes::~BufferViewNodes() = default;

std::shared_ptr<BufferViewNode> BufferViewNodes::add(std::optional<int64_t> buffer, std::optional<int64_t> byteLength,
                                                     const char* name) {
    auto item = std::make_shared<BufferViewNode>(shared_from_this());
    item->init(buffer, byteLength, name);
    items.push_back(item);
    return item;
}

int64_t BufferViewNodes::addBuffer(int64_t buffer, const std::optional<BufferViewTarget>& target, int64_t byteLength,
                                   int64_t byteOffset, const char* name) {
    const std::string path = getNodePath();
    std::shared_ptr<RootNode> rootNode = root.lock();
    const auto& buffers = rootNode ? rootNode->getBuffers() : nullptr;
    if (buffers && buffers->hasNodeItem(buffer)) {
        const int64_t length = buffers->getByIndex(buffer)->getByteLength();
        if (byteOffset < 0)
            SORVANE_THROW("Adding item to %s:\nInvalid byte offset %ld < 0", path.c_str(), static_cast<long>(byteOffset));
        if (byteOffset >= length)
            SORVANE_THROW("Adding item to %s:\nInvalid byte offset %ld >= %ld", path.c_str(),
                          static_cast<long>(byteOffset), static_cast<long>(length));
        if (byteLength < 0 || byteLength > length - byteOffset)
            SORVANE_THROW("Adding item to %s:\nInvalid byte offset and length %ld + %ld > %ld for buffer %ld",
                          path.c_str(), static_cast<long>(byteOffset), static_cast<long>(byteLength),
                          static_cast<long>(length), static_cast<long>(buffer));
    }
    auto item = std::make_shared<BufferViewNode>(shared_from_this());
    item->init(std::nullopt, std::nullopt, nullptr);
    // In the list while its buffer is checked, so that a failure names its place.
    items.push_back(item);
    try {
        item->setBuffer(buffer);
    } catch (...) {
        items.pop_back();
        throw;
    }
    item->setByteLength(byteLength);
    if (target) item->setTarget(*target);
    item->setByteOffset(byteOffset);
    if (name) item->setName(name);
    return static_cast<int64_t>(items.size()) - 1;
}

int64_t BufferViewNodes::addData(const void* data, int64_t dataSize, int64_t valueCount, int64_t valueSize,
                                 const std::optional<BufferViewTarget>& target, bool embedded, const char* name) {
    const std::string path = getNodePath();
    int64_t total = 0;
    if (valueCount < 0 || valueSize < 0 || __builtin_mul_overflow(valueCount, valueSize, &total) || total > dataSize)
        SORVANE_THROW("Adding item to %s:\nInvalid buffer size (too small)", path.c_str());
    std::shared_ptr<RootNode> rootNode = root.lock();
    if (!rootNode) SORVANE_THROW("Adding item to %s:\nNo document", path.c_str());
    BufferNodes& buffers = rootNode->buffers();
    int64_t buffer = 0;
    int64_t offset = 0;
    if (const RootNode::SharedBuffer* shared = rootNode->getSharedBuffer()) {
        offset = rootNode->appendSharedBuffer(data, valueCount, valueSize, embedded);
        buffer = shared->bufferIndex;
    } else if (embedded) {
        buffer = buffers.addData(data, total, nullptr, name);
    } else {
        const std::string fileName =
            rootNode->findFreeFileName(nullptr, name ? name : "buffer", buffers.getNodeSize(), ".bin");
        buffer = buffers.addData(data, total, fileName.c_str(), name);
    }
    return addBuffer(buffer, target, total, offset, name);
}

} // namespace sorvane::gltf2
