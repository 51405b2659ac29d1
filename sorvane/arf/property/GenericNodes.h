#ifndef SORVANE_ARF_PROPERTY_GENERICNODES_H
#define SORVANE_ARF_PROPERTY_GENERICNODES_H

#include <memory>
#include <string>

#include "sorvane/arf/node/AbstractNode.h"

// Internal helpers of the generic accessors (GenericProperty, ObjectItem):
// copying generic values and storing them in generic containers so that
// whatever is stored can be read back from JSON.

namespace sorvane::arf::detail {

#include "sorvane/docmodel/property/GenericNodes.h.inl"

} // namespace sorvane::arf::detail

#endif
