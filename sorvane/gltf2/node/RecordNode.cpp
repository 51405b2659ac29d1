#include "sorvane/gltf2/node/RecordNode.h"

#include <cstring>
#include <iostream>
#include <typeinfo>

#include "sorvane/gltf2/node/ItemList.h"
#include "sorvane/gltf2/node/RootNode.h"

namespace sorvane::gltf2 {

#include "sorvane/docmodel/node/RecordNode.cpp.inl"

} // namespace sorvane::gltf2
