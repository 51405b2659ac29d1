#include <gtest/gtest.h>

#include "AnimationTestUtil.h"
#include "sorvane/arf/Arf.h"
#include "sorvane/arf/animation/AnimationComponents.h"

using namespace sorvane::arf;
using animtest::expectFloats;
using animtest::failure;

namespace {

// Node 1 translated, turned half about Z and scaled; node 2 bare; node 3
// with a stored matrix of only four values. Joints listed out of id order.
const char* kSkeletons = R"(memory:{"components": {"meshes": [],
  "nodes": [{"mapping": "a", "translation": [1, 2, 3], "rotation": [0, 0, 1, 0], "scale": [2, 2, 2], "name": "a", "id": 1},
            {"mapping": "b", "name": "b", "id": 2},
            {"mapping": "c", "transform": [5, 6, 7, 8], "name": "c", "id": 3}],
  "skeletons": [{"root": 1, "joints": [{"node": 2, "id": 7}, {"node": 1, "id": 0}, {"node": 3, "id": 3}],
                 "name": "s", "id": 4}]}})";

const std::vector<float> kIdentity = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};

} // namespace

TEST(AnimationComponents, JointsStartInTheRestPoseOfTheirNodes) {
    Arf arf = Arf::load(kSkeletons);
    AnimationComponents c(&arf);
    EXPECT_EQ((std::vector<long>{0, 3, 7}), c.getJointIds(4));
    expectFloats({-2, 0, 0, -2, 0, -2, 0, -4, 0, 0, 2, 6, 0, 0, 0, 1}, c.getJointTransform(4, 0).data());
    // A stored matrix of another length fills what it has over the identity.
    expectFloats({5, 6, 7, 8, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1}, c.getJointTransform(4, 3).data());
    EXPECT_EQ(kIdentity, c.getJointTransform(4, 7));
    auto all = c.getJointTransforms(4);
    ASSERT_EQ(48u, all.size());
    expectFloats(kIdentity, all.data() + 32);

    EXPECT_EQ("arf is NULL", failure([] { AnimationComponents(static_cast<const Arf*>(nullptr)); }));
    Arf empty = Arf::load(R"(memory:{"components": {"meshes": []}})");
    AnimationComponents none(empty);
    EXPECT_EQ("Invalid skeleton id 0", failure([&] { none.getJointCount(0); }));
    EXPECT_FALSE(none.hasJoint(0, 0));
}

TEST(AnimationComponents, JointChecksInOrder) {
    Arf arf = Arf::load(kSkeletons);
    AnimationComponents c(arf);
    std::vector<float> m(48, 1.0f);
    EXPECT_EQ("in is NULL", failure([&] { c.setJointTransforms(4, nullptr, 192, 3); }));
    EXPECT_EQ("in is too small", failure([&] { c.setJointTransforms(9, m.data(), 191, 3); }));
    EXPECT_EQ("Invalid skeleton id 9", failure([&] { c.setJointTransforms(9, m.data(), 192, 3); }));
    // Given count first here, present count first in setJointIds.
    EXPECT_EQ("Invalid joint count 2 != 3 for skeleton 4", failure([&] { c.setJointTransforms(4, m.data(), 192, 2); }));
    const long ids[2] = {1, 2};
    EXPECT_EQ("Invalid joint count 3 != 2 for skeleton id 4", failure([&] { c.setJointIds(4, ids, 16, 2); }));
    EXPECT_EQ("Invalid joint id 5 for skeleton id 4", failure([&] { c.getJointTransform(4, 5); }));
    float out[48];
    EXPECT_EQ(3, c.getJointTransforms(nullptr, 0, 4));
    EXPECT_EQ("out is too small", failure([&] { c.getJointTransforms(out, 191, 4); }));
    EXPECT_EQ("out is too small", failure([&] { c.getJointTransform(out, 63, 4, 0); }));
    EXPECT_EQ(16, c.getJointTransform(nullptr, 0, 4, 0));
    EXPECT_EQ(kIdentity, c.getJointTransform(4, 7)); // nothing written by the failures
}

