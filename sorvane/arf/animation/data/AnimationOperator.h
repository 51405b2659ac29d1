#ifndef SORVANE_ARF_ANIMATION_DATA_ANIMATIONOPERATOR_H
#define SORVANE_ARF_ANIMATION_DATA_ANIMATIONOPERATOR_H

#include <memory>
#include <string>
#include <vector>

#include "sorvane/arf/animation/data/AnimationData.h"
#include "sorvane/arf/animation/data/AnimationLocation.h"
#include "sorvane/arf/animation/data/AnimationValue.h"
#include "sorvane/datatree/DataTree.h"

namespace sorvane::arf {

enum AnimationOperatorType : int32_t {
    ANIMATION_OPERATOR_INVALID = 0,
    ANIMATION_OPERATOR_BYPASS = 1,
    ANIMATION_OPERATOR_MUL = 2,
    ANIMATION_OPERATOR_TRANSLATION = 3, // reserved
    ANIMATION_OPERATOR_ROTATION = 4,    // reserved
    ANIMATION_OPERATOR_SCALE = 5,       // reserved
    ANIMATION_OPERATOR_TRANSFORM = 6,
    ANIMATION_OPERATOR_CHANNEL = 7,
    ANIMATION_OPERATOR_QUEUE = 8,
};

enum AnimationChannelPath : int32_t {
    ANIMATION_CHANNEL_INVALID = 0,
    ANIMATION_CHANNEL_BLENDSHAPE = 1,
    ANIMATION_CHANNEL_TRANSFORM = 2,
    ANIMATION_CHANNEL_ROTATION = 3,
    ANIMATION_CHANNEL_TRANSLATION = 4,
    ANIMATION_CHANNEL_SCALE = 5,
};

SORVANE_API const char* animationOperatorType2string(AnimationOperatorType type);
SORVANE_API const char* animationChannelPath2string(AnimationChannelPath path);

// Cubic Hermite interpolation between p0 and p1 with tangents m0 and m1, at
// dt into a segment of the given duration.
SORVANE_API void bicubic_spline(float* out, long count, const float* p0, const float* m0, const float* p1,
                                const float* m1, float dt, float duration);

// One step of the mapping graph: reads a frame and merges into a target value.
class SORVANE_API AnimationOperator {
public:
    virtual ~AnimationOperator();
    virtual AnimationOperatorType getType() const = 0;
    virtual bool isAnimationValue() const { return false; }
    virtual void setMergeType(AnimationMergeType mergeType) = 0;
    virtual void run(AnimationValue& target, const AnimationData& data) const = 0;
    virtual DataTree buildDescription() const = 0;
};

// An operator that reads one value of the frame.
class SORVANE_API AnimationValueOperator : public AnimationOperator {
public:
    AnimationValueOperator(const AnimationLocation& location_, AnimationMergeType mergeType_)
        : location(location_), mergeType(mergeType_) {}
    ~AnimationValueOperator() override;
    bool isAnimationValue() const override { return true; }
    void setMergeType(AnimationMergeType value) override { mergeType = value; }
    DataTree buildDescription() const override;

    AnimationLocation location;
    AnimationMergeType mergeType;
};

class SORVANE_API AnimationBypassOperator : public AnimationValueOperator {
public:
    using AnimationValueOperator::AnimationValueOperator;
    ~AnimationBypassOperator() override;
    AnimationOperatorType getType() const override { return ANIMATION_OPERATOR_BYPASS; }
    void run(AnimationValue& target, const AnimationData& data) const override;
};

class SORVANE_API AnimationMulOperator : public AnimationValueOperator {
public:
    AnimationMulOperator(const AnimationLocation& location_, float weight_, AnimationMergeType mergeType_)
        : AnimationValueOperator(location_, mergeType_), weight(weight_) {}
    ~AnimationMulOperator() override;
    AnimationOperatorType getType() const override { return ANIMATION_OPERATOR_MUL; }
    void run(AnimationValue& target, const AnimationData& data) const override;
    DataTree buildDescription() const override;

    float weight;
};

// Merges a fixed matrix; reads nothing from the frame.
class SORVANE_API AnimationTransformOperator : public AnimationValueOperator {
public:
    AnimationTransformOperator(const std::vector<float>& matrix, AnimationMergeType mergeType_);
    ~AnimationTransformOperator() override;
    AnimationOperatorType getType() const override { return ANIMATION_OPERATOR_TRANSFORM; }
    void run(AnimationValue& target, const AnimationData& data) const override;
    DataTree buildDescription() const override;

    AnimationTransform value;
};

// A sampled curve from one weight of the frame to a value of the target.
class SORVANE_API AnimationChannelOperator : public AnimationValueOperator {
public:
    AnimationChannelOperator(const AnimationLocation& location_, const std::vector<float>& inputs_,
                             const std::vector<float>& outputs_, const std::string& interpolation_,
                             AnimationMergeType mergeType_);
    ~AnimationChannelOperator() override;
    AnimationOperatorType getType() const override { return ANIMATION_OPERATOR_CHANNEL; }
    // Checks the keys and derives the sample size and the value type of path.
    void init(const std::string& pathText);
    void run(AnimationValue& target, const AnimationData& data) const override;
    DataTree buildDescription() const override;
    // The curve at t into out (outSize floats, the sample size).
    void computeSample(float* out, long outSize, float t) const;

