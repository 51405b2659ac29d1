#ifndef SORVANE_ARF_NODE_GENERIC_OBJECTNODE_H
#define SORVANE_ARF_NODE_GENERIC_OBJECTNODE_H

#include "sorvane/arf/node/generic/ObjectNodeTemplate.h"

namespace sorvane::arf {

#include "sorvane/docmodel/node/generic/ObjectNode.h.inl"

} // namespace sorvane::arf

#endif
