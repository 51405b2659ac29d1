#include "sorvane/arf/animation/data/AnimationValueNotFound.h"

namespace sorvane::arf {

AnimationValueNotFound::AnimationValueNotFound(const AnimationLocation& location_)
    : RuntimeException(std::string()), location(location_) {}

const char* AnimationValueNotFound::what() const noexcept {
    if (!built) {
        try {
            const_cast<AnimationValueNotFound*>(this)->message = "Value not found at " + location.desc();
        } catch (...) {
            return "Failed to build exception message";
        }
        built = true;
    }
    return message.c_str();
}

} // namespace sorvane::arf
