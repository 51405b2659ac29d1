#ifndef SORVANE_ARF_NODE_GENERIC_STRINGNODE_H
#define SORVANE_ARF_NODE_GENERIC_STRINGNODE_H

#include "sorvane/arf/node/AbstractNode.h"

namespace sorvane::arf {

#include "sorvane/docmodel/node/generic/StringNode.h.inl"

} // namespace sorvane::arf

#endif
