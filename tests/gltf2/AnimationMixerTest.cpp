#include <gtest/gtest.h>

#include <cmath>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "sorvane/gltf2/property/animation/mixer/AnimationMixer.h"
#include "tests/gltf2/GltfTestSupport.h"

using namespace sorvane::gltf2;
using talvex_test::messageOf;

namespace {

const float kA = std::sqrt(0.5f);

TransformData strRest(std::vector<double> t, std::vector<double> r = {0, 0, 0, 1}) {
    return Channel::restState("nodes[0]", nullptr, &t, &r, nullptr);
}

// The state of node 0 after one track 0 -> `end` (keys at 0 and 1) at `time`.
TransformData applied(const TransformData& rest, const std::string& path, std::vector<float> start,
                      std::vector<float> end, TransformPolicy policy, float time) {
    AnimationMixer mixer;
    std::vector<float> output = start;
    output.insert(output.end(), end.begin(), end.end());
    mixer.addAnimationChannel(0, rest, path, {0, 1}, output, "LINEAR", time, "a", std::nullopt, policy);
    return mixer.apply().at(0);
}

std::vector<float> vec(const float* v, size_t n) { return std::vector<float>(v, v + n); }

void expectNear(const std::vector<float>& actual, const std::vector<float>& expected) {
    ASSERT_EQ(actual.size(), expected.size());
    for (size_t i = 0; i < actual.size(); ++i) EXPECT_NEAR(actual[i], expected[i], 1e-6f) << "at " << i;
}

} // namespace

TEST(AnimationMixer, PoliciesOnTranslationAndRotation) {
    const TransformData rest = strRest({1, 2, 3});
    const std::vector<float> zero{0, 0, 0}, ten{10, 10, 10};
    EXPECT_EQ(vec(applied(rest, "translation", zero, ten, TransformPolicy::Replace, 0.5f).translation, 3),
              (std::vector<float>{5, 5, 5}));
    EXPECT_EQ(vec(applied(rest, "translation", zero, ten, TransformPolicy::Add, 0.5f).translation, 3),
              (std::vector<float>{6, 7, 8}));
    // Per component, not a composed transform.
    EXPECT_EQ(vec(applied(rest, "translation", zero, ten, TransformPolicy::Multiply, 0.5f).translation, 3),
              (std::vector<float>{5, 10, 15}));

    // The sample multiplies from the left.
    const std::vector<float> q{0, 0, kA, kA};
    expectNear(vec(applied(strRest({0, 0, 0}, {kA, 0, 0, kA}), "rotation", q, q, TransformPolicy::Multiply, 0.5f)
                       .rotation, 4),
               {0.5f, 0.5f, 0.5f, 0.5f});
    expectNear(vec(applied(strRest({0, 0, 0}, {0, 0, kA, kA}), "rotation", {kA, 0, 0, kA}, {kA, 0, 0, kA},
                           TransformPolicy::Multiply, 0.5f)
                       .rotation, 4),
               {0.5f, -0.5f, 0.5f, 0.5f});
    // Add is a plain sum and leaves the unit sphere.
    expectNear(vec(applied(strRest({0, 0, 0}), "rotation", q, q, TransformPolicy::Add, 0).rotation, 4),
               {0, 0, kA, 1 + kA});
}

TEST(AnimationMixer, StrAndMatrixConvertThroughTheKernels) {
    TransformData data(TransformType::STR);
    const float t[] = {1, 2, 3}, r[] = {0, 0, kA, kA}, s[] = {2, 3, 4};
    std::copy(t, t + 3, data.translation);
    std::copy(r, r + 4, data.rotation);
    std::copy(s, s + 3, data.scale);
    data.setTransformType(TransformType::Matrix);
    expectNear(vec(data.matrix, 16), {0, 2, 0, 0, -3, 0, 0, 0, 0, 0, 4, 0, 1, 2, 3, 1});
    data.setTransformType(TransformType::STR);
    expectNear(vec(data.translation, 3), {1, 2, 3});
    expectNear(vec(data.rotation, 4), {0, 0, kA, kA});
    expectNear(vec(data.scale, 3), {2, 3, 4});

    // A half turn has no branch of its own.
    TransformData half;
    const float flip[] = {1, 0, 0, 0, 0, -1, 0, 0, 0, 0, -1, 0, 0, 0, 0, 1};
    std::copy(flip, flip + 16, half.matrix);
    try {
        half.setTransformType(TransformType::STR);
        FAIL() << "no error";
    } catch (const std::runtime_error& e) {
        EXPECT_STREQ(e.what(), "Invalid matrix transform");
    }
    EXPECT_EQ(half.transformType, TransformType::Matrix);
    EXPECT_EQ(messageOf([&] { half.setTransformType(static_cast<TransformType>(7)); }),
              "Invalid or unsupported transform type conversion");
    half.transformType = static_cast<TransformType>(7);
    EXPECT_EQ(messageOf([&] { half.setTransformType(TransformType::STR); }), "Invalid or unsupported transform type");
}

