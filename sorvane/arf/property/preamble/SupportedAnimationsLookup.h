#ifndef SORVANE_ARF_PROPERTY_PREAMBLE_SUPPORTEDANIMATIONSLOOKUP_H
#define SORVANE_ARF_PROPERTY_PREAMBLE_SUPPORTEDANIMATIONSLOOKUP_H

#include <string>

#include "sorvane/arf/node/preamble/SupportedAnimationsNode.h"
#include "sorvane/arf/property/ObjectProperty.h"

namespace sorvane::arf {

// The framework lookup of the supported animations' accessor.
class SORVANE_API SupportedAnimationsLookup : public ObjectProperty<SupportedAnimationsNode> {
public:
    // The index of urn in the list of that animation kind ("ANIMATION_FACE"
    // in faceAnimations, ...), or -1; another kind gives -1.
    long findFrameworkId(const std::string& type, const std::string& urn) const {
        return findFrameworkId(node(), type, urn);
    }
    static long findFrameworkId(const SupportedAnimationsNode& node, const std::string& type, const std::string& urn);

protected:
    SupportedAnimationsLookup() = default;
    SupportedAnimationsLookup(const std::shared_ptr<RootNode>& root_,
                              const std::shared_ptr<SupportedAnimationsNode>& node_, bool readOnly_)
        : ObjectProperty(root_, node_, readOnly_) {}
};

} // namespace sorvane::arf

#endif
