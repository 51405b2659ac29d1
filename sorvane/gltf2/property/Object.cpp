#include "sorvane/gltf2/property/Object.h"

namespace sorvane::gltf2 {

#include "sorvane/docmodel/property/Object.cpp.inl"

} // namespace sorvane::gltf2
