#include "sorvane/arf/node/generic/ObjectNode.h"

namespace sorvane::arf {

#include "sorvane/docmodel/node/generic/ObjectNode.cpp.inl"

} // namespace sorvane::arf
