#include "sorvane/arf/property/GenericProperty.h"

#include <algorithm>
#include <stdexcept>

#include "sorvane/arf/node/generic/IntegerNode.h"
#include "sorvane/arf/node/generic/ListNode.h"
#include "sorvane/arf/node/generic/NullNode.h"
#include "sorvane/arf/node/generic/ObjectNode.h"
#include "sorvane/arf/node/generic/StringNode.h"
#include "sorvane/arf/property/GenericNodes.h"
#include "sorvane/core/RuntimeException.h"

namespace sorvane::arf {

#include "sorvane/docmodel/property/GenericProperty.cpp.inl"

} // namespace sorvane::arf
