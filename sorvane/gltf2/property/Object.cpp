#include "sorvane/gltf2/property/Object.h"
#include "sorvane/gltf2/node/generic/ObjectNode.h"
#include "sorvane/gltf2/property/GenericNodes.h"
#include "sorvane/core/RuntimeException.h"

namespace sorvane::gltf2 {

#include "sorvane/docmodel/property/Object.cpp.inl"

} // namespace sorvane::gltf2
