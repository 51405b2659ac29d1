#ifndef SORVANE_ARF_NODE_GENERIC_LISTNODE_H
#define SORVANE_ARF_NODE_GENERIC_LISTNODE_H

#include "sorvane/arf/node/BasicList.h"

namespace sorvane::arf {

#include "sorvane/docmodel/node/generic/ListNode.h.inl"

} // namespace sorvane::arf

#endif
