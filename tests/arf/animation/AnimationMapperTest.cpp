#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <iostream>
#include <sstream>
#include <thread>

#include "AnimationAvatars.h"
#include "AnimationTestUtil.h"
#include "sorvane/arf/animation/AnimationMapper.h"
#include "sorvane/arf/animation/stream/BlendshapeAnimationSample.h"
#include "sorvane/arf/animation/stream/JointAnimationSample.h"
#include "sorvane/arf/animation/stream/SilentAnimationSample.h"
#include "sorvane/core/math.h"

using namespace sorvane::arf;
using sorvane::DataTree;
using animtest::expectFloats;
using animtest::failure;

namespace {

const char* kMediapipe = "urn:mpeg:avatar:blendshapes:mediapipe";

// Both paths on the same input from the same starting state must agree bit
// for bit; returns the plan's result.
std::vector<float> bothPaths(const AnimationMapper& mapper, const AnimationComponents& start,
                             const AnimationData& frame, long set) {
    AnimationComponents planned = start, keyed = start;
    EXPECT_TRUE(mapper.planFits(planned, frame));
    mapper.updateComponents(&planned, &frame);
    mapper.updateComponentsKeyed(&keyed, &frame);
    EXPECT_EQ(keyed.getBlendshapeWeights(set), planned.getBlendshapeWeights(set));
    return planned.getBlendshapeWeights(set);
}

} // namespace

TEST(AnimationMapper, LinearAssociationsSumFromScratch) {
    const Arf arf = animtest::avatarF();
    AnimationMapper mapper(arf, AnimationFramework::create(kMediapipe, 0));
    AnimationComponents c(arf);
    c.setBlendshapeWeights(1, {0.9f, 0.7f, 0.5f});
    auto frame = mapper.getFramework()->createData();
    frame->getValue({ANIMATION_LOCATION_STREAM, 0, 1})->data()[0] = 0.2f;
    frame->getValue({ANIMATION_LOCATION_STREAM, 0, 2})->data()[0] = 0.4f;
    frame->getValue({ANIMATION_LOCATION_STREAM, 0, 25})->data()[0] = 0.3f;
    EXPECT_EQ((std::vector<float>{0.2f, 0.7f, 0.6f}), bothPaths(mapper, c, *frame, 1));

    const DataTree description = mapper.buildDescription();
    const DataTree& queued = description.getItem("BlendshapeSet[001](000)");
    EXPECT_EQ("queue", queued.getItem("type").getString());
    const DataTree& first = queued.getItem("operators").getItem(0);
    EXPECT_EQ("Mul", first.getItem("type").getString());
    EXPECT_EQ("Stream[000](001)", first.getItem("location").getString());
    EXPECT_EQ(0.5, first.getItem("weight").getFloat());
    EXPECT_EQ("Replace", first.getItem("merge").getString());
    const DataTree& second = queued.getItem("operators").getItem(1);
    EXPECT_EQ("Stream[000](002)", second.getItem("location").getString());
    EXPECT_EQ(0.25, second.getItem("weight").getFloat());
    EXPECT_EQ("Sum", second.getItem("merge").getString());
    EXPECT_EQ("Replace", description.getItem("BlendshapeSet[001](002)").getItem("merge").getString());
    auto queue = mapper.getOperator({ANIMATION_LOCATION_BLENDSHAPE_SET, 1, 0});
    EXPECT_EQ(ANIMATION_OPERATOR_QUEUE, queue.getType());
    const auto& ops = static_cast<const AnimationQueueOperator&>(*queue.get()).operators;
    ASSERT_EQ(2u, ops.size());
    EXPECT_EQ(ANIMATION_MERGE_REPLACE, static_cast<const AnimationMulOperator&>(*ops[0].get()).mergeType);
    EXPECT_EQ(ANIMATION_MERGE_SUM, static_cast<const AnimationMulOperator&>(*ops[1].get()).mergeType);
    EXPECT_EQ(0.25f, static_cast<const AnimationMulOperator&>(*ops[1].get()).weight);
    EXPECT_EQ("No operator for 'BlendshapeSet[001](001)'",
              failure([&] { mapper.getOperator({ANIMATION_LOCATION_BLENDSHAPE_SET, 1, 1}); }));

    // Chains of other merges: target 2 is then multiplied by input 3, target 1
    // takes input 4 and adds twice input 5.
    AnimationMapper chains(arf, AnimationFramework::create(kMediapipe, 0));
    chains.addOperator({ANIMATION_LOCATION_BLENDSHAPE_SET, 1, 2},
                       AnimationBypassOperatorRef({ANIMATION_LOCATION_STREAM, 0, 3}, ANIMATION_MERGE_MUL));
    chains.addOperator({ANIMATION_LOCATION_BLENDSHAPE_SET, 1, 1},
                       AnimationBypassOperatorRef({ANIMATION_LOCATION_STREAM, 0, 4}, ANIMATION_MERGE_SUM));
    chains.addOperator({ANIMATION_LOCATION_BLENDSHAPE_SET, 1, 1},
                       AnimationMulOperatorRef({ANIMATION_LOCATION_STREAM, 0, 5}, 2.0f, ANIMATION_MERGE_SUM));
    frame->getValue({ANIMATION_LOCATION_STREAM, 0, 3})->data()[0] = 0.5f;
    frame->getValue({ANIMATION_LOCATION_STREAM, 0, 4})->data()[0] = 0.125f;
    frame->getValue({ANIMATION_LOCATION_STREAM, 0, 5})->data()[0] = 0.25f;
    EXPECT_EQ((std::vector<float>{0.2f, 0.625f, 0.6f * 0.5f}), bothPaths(chains, c, *frame, 1));
}

