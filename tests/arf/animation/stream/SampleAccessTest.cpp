#include <gtest/gtest.h>

#include <functional>

#include "sorvane/arf/animation/stream/BlendshapeAnimationSample.h"
#include "sorvane/arf/animation/stream/ConfigAnimationSample.h"
#include "sorvane/arf/animation/stream/JointAnimationSample.h"
#include "sorvane/arf/animation/stream/LandmarkAnimationSample.h"
#include "sorvane/arf/animation/stream/TextureAnimationSample.h"

using namespace sorvane::arf;

namespace {

std::string failure(const std::function<void()>& f) {
    try {
        f();
    } catch (const std::exception& e) {
        const std::string text = e.what();
        const size_t at = text.find("(): ");
        return at == std::string::npos ? text : text.substr(at + 4);
    }
    return "no failure";
}

} // namespace

TEST(SampleAccess, DefaultsAndIndexChecks) {
    BlendshapeAnimationSample b;
    EXPECT_EQ(b.getSetId(), -1);
    EXPECT_FALSE(b.getConfidencePresent());
    b.setBlendshapeCount(2);
    EXPECT_EQ(b.getBlendshapeId(1), -1);
    EXPECT_EQ(b.getBlendshapeWeight(1), 0.0f);
    EXPECT_EQ(failure([&] { b.getBlendshapeId(2); }), "Invalid index 2");
    EXPECT_EQ(failure([&] { b.setBlendshapeWeight(-1, 1); }), "Invalid index -1");
    EXPECT_EQ(failure([&] { b.setBlendshapeCount(-1); }), "Invalid count -1");
    TextureAnimationSample t;
    EXPECT_EQ(failure([&] { t.getTextureConfidence(0); }), "Invalid index 0");
    JointAnimationSample j;
    EXPECT_FALSE(j.getRestPoseFlag());
    EXPECT_EQ(failure([&] { j.getJointTransform(nullptr, 0, 0); }), "Invalid index 0");
    LandmarkAnimationSample l;
    EXPECT_EQ(failure([&] { l.setLandmarkVelocity(3, 1); }), "Invalid index 3");
}

TEST(SampleAccess, JointMatrices) {
    JointAnimationSample j;
    j.setJointCount(1);
    float m[16];
    for (int k = 0; k < 16; ++k) m[k] = static_cast<float>(k);
    EXPECT_EQ(j.getJointTransform(nullptr, 0, 0), 16);
    EXPECT_EQ(failure([&] { j.setJointTransform(0, nullptr, 64, 16); }), "in is NULL");
    EXPECT_EQ(failure([&] { j.setJointTransform(0, m, 64, 15); }), "Invalid value count (expect 16)");
    EXPECT_EQ(failure([&] { j.setJointVelocity(0, m, 63, 16); }), "in is too small");
    EXPECT_EQ(failure([&] { j.setJointTransform(1, nullptr, 0, 0); }), "Invalid index 1");
    j.setJointTransform(0, m, 64, 16);
    float back[16] = {};
    EXPECT_EQ(failure([&] { j.getJointTransform(back, 63, 0); }), "out is too small");
    EXPECT_EQ(j.getJointTransform(back, 64, 0), 16);
    EXPECT_EQ(back[15], 15.0f);
    EXPECT_EQ(j.getJointVelocity(back, 64, 0), 16);
    EXPECT_EQ(back[15], 0.0f);
}

TEST(SampleAccess, LandmarkCoordinates) {
    LandmarkAnimationSample l;
    l.setLandmarkCount(1);
    const float xyz[3] = {1, 2, 3};
    EXPECT_EQ(l.getLandmarkCoords(nullptr, 0, 0), 2);
    EXPECT_EQ(failure([&] { l.setLandmarkCoords(0, xyz, 12, 3); }), "Invalid value count (expect 2)");
    EXPECT_EQ(failure([&] { l.setLandmarkCoords(0, nullptr, 12, 3); }), "in is NULL");
    l.set3d(true);
    EXPECT_EQ(failure([&] { l.setLandmarkCoords(0, xyz, 11, 3); }), "in is too small");
    l.setLandmarkCoords(0, xyz, 12, 3);
    float out[3] = {};
    EXPECT_EQ(failure([&] { l.getLandmarkCoords(out, 8, 0); }), "out is too small");
    EXPECT_EQ(l.getLandmarkCoords(out, 12, 0), 3);
    EXPECT_EQ(out[2], 3.0f);
}

TEST(SampleAccess, ConfigProfilesAndAssociations) {
    ConfigAnimationSample c;
    EXPECT_EQ(c.addProfile("face"), 0);
    EXPECT_EQ(c.addProfile("body"), 1);
    EXPECT_EQ(c.addAssociation(1, ANIMATION_UNIT_JOINT, 4, 60.0f), 0);
    EXPECT_EQ(c.getAssociationCount(1), 1);
    EXPECT_EQ(c.getAssociationSetId(1, 0), 4);
    EXPECT_EQ(c.getAssociationUnitType(1, 0), ANIMATION_UNIT_JOINT);
    c.setAssociationTimescale(1, 0, 30.0f);
    EXPECT_EQ(c.getAssociationTimescale(1, 0), 30.0f);
    c.setProfile(0, "head");
    EXPECT_EQ(c.getProfile(0), "head");
    EXPECT_EQ(failure([&] { c.getProfile(2); }), "Invalid profile index 2");
    EXPECT_EQ(failure([&] { c.addAssociation(-1, ANIMATION_UNIT_JOINT, 0, 1); }), "Invalid profile index -1");
    EXPECT_EQ(failure([&] { c.getAssociationSetId(0, 0); }), "Invalid association index 0 for profile 0");
    EXPECT_EQ(failure([&] { c.setAssociationUnitType(5, 0, ANIMATION_UNIT_JOINT); }), "Invalid profile index 5");
    ConfigAnimationSample::AssociationConfig fresh;
    EXPECT_EQ(fresh.unitType, ANIMATION_UNIT_INVALID);
    EXPECT_EQ(fresh.setId, -1);
    EXPECT_EQ(fresh.timescale, 1.0f);
}

TEST(SampleAccess, SelectJoints) {
    JointAnimationSample j;
    j.setJointCount(4);
    const long ids[4] = {10, 20, 30, 20};
    for (long i = 0; i < 4; ++i) {
        j.setJointId(i, ids[i]);
        j.getJoints()[static_cast<size_t>(i)].transform[0] = static_cast<float>(i);
    }
    j.selectJoints(std::vector<long>{30, 99, 20, 30});
    ASSERT_EQ(j.getJointCount(), 3);
    EXPECT_EQ(j.getJointId(0), 30);
    EXPECT_EQ(j.getJointId(1), 20);
    EXPECT_EQ(j.getJoints()[1].transform[0], 3.0f); // the last joint of id 20 wins
    EXPECT_EQ(j.getJointId(2), 30);
    j.selectJoints(std::vector<long>{});
    EXPECT_EQ(j.getJointCount(), 0);
    sorvane::BitBuffer b;
    EXPECT_EQ(failure([&] { j.encode(b); }), "Error encoding: No joints to encode");
}
