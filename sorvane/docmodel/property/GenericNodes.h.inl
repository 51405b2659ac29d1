// Shared by the two document models: included inside namespace sorvane::arf
// and namespace sorvane::gltf2, where RootNode and the other names resolve
// to the module's own classes.

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
