#ifndef SORVANE_ARF_PROPERTY_GENERICNODES_H
#define SORVANE_ARF_PROPERTY_GENERICNODES_H

#include <memory>
#include <string>

#include "sorvane/arf/node/AbstractNode.h"

// Internal helpers of the generic accessors (GenericProperty, ObjectItem):
// copying generic values and storing them in generic containers so that
// whatever is stored can be read back from JSON.

namespace sorvane::arf::detail {

// A deep copy of a generic value with the given parent; fails for record
// nodes, which are no generic values.
AbstractNode::Ref cloneGenericNode(const AbstractNode& source, const NodeParent& parent);

// Appends a copy of the value to a generic list. A list holds strings,
// integers and nulls only: the reader accepts nothing else inside a list.
void appendToGenericList(AbstractNode& list, const AbstractNode& value);

// Stores a copy of the value under the key of a generic object, replacing
// what was there. Objects do not nest, and lists inside them hold scalars.
void storeInGenericObject(AbstractNode& object, const std::string& key, const AbstractNode& value);

// The list under the key of a generic object, created empty when the key is
// missing; fails if the key holds something else.
AbstractNode::Ref listUnderKey(AbstractNode& object, const std::string& key);

} // namespace sorvane::arf::detail

#endif
