#include "sorvane/arf/animation/data/AnimationInput.h"

#include <ostream>

#include "sorvane/core/RuntimeException.h"

namespace sorvane::arf {

AnimationInput::~AnimationInput() = default;
AnimationWeightInput::~AnimationWeightInput() = default;
AnimationVector3Input::~AnimationVector3Input() = default;
AnimationQuaternionInput::~AnimationQuaternionInput() = default;
AnimationTransformInput::~AnimationTransformInput() = default;

std::shared_ptr<AnimationInput> AnimationInput::create(AnimationValueType type, const std::string& name) {
    switch (type) {
    case ANIMATION_VALUE_WEIGHT: return std::make_shared<AnimationWeightInput>(name);
    case ANIMATION_VALUE_VECTOR3: return std::make_shared<AnimationVector3Input>(name);
    case ANIMATION_VALUE_QUATERNION: return std::make_shared<AnimationQuaternionInput>(name);
    case ANIMATION_VALUE_TRANSFORM: return std::make_shared<AnimationTransformInput>(name);
    default: SORVANE_THROW("Invalid or unsupported value type");
    }
}

std::shared_ptr<AnimationValue> AnimationWeightInput::createValue() const { return std::make_shared<AnimationWeight>(); }
std::shared_ptr<AnimationValue> AnimationVector3Input::createValue() const {
    return std::make_shared<AnimationVector3>();
}
std::shared_ptr<AnimationValue> AnimationQuaternionInput::createValue() const {
    return std::make_shared<AnimationQuaternion>();
}
std::shared_ptr<AnimationValue> AnimationTransformInput::createValue() const {
    return std::make_shared<AnimationTransform>();
}

std::ostream& operator<<(std::ostream& out, const AnimationInput& input) {
    out << input.name;
    if (input.location.type != ANIMATION_LOCATION_INVALID) out << ": " << input.location;
    return out;
}

} // namespace sorvane::arf
