#ifndef SORVANE_ARF_ANIMATION_DATA_ANIMATIONINPUT_H
#define SORVANE_ARF_ANIMATION_DATA_ANIMATIONINPUT_H

#include <iosfwd>
#include <memory>
#include <string>

#include "sorvane/arf/animation/data/AnimationLocation.h"
#include "sorvane/arf/animation/data/AnimationValue.h"

namespace sorvane::arf {

// One declared source of values, filed by a framework under its location.
class SORVANE_API AnimationInput {
public:
    virtual ~AnimationInput();
    virtual AnimationValueType getValueType() const = 0;
    virtual std::shared_ptr<AnimationValue> createValue() const = 0;

    // One of the four kinds; anything else: "Invalid or unsupported value type".
    static std::shared_ptr<AnimationInput> create(AnimationValueType type, const std::string& name);

    std::string name;
    AnimationLocation location;

protected:
    explicit AnimationInput(const std::string& name_) : name(name_) {}
};

SORVANE_API std::ostream& operator<<(std::ostream& out, const AnimationInput& input);

class SORVANE_API AnimationWeightInput : public AnimationInput {
public:
    explicit AnimationWeightInput(const std::string& name) : AnimationInput(name) {}
    AnimationWeightInput(const std::string& name, float min_, float max_) : AnimationInput(name), min(min_), max(max_) {}
    ~AnimationWeightInput() override;
    AnimationValueType getValueType() const override { return ANIMATION_VALUE_WEIGHT; }
    std::shared_ptr<AnimationValue> createValue() const override;

    float min = 0.0f;
    float max = 1.0f;
};

class SORVANE_API AnimationVector3Input : public AnimationInput {
public:
    explicit AnimationVector3Input(const std::string& name) : AnimationInput(name) {}
    ~AnimationVector3Input() override;
    AnimationValueType getValueType() const override { return ANIMATION_VALUE_VECTOR3; }
    std::shared_ptr<AnimationValue> createValue() const override;
};

class SORVANE_API AnimationQuaternionInput : public AnimationInput {
public:
    explicit AnimationQuaternionInput(const std::string& name) : AnimationInput(name) {}
    ~AnimationQuaternionInput() override;
    AnimationValueType getValueType() const override { return ANIMATION_VALUE_QUATERNION; }
    std::shared_ptr<AnimationValue> createValue() const override;
};

class SORVANE_API AnimationTransformInput : public AnimationInput {
public:
    explicit AnimationTransformInput(const std::string& name) : AnimationInput(name) {}
    ~AnimationTransformInput() override;
    AnimationValueType getValueType() const override { return ANIMATION_VALUE_TRANSFORM; }
    std::shared_ptr<AnimationValue> createValue() const override;
};

} // namespace sorvane::arf

#endif
