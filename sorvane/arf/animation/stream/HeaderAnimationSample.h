#ifndef SORVANE_ARF_ANIMATION_STREAM_HEADERANIMATIONSAMPLE_H
#define SORVANE_ARF_ANIMATION_STREAM_HEADERANIMATIONSAMPLE_H

#include "sorvane/arf/animation/stream/AnimationSample.h"
#include "sorvane/arf/animation/stream/AnimationUnitType.h"

namespace sorvane::arf {

// The header in front of every unit: its type, the body length in bytes and
// the optional timestamp and extension.
class SORVANE_API HeaderAnimationSample : public AnimationSample {
public:
    void encode(BitBuffer& buffer) const override;
    void decode(BitBuffer& buffer) override;

    AnimationUnitType getUnitType() const { return unitType; }
    void setUnitType(AnimationUnitType value) { unitType = value; }
    bool getTimestampPresent() const { return timestampPresent; }
    void setTimestampPresent(bool value) { timestampPresent = value; }
    bool getExtensionPresent() const { return extensionPresent; }
    void setExtensionPresent(bool value) { extensionPresent = value; }
    long getUnitLength() const { return unitLength; }
    void setUnitLength(long value) { unitLength = value; }
    long getTimestamp() const { return timestamp; }
    void setTimestamp(long value) { timestamp = value; }
    long getExtension8bits() const { return extension8bits; }
    void setExtension8bits(long value) { extension8bits = value; }
    bool getExtensionData() const { return extensionData; }
    void setExtensionData(bool value) { extensionData = value; }

private:
    AnimationUnitType unitType = ANIMATION_UNIT_INVALID;
    bool timestampPresent = false;
    bool extensionPresent = false;
    long unitLength = 0;
    long timestamp = 0;
    long extension8bits = 0;
    bool extensionData = false;
};

} // namespace sorvane::arf

#endif
