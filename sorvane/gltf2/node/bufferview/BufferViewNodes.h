#ifndef SORVANE_GLTF2_NODE_BUFFERVIEW_BUFFERVIEWNODES_H
#define SORVANE_GLTF2_NODE_BUFFERVIEW_BUFFERVIEWNODES_H

#include <cstdint>
#include <memory>
#include <optional>

#include "sorvane/gltf2/node/ItemList.h"
#include "sorvane/gltf2/node/bufferview/BufferViewNode.h"

namespace sorvane::gltf2 {

// The "bufferViews" list of a document.
class SORVANE_API BufferViewNodes : public ItemList<BufferViewNode> {
public:
    explicit BufferViewNodes(const NodeParent& parent);
    ~BufferViewNodes() override;

    using ItemList<BufferViewNode>::add;
    std::shared_ptr<BufferViewNode> add(std::optional<int64_t> buffer, std::optional<int64_t> byteLength,
                                        const char* name);

    // A view of `byteLength` bytes at `byteOffset` of an existing buffer.
    int64_t addBuffer(int64_t buffer, const std::optional<BufferViewTarget>& target, int64_t byteLength,
                      int64_t byteOffset, const char* name);
    // `valueCount` values of `valueSize` bytes: into the open shared buffer,
    // else into a new embedded buffer or a new file; then a view over them.
    int64_t addData(const void* data, int64_t dataSize, int64_t valueCount, int64_t valueSize,
                    const std::optional<BufferViewTarget>& target, bool embedded, const char* name);
};

} // namespace sorvane::gltf2

#endif
