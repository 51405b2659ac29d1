#include "sorvane/arf/animation/data/AnimationOperator.h"

#include <cstring>

#include "sorvane/core/RuntimeException.h"

namespace sorvane::arf {

const char* animationOperatorType2string(AnimationOperatorType type) {
    switch (type) {
    case ANIMATION_OPERATOR_BYPASS: return "Bypass";
    case ANIMATION_OPERATOR_MUL: return "Mul";
    case ANIMATION_OPERATOR_TRANSLATION: return "Translation";
    case ANIMATION_OPERATOR_ROTATION: return "Rotation";
    case ANIMATION_OPERATOR_SCALE: return "Scale";
    case ANIMATION_OPERATOR_TRANSFORM: return "Transform";
    case ANIMATION_OPERATOR_CHANNEL: return "Channel";
    case ANIMATION_OPERATOR_QUEUE: return "Queue";
    default: return "Invalid";
    }
}

const char* animationChannelPath2string(AnimationChannelPath path) {
    switch (path) {
    case ANIMATION_CHANNEL_BLENDSHAPE: return "Blendshape";
    case ANIMATION_CHANNEL_TRANSFORM: return "Transform";
    case ANIMATION_CHANNEL_ROTATION: return "Rotation";
    case ANIMATION_CHANNEL_TRANSLATION: return "Translation";
    case ANIMATION_CHANNEL_SCALE: return "Scale";
    default: return "Invalid";
    }
}

void bicubic_spline(float* out, long count, const float* p0, const float* m0, const float* p1, const float* m1,
                    float dt, float duration) {
    const float s = dt / duration;
    const float s2 = s * s;
    const float s3 = s * s2;
    const float h00 = 2 * s3 - 3 * s2 + 1;
    const float h10 = s3 - 2 * s2 + s;
    const float h01 = 3 * s2 - 2 * s3;
    const float h11 = s3 - s2;
    for (long k = 0; k < count; ++k)
        out[k] = m0[k] * h10 * duration + p0[k] * h00 + p1[k] * h01 + m1[k] * h11 * duration;
}

AnimationOperator::~AnimationOperator() = default;
AnimationValueOperator::~AnimationValueOperator() = default;
AnimationBypassOperator::~AnimationBypassOperator() = default;
AnimationMulOperator::~AnimationMulOperator() = default;
AnimationTransformOperator::~AnimationTransformOperator() = default;
AnimationChannelOperator::~AnimationChannelOperator() = default;
AnimationQueueOperator::~AnimationQueueOperator() = default;

DataTree AnimationValueOperator::buildDescription() const {
    DataTree d = DataTree::createObject();
    d.setItem("type", DataTree::createString(animationOperatorType2string(getType())));
    d.setItem("location", DataTree::createString(location.desc()));
    d.setItem("merge", DataTree::createString(animationMergeType2string(mergeType)));
    return d;
}

void AnimationBypassOperator::run(AnimationValue& target, const AnimationData& data) const {
    target.merge(*data.getValue(location), mergeType);
}

void AnimationMulOperator::run(AnimationValue& target, const AnimationData& data) const {
    auto copy = data.getValue(location)->clone();
    copy->mul(weight);
    target.merge(*copy, mergeType);
}

DataTree AnimationMulOperator::buildDescription() const {
    DataTree d = AnimationValueOperator::buildDescription();
    d.setItem("weight", DataTree::createFloat(weight));
    return d;
}

AnimationTransformOperator::AnimationTransformOperator(const std::vector<float>& matrix, AnimationMergeType mergeType_)
    : AnimationValueOperator(AnimationLocation(), mergeType_) {
    if (matrix.size() != 16) SORVANE_THROW("Invalid transform size %ld", static_cast<long>(matrix.size()));
    std::memcpy(value.data(), matrix.data(), 64);
}

void AnimationTransformOperator::run(AnimationValue& target, const AnimationData&) const {
    target.merge(value, mergeType);
}

DataTree AnimationTransformOperator::buildDescription() const {
    DataTree d = AnimationValueOperator::buildDescription();
    d.setItem("transform", DataTree::createArray(value.data(), 16, ScalarType::Float));
    return d;
}

AnimationChannelOperator::AnimationChannelOperator(const AnimationLocation& location_,
                                                   const std::vector<float>& inputs_,
                                                   const std::vector<float>& outputs_,
                                                   const std::string& interpolation_, AnimationMergeType mergeType_)
    : AnimationValueOperator(location_, mergeType_), inputs(inputs_), outputs(outputs_), interpolation(interpolation_) {}

void AnimationChannelOperator::init(const std::string& pathText) {
    inputCount = static_cast<long>(inputs.size());
    if (inputCount < 2) SORVANE_THROW("Not enough data");
    const long outputCount = static_cast<long>(outputs.size());
    sampleSize = outputCount / inputCount;
    if (outputCount % inputCount != 0) SORVANE_THROW("Output value count must divide input value count");
    if (interpolation == "INTERPOLATION_CUBICSPLINE") {
        if (sampleSize % 3 != 0)
            SORVANE_THROW("Output value count (%ld) must divide 3 * (input value count = %ld)", outputCount,
                          inputCount);
        sampleSize /= 3;
        cubic = true;
    } else if (interpolation != "INTERPOLATION_LINEAR") {
        SORVANE_THROW("Invalid or unsupported interpolation %s", interpolation.c_str());
    }
    for (long i = 1; i < inputCount; ++i)
        if (inputs[static_cast<size_t>(i)] < inputs[static_cast<size_t>(i - 1)])
            SORVANE_THROW("Input values must be in increasing order");
    minWeight = inputs.front();
    maxWeight = inputs.back();

    path = ANIMATION_CHANNEL_INVALID;
    valueType = ANIMATION_VALUE_INVALID;
    if (pathText.empty()) return;
    if (pathText == "CHANNEL_BLENDSHAPE") {
        if (sampleSize != 1) SORVANE_THROW("Invalid sample size %ld for a weight", sampleSize);
        path = ANIMATION_CHANNEL_BLENDSHAPE;
        valueType = ANIMATION_VALUE_WEIGHT;
    } else if (pathText == "CHANNEL_JOINT") {
        if (sampleSize != 16) SORVANE_THROW("Invalid sample size %ld for a transform", sampleSize);
        path = ANIMATION_CHANNEL_TRANSFORM;
        valueType = ANIMATION_VALUE_TRANSFORM;
    } else if (pathText == "CHANNEL_JOINT_ROTATION") {
        if (sampleSize != 3 && sampleSize != 4) SORVANE_THROW("Invalid sample size %ld for a rotation", sampleSize);
        path = ANIMATION_CHANNEL_ROTATION;
        valueType = sampleSize == 3 ? ANIMATION_VALUE_VECTOR3 : ANIMATION_VALUE_QUATERNION;
    } else if (pathText == "CHANNEL_JOINT_TRANSLATION") {
        if (sampleSize != 3) SORVANE_THROW("Invalid sample size %ld for a translation", sampleSize);
        path = ANIMATION_CHANNEL_TRANSLATION;
        valueType = ANIMATION_VALUE_VECTOR3;
    } else if (pathText == "CHANNEL_JOINT_SCALE") {
        if (sampleSize != 3) SORVANE_THROW("Invalid sample size %ld for a scale", sampleSize);
        path = ANIMATION_CHANNEL_SCALE;
        valueType = ANIMATION_VALUE_VECTOR3;
    } else {
        SORVANE_THROW("Invalid or unsupported path '%s'", pathText.c_str());
    }
}

void AnimationChannelOperator::computeSample(float* out, long outSize, float t) const {
    if (t < minWeight || t > maxWeight)
        SORVANE_THROW("Invalid time %f not in range [%f, %f]", static_cast<double>(t), static_cast<double>(minWeight),
                      static_cast<double>(maxWeight));
    if (outSize != sampleSize) SORVANE_THROW("Invalid output size %ld != %ld", outSize, sampleSize);
    if (inputCount < 2) return; // not initialised: nothing to sample
    long j = 1;
    while (j < inputCount - 1 && !(inputs[static_cast<size_t>(j)] > t)) ++j;
    const long i = j - 1;
    const float t0 = inputs[static_cast<size_t>(i)];
    const float t1 = inputs[static_cast<size_t>(j)];
    const long n = sampleSize;
    if (!cubic) {
        const float f = (t - t0) / (t1 - t0);
        const float* a = outputs.data() + i * n;
        const float* b = outputs.data() + j * n;
        for (long k = 0; k < n; ++k) out[k] = b[k] * f + a[k] * (1 - f);
        return;
    }
    const float* base = outputs.data() + 3 * i * n;
    bicubic_spline(out, n, base + n, base + 2 * n, base + 4 * n, base + 3 * n, t - t0, t1 - t0);
}

void AnimationChannelOperator::run(AnimationValue& target, const AnimationData& data) const {
    auto input = data.getValue(location);
    if (input->getType() != ANIMATION_VALUE_WEIGHT) SORVANE_THROW("Invalid or unsuppported value type");
    const float t = input->data()[0];
    auto copy = target.clone();
    if (valueType == ANIMATION_VALUE_INVALID || valueType == copy->getType()) {
        computeSample(copy->data(), copy->dataCount(), t);
    } else {
        auto* transform = dynamic_cast<AnimationTransform*>(copy.get());
        if (!transform) SORVANE_THROW("Invalid or unsuppported channel path");
        float v[4];
        if (valueType == ANIMATION_VALUE_VECTOR3) {
            computeSample(v, 3, t);
            if (path == ANIMATION_CHANNEL_TRANSLATION)
                transform->setMatrixFromTranslation(v);
            else if (path == ANIMATION_CHANNEL_SCALE)
                transform->setMatrixFromScale(v);
            else if (path == ANIMATION_CHANNEL_ROTATION)
                transform->setMatrixFromEuler(v);
            else
                SORVANE_THROW("Invalid or unsuppported channel path");
        } else if (valueType == ANIMATION_VALUE_QUATERNION) {
            computeSample(v, 4, t);
            transform->setMatrixFromQuaternion(v);
        } else {
            SORVANE_THROW("Invalid or unsuppported channel path");
        }
    }
    target.merge(*copy, mergeType);
}

DataTree AnimationChannelOperator::buildDescription() const {
    DataTree d = AnimationValueOperator::buildDescription();
    d.setItem("inputCount", DataTree::createInteger(inputCount));
    d.setItem("sampleSize", DataTree::createInteger(sampleSize));
    d.setItem("minWeight", DataTree::createFloat(minWeight));
    d.setItem("maxWeight", DataTree::createFloat(maxWeight));
    d.setItem("interpolation", DataTree::createString(interpolation));
    d.setItem("path", DataTree::createString(animationChannelPath2string(path)));
    d.setItem("valueType", DataTree::createString(animationValueType2string(valueType)));
    return d;
}

void AnimationQueueOperator::run(AnimationValue& target, const AnimationData& data) const {
    for (const auto& op : operators) op.run(target, data);
}

DataTree AnimationQueueOperator::buildDescription() const {
    DataTree d = DataTree::createObject();
    d.setItem("type", DataTree::createString("queue"));
    d.setItem("firstMerge", DataTree::createString(animationMergeType2string(firstMerge)));
    DataTree list = DataTree::createList();
    for (const auto& op : operators) list.addItem(op.buildDescription());
    d.setItem("operators", list);
    return d;
}

AnimationOperator& AnimationOperatorRef::requireOperatorRef() const {
    if (!op) throw RuntimeException(__FILE__, __LINE__, "requireOperatorRef", "animation operator is NULL");
    return *op;
}

AnimationChannelOperatorRef::AnimationChannelOperatorRef(const AnimationLocation& location,
                                                         const std::vector<float>& inputs,
                                                         const std::vector<float>& outputs,
                                                         const std::string& interpolation, const std::string& path,
                                                         AnimationMergeType merge) {
    auto channel = std::make_shared<AnimationChannelOperator>(location, inputs, outputs, interpolation, merge);
    channel->init(path);
    op = std::move(channel);
}

void AnimationQueueOperatorRef::add(const AnimationOperatorRef& item) const {
    AnimationQueueOperator& queue = checked();
    if (!item) throw RuntimeException(__FILE__, __LINE__, "requireOperatorRef", "animation operator is NULL");
    if (queue.operators.empty() && queue.firstMerge != ANIMATION_MERGE_INVALID) item.setMergeType(queue.firstMerge);
    queue.operators.push_back(item);
}

} // namespace sorvane::arf
