#ifndef SORVANE_GLTF2_NODE_ACCESSOR_ACCESSORNODES_H
#define SORVANE_GLTF2_NODE_ACCESSOR_ACCESSORNODES_H

#include <cstdint>
#include <memory>
#include <optional>

#include "sorvane/gltf2/node/ItemList.h"
#include "sorvane/gltf2/node/accessor/AccessorNode.h"
#include "sorvane/gltf2/node/bufferview/BufferViewTarget.h"

namespace sorvane {
class DataTree;
}

namespace sorvane::gltf2 {

// The "accessors" list of a document.
class SORVANE_API AccessorNodes : public ItemList<AccessorNode> {
public:
    explicit AccessorNodes(const NodeParent& parent);
    ~AccessorNodes() override;

    using ItemList<AccessorNode>::add;
    std::shared_ptr<AccessorNode> add(std::optional<AccessorComponentType> componentType,
                                      std::optional<int64_t> count, const char* type, const char* name);

    // `count` elements of `type` ("SCALAR" ... "MAT4") stored through a new
    // buffer view, with "min" and "max" per component. Returns the index.
    int64_t addDense(const void* data, int64_t count, AccessorComponentType componentType, const char* type,
                     const std::optional<BufferViewTarget>& target, bool embedded, const char* name);
    // A tensor [n], [n,2..4], [n,16] or [n,4,4] as SCALAR, VEC2..4 or MAT4.
    int64_t addTensor(const DataTree& tensor, const std::optional<BufferViewTarget>& target, bool embedded,
                      const char* name);

private:
    template <class T>
    int64_t addDenseTyped(const T* data, int64_t count, AccessorComponentType componentType, const char* type,
                          const std::optional<BufferViewTarget>& target, bool embedded, const char* name);
};

} // namespace sorvane::gltf2

#endif
