#include "sorvane/arf/animation/stream/JointAnimationSample.h"

#include <cstring>
#include <unordered_map>

#include "sorvane/arf/animation/stream/StreamCodec.h"

namespace sorvane::arf {

namespace {

long copyOut(const float (&values)[16], void* out, long outSize) {
    if (!out) return 16;
    if (outSize < 64) SORVANE_THROW("out is too small");
    std::memcpy(out, values, 64);
    return 16;
}

void copyIn(float (&values)[16], const void* in, long inSize, long count) {
    if (!in) SORVANE_THROW("in is NULL");
    if (count != 16) SORVANE_THROW("Invalid value count (expect 16)");
    if (inSize < 64) SORVANE_THROW("in is too small");
    std::memcpy(values, in, 64);
}

} // namespace

// Body: setId 16 ordered (cut to 16 bits), velocityPresent 1, restPoseFlag 1,
// reserved 6, count - 1 16 ordered, then per joint id 16 ordered, 16 floats of
// transform and, when present, 16 floats of velocity.
void JointAnimationSample::encode(BitBuffer& b) const {
    SORVANE_STREAM_WRITE(b.write<uint16_t>(static_cast<uint16_t>(setId)));
    SORVANE_STREAM_WRITE(b.writeBits(velocityPresent ? 1 : 0, 1));
    SORVANE_STREAM_WRITE(b.writeBits(restPoseFlag ? 1 : 0, 1));
    SORVANE_STREAM_WRITE(b.writeBits(0, 6));
    if (joints.size() > 65535) SORVANE_THROW("Error encoding: joint count does not fit in a 16-bit unsigned int");
    if (joints.empty()) SORVANE_THROW("Error encoding: No joints to encode");
    SORVANE_STREAM_WRITE(b.write<uint16_t>(static_cast<uint16_t>(joints.size() - 1)));
    const long size = velocityPresent ? 130 : 66;
    const bool big = b.isBigEndian();
    if (uint8_t* p = b.writeBlock(size * static_cast<long>(joints.size()))) {
        for (const Joint& j : joints) {
            if (detail::above(j.id, 65535))
                SORVANE_THROW("Error encoding: joint index does not fit in a 16-bit unsigned int");
            detail::storeOrdered16(p, static_cast<unsigned long>(j.id), big);
            for (int k = 0; k < 16; ++k) detail::storeFloat(p + 2 + 4 * k, j.transform[k], big);
            if (velocityPresent)
                for (int k = 0; k < 16; ++k) detail::storeFloat(p + 66 + 4 * k, j.velocity[k], big);
            p += size;
        }
        return;
    }
    for (const Joint& j : joints) {
        if (detail::above(j.id, 65535))
            SORVANE_THROW("Error encoding: joint index does not fit in a 16-bit unsigned int");
        SORVANE_STREAM_WRITE(b.write<uint16_t>(static_cast<uint16_t>(j.id)));
        SORVANE_STREAM_WRITE(b.writeFloats(j.transform, 16));
        if (velocityPresent) SORVANE_STREAM_WRITE(b.writeFloats(j.velocity, 16));
    }
}

void JointAnimationSample::decode(BitBuffer& b) {
    joints.clear();
    uint16_t set = 0;
    bool velocity = false, restPose = false;
    unsigned long reserved = 0;
    SORVANE_STREAM_READ(b.read(set));
    SORVANE_STREAM_READ(b.readBool(velocity));
    SORVANE_STREAM_READ(b.readBool(restPose));
    SORVANE_STREAM_READ(b.readBits(6, reserved));
    setId = set;
    velocityPresent = velocity;
    restPoseFlag = restPose;
    const long size = velocityPresent ? 130 : 66;
    const long count = detail::readCount16(b, size * 8);
    joints.resize(static_cast<size_t>(count));
    const bool big = b.isBigEndian();
    if (const uint8_t* p = b.readBlock(size * count)) {
        for (Joint& j : joints) {
            j.id = detail::loadOrdered16(p, big);
            for (int k = 0; k < 16; ++k) j.transform[k] = detail::loadFloat(p + 2 + 4 * k);
            if (velocityPresent)
                for (int k = 0; k < 16; ++k) j.velocity[k] = detail::loadFloat(p + 66 + 4 * k);
            p += size;
        }
        return;
    }
    for (Joint& j : joints) {
        uint16_t id = 0;
        SORVANE_STREAM_READ(b.read(id));
        j.id = id;
        SORVANE_STREAM_READ(b.readFloats(j.transform, 16));
        if (velocityPresent) SORVANE_STREAM_READ(b.readFloats(j.velocity, 16));
    }
}

void JointAnimationSample::setJointCount(long count) {
    SORVANE_STREAM_CHECK_COUNT(count);
    joints.resize(static_cast<size_t>(count));
}

long JointAnimationSample::getJointId(long index) const {
    SORVANE_STREAM_CHECK_INDEX(index, joints.size());
    return joints[static_cast<size_t>(index)].id;
}

void JointAnimationSample::setJointId(long index, long id) {
    SORVANE_STREAM_CHECK_INDEX(index, joints.size());
    joints[static_cast<size_t>(index)].id = id;
}

long JointAnimationSample::getJointTransform(void* out, long outSize, long index) const {
    SORVANE_STREAM_CHECK_INDEX(index, joints.size());
    return copyOut(joints[static_cast<size_t>(index)].transform, out, outSize);
}

long JointAnimationSample::getJointVelocity(void* out, long outSize, long index) const {
    SORVANE_STREAM_CHECK_INDEX(index, joints.size());
    return copyOut(joints[static_cast<size_t>(index)].velocity, out, outSize);
}

void JointAnimationSample::setJointTransform(long index, const void* in, long inSize, long count) {
    SORVANE_STREAM_CHECK_INDEX(index, joints.size());
    copyIn(joints[static_cast<size_t>(index)].transform, in, inSize, count);
}

void JointAnimationSample::setJointVelocity(long index, const void* in, long inSize, long count) {
    SORVANE_STREAM_CHECK_INDEX(index, joints.size());
    copyIn(joints[static_cast<size_t>(index)].velocity, in, inSize, count);
}

void JointAnimationSample::selectJoints(const void* ids, long /*size*/, long count) {
    SORVANE_STREAM_CHECK_COUNT(count);
    if (count > 0 && !ids) SORVANE_THROW("ids is NULL");
    std::unordered_map<long, Joint> byId;
    byId.reserve(joints.size());
    for (const Joint& j : joints) byId[j.id] = j; // the last of equal ids wins
    joints.clear();
    joints.reserve(static_cast<size_t>(count));
    const uint8_t* p = static_cast<const uint8_t*>(ids);
    for (long i = 0; i < count; ++i) {
        long id;
        std::memcpy(&id, p + 8 * i, 8);
        auto found = byId.find(id);
        if (found != byId.end()) joints.push_back(found->second);
    }
}

void JointAnimationSample::selectJoints(const std::vector<long>& ids) {
    selectJoints(ids.data(), static_cast<long>(ids.size() * sizeof(long)), static_cast<long>(ids.size()));
}

} // namespace sorvane::arf
