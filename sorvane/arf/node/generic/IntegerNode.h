#ifndef SORVANE_ARF_NODE_GENERIC_INTEGERNODE_H
#define SORVANE_ARF_NODE_GENERIC_INTEGERNODE_H

#include "sorvane/arf/node/AbstractNode.h"

namespace sorvane::arf {

#include "sorvane/docmodel/node/generic/IntegerNode.h.inl"

} // namespace sorvane::arf

#endif
