#ifndef SORVANE_ARF_ANIMATION_STREAM_ANIMATIONSAMPLESTREAMEXCEPTION_H
#define SORVANE_ARF_ANIMATION_STREAM_ANIMATIONSAMPLESTREAMEXCEPTION_H

#include <cstdint>

#include "sorvane/core/RuntimeException.h"

namespace sorvane::arf {

// A decoder's failure. code 1 means "Not enough data": the caller feeds more
// bytes and tries again.
class SORVANE_API AnimationSampleStreamException : public RuntimeException {
public:
    AnimationSampleStreamException(const char* file, int line, const char* function, int32_t code,
                                   const char* message);

    int32_t code = 0;
};

} // namespace sorvane::arf

#endif
