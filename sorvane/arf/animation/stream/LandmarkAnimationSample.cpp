#include "sorvane/arf/animation/stream/LandmarkAnimationSample.h"

#include <cstring>

#include "sorvane/arf/animation/stream/StreamCodec.h"

namespace sorvane::arf {

// Body: setId 16 ordered (cut to 16 bits), velocityPresent 1,
// confidencePresent 1, is3d 1, reserved 5, count - 1 16 ordered, then per
// landmark id 16 ordered, x, y, [z], [velocity], [confidence] as floats.
void LandmarkAnimationSample::encode(BitBuffer& b) const {
    SORVANE_STREAM_WRITE(b.write<uint16_t>(static_cast<uint16_t>(setId)));
    SORVANE_STREAM_WRITE(b.writeBits(velocityPresent ? 1 : 0, 1));
    SORVANE_STREAM_WRITE(b.writeBits(confidencePresent ? 1 : 0, 1));
    SORVANE_STREAM_WRITE(b.writeBits(is3d ? 1 : 0, 1));
    SORVANE_STREAM_WRITE(b.writeBits(0, 5));
    if (landmarks.size() > 65535) SORVANE_THROW("Error encoding: landmark count does not fit in a 16-bit unsigned int");
    if (landmarks.empty()) SORVANE_THROW("Error encoding: No landmarks to encode");
    SORVANE_STREAM_WRITE(b.write<uint16_t>(static_cast<uint16_t>(landmarks.size() - 1)));
    for (const Landmark& l : landmarks) {
        if (detail::above(l.id, 65535))
            SORVANE_THROW("Error encoding: landmark index does not fit in a 16-bit unsigned int");
        SORVANE_STREAM_WRITE(b.write<uint16_t>(static_cast<uint16_t>(l.id)));
        SORVANE_STREAM_WRITE(b.writeFloats(l.coords, is3d ? 3 : 2));
        if (velocityPresent) SORVANE_STREAM_WRITE(b.writeFloat(l.velocity));
        if (confidencePresent) SORVANE_STREAM_WRITE(b.writeFloat(l.confidence));
    }
}

void LandmarkAnimationSample::decode(BitBuffer& b) {
    landmarks.clear();
    uint16_t set = 0;
    bool velocity = false, confidence = false, threeD = false;
    unsigned long reserved = 0;
    SORVANE_STREAM_READ(b.read(set));
    SORVANE_STREAM_READ(b.readBool(velocity));
    SORVANE_STREAM_READ(b.readBool(confidence));
    SORVANE_STREAM_READ(b.readBool(threeD));
    SORVANE_STREAM_READ(b.readBits(5, reserved));
    setId = set;
    velocityPresent = velocity;
    confidencePresent = confidence;
    is3d = threeD;
    const long floats = 2 + (is3d ? 1 : 0) + (velocityPresent ? 1 : 0) + (confidencePresent ? 1 : 0);
    const long size = 2 + 4 * floats;
    const long count = detail::readCount16(b, size * 8);
    landmarks.resize(static_cast<size_t>(count));
    const bool big = b.isBigEndian();
    const uint8_t* p = b.readBlock(size * count);
    for (Landmark& l : landmarks) {
        float values[5] = {};
        if (p) {
            l.id = detail::loadOrdered16(p, big);
            for (long k = 0; k < floats; ++k) values[k] = detail::loadFloat(p + 2 + 4 * k);
            p += size;
        } else {
            uint16_t id = 0;
            SORVANE_STREAM_READ(b.read(id));
            l.id = id;
            SORVANE_STREAM_READ(b.readFloats(values, floats));
        }
        long k = 0;
        l.coords[0] = values[k++];
        l.coords[1] = values[k++];
        l.coords[2] = is3d ? values[k++] : 0.0f;
        l.velocity = velocityPresent ? values[k++] : 0.0f;
        l.confidence = confidencePresent ? values[k++] : 0.0f;
    }
}

void LandmarkAnimationSample::setLandmarkCount(long count) {
    SORVANE_STREAM_CHECK_COUNT(count);
    landmarks.resize(static_cast<size_t>(count));
}

long LandmarkAnimationSample::getLandmarkId(long index) const {
    SORVANE_STREAM_CHECK_INDEX(index, landmarks.size());
    return landmarks[static_cast<size_t>(index)].id;
}

void LandmarkAnimationSample::setLandmarkId(long index, long id) {
    SORVANE_STREAM_CHECK_INDEX(index, landmarks.size());
    landmarks[static_cast<size_t>(index)].id = id;
}

long LandmarkAnimationSample::getLandmarkCoords(void* out, long outSize, long index) const {
    SORVANE_STREAM_CHECK_INDEX(index, landmarks.size());
    const long count = is3d ? 3 : 2;
    if (!out) return count;
    if (outSize < 4 * count) SORVANE_THROW("out is too small");
    std::memcpy(out, landmarks[static_cast<size_t>(index)].coords, static_cast<size_t>(4 * count));
    return count;
}

void LandmarkAnimationSample::setLandmarkCoords(long index, const void* in, long inSize, long count) {
    SORVANE_STREAM_CHECK_INDEX(index, landmarks.size());
    if (!in) SORVANE_THROW("in is NULL");
    const long expected = is3d ? 3 : 2;
    if (count != expected) SORVANE_THROW("Invalid value count (expect %ld)", expected);
    if (inSize < 4 * count) SORVANE_THROW("in is too small");
    std::memcpy(landmarks[static_cast<size_t>(index)].coords, in, static_cast<size_t>(4 * count));
}

float LandmarkAnimationSample::getLandmarkVelocity(long index) const {
    SORVANE_STREAM_CHECK_INDEX(index, landmarks.size());
    return landmarks[static_cast<size_t>(index)].velocity;
}

void LandmarkAnimationSample::setLandmarkVelocity(long index, float value) {
    SORVANE_STREAM_CHECK_INDEX(index, landmarks.size());
    landmarks[static_cast<size_t>(index)].velocity = value;
}

float LandmarkAnimationSample::getLandmarkConfidence(long index) const {
    SORVANE_STREAM_CHECK_INDEX(index, landmarks.size());
    return landmarks[static_cast<size_t>(index)].confidence;
}

void LandmarkAnimationSample::setLandmarkConfidence(long index, float value) {
    SORVANE_STREAM_CHECK_INDEX(index, landmarks.size());
    landmarks[static_cast<size_t>(index)].confidence = value;
}

} // namespace sorvane::arf
