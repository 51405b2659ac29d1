#ifndef SORVANE_GLTF2_NODE_BASICLIST_H
#define SORVANE_GLTF2_NODE_BASICLIST_H

#include <memory>
#include <string>
#include <vector>

#include "sorvane/gltf2/node/AbstractNode.h"
#include "sorvane/core/RuntimeException.h"

namespace sorvane::gltf2 {

#include "sorvane/docmodel/node/BasicList.h.inl"

} // namespace sorvane::gltf2

#endif
