#ifndef SORVANE_ARF_NODE_GENERIC_OBJECTNODE_H
#define SORVANE_ARF_NODE_GENERIC_OBJECTNODE_H

#include "sorvane/arf/node/generic/ObjectNodeTemplate.h"

namespace sorvane::arf {

// The generic object of ARF documents (configuration values and the like).
class SORVANE_API ObjectNode : public ObjectNodeTemplate<AbstractNode> {
public:
    explicit ObjectNode(const NodeParent& parent);
    ~ObjectNode() override;
};

} // namespace sorvane::arf

#endif
