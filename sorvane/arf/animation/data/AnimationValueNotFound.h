#ifndef SORVANE_ARF_ANIMATION_DATA_ANIMATIONVALUENOTFOUND_H
#define SORVANE_ARF_ANIMATION_DATA_ANIMATIONVALUENOTFOUND_H

#include <string>

#include "sorvane/arf/animation/data/AnimationLocation.h"
#include "sorvane/core/RuntimeException.h"

namespace sorvane::arf {

// A lookup by location that found nothing. The text ("Value not found at "
// and the location) is only built when asked for, since the mapper catches
// this on its per-frame path.
class SORVANE_API AnimationValueNotFound : public RuntimeException {
public:
    explicit AnimationValueNotFound(const AnimationLocation& location);
    const char* what() const noexcept override;

    AnimationLocation location;

private:
    mutable bool built = false;
};

} // namespace sorvane::arf

#endif
