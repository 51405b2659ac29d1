#include "sorvane/arf/animation/stream/UnitAnimationSample.h"

namespace sorvane::arf {

UnitAnimationSample::~UnitAnimationSample() = default;

} // namespace sorvane::arf