TEST(AnimationMapper, SamplesAndStaleTargets) {
    std::stringstream err;
    std::streambuf* old = std::cerr.rdbuf(err.rdbuf());
    const Arf stale = animtest::avatarF(7);
    AnimationMapper mapper(stale, AnimationFramework::create(kMediapipe, 0));
    std::cerr.rdbuf(old);
    EXPECT_NE(std::string::npos, err.str().find("Invalid target id 7 in BlendshapeSet:1"));

    // The rest of the document animates as without the stale association.
    const Arf clean = animtest::avatarF();
    AnimationMapper reference(clean, AnimationFramework::create(kMediapipe, 0));
    EXPECT_EQ(reference.buildDescription().toJsonString(), mapper.buildDescription().toJsonString());

    AnimationComponents c(stale);
    c.setBlendshapeWeights(1, {0.9f, 0.7f, 0.5f});
    BlendshapeAnimationSample sample;
    sample.setSetId(99);
    // Ids the framework lacks (below its first row, far past its last) are ignored.
    sample.setBlendshapeCount(5);
    const long ids[5] = {1, 2, 1, -5, std::numeric_limits<long>::max()};
    const float weights[5] = {0.2f, 0.4f, 0.8f, 0.5f, 0.5f};
    for (long i = 0; i < 5; ++i) {
        sample.setBlendshapeId(i, ids[i]);
        sample.setBlendshapeWeight(i, weights[i]);
    }
    AnimationComponents keyed = c;
    mapper.updateComponents(&c, static_cast<const UnitAnimationSample*>(&sample));
    mapper.updateComponentsKeyed(&keyed, &sample);
    // Target 0 from inputs 1 (the first of the repeated ids) and 2; target 2 lacks input 25.
    EXPECT_EQ((std::vector<float>{0.2f, 0.7f, 0.5f}), c.getBlendshapeWeights(1));
    EXPECT_EQ(keyed.getBlendshapeWeights(1), c.getBlendshapeWeights(1));

    SilentAnimationSample silent;
    EXPECT_EQ("Invalid or unsupported unit animation sample",
              failure([&] { mapper.updateComponents(&c, static_cast<const UnitAnimationSample*>(&silent)); }));
    EXPECT_EQ("sample is not a Joint",
              failure([&] { mapper.updateComponents(&c, &sample, ANIMATION_UNIT_JOINT); }));
    EXPECT_EQ("components is NULL", failure([&] { mapper.updateComponents(nullptr, &sample); }));
}

