#ifndef SORVANE_GLTF2_PROPERTY_MEMBERACCESSORS_H
#define SORVANE_GLTF2_PROPERTY_MEMBERACCESSORS_H

#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <vector>

#include "sorvane/archive/JsonExporter.h"
#include "sorvane/gltf2/node/generic/ObjectNode.h"
#include "sorvane/gltf2/property/Object.h"
#include "sorvane/gltf2/property/ObjectProperty.h"
#include "sorvane/core/RuntimeException.h"

// The member accessors, one template per kind of value. Each record's
// accessor instantiates them with a descriptor D that names the key, says
// whether the member is optional and reaches the node's typed members.

namespace sorvane::gltf2 {

#include "sorvane/docmodel/property/MemberAccessors.h.inl"

// "extras" of the glTF records: a generic member whose copy() is refused,
// as Scene::clone refuses extras, since glTF generic values are not deep-copied.
template <class NodeT, class D>
class SORVANE_API ExtrasMember : public GenericMember<NodeT, D> {
public:
    using GenericMember<NodeT, D>::GenericMember;
    [[noreturn]] void copy(const GenericProperty&) { SORVANE_THROW("Not implemented"); }
};

} // namespace sorvane::gltf2

#endif
