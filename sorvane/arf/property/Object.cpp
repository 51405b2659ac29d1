#include "sorvane/arf/property/Object.h"

namespace sorvane::arf {

#include "sorvane/docmodel/property/Object.cpp.inl"

} // namespace sorvane::arf
