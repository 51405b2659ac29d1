#ifndef SORVANE_ARF_NODE_GENERIC_OBJECTNODETEMPLATE_H
#define SORVANE_ARF_NODE_GENERIC_OBJECTNODETEMPLATE_H

#include <algorithm>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "sorvane/arf/node/generic/IntegerNode.h"
#include "sorvane/arf/node/generic/ListNode.h"
#include "sorvane/arf/node/generic/StringNode.h"
#include "sorvane/core/RuntimeException.h"

namespace sorvane::arf {

#include "sorvane/docmodel/node/generic/ObjectNodeTemplate.h.inl"

} // namespace sorvane::arf

#endif
