#ifndef SORVANE_GLTF2_NODE_GENERIC_OBJECTNODE_H
#define SORVANE_GLTF2_NODE_GENERIC_OBJECTNODE_H

#include "sorvane/gltf2/node/generic/ObjectNodeTemplate.h"

namespace sorvane::gltf2 {

#include "sorvane/docmodel/node/generic/ObjectNode.h.inl"

} // namespace sorvane::gltf2

#endif
