#include "sorvane/arf/node/StorageMode.h"

#include "sorvane/core/RuntimeException.h"

namespace sorvane::arf {

#include "sorvane/docmodel/node/StorageMode.cpp.inl"

} // namespace sorvane::arf
