#include "sorvane/arf/animation/stream/TextureAnimationSample.h"

#include "sorvane/arf/animation/stream/StreamCodec.h"

namespace sorvane::arf {

// Body: the blendshape layout. Unlike blendshapes, the texture set id is
// checked, and an empty sample is refused before an oversized one.
void TextureAnimationSample::encode(BitBuffer& b) const {
    if (detail::above(setId, 65535))
        SORVANE_THROW("Error encoding: texture set id %ld does not fit in a 16-bit unsigned int", setId);
    SORVANE_STREAM_WRITE(b.write<uint16_t>(static_cast<uint16_t>(setId)));
    SORVANE_STREAM_WRITE(b.writeBits(confidencePresent ? 1 : 0, 1));
    SORVANE_STREAM_WRITE(b.writeBits(0, 7));
    if (textures.empty()) SORVANE_THROW("Error encoding: No textures to encode");
    if (textures.size() > 65535) SORVANE_THROW("Error encoding: texture count does not fit in a 16-bit unsigned int");
    SORVANE_STREAM_WRITE(b.write<uint16_t>(static_cast<uint16_t>(textures.size() - 1)));
    detail::encodeWeights(b, textures, confidencePresent, [](long id) {
        if (detail::above(id, 65535))
            SORVANE_THROW("Error encoding: texture index %ld does not fit in a 16-bit unsigned int", id);
    });
}

void TextureAnimationSample::decode(BitBuffer& b) {
    textures.clear();
    uint16_t set = 0;
    bool confidence = false;
    unsigned long reserved = 0;
    SORVANE_STREAM_READ(b.read(set));
    SORVANE_STREAM_READ(b.readBool(confidence));
    SORVANE_STREAM_READ(b.readBits(7, reserved));
    setId = set;
    confidencePresent = confidence;
    detail::decodeWeights(b, textures, confidencePresent);
}

void TextureAnimationSample::setTextureCount(long count) {
    SORVANE_STREAM_CHECK_COUNT(count);
    textures.resize(static_cast<size_t>(count));
}

long TextureAnimationSample::getTextureId(long index) const {
    SORVANE_STREAM_CHECK_INDEX(index, textures.size());
    return textures[static_cast<size_t>(index)].id;
}

void TextureAnimationSample::setTextureId(long index, long id) {
    SORVANE_STREAM_CHECK_INDEX(index, textures.size());
    textures[static_cast<size_t>(index)].id = id;
}

float TextureAnimationSample::getTextureWeight(long index) const {
    SORVANE_STREAM_CHECK_INDEX(index, textures.size());
    return textures[static_cast<size_t>(index)].weight;
}

void TextureAnimationSample::setTextureWeight(long index, float weight) {
    SORVANE_STREAM_CHECK_INDEX(index, textures.size());
    textures[static_cast<size_t>(index)].weight = weight;
}

float TextureAnimationSample::getTextureConfidence(long index) const {
    SORVANE_STREAM_CHECK_INDEX(index, textures.size());
    return textures[static_cast<size_t>(index)].confidence;
}

void TextureAnimationSample::setTextureConfidence(long index, float confidence) {
    SORVANE_STREAM_CHECK_INDEX(index, textures.size());
    textures[static_cast<size_t>(index)].confidence = confidence;
}

} // namespace sorvane::arf
