#include "sorvane/arf/node/generic/ObjectNode.h"

namespace sorvane::arf {

ObjectNode::ObjectNode(const NodeParent& parent_) : ObjectNodeTemplate(parent_) {}
ObjectNode::~ObjectNode() = default;

} // namespace sorvane::arf
