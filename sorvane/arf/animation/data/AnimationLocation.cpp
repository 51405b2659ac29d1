#include "sorvane/arf/animation/data/AnimationLocation.h"

#include <cstdio>
#include <ostream>

#include "sorvane/arf/Arf.h"
#include "sorvane/arf/node/components/BlendshapeSetNodes.h"
#include "sorvane/arf/node/components/SkeletonNodes.h"
#include "sorvane/arf/node/components/TextureSetNodes.h"

namespace sorvane::arf {

const char* animationLocationType2string(AnimationLocationType type) {
    switch (type) {
    case ANIMATION_LOCATION_STREAM: return "Stream";
    case ANIMATION_LOCATION_BLENDSHAPE_SET: return "BlendshapeSet";
    case ANIMATION_LOCATION_SKELETON: return "Skeleton";
    case ANIMATION_LOCATION_LANDMARK_SET: return "LandmarkSet";
    case ANIMATION_LOCATION_TEXTURE_SET: return "TextureSet";
    default: return "Invalid";
    }
}

std::string AnimationLocation::desc() const {
    std::string text = type > ANIMATION_LOCATION_TEXTURE_SET ? "?" : animationLocationType2string(type);
    char buffer[32];
    if (id >= 0) {
        std::snprintf(buffer, sizeof buffer, "[%03ld]", id);
        text += buffer;
    }
    if (index >= 0) {
        std::snprintf(buffer, sizeof buffer, "(%03ld)", index);
        text += buffer;
    }
    return text;
}

std::ostream& operator<<(std::ostream& out, const AnimationLocation& location) { return out << location.desc(); }

namespace {

// The set with that id in a list of sets, or null.
template <class List>
auto findSet(const std::shared_ptr<List>& list, long id) -> decltype(list->get(id).get()) {
    if (!list || list->findNodeItemIndexById(id) < 0) return nullptr;
    return list->get(id).get();
}

} // namespace

bool AnimationLocation::existsIn(const Arf& arf) const {
    const auto& root = arf.getRoot();
    const auto components = root ? root->getComponents() : nullptr;
    if (!components) return false;
    switch (type) {
    case ANIMATION_LOCATION_SKELETON: {
        const auto* skeleton = components->hasSkeletons() ? findSet(components->getSkeletons(), id) : nullptr;
        const auto& joints = skeleton ? skeleton->getJoints() : nullptr;
        return joints && joints->hasNodeItem(index);
    }
    case ANIMATION_LOCATION_BLENDSHAPE_SET: {
        const auto* set = components->hasBlendshapeSets() ? findSet(components->getBlendshapeSets(), id) : nullptr;
        const auto& shapes = set ? set->getShapes() : nullptr;
        return shapes && shapes->findNodeItemIndexById(index) >= 0;
    }
    case ANIMATION_LOCATION_TEXTURE_SET: {
        const auto* set = components->hasTextureSets() ? findSet(components->getTextureSets(), id) : nullptr;
        const auto& targets = set && set->hasTargets() ? set->getTargets() : nullptr;
        return targets && targets->findNodeItemIndexById(index) >= 0;
    }
    default: return false;
    }
}

} // namespace sorvane::arf
