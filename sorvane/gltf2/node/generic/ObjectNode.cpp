#include "sorvane/gltf2/node/generic/ObjectNode.h"

namespace sorvane::gltf2 {

#include "sorvane/docmodel/node/generic/ObjectNode.cpp.inl"

} // namespace sorvane::gltf2
