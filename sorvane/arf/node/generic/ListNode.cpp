#include "sorvane/arf/node/generic/ListNode.h"

#include "sorvane/arf/node/generic/IntegerNode.h"
#include "sorvane/arf/node/generic/StringNode.h"

namespace sorvane::arf {

#include "sorvane/docmodel/node/generic/ListNode.cpp.inl"

} // namespace sorvane::arf
