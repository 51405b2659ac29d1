#ifndef SORVANE_GLTF2_NODE_RECORDNODE_H
#define SORVANE_GLTF2_NODE_RECORDNODE_H

#include <cstdint>
#include <cstring>
#include <memory>
#include <optional>
#include <string>
#include <type_traits>
#include <vector>

#include "sorvane/gltf2/node/AbstractNode.h"
#include "sorvane/gltf2/node/IdItemListBase.h"
#include "sorvane/core/RuntimeException.h"

namespace sorvane::gltf2 {

#include "sorvane/docmodel/node/RecordNode.h.inl"

} // namespace sorvane::gltf2

#endif
