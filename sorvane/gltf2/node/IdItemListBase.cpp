#include "sorvane/gltf2/node/ItemList.h"

namespace sorvane::gltf2 {

#include "sorvane/docmodel/node/IdItemListBase.cpp.inl"

} // namespace sorvane::gltf2
