#include "sorvane/arf/animation/data/AnimationValue.h"

#include <cstring>
#include <ostream>

#include "sorvane/core/RuntimeException.h"
#include "sorvane/core/math.h"

namespace sorvane::arf {

const char* animationValueType2string(AnimationValueType type) {
    switch (type) {
    case ANIMATION_VALUE_WEIGHT: return "Weight";
    case ANIMATION_VALUE_VECTOR3: return "Vector3";
    case ANIMATION_VALUE_QUATERNION: return "Quaternion";
    case ANIMATION_VALUE_TRANSFORM: return "Transform";
    default: return "Invalid";
    }
}

const char* animationMergeType2string(AnimationMergeType type) {
    switch (type) {
    case ANIMATION_MERGE_REPLACE: return "Replace";
    case ANIMATION_MERGE_SUM: return "Sum";
    case ANIMATION_MERGE_MUL: return "Mul";
    default: return "Invalid";
    }
}

AnimationValue::AnimationValue(AnimationValueType type_, long count_) : type(type_), count(count_), values(local) {}

AnimationValue::~AnimationValue() = default;

void AnimationValue::copyFrom(const AnimationValue& from) {
    std::memcpy(values, from.data(), static_cast<size_t>(count) * sizeof(float));
}

void AnimationValue::bindStorage(float* at, std::shared_ptr<const void> keep) {
    std::memmove(at, values, static_cast<size_t>(count) * sizeof(float));
    values = at;
    block = std::move(keep);
}

void AnimationValue::desc(std::ostream& out) const {
    const float* v = data();
    for (long i = 0; i < dataCount(); ++i) out << (i ? "," : "") << v[i];
}

std::ostream& operator<<(std::ostream& out, const AnimationValue& value) {
    value.desc(out);
    return out;
}

void AnimationValue::merge(const AnimationValue& other, AnimationMergeType mergeType) {
    const long n = dataCount();
    if (n != other.dataCount()) SORVANE_THROW("Different value sizes %ld != %ld", n, other.dataCount());
    float* a = data();
    const float* b = other.data();
    switch (mergeType) {
    case ANIMATION_MERGE_REPLACE:
        std::memmove(a, b, static_cast<size_t>(n) * sizeof(float));
        break;
    case ANIMATION_MERGE_SUM:
        for (long i = 0; i < n; ++i) a[i] += b[i];
        break;
    case ANIMATION_MERGE_MUL:
        for (long i = 0; i < n; ++i) a[i] *= b[i];
        break;
    default: SORVANE_THROW("Invalid or unsupported merge type");
    }
}

void AnimationValue::mul(float factor) {
    float* a = data();
    for (long i = 0; i < dataCount(); ++i) a[i] *= factor;
}

AnimationWeight::AnimationWeight() : AnimationValue(ANIMATION_VALUE_WEIGHT, 1) {}
AnimationWeight::AnimationWeight(float weight) : AnimationValue(ANIMATION_VALUE_WEIGHT, 1) { data()[0] = weight; }
AnimationWeight::~AnimationWeight() = default;
std::shared_ptr<AnimationValue> AnimationWeight::clone() const {
    auto copy = std::make_shared<AnimationWeight>();
    copy->copyFrom(*this);
    return copy;
}

AnimationVector3::AnimationVector3() : AnimationValue(ANIMATION_VALUE_VECTOR3, 3) {}
AnimationVector3::~AnimationVector3() = default;
std::shared_ptr<AnimationValue> AnimationVector3::clone() const {
    auto copy = std::make_shared<AnimationVector3>();
    copy->copyFrom(*this);
    return copy;
}

AnimationQuaternion::AnimationQuaternion() : AnimationValue(ANIMATION_VALUE_QUATERNION, 4) { data()[3] = 1.0f; }
AnimationQuaternion::~AnimationQuaternion() = default;
std::shared_ptr<AnimationValue> AnimationQuaternion::clone() const {
    auto copy = std::make_shared<AnimationQuaternion>();
    copy->copyFrom(*this);
    return copy;
}

AnimationTransform::AnimationTransform() : AnimationValue(ANIMATION_VALUE_TRANSFORM, 16) {}
AnimationTransform::~AnimationTransform() = default;
std::shared_ptr<AnimationValue> AnimationTransform::clone() const {
    auto copy = std::make_shared<AnimationTransform>();
    copy->copyFrom(*this);
    return copy;
}

void AnimationTransform::desc(std::ostream& out) const {
    const float* m = data();
    for (int r = 0; r < 4; ++r) {
        if (r) out << "\n";
        out << "[ ";
        for (int c = 0; c < 4; ++c) out << m[r * 4 + c] << " ";
        out << "]";
    }
}

void AnimationTransform::merge(const AnimationValue& other, AnimationMergeType mergeType) {
    if (dataCount() != other.dataCount())
        SORVANE_THROW("Different value sizes %ld != %ld", dataCount(), other.dataCount());
    if (mergeType == ANIMATION_MERGE_MUL) {
        matrix4x4_lmul_float(data(), other.data(), MATRIX4X4_ROW_MAJOR);
        return;
    }
    AnimationValue::merge(other, mergeType);
}

void AnimationTransform::setMatrixFromQuaternion(const float* q) {
    quaternion2matrix4x4_float(data(), q, MATRIX4X4_ROW_MAJOR);
}

void AnimationTransform::setMatrixFromEuler(const float* euler) {
    float q[4];
    euler2quaternion_float(q, euler, "XYZ");
    quaternion2matrix4x4_float(data(), q, MATRIX4X4_ROW_MAJOR);
}

void AnimationTransform::setMatrixFromTranslation(const float* t) {
    translation2matrix4x4_float(data(), t, MATRIX4X4_ROW_MAJOR);
}

void AnimationTransform::setMatrixFromScale(const float* s) { scale2matrix4x4_float(data(), s); }

} // namespace sorvane::arf
