#include "sorvane/arf/node/ItemList.h"

namespace sorvane::arf {

// The key function: vtable and type information of the interface live here.
IdItemListBase::~IdItemListBase() = default;

} // namespace sorvane::arf
