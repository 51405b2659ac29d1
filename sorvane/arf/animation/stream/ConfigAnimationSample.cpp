#include "sorvane/arf/animation/stream/ConfigAnimationSample.h"

#include "sorvane/arf/animation/stream/StreamCodec.h"

namespace sorvane::arf {

// Body: profile count - 1 in 8 bits, then per profile a name length 8 and
// the name's bytes, an association count 8, and per association unitType 8,
// setId 16 ordered and timescale as a float.
void ConfigAnimationSample::encode(BitBuffer& b) const {
    if (profiles.empty()) SORVANE_THROW("Error encoding: No profiles to encode");
    if (profiles.size() > 256)
        SORVANE_THROW("Error encoding: profile count does not fit in an 8-bit unsigned int plus one");
    SORVANE_STREAM_WRITE(b.writeBits(profiles.size() - 1, 8));
    for (const ProfileConfig& p : profiles) {
        if (p.name.size() > 255)
            SORVANE_THROW("Error encoding: profile length does not fit in an 8-bit unsigned int");
        SORVANE_STREAM_WRITE(b.writeBits(p.name.size(), 8));
        SORVANE_STREAM_WRITE(b.writeBytes(p.name.data(), static_cast<long>(p.name.size())));
        if (p.associations.size() > 255)
            SORVANE_THROW("Error encoding: association count does not fit in an 8-bit unsigned int");
        SORVANE_STREAM_WRITE(b.writeBits(p.associations.size(), 8));
        for (const AssociationConfig& a : p.associations) {
            const long type = static_cast<long>(a.unitType);
            if (detail::above(type, 255))
                SORVANE_THROW("Error encoding: animation unit type %ld does not fit in an 8-bit unsigned int", type);
            SORVANE_STREAM_WRITE(b.writeBits(static_cast<unsigned long>(type), 8));
            if (detail::above(a.setId, 65535))
                SORVANE_THROW("Error encoding: set id %ld does not fit in a 16-bit unsigned int", a.setId);
            SORVANE_STREAM_WRITE(b.write<uint16_t>(static_cast<uint16_t>(a.setId)));
            SORVANE_STREAM_WRITE(b.writeFloat(a.timescale));
        }
    }
}

void ConfigAnimationSample::decode(BitBuffer& b) {
    profiles.clear();
    unsigned long count = 0;
    SORVANE_STREAM_READ(b.readBits(8, count));
    // Each profile takes at least its two count bytes.
    if (static_cast<long>(count + 1) > b.bitsLeft() / 16) SORVANE_STREAM_NOT_ENOUGH_DATA();
    profiles.resize(count + 1);
    for (ProfileConfig& p : profiles) {
        unsigned long length = 0, associations = 0;
        SORVANE_STREAM_READ(b.readBits(8, length));
        p.name.resize(length);
        SORVANE_STREAM_READ(b.readBytes(&p.name[0], static_cast<long>(length)));
        SORVANE_STREAM_READ(b.readBits(8, associations));
        if (static_cast<long>(associations) > b.bitsLeft() / 56) SORVANE_STREAM_NOT_ENOUGH_DATA();
        p.associations.resize(associations);
        for (AssociationConfig& a : p.associations) {
            unsigned long type = 0;
            uint16_t setId = 0;
            SORVANE_STREAM_READ(b.readBits(8, type));
            SORVANE_STREAM_READ(b.read(setId));
            SORVANE_STREAM_READ(b.readFloat(a.timescale));
            a.unitType = static_cast<AnimationUnitType>(type);
            a.setId = setId;
        }
    }
}

long ConfigAnimationSample::addProfile(const std::string& name) {
    profiles.push_back(ProfileConfig{name, {}});
    return static_cast<long>(profiles.size()) - 1;
}

const ConfigAnimationSample::ProfileConfig& ConfigAnimationSample::profileAt(long profile) const {
    if (profile < 0 || static_cast<size_t>(profile) >= profiles.size())
        SORVANE_THROW("Invalid profile index %ld", profile);
    return profiles[static_cast<size_t>(profile)];
}

const ConfigAnimationSample::AssociationConfig& ConfigAnimationSample::associationAt(long profile,
                                                                                     long association) const {
    const ProfileConfig& p = profileAt(profile);
    if (association < 0 || static_cast<size_t>(association) >= p.associations.size())
        SORVANE_THROW("Invalid association index %ld for profile %ld", association, profile);
    return p.associations[static_cast<size_t>(association)];
}

ConfigAnimationSample::AssociationConfig& ConfigAnimationSample::associationAt(long profile, long association) {
    return const_cast<AssociationConfig&>(static_cast<const ConfigAnimationSample*>(this)->associationAt(profile, association));
}

std::string ConfigAnimationSample::getProfile(long profile) const { return profileAt(profile).name; }

void ConfigAnimationSample::setProfile(long profile, const std::string& name) {
    const_cast<ProfileConfig&>(profileAt(profile)).name = name;
}

long ConfigAnimationSample::getAssociationCount(long profile) const {
    return static_cast<long>(profileAt(profile).associations.size());
}

long ConfigAnimationSample::addAssociation(long profile, AnimationUnitType unitType, long setId, float timescale) {
    auto& list = const_cast<ProfileConfig&>(profileAt(profile)).associations;
    list.push_back(AssociationConfig{unitType, setId, timescale});
    return static_cast<long>(list.size()) - 1;
}

AnimationUnitType ConfigAnimationSample::getAssociationUnitType(long profile, long association) const {
    return associationAt(profile, association).unitType;
}

long ConfigAnimationSample::getAssociationSetId(long profile, long association) const {
    return associationAt(profile, association).setId;
}

float ConfigAnimationSample::getAssociationTimescale(long profile, long association) const {
    return associationAt(profile, association).timescale;
}

void ConfigAnimationSample::setAssociationUnitType(long profile, long association, AnimationUnitType value) {
    associationAt(profile, association).unitType = value;
}

void ConfigAnimationSample::setAssociationSetId(long profile, long association, long value) {
    associationAt(profile, association).setId = value;
}

void ConfigAnimationSample::setAssociationTimescale(long profile, long association, float value) {
    associationAt(profile, association).timescale = value;
}

} // namespace sorvane::arf