TEST(AnimationMixer, RestStatesFromNodeValues) {
    const std::vector<double> m(16, 1.0), t{1, 2, 3}, shortRotation{0, 0, 1};
    TransformData matrix = Channel::restState("nodes[2]", &m, nullptr, nullptr, nullptr);
    EXPECT_TRUE(matrix.transformed);
    EXPECT_EQ(matrix.transformType, TransformType::Matrix);
    EXPECT_FALSE(Channel::restState("nodes[2]", nullptr, nullptr, nullptr, nullptr).transformed);
    TransformData str = Channel::restState("nodes[2]", nullptr, &t, nullptr, nullptr);
    EXPECT_EQ(str.transformType, TransformType::STR);
    EXPECT_EQ(vec(str.rotation, 4), (std::vector<float>{0, 0, 0, 1}));
    EXPECT_EQ(messageOf([&] { Channel::restState("nodes[2]", &m, &t, nullptr, nullptr); }),
              "Error in nodes[2]:\nCan't mix Scale/Rotation/Translation and Matrix transform");
    EXPECT_EQ(messageOf([&] { Channel::restState("nodes[2]", nullptr, nullptr, &shortRotation, nullptr); }),
              "Invalid dimension");
    EXPECT_EQ(messageOf([&] { Channel::restState("nodes[2]", &t, nullptr, nullptr, nullptr); }),
              "Invalid dimension");
}

TEST(AnimationMixer, OneTransformPerNameAndPolicyTable) {
    AnimationMixer mixer(30.0f, {{"translation", TransformPolicy::Add}});
    float time = 0.0f;
    const TransformData rest = strRest({1, 1, 1});
    mixer.addAnimationChannel(3, rest, "translation", {0, 1}, {0, 0, 0, 1, 1, 1}, "LINEAR", time, "walk");
    EXPECT_EQ(mixer.channels[0]->transforms[0]->policy, TransformPolicy::Add);
    EXPECT_EQ(messageOf([&] {
                  mixer.addAnimationChannel(3, rest, "rotation", {0, 1}, {0, 0, 0, 1, 0, 0, 0, 1}, "LINEAR", time,
                                            "walk");
              }),
              "No default transform policy rotation");
    EXPECT_EQ(messageOf([&] {
                  mixer.addAnimationChannel(4, rest, "color", {0, 1}, {0, 1}, "LINEAR", time, "walk",
                                            std::nullopt, TransformPolicy::Replace);
              }),
              "Invalid or unsupported path color");
    // The failed add leaves the channel it made for node 4.
    ASSERT_EQ(mixer.channels.size(), 2u);
    EXPECT_TRUE(mixer.channels[1]->transforms.empty());

    mixer.addAnimationChannel(3, rest, "rotation", {0, 1}, {0, 0, 0, 1, 0, 0, 1, 0}, "LINEAR", time, "walk",
                              std::nullopt, TransformPolicy::Replace);
    mixer.addAnimationChannel(3, rest, "scale", {0, 1}, {1, 1, 1, 2, 2, 2}, "LINEAR", time, "run", std::nullopt,
                              TransformPolicy::Multiply);
    std::ostringstream text;
    text << mixer;
    EXPECT_EQ(text.str(), " === Animation Mixer === \nChannel 0 Node 3\nTransform 0 walk: RotationTransform\n"
                          "Transform 1 run: ScaleTransform\n\nChannel 1 Node 4\n\n");

    mixer.removeAnimation("walk");
    ASSERT_EQ(mixer.channels.size(), 2u);
    ASSERT_EQ(mixer.channels[0]->transforms.size(), 1u);
    EXPECT_STREQ(mixer.channels[0]->transforms[0]->name(), "ScaleTransform");

    // The time is the caller's float, read at each apply; a converter maps it unclamped.
    time = 0.5f;
    expectNear(vec(mixer.apply()[0].scale, 3), {1.5f, 1.5f, 1.5f});
    mixer.channels[0]->transforms[0]->rangeConverter = RangeConverter{10, 20, 0, 2};
    time = 14.0f;
    expectNear(vec(mixer.apply()[0].scale, 3), {1.8f, 1.8f, 1.8f});
    time = 30.0f;  // maps to 4, past the last key
    EXPECT_EQ(messageOf([&] { mixer.apply(); }), "Getting a sample:\nInvalid time");

    time = 1.0f;
    mixer.channels[0]->transforms[0]->rangeConverter.reset();
    mixer.setAnimationChannelOutput("run", {1, 1, 1, 3, 3, 3});
    EXPECT_EQ(vec(mixer.apply()[0].scale, 3), (std::vector<float>{3, 3, 3}));
    EXPECT_EQ(messageOf([&] { mixer.setAnimationChannelOutput("run", {1}); }), "Invalid output size");
}

TEST(AnimationMixer, WeightsAreSizedOnFirstUse) {
    AnimationMixer mixer;
    float time = 0.5f;
    mixer.addAnimationChannel(0, TransformData(), "weights", {0, 1}, {0, 0, 1, 1}, "LINEAR", time, "w",
                              std::nullopt, TransformPolicy::Add);
    TransformData data;
    mixer.channels[0]->apply(data);
    EXPECT_TRUE(data.hasWeights);
    EXPECT_FALSE(data.transformed);
    EXPECT_EQ(data.weights, (std::vector<float>{0.5f, 0.5f}));
    // A longer vector keeps its size, its tail combined with zeros.
    data.weights = {1, 1, 1};
    mixer.channels[0]->apply(data);
    EXPECT_EQ(data.weights, (std::vector<float>{1.5f, 1.5f, 1}));
    data.weights = {1};
    EXPECT_EQ(messageOf([&] { mixer.channels[0]->apply(data); }), "Getting a sample:\nOut is too small");

    std::ostringstream text;
    data.weights = {0.25f, 2};
    data.print(text);
    EXPECT_EQ(text.str(), "TransformData(weights=0.25 2)");
    TransformData str = strRest({1, 2, 3});
    std::ostringstream strText;
    strText << str;
    EXPECT_EQ(strText.str(),
              "TransformData(transform:STR=\n    scale=1 1 1\n    rotation=0 0 0 1\n    translation=1 2 3\n)");
}
