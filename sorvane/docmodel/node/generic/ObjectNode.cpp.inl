// Shared by the two document models: included inside namespace sorvane::arf
// and namespace sorvane::gltf2, where RootNode and the other names resolve
// to the module's own classes.

ObjectNode::ObjectNode(const NodeParent& parent_) : ObjectNodeTemplate(parent_) {}
ObjectNode::~ObjectNode() = default;
