#include "sorvane/gltf2/node/StorageMode.h"

#include "sorvane/core/RuntimeException.h"

namespace sorvane::gltf2 {

#include "sorvane/docmodel/node/StorageMode.cpp.inl"

} // namespace sorvane::gltf2
