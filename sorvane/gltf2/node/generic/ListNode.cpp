#include "sorvane/gltf2/node/generic/ListNode.h"

#include "sorvane/gltf2/node/generic/IntegerNode.h"
#include "sorvane/gltf2/node/generic/StringNode.h"

namespace sorvane::gltf2 {

#include "sorvane/docmodel/node/generic/ListNode.cpp.inl"

} // namespace sorvane::gltf2
