#include "sorvane/gltf2/node/generic/IntegerNode.h"

#include "sorvane/core/RuntimeException.h"

namespace sorvane::gltf2 {

#include "sorvane/docmodel/node/generic/IntegerNode.cpp.inl"

} // namespace sorvane::gltf2
