#include "sorvane/gltf2/property/GenericProperty.h"

#include <algorithm>
#include <stdexcept>

#include "sorvane/gltf2/node/generic/IntegerNode.h"
#include "sorvane/gltf2/node/generic/ListNode.h"
#include "sorvane/gltf2/node/generic/NullNode.h"
#include "sorvane/gltf2/node/generic/ObjectNode.h"
#include "sorvane/gltf2/node/generic/StringNode.h"
#include "sorvane/gltf2/property/GenericNodes.h"
#include "sorvane/core/RuntimeException.h"

namespace sorvane::gltf2 {

#include "sorvane/docmodel/property/GenericProperty.cpp.inl"

} // namespace sorvane::gltf2
