#ifndef SORVANE_ARF_NODE_ITEMLIST_H
#define SORVANE_ARF_NODE_ITEMLIST_H

#include <memory>
#include <climits>
#include <cstdint>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "sorvane/arf/node/BasicList.h"
#include "sorvane/arf/node/IdItemListBase.h"
#include "sorvane/core/RuntimeException.h"

namespace sorvane::arf {

#include "sorvane/docmodel/node/ItemList.h.inl"

} // namespace sorvane::arf

#endif
