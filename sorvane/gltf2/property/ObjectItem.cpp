#include "sorvane/gltf2/property/ObjectItem.h"

#include "sorvane/gltf2/node/generic/IntegerNode.h"
#include "sorvane/gltf2/node/generic/StringNode.h"
#include "sorvane/gltf2/property/GenericNodes.h"
#include "sorvane/core/RuntimeException.h"

namespace sorvane::gltf2 {

#include "sorvane/docmodel/property/ObjectItem.cpp.inl"

} // namespace sorvane::gltf2
