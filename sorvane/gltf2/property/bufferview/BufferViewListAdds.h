#ifndef SORVANE_GLTF2_PROPERTY_BUFFERVIEW_BUFFERVIEWLISTADDS_H
#define SORVANE_GLTF2_PROPERTY_BUFFERVIEW_BUFFERVIEWLISTADDS_H

#include <cstdint>
#include <optional>

#include "sorvane/gltf2/node/bufferview/BufferViewNodes.h"
#include "sorvane/gltf2/property/RootListProperty.h"
#include "sorvane/gltf2/property/bufferview/BufferView.h"

namespace sorvane::gltf2 {

// The adding operations of the buffer view list's accessor.
class SORVANE_API BufferViewListAdds : public RootListProperty<BufferViewNodes, BufferView> {
public:
    using RootListProperty::add;
    using RootListProperty::addPtr;
    using RootListProperty::RootListProperty;

    BufferView addBuffer(int64_t buffer, const std::optional<BufferViewTarget>& target, int64_t byteLength,
                         int64_t byteOffset = 0, const char* name = nullptr) {
        return added(writable().addBuffer(buffer, target, byteLength, byteOffset, name));
    }
    BufferView addData(const void* data, int64_t dataSize, int64_t valueCount, int64_t valueSize,
                       const std::optional<BufferViewTarget>& target = std::nullopt, bool embedded = false,
                       const char* name = nullptr) {
        return added(writable().addData(data, dataSize, valueCount, valueSize, target, embedded, name));
    }
    BufferView* addDataPtr(const void* data, int64_t dataSize, int64_t valueCount, int64_t valueSize,
                           const std::optional<BufferViewTarget>& target = std::nullopt, bool embedded = false,
                           const char* name = nullptr) {
        return new BufferView(addData(data, dataSize, valueCount, valueSize, target, embedded, name));
    }


private:
    BufferViewNodes& writable() { return writableList(); }
    BufferView added(int64_t index) { return BufferView(propertyRoot, node().getByIndex(index), false); }
};

} // namespace sorvane::gltf2

#endif
