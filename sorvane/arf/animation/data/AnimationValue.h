#ifndef SORVANE_ARF_ANIMATION_DATA_ANIMATIONVALUE_H
#define SORVANE_ARF_ANIMATION_DATA_ANIMATIONVALUE_H

#include <cstdint>
#include <iosfwd>
#include <memory>

#include "sorvane/core/Export.h"

namespace sorvane::arf {

enum AnimationValueType : int32_t {
    ANIMATION_VALUE_INVALID = 0,
    ANIMATION_VALUE_WEIGHT = 1,
    ANIMATION_VALUE_VECTOR3 = 2,
    ANIMATION_VALUE_QUATERNION = 3,
    ANIMATION_VALUE_TRANSFORM = 4,
};

enum AnimationMergeType : int32_t {
    ANIMATION_MERGE_INVALID = 0,
    ANIMATION_MERGE_REPLACE = 1,
    ANIMATION_MERGE_SUM = 2,
    ANIMATION_MERGE_MUL = 3,
};

SORVANE_API const char* animationValueType2string(AnimationValueType type);
SORVANE_API const char* animationMergeType2string(AnimationMergeType type);

// A typed run of floats: one weight, a three-vector, a quaternion (x, y, z, w)
// or a row-major 4 by 4 matrix. The floats live inside the value, or, for a
// value that belongs to a frame, in the frame's one block (see AnimationData),
// so that a whole frame is read and written with one copy.
class SORVANE_API AnimationValue {
public:
    AnimationValue(const AnimationValue&) = delete;
    AnimationValue& operator=(const AnimationValue&) = delete;
    virtual ~AnimationValue();

    virtual AnimationValueType getType() const { return type; }
    virtual void desc(std::ostream& out) const;
    virtual long dataCount() const { return count; }
    virtual float* data() { return values; }
    virtual const float* data() const { return values; }
    virtual std::shared_ptr<AnimationValue> clone() const = 0;
    virtual void merge(const AnimationValue& other, AnimationMergeType mergeType);
    virtual void mul(float factor);

    // Moves the floats to `at`, inside a block that `keep` keeps alive, and
    // reads and writes them there from now on. Used by frames to lay their
    // values out contiguously; `at` must hold dataCount() floats.
    void bindStorage(float* at, std::shared_ptr<const void> keep);

protected:
    AnimationValue(AnimationValueType type, long count);
    // Shared by the derived clone(): copies the floats of `from`.
    void copyFrom(const AnimationValue& from);

private:
    static constexpr long kInline = 16;

    AnimationValueType type;
    long count;
    float* values;
    float local[kInline] = {};
    std::shared_ptr<const void> block;
};

SORVANE_API std::ostream& operator<<(std::ostream& out, const AnimationValue& value);

class SORVANE_API AnimationWeight : public AnimationValue {
public:
    AnimationWeight();
    explicit AnimationWeight(float weight);
    ~AnimationWeight() override;
    std::shared_ptr<AnimationValue> clone() const override;
};

class SORVANE_API AnimationVector3 : public AnimationValue {
public:
    AnimationVector3();
    ~AnimationVector3() override;
    std::shared_ptr<AnimationValue> clone() const override;
};

class SORVANE_API AnimationQuaternion : public AnimationValue {
public:
    AnimationQuaternion();
    ~AnimationQuaternion() override;
    std::shared_ptr<AnimationValue> clone() const override;
};

// A row-major matrix. Starts as the zero matrix: write it before reading it.
class SORVANE_API AnimationTransform : public AnimationValue {
public:
    AnimationTransform();
    ~AnimationTransform() override;
    void desc(std::ostream& out) const override;
    std::shared_ptr<AnimationValue> clone() const override;
    // "Mul" is the matrix product with the other on the left: this = other * this.
    void merge(const AnimationValue& other, AnimationMergeType mergeType) override;

    void setMatrixFromQuaternion(const float* q);
    // Through the quaternion of order "XYZ", which gives Rz * Ry * Rx.
    void setMatrixFromEuler(const float* euler);
    void setMatrixFromTranslation(const float* t);
    void setMatrixFromScale(const float* s);
};

} // namespace sorvane::arf

#endif
