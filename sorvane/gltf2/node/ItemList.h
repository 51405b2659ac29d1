#ifndef SORVANE_GLTF2_NODE_ITEMLIST_H
#define SORVANE_GLTF2_NODE_ITEMLIST_H

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "sorvane/gltf2/node/BasicList.h"
#include "sorvane/gltf2/node/IdItemListBase.h"
#include "sorvane/core/RuntimeException.h"

namespace sorvane::gltf2 {

#include "sorvane/docmodel/node/ItemList.h.inl"

} // namespace sorvane::gltf2

#endif
