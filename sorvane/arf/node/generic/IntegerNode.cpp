#include "sorvane/arf/node/generic/IntegerNode.h"

#include "sorvane/core/RuntimeException.h"

namespace sorvane::arf {

#include "sorvane/docmodel/node/generic/IntegerNode.cpp.inl"

} // namespace sorvane::arf
