#include "sorvane/arf/property/GenericNodes.h"

#include "sorvane/arf/node/generic/IntegerNode.h"
#include "sorvane/arf/node/generic/ListNode.h"
#include "sorvane/arf/node/generic/NullNode.h"
#include "sorvane/arf/node/generic/ObjectNode.h"
#include "sorvane/arf/node/generic/StringNode.h"
#include "sorvane/core/RuntimeException.h"

namespace sorvane::arf::detail {

#include "sorvane/docmodel/property/GenericNodes.cpp.inl"

} // namespace sorvane::arf::detail