TEST(AnimationMapper, JointChannelsMultiplyFromTheLeft) {
    const Arf arf = animtest::avatarS();
    AnimationMapper mapper(arf, AnimationFramework::create(kMediapipe, 0));
    AnimationComponents c(arf);
    auto frame = mapper.getFramework()->createData();
    frame->getValue({ANIMATION_LOCATION_STREAM, 0, 25})->data()[0] = 0.25f;
    frame->getValue({ANIMATION_LOCATION_STREAM, 0, 9})->data()[0] = 1.0f;
    mapper.updateComponents(&c, frame.get());
    expectFloats({-1, 0, 0, -0.5f, 0, -1, 0, -1, 0, 0, 1, 1.5f, 0, 0, 0, 1}, c.getJointTransform(1, 1).data());
    expectFloats({-2, 0, 0, -2, 0, -2, 0, -4, 0, 0, 2, 6, 0, 0, 0, 1}, c.getJointTransform(1, 0).data());

    // A sample with weight 25 only: the rotation's source is missing, so joint 1 stays whole.
    const std::vector<float> identity = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
    c.setJointTransform(1, 1, identity);
    BlendshapeAnimationSample only25;
    only25.setBlendshapeCount(1);
    only25.setBlendshapeId(0, 25);
    only25.setBlendshapeWeight(0, 0.5f);
    mapper.updateComponents(&c, &only25);
    EXPECT_EQ(identity, c.getJointTransform(1, 1));

    frame->getValue({ANIMATION_LOCATION_STREAM, 0, 25})->data()[0] = 1.5f;
    EXPECT_EQ("Invalid time 1.500000 not in range [0.000000, 1.000000]",
              failure([&] { mapper.updateComponents(&c, frame.get()); }));
    EXPECT_EQ(identity, c.getJointTransform(1, 1));
}

TEST(AnimationMapper, DirectLinksBypass) {
    const Arf arf = animtest::avatarF();
    auto rig = AnimationFramework::tryCreate(arf, "ANIMATION_FACE", "urn:example:rig", 0);
    ASSERT_TRUE(rig);
    AnimationMapper mapper(arf, rig);
    AnimationComponents c(arf);
    auto frame = rig->createData();
    frame->setWeights({0.1f, 0.2f, 0.3f});
    EXPECT_EQ((std::vector<float>{0.1f, 0.2f, 0.3f}), bothPaths(mapper, c, *frame, 1));
    EXPECT_EQ(ANIMATION_OPERATOR_BYPASS, mapper.getOperator({ANIMATION_LOCATION_BLENDSHAPE_SET, 1, 2}).getType());

    EXPECT_EQ("Animation framework 'urn:mpeg:kelvar:eyes' not found",
              failure([&] { AnimationMapper(arf, AnimationFramework::create("urn:mpeg:kelvar:eyes", 0)); }));
    EXPECT_EQ("arf is NULL", failure([&] { AnimationMapper(static_cast<const Arf*>(nullptr), rig); }));
    EXPECT_EQ("source is NULL", failure([&] { AnimationMapper(arf, AnimationFrameworkRef()); }));
}

TEST(AnimationMapper, AFailureKeepsTheTargetsBeforeIt) {
    const Arf arf = animtest::avatarF();
    AnimationMapper mapper(arf, AnimationFramework::create(kMediapipe, 0));
    // Target 2 then follows a curve of input 25, defined on [0, 1] only.
    mapper.addOperator({ANIMATION_LOCATION_BLENDSHAPE_SET, 1, 2},
                       AnimationChannelOperatorRef({ANIMATION_LOCATION_STREAM, 0, 25}, {0, 1}, {0, 1},
                                                   "INTERPOLATION_LINEAR", "CHANNEL_BLENDSHAPE", ANIMATION_MERGE_SUM));
    auto frame = mapper.getFramework()->createData();
    frame->getValue({ANIMATION_LOCATION_STREAM, 0, 1})->data()[0] = 0.2f;
    frame->getValue({ANIMATION_LOCATION_STREAM, 0, 2})->data()[0] = 0.4f;
    frame->getValue({ANIMATION_LOCATION_STREAM, 0, 25})->data()[0] = 1.5f;
    for (bool keyed : {false, true}) {
        AnimationComponents c(arf);
        c.setBlendshapeWeights(1, {0.9f, 0.7f, 0.5f});
        EXPECT_EQ("Invalid time 1.500000 not in range [0.000000, 1.000000]", failure([&] {
                      if (keyed)
                          mapper.updateComponentsKeyed(&c, frame.get());
                      else
                          mapper.updateComponents(&c, frame.get());
                  }));
        EXPECT_EQ((std::vector<float>{0.2f, 0.7f, 0.5f}), c.getBlendshapeWeights(1)) << keyed;
    }
}

