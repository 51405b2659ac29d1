#include "sorvane/gltf2/node/bufferview/BufferViewTarget.h"

#include "sorvane/core/RuntimeException.h"

namespace sorvane::gltf2 {

namespace {
const char* nameOf(long value) {
    switch (value) {
    case BUFFER_VIEW_TARGET_NONE: return "NONE";
    case BUFFER_VIEW_TARGET_ARRAY_BUFFER: return "ARRAY_BUFFER";
    case BUFFER_VIEW_TARGET_ELEMENT_ARRAY_BUFFER: return "ELEMENT_ARRAY_BUFFER";
    default: return nullptr;
    }
}
} // namespace

BufferViewTarget int2BufferViewTarget(long value) {
    if (!nameOf(value)) SORVANE_THROW("Invalid or unsupported bufferViewTarget type %d", static_cast<int>(value));
    return static_cast<BufferViewTarget>(value);
}

const char* bufferViewTarget2name(BufferViewTarget target) {
    const char* name = nameOf(target);
    if (!name) SORVANE_THROW("Invalid or unsupported bufferViewTarget type %d", static_cast<int>(target));
    return name;
}

std::ostream& operator<<(std::ostream& out, BufferViewTarget target) {
    const char* name = nameOf(target);
    return out << (name ? name : "Invalid");
}

} // namespace sorvane::gltf2
