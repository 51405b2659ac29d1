#ifndef SORVANE_ARF_ANIMATION_STREAM_UNITANIMATIONSAMPLE_H
#define SORVANE_ARF_ANIMATION_STREAM_UNITANIMATIONSAMPLE_H

#include "sorvane/arf/animation/stream/AnimationSample.h"
#include "sorvane/arf/animation/stream/AnimationUnitType.h"

namespace sorvane::arf {

// The body of a unit; its type goes into the header.
class SORVANE_API UnitAnimationSample : public AnimationSample {
public:
    ~UnitAnimationSample() override;
    virtual AnimationUnitType type() const = 0;
};

} // namespace sorvane::arf

#endif
