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

} // namespace sorvane::gltf2

#endif