TEST(AnimationComponents, ShortAndLongJointsAreNeverReadPast) {
    Arf arf = Arf::load(kSkeletons);
    AnimationComponents c(arf);
    std::vector<float> fifteen(15, 3.0f);
    EXPECT_EQ("Invalid transform size 15 for joint id 3 for skeleton id 4",
              failure([&] { c.setJointTransform(4, 3, fifteen.data(), 60, 15); }));
    c.setJointTransform(4, 3, fifteen); // the vector form keeps the short joint
    EXPECT_EQ(fifteen, c.getJointTransform(4, 3));
    EXPECT_EQ(15, c.getJointTransform(nullptr, 0, 4, 3));
    auto all = c.getJointTransforms(4);
    EXPECT_EQ(3.0f, all[16 + 14]);
    EXPECT_EQ(0.0f, all[16 + 15]); // zero-padded
    c.setJointTransform(4, 3, fifteen.data(), 60, 15); // now the size matches

    std::vector<float> twenty(20);
    for (size_t i = 0; i < twenty.size(); ++i) twenty[i] = static_cast<float>(i);
    c.setJointTransform(4, 7, twenty);
    EXPECT_EQ(twenty, c.getJointTransform(4, 7));
    expectFloats(std::vector<float>(twenty.begin(), twenty.begin() + 16), c.getJointTransforms(4).data() + 32);

    // Relabelling carries the odd lengths along; a bulk write makes every joint 16 floats again.
    const long ids[3] = {30, 20, 10};
    c.setJointIds(4, ids, sizeof ids, 3);
    EXPECT_EQ(twenty, c.getJointTransform(4, 10));
    EXPECT_EQ(fifteen, c.getJointTransform(4, 20));
    c.setJointTransforms(4, std::vector<float>(48, 2.0f));
    EXPECT_EQ(std::vector<float>(16, 2.0f), c.getJointTransform(4, 10));
    EXPECT_EQ(std::vector<float>(16, 2.0f), c.getJointTransform(4, 20));
}

TEST(AnimationComponents, ValuesByLocation) {
    Arf arf = Arf::load(kSkeletons);
    AnimationComponents c(arf);
    const AnimationLocation joint(ANIMATION_LOCATION_SKELETON, 4, 7);
    EXPECT_TRUE(c.hasValue(joint));
    EXPECT_FALSE(c.hasValue({ANIMATION_LOCATION_SKELETON, 4, 8}));
    EXPECT_EQ("Invalid or unsupported location", failure([&] { c.hasValue({ANIMATION_LOCATION_STREAM, 0, 0}); }));
    EXPECT_EQ("Invalid value type 1 for skeleton 4",
              failure([&] { c.setValue(joint, std::make_shared<AnimationWeight>(1.0f)); }));
    auto value = c.getValue(joint);
    value->data()[3] = 9;
    EXPECT_EQ(1.0f, c.getJointTransform(4, 7)[0]);
    EXPECT_EQ(0.0f, c.getJointTransform(4, 7)[3]); // a copy
    c.setValue(joint, value);
    EXPECT_EQ(9.0f, c.getJointTransform(4, 7)[3]);
    EXPECT_EQ("Invalid skeleton id 5", failure([&] { c.getValue({ANIMATION_LOCATION_SKELETON, 5, 0}); }));
}

TEST(AnimationComponents, BlendshapeSetsInAscendingIdOrder) {
    const Arf arf = Arf::load(R"(memory:{"components": {"meshes": [], "blendshapeSets": [{"shapes": [
        {"shape": 1, "name": "a", "id": 5}, {"shape": 1, "name": "b", "id": 2}, {"shape": 1, "name": "c", "id": 9}],
        "baseMesh": 1, "name": "face", "id": 3}]}})");
    AnimationComponents c(arf);
    EXPECT_EQ((std::vector<long>{2, 5, 9}), c.getBlendshapeIds(3));
    c.setBlendshapeWeight(3, 2, 0.1f);
    c.setBlendshapeWeight(3, 5, 0.2f);
    c.setBlendshapeWeight(3, 9, 5.0f);
    EXPECT_EQ(5.0f, c.getBlendshapeWeight(3, 9)); // no clamping
    c.setBlendshapeWeight(3, 9, 0.3f);
    const long relabel[3] = {12, 10, 11};
    c.setBlendshapeIds(3, relabel, sizeof relabel, 3);
    EXPECT_EQ((std::vector<float>{0.2f, 0.3f, 0.1f}), c.getBlendshapeWeights(3));
    const long repeated[3] = {4, 4, 5};
    EXPECT_EQ("Duplicate blendshape id 4", failure([&] { c.setBlendshapeIds(3, repeated, sizeof repeated, 3); }));
    EXPECT_EQ((std::vector<long>{10, 11, 12}), c.getBlendshapeIds(3));
    EXPECT_EQ("Invalid blendshape count 3 != 2 for blendshape set id 3",
              failure([&] { c.setBlendshapeIds(3, relabel, sizeof relabel, 2); }));
    EXPECT_EQ("Invalid blendshape index 2 for blendshape set id 3", failure([&] { c.getBlendshapeWeight(3, 2); }));
    EXPECT_EQ("Invalid value type 4 for blendshapeSet 3", failure([&] {
                  c.setValue({ANIMATION_LOCATION_BLENDSHAPE_SET, 3, 10}, std::make_shared<AnimationTransform>());
              }));
    EXPECT_EQ(3, c.getBlendshapeIds(nullptr, 0, 3));
    EXPECT_EQ("Invalid texture set id 3", failure([&] { c.getTextureCount(3); }));
}
