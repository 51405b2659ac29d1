#ifndef SORVANE_ARF_NODE_IDITEMLISTBASE_H
#define SORVANE_ARF_NODE_IDITEMLISTBASE_H

#include <cstdint>
#include <optional>
#include <string>

#include "sorvane/core/Export.h"
#include "sorvane/core/IdIndex.h"

namespace sorvane::arf {

#include "sorvane/docmodel/node/IdItemListBase.h.inl"

} // namespace sorvane::arf

#endif
