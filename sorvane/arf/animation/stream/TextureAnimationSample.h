#ifndef SORVANE_ARF_ANIMATION_STREAM_TEXTUREANIMATIONSAMPLE_H
#define SORVANE_ARF_ANIMATION_STREAM_TEXTUREANIMATIONSAMPLE_H

#include <vector>

#include "sorvane/arf/animation/stream/UnitAnimationSample.h"

namespace sorvane::arf {

// Texture weights of one set, with optional confidences.
class SORVANE_API TextureAnimationSample : public UnitAnimationSample {
public:
    struct Texture {
        long id = -1;
        float weight = 0.0f;
        float confidence = 0.0f;
    };

    AnimationUnitType type() const override { return ANIMATION_UNIT_TEXTURE; }
    void encode(BitBuffer& buffer) const override;
    void decode(BitBuffer& buffer) override;

    long getSetId() const { return setId; }
    void setSetId(long value) { setId = value; }
    bool getConfidencePresent() const { return confidencePresent; }
    void setConfidencePresent(bool value) { confidencePresent = value; }

    long getTextureCount() const { return static_cast<long>(textures.size()); }
    void setTextureCount(long count);
    long getTextureId(long index) const;
    void setTextureId(long index, long id);
    float getTextureWeight(long index) const;
    void setTextureWeight(long index, float weight);
    float getTextureConfidence(long index) const;
    void setTextureConfidence(long index, float confidence);

    std::vector<Texture>& getTextures() { return textures; }
    const std::vector<Texture>& getTextures() const { return textures; }

private:
    long setId = -1;
    bool confidencePresent = false;
    std::vector<Texture> textures;
};

} // namespace sorvane::arf

#endif
