#include "sorvane/gltf2/node/accessor/AccessorComponentType.h"

#include <unordered_map>

#include "sorvane/core/RuntimeException.h"

namespace sorvane::gltf2 {

namespace {
struct ComponentInfo {
    AccessorComponentType type;
    const char* name;
    long size;
    ScalarType scalar;
};
constexpr ComponentInfo kComponents[] = {
    {ACCESSOR_COMPONENT_TYPE_NONE, "NONE", 0, ScalarType::Invalid},
    {ACCESSOR_COMPONENT_TYPE_BYTE, "BYTE", 1, ScalarType::Integer8},
    {ACCESSOR_COMPONENT_TYPE_UNSIGNED_BYTE, "UNSIGNED_BYTE", 1, ScalarType::UInteger8},
    {ACCESSOR_COMPONENT_TYPE_SHORT, "SHORT", 2, ScalarType::Integer16},
    {ACCESSOR_COMPONENT_TYPE_UNSIGNED_SHORT, "UNSIGNED_SHORT", 2, ScalarType::UInteger16},
    {ACCESSOR_COMPONENT_TYPE_UNSIGNED_INT, "UNSIGNED_INT", 4, ScalarType::UInteger32},
    {ACCESSOR_COMPONENT_TYPE_FLOAT, "FLOAT", 4, ScalarType::Float},
};

const ComponentInfo* find(long value) {
    for (const ComponentInfo& c : kComponents)
        if (c.type == value) return &c;
    return nullptr;
}
} // namespace

AccessorComponentType int2AccessorComponentType(long value) {
    if (!find(value)) SORVANE_THROW("Invalid or unsupported accessorComponentType type %d", static_cast<int>(value));
    return static_cast<AccessorComponentType>(value);
}

const char* accessorComponentType2name(AccessorComponentType type) {
    const ComponentInfo* c = find(type);
    if (!c) SORVANE_THROW("Invalid or unsupported accessorComponentType type %d", static_cast<int>(type));
    return c->name;
}

long accessorComponentType2size(AccessorComponentType type) {
    const ComponentInfo* c = find(type);
    if (!c || c->size == 0) SORVANE_THROW("Invalid or unsupported component type %d", static_cast<int>(type));
    return c->size;
}

ScalarType accessorComponentType2ScalarType(AccessorComponentType type) {
    const ComponentInfo* c = find(type);
    if (!c || c->scalar == ScalarType::Invalid)
        SORVANE_THROW("Invalid or unsupported gltf component type %d", static_cast<int>(type));
    return c->scalar;
}

AccessorComponentType scalarType2componentType(ScalarType type) {
    for (const ComponentInfo& c : kComponents)
        if (c.scalar == type && c.scalar != ScalarType::Invalid) return c.type;
    SORVANE_THROW("Invalid or unsupported scalar type %d", static_cast<int>(type));
}

std::ostream& operator<<(std::ostream& out, AccessorComponentType type) {
    const ComponentInfo* c = find(type);
    return out << (c ? c->name : "Invalid");
}

long accessorType2valueCount(const std::string& type) {
    static const std::unordered_map<std::string, long> counts = {
        {"SCALAR", 1}, {"VEC2", 2}, {"VEC3", 3}, {"VEC4", 4}, {"MAT2", 4}, {"MAT3", 9}, {"MAT4", 16},
    };
    auto it = counts.find(type);
    if (it == counts.end()) SORVANE_THROW("Invalid accessor type %s", type.c_str());
    return it->second;
}

} // namespace sorvane::gltf2