TEST(AnimationMapper, BuildRefusesBadAssociations) {
    const auto build = [](const std::string& associations) {
        return failure([&] { AnimationMapper(animtest::faceWith(associations), AnimationFramework::create(kMediapipe, 0)); });
    };
    EXPECT_EQ("Different size of sourceIndices and weights: 2 != 1",
              build(R"("linearAssociations": [{"targetIndex": 0, "sourceIndices": [1, 2], "weights": [1]}])"));
    EXPECT_EQ("Invalid input source location 'Stream[000](999)'",
              build(R"("linearAssociations": [{"targetIndex": 0, "sourceIndices": [999], "weights": [1]}])"));
    EXPECT_EQ("Invalid or unsuppoted combination",
              build(R"("nonLinearAssociations": [{"targetIndex": 0, "combination": "COMBINATION_MAX", "channels": []}])"));
    // A stale target is passed over before its sources are looked at.
    EXPECT_EQ("ok", build(R"("linearAssociations": [{"targetIndex": 9, "sourceIndices": [999], "weights": [1]}])"));
    // A mapping of another source is skipped whole.
    EXPECT_EQ("ok", failure([] {
                  AnimationMapper(animtest::faceWith(R"("linearAssociations": []}, {"source": 0,
                      "linearAssociations": [{"targetIndex": 0, "sourceIndices": [1, 2], "weights": [1]}])"),
                                  AnimationFramework::create(kMediapipe, 0));
              }));
}

TEST(AnimationMapper, JointPlanMatchesKeyed) {
    const Arf arf = animtest::avatarBody(4);
    auto body = AnimationFramework::tryCreate(arf, "ANIMATION_BODY", "urn:example:body", 0);
    ASSERT_TRUE(body);
    AnimationMapper mapper(arf, body);
    const AnimationComponents start(arf);
    auto frame = body->createData();
    std::vector<float> pose(4 * 16);
    for (size_t i = 0; i < pose.size(); ++i) pose[i] = 0.5f + static_cast<float>(i % 7) * 0.25f;
    frame->setTransforms(pose);

    const auto compare = [&] {
        AnimationComponents planned = start, keyed = start;
        EXPECT_TRUE(mapper.planFits(planned, *frame));
        mapper.updateComponents(&planned, frame.get());
        mapper.updateComponentsKeyed(&keyed, frame.get());
        EXPECT_EQ(keyed.getJointTransforms(1), planned.getJointTransforms(1));
        return planned.getJointTransforms(1);
    };
    EXPECT_EQ(pose, compare());
    // Copies own their sets: the start is still the rest pose.
    EXPECT_NE(pose, start.getJointTransforms(1));
    EXPECT_EQ(AnimationComponents(arf).getJointTransforms(1), start.getJointTransforms(1));

    // Joint 1 then multiplies by joint 2's matrix from the left; joint 3 adds
    // a scaled copy of joint 0.
    mapper.addOperator({ANIMATION_LOCATION_SKELETON, 1, 1},
                       AnimationBypassOperatorRef({ANIMATION_LOCATION_STREAM, 0, 2}, ANIMATION_MERGE_MUL));
    mapper.addOperator({ANIMATION_LOCATION_SKELETON, 1, 3},
                       AnimationMulOperatorRef({ANIMATION_LOCATION_STREAM, 0, 0}, 0.5f, ANIMATION_MERGE_SUM));
    const std::vector<float> result = compare();
    std::vector<float> product(pose.begin() + 16, pose.begin() + 32);
    sorvane::matrix4x4_lmul_float(product.data(), pose.data() + 32, sorvane::MATRIX4X4_ROW_MAJOR);
    EXPECT_EQ(product, std::vector<float>(result.begin() + 16, result.begin() + 32));
    EXPECT_FLOAT_EQ(pose[48] + 0.5f * pose[0], result[48]);

    // A source the frame lacks leaves its target whole on both paths.
    mapper.addOperator({ANIMATION_LOCATION_SKELETON, 1, 0},
                       AnimationBypassOperatorRef({ANIMATION_LOCATION_STREAM, 0, 40}, ANIMATION_MERGE_SUM));
    // A joint sample naming inputs 2 and 0 (twice: the first wins) and an
    // unknown 9: only joint 2 has all its sources; joint 0 now also needs
    // input 40, joints 1 and 3 their own inputs, and they keep their values.
    JointAnimationSample sample;
    sample.setJointCount(4);
    const long ids[4] = {2, 0, 9, 0};
    for (long k = 0; k < 4; ++k) {
        sample.getJoints()[static_cast<size_t>(k)].id = ids[k];
        for (long e = 0; e < 16; ++e) sample.getJoints()[static_cast<size_t>(k)].transform[e] = static_cast<float>(k * 16 + e);
    }
    AnimationComponents fromSample = start, fromSampleKeyed = start;
    mapper.updateComponents(&fromSample, &sample);
    mapper.updateComponentsKeyed(&fromSampleKeyed, &sample);
    EXPECT_EQ(fromSampleKeyed.getJointTransforms(1), fromSample.getJointTransforms(1));
    for (long joint : {0L, 1L, 3L}) EXPECT_EQ(start.getJointTransform(1, joint), fromSample.getJointTransform(1, joint));
    EXPECT_EQ(std::vector<float>(sample.getJoints()[0].transform, sample.getJoints()[0].transform + 16),
              fromSample.getJointTransform(1, 2));
    // Without joint 0's extra operator, the first of the repeated id 0 drives it.
    AnimationMapper direct(arf, body);
    AnimationComponents fresh = start, freshKeyed = start;
    direct.updateComponents(&fresh, &sample);
    direct.updateComponentsKeyed(&freshKeyed, &sample);
    EXPECT_EQ(freshKeyed.getJointTransforms(1), fresh.getJointTransforms(1));
    EXPECT_EQ(std::vector<float>(sample.getJoints()[1].transform, sample.getJoints()[1].transform + 16),
              fresh.getJointTransform(1, 0));
    EXPECT_EQ(start.getJointTransform(1, 1), fresh.getJointTransform(1, 1));

    const std::vector<float> missing = compare();
    EXPECT_EQ(start.getJointTransform(1, 0), std::vector<float>(missing.begin(), missing.begin() + 16));
}

