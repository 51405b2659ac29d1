#include "sorvane/arf/property/preamble/SupportedAnimationsLookup.h"

namespace sorvane::arf {

namespace {

long indexIn(const std::vector<std::string>& urns, const std::string& urn) {
    for (size_t i = 0; i < urns.size(); ++i)
        if (urns[i] == urn) return static_cast<long>(i);
    return -1;
}

} // namespace

long SupportedAnimationsLookup::findFrameworkId(const SupportedAnimationsNode& node, const std::string& type,
                                                const std::string& urn) {
    if (type == "ANIMATION_FACE") return node.hasFaceAnimations() ? indexIn(node.getFaceAnimations(), urn) : -1;
    if (type == "ANIMATION_BODY") return node.hasBodyAnimations() ? indexIn(node.getBodyAnimations(), urn) : -1;
    if (type == "ANIMATION_HAND") return node.hasHandAnimations() ? indexIn(node.getHandAnimations(), urn) : -1;
    if (type == "ANIMATION_LANDMARK")
        return node.hasLandmarkAnimations() ? indexIn(node.getLandmarkAnimations(), urn) : -1;
    if (type == "ANIMATION_TEXTURE")
        return node.hasTextureAnimations() ? indexIn(node.getTextureAnimations(), urn) : -1;
    return -1;
}

} // namespace sorvane::arf
