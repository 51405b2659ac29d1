#ifndef SORVANE_ARF_NODE_GENERIC_NULLNODE_H
#define SORVANE_ARF_NODE_GENERIC_NULLNODE_H

#include "sorvane/arf/node/AbstractNode.h"

namespace sorvane::arf {

#include "sorvane/docmodel/node/generic/NullNode.h.inl"

} // namespace sorvane::arf

#endif
