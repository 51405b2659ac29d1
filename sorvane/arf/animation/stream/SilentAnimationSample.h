#ifndef SORVANE_ARF_ANIMATION_STREAM_SILENTANIMATIONSAMPLE_H
#define SORVANE_ARF_ANIMATION_STREAM_SILENTANIMATIONSAMPLE_H

#include "sorvane/arf/animation/stream/UnitAnimationSample.h"

namespace sorvane::arf {

// A stretch without animation: duration ticks of a timescale.
class SORVANE_API SilentAnimationSample : public UnitAnimationSample {
public:
    AnimationUnitType type() const override { return ANIMATION_UNIT_SILENT; }
    void encode(BitBuffer& buffer) const override;
    void decode(BitBuffer& buffer) override;

    long getTimescale() const { return timescale; }
    void setTimescale(long value) { timescale = value; }
    long getDuration() const { return duration; }
    void setDuration(long value) { duration = value; }

private:
    long timescale = 1;
    long duration = 1;
};

} // namespace sorvane::arf

#endif
