#include "sorvane/gltf2/node/generic/StringNode.h"

#include "sorvane/core/RuntimeException.h"

namespace sorvane::gltf2 {

#include "sorvane/docmodel/node/generic/StringNode.cpp.inl"

} // namespace sorvane::gltf2
