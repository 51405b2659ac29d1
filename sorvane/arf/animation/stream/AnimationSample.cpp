#include "sorvane/arf/animation/stream/AnimationSample.h"

namespace sorvane::arf {

AnimationSample::~AnimationSample() = default;

} // namespace sorvane::arf
