#ifndef SORVANE_ARF_ANIMATION_STREAM_BLENDSHAPEANIMATIONSAMPLE_H
#define SORVANE_ARF_ANIMATION_STREAM_BLENDSHAPEANIMATIONSAMPLE_H

#include <vector>

#include "sorvane/arf/animation/stream/UnitAnimationSample.h"

namespace sorvane::arf {

// Blendshape weights of one set, with optional confidences.
class SORVANE_API BlendshapeAnimationSample : public UnitAnimationSample {
public:
    struct Blendshape {
        long id = -1;
        float weight = 0.0f;
        float confidence = 0.0f;
    };

    AnimationUnitType type() const override { return ANIMATION_UNIT_BLENDSHAPE; }
    void encode(BitBuffer& buffer) const override;
    void decode(BitBuffer& buffer) override;

    long getSetId() const { return setId; }
    void setSetId(long value) { setId = value; }
    bool getConfidencePresent() const { return confidencePresent; }
    void setConfidencePresent(bool value) { confidencePresent = value; }

    long getBlendshapeCount() const { return static_cast<long>(blendshapes.size()); }
    void setBlendshapeCount(long count);
    long getBlendshapeId(long index) const;
    void setBlendshapeId(long index, long id);
    float getBlendshapeWeight(long index) const;
    void setBlendshapeWeight(long index, float weight);
    float getBlendshapeConfidence(long index) const;
    void setBlendshapeConfidence(long index, float confidence);

    std::vector<Blendshape>& getBlendshapes() { return blendshapes; }
    const std::vector<Blendshape>& getBlendshapes() const { return blendshapes; }

private:
    long setId = -1;
    bool confidencePresent = false;
    std::vector<Blendshape> blendshapes;
};

} // namespace sorvane::arf

#endif
