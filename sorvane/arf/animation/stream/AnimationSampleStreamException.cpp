#include "sorvane/arf/animation/stream/AnimationSampleStreamException.h"

namespace sorvane::arf {

AnimationSampleStreamException::AnimationSampleStreamException(const char* file_, int line_, const char* function_,
                                                               int32_t code_, const char* message_)
    : RuntimeException(file_, line_, function_, "%s", message_), code(code_) {}

} // namespace sorvane::arf
