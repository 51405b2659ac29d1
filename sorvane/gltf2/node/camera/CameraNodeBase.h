#ifndef SORVANE_GLTF2_NODE_CAMERA_CAMERANODEBASE_H
#define SORVANE_GLTF2_NODE_CAMERA_CAMERANODEBASE_H

#include "sorvane/gltf2/node/RecordNode.h"

namespace sorvane::gltf2 {

// What a camera's init decides beyond storing its arguments, beneath the
// generated CameraNode (the only class deriving from it).
class SORVANE_API CameraNodeBase : public RecordNode {
protected:
    using RecordNode::RecordNode;

    // The child object named by "type" is made and the other one dropped;
    // any other type is refused.
    void initType();
};

} // namespace sorvane::gltf2

#endif
