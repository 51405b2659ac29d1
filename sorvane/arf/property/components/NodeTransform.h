#ifndef SORVANE_ARF_PROPERTY_COMPONENTS_NODETRANSFORM_H
#define SORVANE_ARF_PROPERTY_COMPONENTS_NODETRANSFORM_H

#include <vector>

#include "sorvane/arf/node/components/NodeNode.h"
#include "sorvane/arf/property/ObjectProperty.h"

namespace sorvane::arf {

// The computed reads of a scene node's accessor.
class SORVANE_API NodeTransform : public ObjectProperty<NodeNode> {
public:
    // See NodeNodeBase::getTransformMatrix.
    std::vector<double> getTransformMatrix() const { return node().getTransformMatrix(); }

protected:
    NodeTransform() = default;
    NodeTransform(const std::shared_ptr<RootNode>& root_, const std::shared_ptr<NodeNode>& node_, bool readOnly_)
        : ObjectProperty(root_, node_, readOnly_) {}
};

} // namespace sorvane::arf

#endif
