#ifndef SORVANE_GLTF2_NODE_GENERIC_INTEGERNODE_H
#define SORVANE_GLTF2_NODE_GENERIC_INTEGERNODE_H

#include "sorvane/gltf2/node/AbstractNode.h"

namespace sorvane::gltf2 {

#include "sorvane/docmodel/node/generic/IntegerNode.h.inl"

} // namespace sorvane::gltf2

#endif
