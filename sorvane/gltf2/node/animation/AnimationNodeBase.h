#ifndef SORVANE_GLTF2_NODE_ANIMATION_ANIMATIONNODEBASE_H
#define SORVANE_GLTF2_NODE_ANIMATION_ANIMATIONNODEBASE_H

#include <utility>

#include "sorvane/gltf2/node/RecordNode.h"

namespace sorvane::gltf2 {

// What an animation record computes from its members.
class SORVANE_API AnimationNodeBase : public RecordNode {
public:
    // The range of the samplers its channels use, in seconds.
    std::pair<float, float> getTimeRange() const;

protected:
    using RecordNode::RecordNode;
};

} // namespace sorvane::gltf2

#endif
