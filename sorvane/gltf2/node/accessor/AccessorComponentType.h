#ifndef SORVANE_GLTF2_NODE_ACCESSOR_ACCESSORCOMPONENTTYPE_H
#define SORVANE_GLTF2_NODE_ACCESSOR_ACCESSORCOMPONENTTYPE_H

#include <cstdint>
#include <ostream>
#include <string>

#include "sorvane/core/Export.h"
#include "sorvane/datatree/ScalarType.h"

namespace sorvane::gltf2 {

// The component types of glTF 2.0 accessors, with the standard's numbers.
enum AccessorComponentType : int32_t {
    ACCESSOR_COMPONENT_TYPE_NONE = 0,
    ACCESSOR_COMPONENT_TYPE_BYTE = 5120,
    ACCESSOR_COMPONENT_TYPE_UNSIGNED_BYTE = 5121,
    ACCESSOR_COMPONENT_TYPE_SHORT = 5122,
    ACCESSOR_COMPONENT_TYPE_UNSIGNED_SHORT = 5123,
    ACCESSOR_COMPONENT_TYPE_UNSIGNED_INT = 5125,
    ACCESSOR_COMPONENT_TYPE_FLOAT = 5126,
};

// Each fails for a value outside the table, with its own text.
SORVANE_API AccessorComponentType int2AccessorComponentType(long value);
SORVANE_API const char* accessorComponentType2name(AccessorComponentType type);
SORVANE_API long accessorComponentType2size(AccessorComponentType type);
// NONE counts as unknown here.
SORVANE_API ScalarType accessorComponentType2ScalarType(AccessorComponentType type);
// Only the six scalar types that glTF stores; Integer32, 64-bit, Double and Boolean fail.
SORVANE_API AccessorComponentType scalarType2componentType(ScalarType type);
SORVANE_API std::ostream& operator<<(std::ostream& out, AccessorComponentType type);

// Values per element of an accessor type: "SCALAR" 1 ... "MAT4" 16.
SORVANE_API long accessorType2valueCount(const std::string& type);

} // namespace sorvane::gltf2

#endif
