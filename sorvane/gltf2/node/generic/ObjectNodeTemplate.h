#ifndef SORVANE_GLTF2_NODE_GENERIC_OBJECTNODETEMPLATE_H
#define SORVANE_GLTF2_NODE_GENERIC_OBJECTNODETEMPLATE_H

#include <algorithm>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "sorvane/gltf2/node/generic/IntegerNode.h"
#include "sorvane/gltf2/node/generic/ListNode.h"
#include "sorvane/gltf2/node/generic/StringNode.h"
#include "sorvane/core/RuntimeException.h"

namespace sorvane::gltf2 {

#include "sorvane/docmodel/node/generic/ObjectNodeTemplate.h.inl"

} // namespace sorvane::gltf2

#endif
