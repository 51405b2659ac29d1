#ifndef SORVANE_GLTF2_PROPERTY_BUFFER_BUFFERLISTADDS_H
#define SORVANE_GLTF2_PROPERTY_BUFFER_BUFFERLISTADDS_H

#include <cstdint>
#include <string>

#include "sorvane/gltf2/node/buffer/BufferNodes.h"
#include "sorvane/gltf2/property/RootListProperty.h"
#include "sorvane/gltf2/property/buffer/Buffer.h"

namespace sorvane::gltf2 {

// The data-adding operations of the buffer list's accessor.
class SORVANE_API BufferListAdds : public RootListProperty<BufferNodes, Buffer> {
public:
    using RootListProperty::add;
    using RootListProperty::addPtr;
    using RootListProperty::RootListProperty;

    Buffer addData(const void* data, int64_t byteLength, const char* uri = nullptr, const char* name = nullptr) {
        return added(writable().addData(data, byteLength, uri, name));
    }
    Buffer addString(const std::string& data, const char* uri = nullptr, const char* name = nullptr) {
        return addData(data.data(), static_cast<int64_t>(data.size()), uri, name);
    }
    Buffer* addDataPtr(const void* data, int64_t byteLength, const char* uri = nullptr, const char* name = nullptr) {
        return new Buffer(addData(data, byteLength, uri, name));
    }


private:
    BufferNodes& writable() { return writableList(); }
    Buffer added(int64_t index) { return Buffer(propertyRoot, node().getByIndex(index), false); }
};

} // namespace sorvane::gltf2

#endif
