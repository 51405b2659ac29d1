#ifndef SORVANE_ARF_NODE_COMPONENTS_NODENODEBASE_H
#define SORVANE_ARF_NODE_COMPONENTS_NODENODEBASE_H

#include <vector>

#include "sorvane/arf/node/RecordNode.h"

namespace sorvane::arf {

// What a scene node computes from its members, beneath the generated
// NodeNode (which is the only class deriving from it).
class SORVANE_API NodeNodeBase : public RecordNode {
public:
    // The node's local matrix, row-major: "transform" as stored (in its stored
    // length), else identity, then translation, rotation and scale each
    // multiplied in from the left in that order, which gives S * R * T. The
    // quaternion is used as stored. Fails when "transform" and one of the
    // other three are both set, and when one of them is too short to read.
    std::vector<double> getTransformMatrix() const;

protected:
    using RecordNode::RecordNode;
};

} // namespace sorvane::arf

#endif
