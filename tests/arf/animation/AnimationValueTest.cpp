#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <sstream>

#include "AnimationTestUtil.h"
#include "sorvane/arf/animation/AnimationFramework.h"
#include "sorvane/arf/animation/data/AnimationData.h"
#include "sorvane/arf/animation/data/AnimationInput.h"
#include "sorvane/arf/animation/data/AnimationLocation.h"
#include "sorvane/arf/animation/data/AnimationValue.h"

using namespace sorvane::arf;
using animtest::expectFloats;
using animtest::failure;

namespace {

AnimationLocation loc(int type, long id, long index) {
    return AnimationLocation(static_cast<AnimationLocationType>(type), id, index);
}

} // namespace

TEST(AnimationLocation, DescribesTypeIdAndIndex) {
    EXPECT_EQ("Skeleton[002]", loc(3, 2, -1).desc());
    EXPECT_EQ("BlendshapeSet[1234](007)", loc(2, 1234, 7).desc());
    EXPECT_EQ("?[001](001)", loc(6, 1, 1).desc());
    EXPECT_EQ("Invalid", AnimationLocation().desc());
    EXPECT_EQ("Stream[000](123)", loc(1, 0, 123).desc());
    EXPECT_EQ("TextureSet(005)", loc(5, -1, 5).desc());
    std::ostringstream out;
    out << loc(3, 2, 17);
    EXPECT_EQ("Skeleton[002](017)", out.str());
}

TEST(AnimationLocation, OrdersByTypeThenIdThenSignedIndex) {
    std::vector<AnimationLocation> v = {loc(2, 0, 0), loc(1, 5, 3), loc(1, 5, -1), loc(1, -1, 9), loc(0, 9, 9)};
    std::sort(v.begin(), v.end());
    const std::vector<AnimationLocation> expected = {loc(0, 9, 9), loc(1, -1, 9), loc(1, 5, -1), loc(1, 5, 3),
                                                     loc(2, 0, 0)};
    EXPECT_EQ(expected, v);
}

TEST(AnimationValue, CreatedValuesAndTexts) {
    EXPECT_EQ(std::string("Transform"), animationValueType2string(ANIMATION_VALUE_TRANSFORM));
    EXPECT_EQ(std::string("Invalid"), animationValueType2string(static_cast<AnimationValueType>(9)));
    EXPECT_EQ(std::string("Mul"), animationMergeType2string(ANIMATION_MERGE_MUL));
    EXPECT_EQ(std::string("Invalid"), animationLocationType2string(static_cast<AnimationLocationType>(-1)));

    auto q = AnimationInput::create(ANIMATION_VALUE_QUATERNION, "q")->createValue();
    ASSERT_EQ(4, q->dataCount());
    expectFloats({0, 0, 0, 1}, q->data());
    auto t = AnimationInput::create(ANIMATION_VALUE_TRANSFORM, "t")->createValue();
    ASSERT_EQ(16, t->dataCount());
    expectFloats(std::vector<float>(16, 0.0f), t->data()); // the zero matrix, not the identity
    EXPECT_EQ("Invalid or unsupported value type", failure([] { AnimationInput::create(ANIMATION_VALUE_INVALID, "x"); }));

    // A clone is a deep copy of the same class.
    t->data()[5] = 3;
    auto copy = t->clone();
    t->data()[5] = 4;
    EXPECT_EQ(ANIMATION_VALUE_TRANSFORM, copy->getType());
    EXPECT_EQ(3, copy->data()[5]);
}

TEST(AnimationValue, MergeChecksSizeThenType) {
    AnimationVector3 v;
    AnimationWeight w(2);
    EXPECT_EQ("Different value sizes 3 != 1", failure([&] { v.merge(w, ANIMATION_MERGE_SUM); }));
    AnimationWeight w2(1);
    EXPECT_EQ("Invalid or unsupported merge type", failure([&] { w2.merge(w, ANIMATION_MERGE_INVALID); }));
    AnimationTransform t;
    EXPECT_EQ("Different value sizes 16 != 1", failure([&] { t.merge(w, ANIMATION_MERGE_MUL); }));
    EXPECT_EQ("Invalid or unsupported merge type", failure([&] { t.merge(t, ANIMATION_MERGE_INVALID); }));

    w2.merge(w, ANIMATION_MERGE_SUM);
    EXPECT_EQ(3, w2.data()[0]);
    w2.merge(w, ANIMATION_MERGE_MUL);
    EXPECT_EQ(6, w2.data()[0]);
    w2.merge(w, ANIMATION_MERGE_REPLACE);
    EXPECT_EQ(2, w2.data()[0]);
    w2.mul(0.5f);
    EXPECT_EQ(1, w2.data()[0]);

    // Quaternions multiply element by element, unnormalised.
    AnimationQuaternion a, b;
    std::copy_n(std::vector<float>{1, 2, 3, 4}.data(), 4, a.data());
    std::copy_n(std::vector<float>{0.5f, 0.5f, 2, 2}.data(), 4, b.data());
    a.merge(b, ANIMATION_MERGE_MUL);
    expectFloats({0.5f, 1, 6, 8}, a.data());
}

