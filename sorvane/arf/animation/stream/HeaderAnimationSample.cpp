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
    // The four fixed fields are 32 bits together: one read.
    unsigned long fixed = 0;
    SORVANE_STREAM_READ(b.readBits(32, fixed));
    const unsigned long type = fixed >> 26;
    const bool hasTimestamp = (fixed >> 25) & 1;
    const bool hasExtension = (fixed >> 24) & 1;
    const unsigned long length = fixed & 0xFFFFFF;
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
