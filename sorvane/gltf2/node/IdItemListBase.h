#ifndef SORVANE_GLTF2_NODE_IDITEMLISTBASE_H
#define SORVANE_GLTF2_NODE_IDITEMLISTBASE_H

#include <cstdint>
#include <optional>
#include <string>

#include "sorvane/core/Export.h"
#include "sorvane/core/IdIndex.h"

namespace sorvane::gltf2 {

#include "sorvane/docmodel/node/IdItemListBase.h.inl"

} // namespace sorvane::gltf2

#endif