TEST(AnimationMapper, PlanFallsBackWhenLayoutsDiffer) {
    const Arf arf = animtest::avatarF();
    AnimationMapper mapper(arf, AnimationFramework::create(kMediapipe, 0));
    AnimationComponents c(arf);
    auto frame = mapper.getFramework()->createData();
    frame->getValue({ANIMATION_LOCATION_STREAM, 0, 1})->data()[0] = 0.2f;
    EXPECT_TRUE(mapper.planFits(c, *frame));
    // Relabelled components no longer match the plan: the keyed path runs.
    const long ids[3] = {5, 6, 7};
    c.setBlendshapeIds(1, ids, sizeof ids, 3);
    EXPECT_FALSE(mapper.planFits(c, *frame));
    EXPECT_EQ("Invalid target location 'BlendshapeSet[001](000)'",
              failure([&] { mapper.updateComponents(&c, frame.get()); }));
    // A frame of another framework with other locations neither.
    AnimationComponents fresh(arf);
    auto other = AnimationFramework::create(kMediapipe, 3)->createData();
    EXPECT_FALSE(mapper.planFits(fresh, *other));
    mapper.updateComponents(&fresh, other.get()); // every source missing: nothing changes
    EXPECT_EQ((std::vector<float>{0, 0, 0}), fresh.getBlendshapeWeights(1));
}

TEST(AnimationMapper, OneMapperManyThreads) {
    // Face (the plan) and skeleton (the keyed path) from the same shared mappers.
    const Arf face = animtest::avatarF(), skeleton = animtest::avatarS();
    const AnimationMapper faceMapper(face, AnimationFramework::create(kMediapipe, 0));
    const AnimationMapper skeletonMapper(skeleton, AnimationFramework::create(kMediapipe, 0));
    const auto drive = [&](long step) {
        AnimationComponents f(face), s(skeleton);
        auto frame = faceMapper.getFramework()->createData();
        for (long k = 0; k <= step; ++k) {
            const float t = static_cast<float>(k % 11) / 10.0f;
            frame->getValue({ANIMATION_LOCATION_STREAM, 0, 1})->data()[0] = t;
            frame->getValue({ANIMATION_LOCATION_STREAM, 0, 2})->data()[0] = 1 - t;
            frame->getValue({ANIMATION_LOCATION_STREAM, 0, 25})->data()[0] = t;
            frame->getValue({ANIMATION_LOCATION_STREAM, 0, 9})->data()[0] = 1 - t;
            faceMapper.updateComponents(&f, frame.get());
            skeletonMapper.updateComponents(&s, frame.get());
        }
        std::vector<float> out = f.getBlendshapeWeights(1), joints = s.getJointTransforms(1);
        out.insert(out.end(), joints.begin(), joints.end());
        return out;
    };
    const long steps = 200;
    const std::vector<float> alone = drive(steps);
    std::vector<std::vector<float>> results(8);
    std::vector<std::thread> threads;
    for (size_t i = 0; i < results.size(); ++i) threads.emplace_back([&, i] { results[i] = drive(steps); });
    for (auto& t : threads) t.join();
    for (const auto& r : results) EXPECT_EQ(alone, r);
}
