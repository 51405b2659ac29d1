#ifndef SORVANE_GLTF2_PROPERTY_ACCESSOR_ACCESSORLISTADDS_H
#define SORVANE_GLTF2_PROPERTY_ACCESSOR_ACCESSORLISTADDS_H

#include <cstdint>
#include <optional>
#include <vector>

#include "sorvane/datatree/DataTree.h"
#include "sorvane/gltf2/node/buffer/BinaryData.h"

#include "sorvane/gltf2/node/accessor/AccessorNodes.h"
#include "sorvane/gltf2/property/RootListProperty.h"
#include "sorvane/gltf2/property/accessor/Accessor.h"

namespace sorvane::gltf2 {

// The data-adding operations of the accessor list's accessor.
class SORVANE_API AccessorListAdds : public RootListProperty<AccessorNodes, Accessor> {
public:
    using RootListProperty::add;
    using RootListProperty::addPtr;
    using RootListProperty::RootListProperty;

    Accessor addDense(const void* data, int64_t count, AccessorComponentType componentType, const char* type,
                      const std::optional<BufferViewTarget>& target = std::nullopt, bool embedded = false,
                      const char* name = nullptr) {
        return added(writable().addDense(data, count, componentType, type, target, embedded, name));
    }
    Accessor* addDensePtr(const void* data, int64_t count, AccessorComponentType componentType, const char* type,
                          const std::optional<BufferViewTarget>& target = std::nullopt, bool embedded = false,
                          const char* name = nullptr) {
        return new Accessor(addDense(data, count, componentType, type, target, embedded, name));
    }
    Accessor addTensor(const DataTree& tensor, const std::optional<BufferViewTarget>& target = std::nullopt,
                       bool embedded = false, const char* name = nullptr) {
        return added(writable().addTensor(tensor, target, embedded, name));
    }
    Accessor* addTensorPtr(const DataTree& tensor, const std::optional<BufferViewTarget>& target = std::nullopt,
                           bool embedded = false, const char* name = nullptr) {
        return new Accessor(addTensor(tensor, target, embedded, name));
    }
    // Extension: every accessor as a tensor, in list order; none while the
    // list is absent. For a caller that keeps them all it is faster than a
    // getTensor per accessor: tensors of up to 4 KiB share blocks of 64 KiB
    // (one allocation per block), so a tensor kept keeps its block (see
    // datatree::TensorBatch).
    std::vector<DataTree> getTensors() const {
        return empty() ? std::vector<DataTree>() : BinaryData::getTensors(node());
    }

private:
    AccessorNodes& writable() { return writableList(); }
    Accessor added(int64_t index) { return Accessor(propertyRoot, node().getByIndex(index), false); }
};

} // namespace sorvane::gltf2

#endif
