#ifndef SORVANE_GLTF2_NODE_BUFFER_BUFFERNODES_H
#define SORVANE_GLTF2_NODE_BUFFER_BUFFERNODES_H

#include <cstdint>
#include <memory>
#include <optional>

#include "sorvane/gltf2/node/ItemList.h"
#include "sorvane/gltf2/node/buffer/BufferNode.h"

namespace sorvane::gltf2 {

// The "buffers" list of a document.
class SORVANE_API BufferNodes : public ItemList<BufferNode> {
public:
    explicit BufferNodes(const NodeParent& parent);
    ~BufferNodes() override;

    using ItemList<BufferNode>::add;
    std::shared_ptr<BufferNode> add(std::optional<int64_t> byteLength, const char* name);

    // A buffer of `byteLength` bytes: written at once as the file `uri`, or
    // embedded as a "data:application/gltf-buffer" uri when `uri` is null.
    // Returns its index.
    int64_t addData(const void* data, int64_t byteLength, const char* uri, const char* name);
};

} // namespace sorvane::gltf2

#endif
