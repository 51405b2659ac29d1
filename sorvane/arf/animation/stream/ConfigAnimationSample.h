#ifndef SORVANE_ARF_ANIMATION_STREAM_CONFIGANIMATIONSAMPLE_H
#define SORVANE_ARF_ANIMATION_STREAM_CONFIGANIMATIONSAMPLE_H

#include <string>
#include <vector>

#include "sorvane/arf/animation/stream/UnitAnimationSample.h"

namespace sorvane::arf {

// Declares which profiles a stream serves and which sets carry which unit
// type at which timescale. The stream carries it without further meaning.
class SORVANE_API ConfigAnimationSample : public UnitAnimationSample {
public:
    struct AssociationConfig {
        AnimationUnitType unitType = ANIMATION_UNIT_INVALID;
        long setId = -1;
        float timescale = 1.0f;
    };
    struct ProfileConfig {
        std::string name;
        std::vector<AssociationConfig> associations;
    };

    AnimationUnitType type() const override { return ANIMATION_UNIT_CONFIG; }
    void encode(BitBuffer& buffer) const override;
    void decode(BitBuffer& buffer) override;

    long getProfileCount() const { return static_cast<long>(profiles.size()); }
    long addProfile(const std::string& name);
    std::string getProfile(long profile) const;
    void setProfile(long profile, const std::string& name);

    long getAssociationCount(long profile) const;
    long addAssociation(long profile, AnimationUnitType unitType, long setId, float timescale);
    AnimationUnitType getAssociationUnitType(long profile, long association) const;
    long getAssociationSetId(long profile, long association) const;
    float getAssociationTimescale(long profile, long association) const;
    void setAssociationUnitType(long profile, long association, AnimationUnitType value);
    void setAssociationSetId(long profile, long association, long value);
    void setAssociationTimescale(long profile, long association, float value);

    std::vector<ProfileConfig>& getProfiles() { return profiles; }
    const std::vector<ProfileConfig>& getProfiles() const { return profiles; }

private:
    const ProfileConfig& profileAt(long profile) const;
    const AssociationConfig& associationAt(long profile, long association) const;
    AssociationConfig& associationAt(long profile, long association);

    std::vector<ProfileConfig> profiles;
};

} // namespace sorvane::arf

#endif
