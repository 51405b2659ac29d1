#include "sorvane/arf/node/generic/NullNode.h"

#include "sorvane/core/RuntimeException.h"

namespace sorvane::arf {

#include "sorvane/docmodel/node/generic/NullNode.cpp.inl"

} // namespace sorvane::arf
