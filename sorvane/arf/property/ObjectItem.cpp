#include "sorvane/arf/property/ObjectItem.h"

#include "sorvane/arf/node/generic/IntegerNode.h"
#include "sorvane/arf/node/generic/StringNode.h"
#include "sorvane/arf/property/GenericNodes.h"
#include "sorvane/core/RuntimeException.h"

namespace sorvane::arf {

#include "sorvane/docmodel/property/ObjectItem.cpp.inl"

} // namespace sorvane::arf
