#include "sorvane/gltf2/node/generic/NullNode.h"

#include "sorvane/core/RuntimeException.h"

namespace sorvane::gltf2 {

#include "sorvane/docmodel/node/generic/NullNode.cpp.inl"

} // namespace sorvane::gltf2
