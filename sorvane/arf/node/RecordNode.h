#ifndef SORVANE_ARF_NODE_RECORDNODE_H
#define SORVANE_ARF_NODE_RECORDNODE_H

#include <cstdint>
#include <cstring>
#include <memory>
#include <optional>
#include <string>
#include <type_traits>
#include <vector>

#include "sorvane/arf/node/AbstractNode.h"
#include "sorvane/arf/node/IdItemListBase.h"
#include "sorvane/core/RuntimeException.h"

namespace sorvane::arf {

#include "sorvane/docmodel/node/RecordNode.h.inl"

} // namespace sorvane::arf

#endif
