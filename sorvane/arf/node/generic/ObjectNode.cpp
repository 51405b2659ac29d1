#include "sorvane/arf/node/generic/ObjectNode.h"

namespace sorvane::arf {

ObjectNode::ObjectNode(const WeakRef& parent_) : ObjectNodeTemplate(parent_) {}
ObjectNode::ObjectNode(const Ref& parent_) : ObjectNodeTemplate(parent_) {}
ObjectNode::~ObjectNode() = default;

} // namespace sorvane::arf
