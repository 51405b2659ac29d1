#ifndef SORVANE_ARF_ANIMATION_STREAM_ANIMATIONSAMPLE_H
#define SORVANE_ARF_ANIMATION_STREAM_ANIMATIONSAMPLE_H

#include "sorvane/archive/BitBuffer.h"
#include "sorvane/core/Export.h"

namespace sorvane::arf {

// Anything that goes over the sample stream: a unit header or a unit body.
// encode throws a RuntimeException on a value that does not fit its field;
// decode throws AnimationSampleStreamException (code 1) on missing bits.
class SORVANE_API AnimationSample {
public:
    virtual ~AnimationSample();
    virtual void encode(BitBuffer& buffer) const = 0;
    virtual void decode(BitBuffer& buffer) = 0;
};

} // namespace sorvane::arf

#endif
