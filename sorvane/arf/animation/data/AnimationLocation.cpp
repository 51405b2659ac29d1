#include "sorvane/arf/animation/data/AnimationLocation.h"

#include <cstdio>
#include <ostream>

#include "sorvane/arf/Arf.h"

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

bool AnimationLocation::existsIn(const Arf& arf) const {
    (void)arf;
    return false;
}

} // namespace sorvane::arf
