#include "sorvane/arf/property/Object.h"
#include "sorvane/arf/node/generic/ObjectNode.h"
#include "sorvane/arf/property/GenericNodes.h"
#include "sorvane/core/RuntimeException.h"

namespace sorvane::arf {

#include "sorvane/docmodel/property/Object.cpp.inl"

} // namespace sorvane::arf
