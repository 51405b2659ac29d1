#include "sorvane/arf/animation/stream/SilentAnimationSample.h"

#include "sorvane/arf/animation/stream/StreamCodec.h"

namespace sorvane::arf {

// Body: timescale 32 ordered, duration 24. The duration is deliberately
// asymmetric: a little-endian stream writes the low 24 bits of the byte-swapped
// low 32 bits, and the decoder always takes the 24 bits as they stand.
void SilentAnimationSample::encode(BitBuffer& b) const {
    if (detail::above(timescale, 4294967295ul))
        SORVANE_THROW("Error encoding: timescale %ld does not fit in a 32-bit unsigned int", timescale);
    SORVANE_STREAM_WRITE(b.write<uint32_t>(static_cast<uint32_t>(timescale)));
    if (detail::above(duration, 16777215))
        SORVANE_THROW("Error encoding: duration %ld does not fit in a 24-bit unsigned int", duration);
    uint32_t wire = static_cast<uint32_t>(duration);
    if (!b.isBigEndian()) wire = __builtin_bswap32(wire);
    SORVANE_STREAM_WRITE(b.writeBits(wire & 0xFFFFFFu, 24));
}

void SilentAnimationSample::decode(BitBuffer& b) {
    uint32_t scale = 0;
    unsigned long length = 0;
    SORVANE_STREAM_READ(b.read(scale));
    SORVANE_STREAM_READ(b.readBits(24, length));
    timescale = static_cast<long>(scale);
    duration = static_cast<long>(length);
}

} // namespace sorvane::arf
