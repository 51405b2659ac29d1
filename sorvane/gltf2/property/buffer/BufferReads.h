#ifndef SORVANE_GLTF2_PROPERTY_BUFFER_BUFFERREADS_H
#define SORVANE_GLTF2_PROPERTY_BUFFER_BUFFERREADS_H

#include <cstdint>
#include <string>
#include <vector>

#include "sorvane/datatree/DataTree.h"
#include "sorvane/gltf2/node/buffer/BufferNode.h"
#include "sorvane/gltf2/node/buffer/BinaryData.h"
#include "sorvane/gltf2/property/ObjectProperty.h"

namespace sorvane::gltf2 {

class Gltf;
class Buffer;

// The binary reads of the Buffer accessor and its copy into another document.
class SORVANE_API BufferReads : public ObjectProperty<BufferNode> {
public:
    int64_t getData(void* out, int64_t outSize, int64_t byteOffset = 0, int64_t valueCount = -1, int64_t valueSize = 1,
                    int64_t byteStride = -1) const {
        return BinaryData::getData(node(), out, outSize, byteOffset, valueCount, valueSize, byteStride);
    }
    std::string getString(int64_t byteOffset = 0, int64_t valueCount = -1, int64_t valueSize = 1,
                          int64_t byteStride = -1) const {
        return BinaryData::getString(node(), byteOffset, valueCount, valueSize, byteStride);
    }
    // Copies into `target` with a new file for its bytes; returns the new index.
    int64_t clone(Gltf& target) const;
    Buffer* clonePtr(Gltf& target) const;

protected:
    BufferReads() = default;
    BufferReads(const std::shared_ptr<RootNode>& root_, const std::shared_ptr<BufferNode>& node_, bool readOnly_)
        : ObjectProperty(root_, node_, readOnly_) {}
};

} // namespace sorvane::gltf2

#endif