    long inputCount = 0;
    long sampleSize = 0;
    std::vector<float> inputs;
    std::vector<float> outputs;
    float minWeight = 0;
    float maxWeight = 0;
    std::string interpolation;
    AnimationChannelPath path = ANIMATION_CHANNEL_INVALID;
    AnimationValueType valueType = ANIMATION_VALUE_INVALID;

private:
    bool cubic = false;
};

class AnimationOperatorRef;

// Runs its operators in order on the same target.
class SORVANE_API AnimationQueueOperator : public AnimationOperator {
public:
    explicit AnimationQueueOperator(AnimationMergeType firstMerge_) : firstMerge(firstMerge_) {}
    ~AnimationQueueOperator() override;
    AnimationOperatorType getType() const override { return ANIMATION_OPERATOR_QUEUE; }
    void setMergeType(AnimationMergeType value) override { firstMerge = value; }
    void run(AnimationValue& target, const AnimationData& data) const override;
    DataTree buildDescription() const override;

    AnimationMergeType firstMerge;
    std::vector<AnimationOperatorRef> operators;
};

// The shared handle to any operator; an empty one fails with "animation
// operator is NULL".
class SORVANE_API AnimationOperatorRef {
public:
    AnimationOperatorRef() = default;
    AnimationOperatorRef(std::shared_ptr<AnimationOperator> op_) : op(std::move(op_)) {}

    AnimationOperatorType getType() const { return requireOperatorRef().getType(); }
    bool isAnimationValue() const { return requireOperatorRef().isAnimationValue(); }
    void setMergeType(AnimationMergeType mergeType) const { requireOperatorRef().setMergeType(mergeType); }
    void run(AnimationValue& target, const AnimationData& data) const { requireOperatorRef().run(target, data); }
    DataTree buildDescription() const { return requireOperatorRef().buildDescription(); }
    AnimationOperator* operator->() const { return &requireOperatorRef(); }
    const std::shared_ptr<AnimationOperator>& get() const { return op; }
    explicit operator bool() const { return static_cast<bool>(op); }

protected:
    AnimationOperator& requireOperatorRef() const;
    std::shared_ptr<AnimationOperator> op;
};

class SORVANE_API AnimationValueOperatorRef : public AnimationOperatorRef {
public:
    AnimationValueOperatorRef() = default;
    AnimationValueOperatorRef(std::shared_ptr<AnimationValueOperator> op_) : AnimationOperatorRef(std::move(op_)) {}
};

class SORVANE_API AnimationBypassOperatorRef : public AnimationValueOperatorRef {
public:
    AnimationBypassOperatorRef(const AnimationLocation& location, AnimationMergeType merge)
        : AnimationValueOperatorRef(std::make_shared<AnimationBypassOperator>(location, merge)) {}
};

class SORVANE_API AnimationMulOperatorRef : public AnimationValueOperatorRef {
public:
    AnimationMulOperatorRef(const AnimationLocation& location, float weight, AnimationMergeType merge)
        : AnimationValueOperatorRef(std::make_shared<AnimationMulOperator>(location, weight, merge)) {}
};

class SORVANE_API AnimationTransformOperatorRef : public AnimationValueOperatorRef {
public:
    AnimationTransformOperatorRef(const std::vector<float>& matrix, AnimationMergeType merge)
        : AnimationValueOperatorRef(std::make_shared<AnimationTransformOperator>(matrix, merge)) {}
};

class SORVANE_API AnimationChannelOperatorRef : public AnimationValueOperatorRef {
public:
    // Built and checked (init with the path text).
    AnimationChannelOperatorRef(const AnimationLocation& location, const std::vector<float>& inputs,
                                const std::vector<float>& outputs, const std::string& interpolation,
                                const std::string& path, AnimationMergeType merge);
    AnimationValueType getValueType() const { return channel().valueType; }
    AnimationChannelPath getPath() const { return channel().path; }
    void computeSample(float* out, long outSize, float t) const { channel().computeSample(out, outSize, t); }

private:
    AnimationChannelOperator& channel() const { return static_cast<AnimationChannelOperator&>(requireOperatorRef()); }
};

class SORVANE_API AnimationQueueOperatorRef : public AnimationOperatorRef {
public:
    explicit AnimationQueueOperatorRef(AnimationMergeType firstMerge)
        : AnimationOperatorRef(std::make_shared<AnimationQueueOperator>(firstMerge)) {}
    explicit AnimationQueueOperatorRef(std::shared_ptr<AnimationQueueOperator> queue)
        : AnimationOperatorRef(std::move(queue)) {}
    // The first operator added takes firstMerge (unless that is 0).
    void add(const AnimationOperatorRef& item) const;
    long getOperatorCount() const { return static_cast<long>(checked().operators.size()); }
    AnimationQueueOperator& checked() const { return static_cast<AnimationQueueOperator&>(requireOperatorRef()); }
};

} // namespace sorvane::arf

#endif
