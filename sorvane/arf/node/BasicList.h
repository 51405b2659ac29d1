#ifndef SORVANE_ARF_NODE_BASICLIST_H
#define SORVANE_ARF_NODE_BASICLIST_H

#include <memory>
#include <string>
#include <vector>

#include "sorvane/arf/node/AbstractNode.h"
#include "sorvane/core/RuntimeException.h"

namespace sorvane::arf {

#include "sorvane/docmodel/node/BasicList.h.inl"

} // namespace sorvane::arf

#endif
