#include <gtest/gtest.h>

#include <cmath>

#include "AnimationTestUtil.h"
#include "sorvane/arf/animation/AnimationFramework.h"
#include "sorvane/arf/animation/data/AnimationOperator.h"

using namespace sorvane::arf;
using animtest::expectFloats;
using animtest::failure;

namespace {

const AnimationLocation kIn(ANIMATION_LOCATION_STREAM, 0, 0);

AnimationChannelOperatorRef channel(const std::vector<float>& keys, const std::vector<float>& values,
                                    const std::string& interpolation = "INTERPOLATION_LINEAR",
                                    const std::string& path = "") {
    return AnimationChannelOperatorRef(kIn, keys, values, interpolation, path, ANIMATION_MERGE_REPLACE);
}

float sample(const AnimationChannelOperatorRef& c, float t) {
    float out = -1;
    c.computeSample(&out, 1, t);
    return out;
}

} // namespace

TEST(AnimationChannel, LinearAndCubicCurves) {
    auto linear = channel({0, 0.5f, 1}, {0, 1, 0});
    EXPECT_FLOAT_EQ(0.5f, sample(linear, 0.75f));
    EXPECT_FLOAT_EQ(1.0f, sample(linear, 0.5f)); // on a key: the segment that begins there
    EXPECT_FLOAT_EQ(0.0f, sample(linear, 0.0f));
    EXPECT_FLOAT_EQ(0.0f, sample(linear, 1.0f)); // the last key: the end of the last segment
    EXPECT_EQ("Invalid time 1.000001 not in range [0.000000, 1.000000]",
              failure([&] { sample(linear, 1.000001f); }));
    float two[2];
    EXPECT_EQ("Invalid output size 2 != 1", failure([&] { linear.computeSample(two, 2, 0.5f); }));

    auto cubic = channel({0, 2}, {0, 0, 1, 2, 1, 0}, "INTERPOLATION_CUBICSPLINE");
    EXPECT_FLOAT_EQ(0.25f, sample(cubic, 1.0f));
    EXPECT_FLOAT_EQ(1.0f, sample(cubic, 2.0f));

    // Equal end keys divide by zero; the result is left as it comes.
    auto flat = channel({0, 1, 1}, {0, 1, 2});
    EXPECT_TRUE(std::isnan(sample(flat, 1.0f)));
}

TEST(AnimationChannel, InitChecksInOrder) {
    EXPECT_EQ("Not enough data", failure([] { channel({0}, {1}); }));
    EXPECT_EQ("Output value count must divide input value count", failure([] { channel({0, 1}, {1, 2, 3}); }));
    EXPECT_EQ("Output value count (4) must divide 3 * (input value count = 2)",
              failure([] { channel({0, 1}, {1, 2, 3, 4}, "INTERPOLATION_CUBICSPLINE"); }));
    EXPECT_EQ("Invalid or unsupported interpolation INTERPOLATION_SLERP",
              failure([] { channel({0, 1}, {1, 2}, "INTERPOLATION_SLERP"); }));
    EXPECT_EQ("Input values must be in increasing order", failure([] { channel({1, 0}, {1, 2}); }));
    EXPECT_EQ("ok", failure([] { channel({0, 0, 1}, {1, 2, 3}); })); // repeated keys pass
    EXPECT_EQ("Invalid sample size 2 for a weight", failure([] { channel({0, 1}, {1, 2, 3, 4}, "INTERPOLATION_LINEAR", "CHANNEL_BLENDSHAPE"); }));
    EXPECT_EQ("Invalid sample size 1 for a transform", failure([] { channel({0, 1}, {1, 2}, "INTERPOLATION_LINEAR", "CHANNEL_JOINT"); }));
    EXPECT_EQ("Invalid sample size 2 for a rotation", failure([] { channel({0, 1}, {1, 2, 3, 4}, "INTERPOLATION_LINEAR", "CHANNEL_JOINT_ROTATION"); }));
    EXPECT_EQ("Invalid sample size 1 for a translation", failure([] { channel({0, 1}, {1, 2}, "INTERPOLATION_LINEAR", "CHANNEL_JOINT_TRANSLATION"); }));
    EXPECT_EQ("Invalid sample size 1 for a scale", failure([] { channel({0, 1}, {1, 2}, "INTERPOLATION_LINEAR", "CHANNEL_JOINT_SCALE"); }));
    EXPECT_EQ("Invalid or unsupported path 'CHANNEL_X'", failure([] { channel({0, 1}, {1, 2}, "INTERPOLATION_LINEAR", "CHANNEL_X"); }));
    auto q = channel({0, 1}, {0, 0, 0, 1, 0, 0, 1, 0}, "INTERPOLATION_LINEAR", "CHANNEL_JOINT_ROTATION");
    EXPECT_EQ(ANIMATION_VALUE_QUATERNION, q.getValueType());
    EXPECT_EQ(ANIMATION_CHANNEL_ROTATION, q.getPath());
}