TEST(AnimationTransform, MulTakesTheOtherOnTheLeftAndSumAdds) {
    AnimationTransform target, diag;
    const float t[3] = {1, 0, 0};
    target.setMatrixFromTranslation(t);
    const float s[3] = {2, 2, 2};
    diag.setMatrixFromScale(s);
    target.merge(diag, ANIMATION_MERGE_MUL);
    expectFloats({2, 0, 0, 2, 0, 2, 0, 0, 0, 0, 2, 0, 0, 0, 0, 1}, target.data());

    target.merge(diag, ANIMATION_MERGE_SUM);
    expectFloats({4, 0, 0, 2, 0, 4, 0, 0, 0, 0, 4, 0, 0, 0, 0, 2}, target.data());
}

TEST(AnimationTransform, MatricesFromRotations) {
    AnimationTransform m;
    const float pi = static_cast<float>(M_PI);
    const float euler[3] = {pi / 2, pi / 2, 0};
    m.setMatrixFromEuler(euler);
    expectFloats({0, 1, 0, 0, 0, 0, -1, 0, -1, 0, 0, 0, 0, 0, 0, 1}, m.data(), 1e-6f);

    // Half a turn about Z.
    const float q[4] = {0, 0, 1, 0};
    m.setMatrixFromQuaternion(q);
    expectFloats({-1, 0, 0, 0, 0, -1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1}, m.data());

    std::ostringstream out;
    out << m;
    EXPECT_EQ("[ -1 0 0 0 ]\n[ 0 -1 0 0 ]\n[ 0 0 1 0 ]\n[ 0 0 0 1 ]", out.str());
}

TEST(AnimationData, WeightsOfAFaceFrame) {
    auto frame = AnimationFramework::create("urn:mpeg:avatar:blendshapes:mediapipe", 0)->createData();
    EXPECT_EQ(52, frame->getWeights(nullptr, 0));
    std::vector<float> in(52);
    for (size_t i = 0; i < in.size(); ++i) in[i] = 0.01f * static_cast<float>(i);

    EXPECT_EQ("Invalid number of weights 51 expect 52", failure([&] { frame->setWeights(in.data(), 208, 51); }));
    EXPECT_EQ("data too small", failure([&] { frame->setWeights(in.data(), 207, 52); }));
    EXPECT_EQ("data too small", failure([&] { frame->setWeights(nullptr, 208, 52); }));
    frame->setWeights(in);
    EXPECT_EQ(in, frame->getWeights());
    EXPECT_FLOAT_EQ(0.25f, frame->getValue(loc(1, 0, 25))->data()[0]);

    // A value taken from the frame sees later writes and survives the frame.
    auto value = frame->getValue(loc(1, 0, 3));
    frame->getValue(loc(1, 0, 3))->data()[0] = 7;
    frame.reset();
    EXPECT_EQ(7, value->data()[0]);

    std::vector<float> out(52);
    auto again = AnimationFramework::create("urn:mpeg:avatar:blendshapes:mediapipe", 0)->createData();
    EXPECT_EQ("out too small", failure([&] { again->getWeights(out.data(), 207); }));

    AnimationData empty;
    EXPECT_EQ(0, empty.getWeights(out.data(), 0));
    empty.setWeights(nullptr, 0, 0);
}

TEST(AnimationData, TransformsOfABodyFrame) {
    auto frame = AnimationFramework::create("urn:mpeg:avatar:body-tracking:mediapipe", 2)->createData();
    const long n = 33;
    EXPECT_EQ("Value for index 0 is not a weight (type 4)", failure([&] {
                  float w[33];
                  frame->getWeights(w, sizeof w);
              }));
    std::vector<float> w(n, 1.0f);
    EXPECT_EQ("Value for weight #0 is not a weight (type 4)", failure([&] { frame->setWeights(w); }));

    std::vector<float> t(n * 16);
    for (size_t i = 0; i < t.size(); ++i) t[i] = static_cast<float>(i);
    EXPECT_EQ("data too small", failure([&] { frame->setTransforms(t.data(), n * 64, n * 16 - 1); }));
    EXPECT_EQ(std::vector<float>(n * 16, 0.0f), frame->getTransforms()); // nothing written
    frame->setTransforms(t);
    EXPECT_EQ(t, frame->getTransforms());
    EXPECT_EQ(16 * 5 + 3, frame->getValue(loc(1, 2, 5))->data()[3]);

    try {
        frame->getValue(loc(1, 0, 52));
        FAIL();
    } catch (const AnimationValueNotFound& e) {
        EXPECT_EQ("Value not found at Stream[000](052)", std::string(e.what()));
        EXPECT_EQ(loc(1, 0, 52), e.location);
    }
}

TEST(AnimationData, MixedFrameWritesUpToTheFirstWrongValue) {
    AnimationFramework mixed("urn:example", "ANIMATION_FACE");
    mixed.addInput(ANIMATION_VALUE_WEIGHT, "a", ANIMATION_LOCATION_STREAM, 0);
    mixed.addInput(ANIMATION_VALUE_TRANSFORM, "b", ANIMATION_LOCATION_STREAM, 0);
    auto frame = mixed.createData();
    EXPECT_EQ("Value for weight #1 is not a weight (type 4)", failure([&] { frame->setWeights({0.5f, 0.25f}); }));
    EXPECT_EQ(0.5f, frame->getValue(loc(1, 0, 0))->data()[0]); // partial writes stay
    std::vector<float> t(32, 1.0f);
    EXPECT_EQ("Value for index 0 is not a transform (type 1)", failure([&] { frame->setTransforms(t); }));
}
