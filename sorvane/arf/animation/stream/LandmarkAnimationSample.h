#ifndef SORVANE_ARF_ANIMATION_STREAM_LANDMARKANIMATIONSAMPLE_H
#define SORVANE_ARF_ANIMATION_STREAM_LANDMARKANIMATIONSAMPLE_H

#include <vector>

#include "sorvane/arf/animation/stream/UnitAnimationSample.h"

namespace sorvane::arf {

// Landmark positions (2D, or 3D with is3d) of one set, with optional velocity
// and confidence per landmark.
class SORVANE_API LandmarkAnimationSample : public UnitAnimationSample {
public:
    struct Landmark {
        long id = -1;
        float coords[3] = {};
        float velocity = 0.0f;
        float confidence = 0.0f;
    };

    AnimationUnitType type() const override { return ANIMATION_UNIT_LANDMARK; }
    void encode(BitBuffer& buffer) const override;
    void decode(BitBuffer& buffer) override;

    long getSetId() const { return setId; }
    void setSetId(long value) { setId = value; }
    bool getVelocityPresent() const { return velocityPresent; }
    void setVelocityPresent(bool value) { velocityPresent = value; }
    bool getConfidencePresent() const { return confidencePresent; }
    void setConfidencePresent(bool value) { confidencePresent = value; }
    bool get3d() const { return is3d; }
    void set3d(bool value) { is3d = value; }

    long getLandmarkCount() const { return static_cast<long>(landmarks.size()); }
    void setLandmarkCount(long count);
    long getLandmarkId(long index) const;
    void setLandmarkId(long index, long id);
    // Returns the value count, 3 with is3d and else 2; a null out only asks.
    long getLandmarkCoords(void* out, long outSize, long index) const;
    void setLandmarkCoords(long index, const void* in, long inSize, long count);
    float getLandmarkVelocity(long index) const;
    void setLandmarkVelocity(long index, float value);
    float getLandmarkConfidence(long index) const;
    void setLandmarkConfidence(long index, float value);

    std::vector<Landmark>& getLandmarks() { return landmarks; }
    const std::vector<Landmark>& getLandmarks() const { return landmarks; }

private:
    long setId = -1;
    bool velocityPresent = false;
    bool confidencePresent = false;
    bool is3d = false;
    std::vector<Landmark> landmarks;
};

} // namespace sorvane::arf

#endif
