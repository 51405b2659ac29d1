#include "sorvane/arf/node/RecordNode.h"

#include <cstring>
#include <iostream>
#include <typeinfo>

#include "sorvane/arf/node/ItemList.h"
#include "sorvane/arf/node/RootNode.h"

namespace sorvane::arf {

#include "sorvane/docmodel/node/RecordNode.cpp.inl"

} // namespace sorvane::arf
