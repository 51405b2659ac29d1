#ifndef SORVANE_GLTF2_PROPERTY_BUFFERVIEW_BUFFERVIEWREADS_H
#define SORVANE_GLTF2_PROPERTY_BUFFERVIEW_BUFFERVIEWREADS_H

#include <cstdint>
#include <string>
#include <vector>

#include "sorvane/datatree/DataTree.h"
#include "sorvane/gltf2/node/bufferview/BufferViewNode.h"
#include "sorvane/gltf2/node/buffer/BinaryData.h"
#include "sorvane/gltf2/property/ObjectProperty.h"

namespace sorvane::gltf2 {

class Gltf;
class BufferView;

// The binary reads of the BufferView accessor and its copy into another document.
class SORVANE_API BufferViewReads : public ObjectProperty<BufferViewNode> {
public:
    int64_t getData(void* out, int64_t outSize, int64_t byteOffset = 0, int64_t valueCount = -1,
                    int64_t valueSize = -1) const {
        return BinaryData::getData(node(), out, outSize, byteOffset, valueCount, valueSize);
    }
    std::string getString(int64_t byteOffset = 0, int64_t valueCount = -1, int64_t valueSize = -1) const {
        return BinaryData::getString(node(), byteOffset, valueCount, valueSize);
    }
    // Copies into `target` with a new file for its bytes; returns the new index.
    int64_t clone(Gltf& target) const;
    BufferView* clonePtr(Gltf& target) const;

protected:
    BufferViewReads() = default;
    BufferViewReads(const std::shared_ptr<RootNode>& root_, const std::shared_ptr<BufferViewNode>& node_, bool readOnly_)
        : ObjectProperty(root_, node_, readOnly_) {}
};

} // namespace sorvane::gltf2

#endif
