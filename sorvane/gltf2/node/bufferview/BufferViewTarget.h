#ifndef SORVANE_GLTF2_NODE_BUFFERVIEW_BUFFERVIEWTARGET_H
#define SORVANE_GLTF2_NODE_BUFFERVIEW_BUFFERVIEWTARGET_H

#include <cstdint>
#include <ostream>

#include "sorvane/core/Export.h"

namespace sorvane::gltf2 {

// The binding hint of a glTF buffer view.
enum BufferViewTarget : int32_t {
    BUFFER_VIEW_TARGET_NONE = 0,
    BUFFER_VIEW_TARGET_ARRAY_BUFFER = 34962,
    BUFFER_VIEW_TARGET_ELEMENT_ARRAY_BUFFER = 34963,
};

SORVANE_API BufferViewTarget int2BufferViewTarget(long value);
SORVANE_API const char* bufferViewTarget2name(BufferViewTarget target);
SORVANE_API std::ostream& operator<<(std::ostream& out, BufferViewTarget target);

} // namespace sorvane::gltf2

#endif
