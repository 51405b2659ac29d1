#ifndef SORVANE_GLTF2_PROPERTY_ACCESSOR_ACCESSORREADS_H
#define SORVANE_GLTF2_PROPERTY_ACCESSOR_ACCESSORREADS_H

#include <cstdint>
#include <string>
#include <vector>

#include "sorvane/datatree/DataTree.h"
#include "sorvane/gltf2/node/accessor/AccessorNode.h"
#include "sorvane/gltf2/node/buffer/BinaryData.h"
#include "sorvane/gltf2/property/ObjectProperty.h"

namespace sorvane::gltf2 {

class Gltf;
class Accessor;

// The binary reads of the Accessor accessor and its copy into another document.
class SORVANE_API AccessorReads : public ObjectProperty<AccessorNode> {
public:
    int64_t getData(void* out, int64_t outSize) const { return BinaryData::getData(node(), out, outSize); }
    int64_t getDataSize() const { return BinaryData::getDataSize(node()); }
    std::vector<long> getDims() const { return BinaryData::getDims(node()); }
    DataTree getDataArray() const { return BinaryData::getDataArray(node()); }
    DataTree getTensor() const { return BinaryData::getTensor(node()); }
    DataTree* getTensorPtr() const { return BinaryData::getTensorPtr(node()); }
    // Copies into `target` with a new file for its bytes; returns the new index.
    int64_t clone(Gltf& target) const;
    Accessor* clonePtr(Gltf& target) const;

protected:
    AccessorReads() = default;
    AccessorReads(const std::shared_ptr<RootNode>& root_, const std::shared_ptr<AccessorNode>& node_, bool readOnly_)
        : ObjectProperty(root_, node_, readOnly_) {}
};

} // namespace sorvane::gltf2

#endif
