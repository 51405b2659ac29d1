#ifndef SORVANE_ARF_NODE_STORAGEMODE_H
#define SORVANE_ARF_NODE_STORAGEMODE_H

#include <ostream>

#include "sorvane/core/Export.h"

namespace sorvane::arf {

#include "sorvane/docmodel/node/StorageMode.h.inl"

} // namespace sorvane::arf

#endif
