#include "sorvane/arf/animation/stream/BlendshapeAnimationSample.h"

#include "sorvane/arf/animation/stream/StreamCodec.h"

namespace sorvane::arf {

// Body: setId 16 ordered (cut to 16 bits), confidencePresent 1, reserved 7,
// count - 1 16 ordered, then per entry id 16, weight, [confidence].
void BlendshapeAnimationSample::encode(BitBuffer& b) const {
    SORVANE_STREAM_WRITE(b.write<uint16_t>(static_cast<uint16_t>(setId)));
    SORVANE_STREAM_WRITE(b.writeBits(confidencePresent ? 1 : 0, 1));
    SORVANE_STREAM_WRITE(b.writeBits(0, 7));
    if (blendshapes.size() > 65535)
        SORVANE_THROW("Error encoding: blendshape count does not fit in a 16-bit unsigned int");
    if (blendshapes.empty()) SORVANE_THROW("Error encoding: No blendshapes to encode");
    SORVANE_STREAM_WRITE(b.write<uint16_t>(static_cast<uint16_t>(blendshapes.size() - 1)));
    detail::encodeWeights(b, blendshapes, confidencePresent, [](long id) {
        if (id < 0) SORVANE_THROW("Error encoding: blendshape index %ld is negative", id);
        if (id > 65535) SORVANE_THROW("Error encoding: blendshape index %ld does not fit in a 16-bit unsigned int", id);
    });
}

void BlendshapeAnimationSample::decode(BitBuffer& b) {
    blendshapes.clear();
    // setId and the flag byte in one read; the reserved bits are dropped.
    unsigned long prefix = 0;
    SORVANE_STREAM_READ(b.readBits(24, prefix));
    const uint16_t set = static_cast<uint16_t>(prefix >> 8);
    setId = b.isBigEndian() ? set : sorvane::detail::swapBytes(set);
    confidencePresent = (prefix >> 7) & 1;
    detail::decodeWeights(b, blendshapes, confidencePresent);
}

void BlendshapeAnimationSample::setBlendshapeCount(long count) {
    SORVANE_STREAM_CHECK_COUNT(count);
    blendshapes.resize(static_cast<size_t>(count));
}

long BlendshapeAnimationSample::getBlendshapeId(long index) const {
    SORVANE_STREAM_CHECK_INDEX(index, blendshapes.size());
    return blendshapes[static_cast<size_t>(index)].id;
}

void BlendshapeAnimationSample::setBlendshapeId(long index, long id) {
    SORVANE_STREAM_CHECK_INDEX(index, blendshapes.size());
    blendshapes[static_cast<size_t>(index)].id = id;
}

float BlendshapeAnimationSample::getBlendshapeWeight(long index) const {
    SORVANE_STREAM_CHECK_INDEX(index, blendshapes.size());
    return blendshapes[static_cast<size_t>(index)].weight;
}

void BlendshapeAnimationSample::setBlendshapeWeight(long index, float weight) {
    SORVANE_STREAM_CHECK_INDEX(index, blendshapes.size());
    blendshapes[static_cast<size_t>(index)].weight = weight;
}

float BlendshapeAnimationSample::getBlendshapeConfidence(long index) const {
    SORVANE_STREAM_CHECK_INDEX(index, blendshapes.size());
    return blendshapes[static_cast<size_t>(index)].confidence;
}

void BlendshapeAnimationSample::setBlendshapeConfidence(long index, float confidence) {
    SORVANE_STREAM_CHECK_INDEX(index, blendshapes.size());
    blendshapes[static_cast<size_t>(index)].confidence = confidence;
}

} // namespace sorvane::arf
