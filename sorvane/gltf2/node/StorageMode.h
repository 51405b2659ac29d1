#ifndef SORVANE_GLTF2_NODE_STORAGEMODE_H
#define SORVANE_GLTF2_NODE_STORAGEMODE_H

#include <ostream>

#include "sorvane/core/Export.h"

namespace sorvane::gltf2 {

#include "sorvane/docmodel/node/StorageMode.h.inl"

} // namespace sorvane::gltf2

#endif
