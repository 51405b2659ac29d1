#ifndef SORVANE_GLTF2_NODE_MESH_PRIMITIVE_PRIMITIVEMODE_H
#define SORVANE_GLTF2_NODE_MESH_PRIMITIVE_PRIMITIVEMODE_H

#include <cstdint>
#include <ostream>

#include "sorvane/core/Export.h"

namespace sorvane::gltf2 {

// How a primitive's vertices are assembled.
enum PrimitiveMode : int32_t {
    PRIMITIVE_MODE_POINTS = 0,
    PRIMITIVE_MODE_LINES = 1,
    PRIMITIVE_MODE_LINE_LOOP = 2,
    PRIMITIVE_MODE_LINE_STRIP = 3,
    PRIMITIVE_MODE_TRIANGLES = 4,
    PRIMITIVE_MODE_TRIANGLE_STRIP = 5,
    PRIMITIVE_MODE_TRIANGLE_FAN = 6,
};

SORVANE_API PrimitiveMode int2PrimitiveMode(long value);
SORVANE_API const char* primitiveMode2name(PrimitiveMode mode);
SORVANE_API std::ostream& operator<<(std::ostream& out, PrimitiveMode mode);

} // namespace sorvane::gltf2

#endif
