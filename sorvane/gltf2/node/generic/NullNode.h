#ifndef SORVANE_GLTF2_NODE_GENERIC_NULLNODE_H
#define SORVANE_GLTF2_NODE_GENERIC_NULLNODE_H

#include "sorvane/gltf2/node/AbstractNode.h"

namespace sorvane::gltf2 {

#include "sorvane/docmodel/node/generic/NullNode.h.inl"

} // namespace sorvane::gltf2

#endif
