#include "sorvane/arf/node/generic/StringNode.h"

#include "sorvane/core/RuntimeException.h"

namespace sorvane::arf {

#include "sorvane/docmodel/node/generic/StringNode.cpp.inl"

} // namespace sorvane::arf
