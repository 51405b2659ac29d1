#include "sorvane/arf/node/ItemList.h"

namespace sorvane::arf {

#include "sorvane/docmodel/node/IdItemListBase.cpp.inl"

} // namespace sorvane::arf
