#include "sorvane/gltf2/node/mesh/primitive/PrimitiveMode.h"

#include "sorvane/core/RuntimeException.h"

namespace sorvane::gltf2 {

namespace {
const char* nameOf(long value) {
    static const char* const names[] = {"POINTS",    "LINES",          "LINE_LOOP",   "LINE_STRIP",
                                        "TRIANGLES", "TRIANGLE_STRIP", "TRIANGLE_FAN"};
    return value >= 0 && value <= 6 ? names[value] : nullptr;
}
} // namespace

PrimitiveMode int2PrimitiveMode(long value) {
    if (!nameOf(value)) SORVANE_THROW("Invalid or unsupported primitiveMode type %d", static_cast<int>(value));
    return static_cast<PrimitiveMode>(value);
}

const char* primitiveMode2name(PrimitiveMode mode) {
    const char* name = nameOf(mode);
    if (!name) SORVANE_THROW("Invalid or unsupported primitiveMode type %d", static_cast<int>(mode));
    return name;
}

std::ostream& operator<<(std::ostream& out, PrimitiveMode mode) {
    const char* name = nameOf(mode);
    return out << (name ? name : "Invalid");
}

} // namespace sorvane::gltf2
