#ifndef SORVANE_GLTF2_PROPERTY_ANIMATION_MIXER_TRANSFORM_H
#define SORVANE_GLTF2_PROPERTY_ANIMATION_MIXER_TRANSFORM_H

#include <optional>
#include <ostream>
#include <string>

#include "sorvane/core/Export.h"
#include "sorvane/gltf2/node/animation/AnimationProcessor.h"
#include "sorvane/gltf2/property/animation/mixer/TransformData.h"

namespace sorvane::gltf2 {

// One sampled track acting on one part of a node's state. `time` belongs to
// the caller and is read at every apply, so transforms sharing it follow it.
class SORVANE_API Transform {
public:
    std::string animationName;
    const float* time = nullptr;
    std::optional<RangeConverter> rangeConverter;
    AnimationProcessor processor;
    TransformPolicy policy = TransformPolicy::Replace;

    virtual const char* name() const = 0;
    virtual void apply(TransformData& data) const = 0;
    virtual ~Transform();

protected:
    // The sample at the caller's time, through the converter when there is one.
    void sample(float* out, long outSize) const;
    // `data[i]` op `s[i]` for Replace, Add and Multiply.
    void combine(float* data, const float* s, long count) const;
};

class SORVANE_API MatrixTransform : public Transform {
public:
    const char* name() const override { return "MatrixTransform"; }
    void apply(TransformData& data) const override;
};

class SORVANE_API ScaleTransform : public Transform {
public:
    const char* name() const override { return "ScaleTransform"; }
    void apply(TransformData& data) const override;
};

class SORVANE_API RotationTransform : public Transform {
public:
    const char* name() const override { return "RotationTransform"; }
    void apply(TransformData& data) const override;
};

class SORVANE_API TranslationTransform : public Transform {
public:
    const char* name() const override { return "TranslationTransform"; }
    void apply(TransformData& data) const override;
};

// Its count is the processor's valueSize, fixed on the first apply.
class SORVANE_API WeightsTransform : public Transform {
public:
    const char* name() const override { return "WeightsTransform"; }
    void apply(TransformData& data) const override;
};

SORVANE_API std::ostream& operator<<(std::ostream& out, const Transform& transform);

} // namespace sorvane::gltf2

#endif
