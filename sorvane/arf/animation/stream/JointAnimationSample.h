#ifndef SORVANE_ARF_ANIMATION_STREAM_JOINTANIMATIONSAMPLE_H
#define SORVANE_ARF_ANIMATION_STREAM_JOINTANIMATIONSAMPLE_H

#include <vector>

#include "sorvane/arf/animation/stream/UnitAnimationSample.h"

namespace sorvane::arf {

// Joint transforms (4 by 4 float matrices in their stored element order) of
// one skeleton, with optional velocities.
class SORVANE_API JointAnimationSample : public UnitAnimationSample {
public:
    struct Joint {
        long id = -1;
        float transform[16] = {};
        float velocity[16] = {};
    };

    AnimationUnitType type() const override { return ANIMATION_UNIT_JOINT; }
    void encode(BitBuffer& buffer) const override;
    void decode(BitBuffer& buffer) override;

    long getSetId() const { return setId; }
    void setSetId(long value) { setId = value; }
    bool getVelocityPresent() const { return velocityPresent; }
    void setVelocityPresent(bool value) { velocityPresent = value; }
    bool getRestPoseFlag() const { return restPoseFlag; }
    void setRestPoseFlag(bool value) { restPoseFlag = value; }

    long getJointCount() const { return static_cast<long>(joints.size()); }
    void setJointCount(long count);
    long getJointId(long index) const;
    void setJointId(long index, long id);
    // Both return 16, the value count; a null out only asks for it.
    long getJointTransform(void* out, long outSize, long index) const;
    long getJointVelocity(void* out, long outSize, long index) const;
    void setJointTransform(long index, const void* in, long inSize, long count);
    void setJointVelocity(long index, const void* in, long inSize, long count);

    // Keeps the joints whose ids are listed (count 64-bit ids), in the list's
    // order; unknown ids are dropped, a repeated id comes out twice.
    void selectJoints(const void* ids, long size, long count);
    void selectJoints(const std::vector<long>& ids);

    std::vector<Joint>& getJoints() { return joints; }
    const std::vector<Joint>& getJoints() const { return joints; }

private:
    long setId = -1;
    bool velocityPresent = false;
    bool restPoseFlag = false;
    std::vector<Joint> joints;
};

} // namespace sorvane::arf

#endif
