#include "sorvane/arf/animation/stream/HeaderAnimationSample.h"

#include "sorvane/arf/animation/stream/StreamCodec.h"

namespace sorvane::arf {

// Wire layout: unitType 6, timestampPresent 1, extensionPresent 1,
// unitLength 24, [timestamp 32 in stream order], [extension8bits 8,
// [extensionData 1 when extension8bits is not zero]].
void HeaderAnimationSample::encode(BitBuffer& b) const {
    const long type = static_cast<long>(unitType);
    if (detail::above(type, 63))
        SORVANE_THROW("Error encoding: animation unit type %ld does not fit in a 6-bit unsigned int", type);
    if (detail::above(unitLength, 16777215))
        SORVANE_THROW("Error encoding: unit length %ld does not fit in a 24-bit unsigned int", unitLength);
    if (timestampPresent && detail::above(timestamp, 4294967295ul))
        SORVANE_THROW("Error encoding: timestamp %ld does not fit in a 32-bit unsigned int", timestamp);
    if (extensionPresent && detail::above(extension8bits, 255))
        SORVANE_THROW("Error encoding: extension value %ld does not fit in an 8-bit unsigned int", extension8bits);
    SORVANE_STREAM_WRITE(b.writeBits(static_cast<unsigned long>(type), 6));
    SORVANE_STREAM_WRITE(b.writeBits(timestampPresent ? 1 : 0, 1));
    SORVANE_STREAM_WRITE(b.writeBits(extensionPresent ? 1 : 0, 1));
    SORVANE_STREAM_WRITE(b.writeBits(static_cast<unsigned long>(unitLength), 24));
    if (timestampPresent) SORVANE_STREAM_WRITE(b.write<uint32_t>(static_cast<uint32_t>(timestamp)));
    if (extensionPresent) {
        SORVANE_STREAM_WRITE(b.writeBits(static_cast<unsigned long>(extension8bits), 8));
        if (extension8bits != 0) SORVANE_STREAM_WRITE(b.writeBits(extensionData ? 1 : 0, 1));
    }
}

void HeaderAnimationSample::decode(BitBuffer& b) {
    unsigned long type = 0, length = 0;
    bool hasTimestamp = false, hasExtension = false;
    SORVANE_STREAM_READ(b.readBits(6, type));
    SORVANE_STREAM_READ(b.readBool(hasTimestamp));
    SORVANE_STREAM_READ(b.readBool(hasExtension));
    SORVANE_STREAM_READ(b.readBits(24, length));
    uint32_t stamp = 0;
    unsigned long extension = 0;
    bool data = false;
    if (hasTimestamp) SORVANE_STREAM_READ(b.read(stamp));
    if (hasExtension) {
        SORVANE_STREAM_READ(b.readBits(8, extension));
        if (extension != 0) SORVANE_STREAM_READ(b.readBool(data));
    }
    unitType = static_cast<AnimationUnitType>(type);
    timestampPresent = hasTimestamp;
    extensionPresent = hasExtension;
    unitLength = static_cast<long>(length);
    timestamp = static_cast<long>(stamp);
    extension8bits = static_cast<long>(extension);
    extensionData = data;
}

} // namespace sorvane::arf
