#ifndef SORVANE_GLTF2_NODE_GENERIC_LISTNODE_H
#define SORVANE_GLTF2_NODE_GENERIC_LISTNODE_H

#include "sorvane/gltf2/node/BasicList.h"

namespace sorvane::gltf2 {

#include "sorvane/docmodel/node/generic/ListNode.h.inl"

} // namespace sorvane::gltf2

#endif