TEST(AnimationChannel, RunTurnsAWeightIntoTheTargetsValue) {
    AnimationFramework f("urn:x", "ANIMATION_FACE");
    f.addInput(ANIMATION_VALUE_WEIGHT, "w", ANIMATION_LOCATION_STREAM, 0);
    f.addInput(ANIMATION_VALUE_TRANSFORM, "m", ANIMATION_LOCATION_STREAM, 0);
    auto frame = f.createData();
    frame->getValue(kIn)->data()[0] = 0.5f;

    auto move = channel({0, 1}, {0, 0, 0, 2, 4, 6}, "INTERPOLATION_LINEAR", "CHANNEL_JOINT_TRANSLATION");
    AnimationTransform joint;
    move.run(joint, *frame);
    expectFloats({1, 0, 0, 1, 0, 1, 0, 2, 0, 0, 1, 3, 0, 0, 0, 1}, joint.data());

    // A second channel multiplies from the left: a half turn about Z after the move.
    auto turn = AnimationChannelOperatorRef(kIn, {0, 1}, {0, 0, 0, 1, 0, 0, 1, 0}, "INTERPOLATION_LINEAR",
                                            "CHANNEL_JOINT_ROTATION", ANIMATION_MERGE_MUL);
    frame->getValue(kIn)->data()[0] = 1.0f;
    turn.run(joint, *frame);
    expectFloats({-1, 0, 0, -1, 0, -1, 0, -2, 0, 0, 1, 3, 0, 0, 0, 1}, joint.data());

    AnimationWeight weight;
    EXPECT_EQ("Invalid or unsuppported channel path", failure([&] { move.run(weight, *frame); }));
    auto fromMatrix = AnimationChannelOperatorRef({ANIMATION_LOCATION_STREAM, 0, 1}, {0, 1}, {0, 1},
                                                  "INTERPOLATION_LINEAR", "", ANIMATION_MERGE_REPLACE);
    EXPECT_EQ("Invalid or unsuppported value type", failure([&] { fromMatrix.run(weight, *frame); }));
}

TEST(AnimationOperator, QueuesAndDescriptions) {
    AnimationFramework f("urn:x", "ANIMATION_FACE");
    f.addInput(ANIMATION_VALUE_WEIGHT, "a", ANIMATION_LOCATION_STREAM, 0);
    f.addInput(ANIMATION_VALUE_WEIGHT, "b", ANIMATION_LOCATION_STREAM, 0);
    auto frame = f.createData();
    frame->setWeights({0.2f, 0.4f});

    AnimationQueueOperatorRef queue(ANIMATION_MERGE_REPLACE);
    queue.add(AnimationMulOperatorRef({ANIMATION_LOCATION_STREAM, 0, 0}, 0.5f, ANIMATION_MERGE_SUM));
    queue.add(AnimationMulOperatorRef({ANIMATION_LOCATION_STREAM, 0, 1}, 0.25f, ANIMATION_MERGE_SUM));
    EXPECT_EQ(2, queue.getOperatorCount());
    AnimationWeight target(0.7f);
    queue.run(target, *frame);
    EXPECT_FLOAT_EQ(0.2f, target.data()[0]); // the old 0.7 leaves no trace

    const std::string text = queue.buildDescription().toJsonString();
    EXPECT_NE(std::string::npos, text.find("\"queue\""));
    EXPECT_NE(std::string::npos, text.find("\"Replace\""));
    EXPECT_NE(std::string::npos, text.find("Stream[000](001)"));

    AnimationOperatorRef empty;
    EXPECT_EQ("animation operator is NULL", failure([&] { empty.getType(); }));
    EXPECT_EQ(std::string("Queue"), animationOperatorType2string(queue.getType()));
    EXPECT_EQ(std::string("Invalid"), animationOperatorType2string(static_cast<AnimationOperatorType>(42)));

    // A missing source surfaces as AnimationValueNotFound.
    AnimationBypassOperatorRef missing({ANIMATION_LOCATION_STREAM, 0, 9}, ANIMATION_MERGE_REPLACE);
    EXPECT_THROW(missing.run(target, *frame), AnimationValueNotFound);
}
