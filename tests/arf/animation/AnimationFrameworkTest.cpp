#include <gtest/gtest.h>

#include <sstream>

#include "AnimationAvatars.h"
#include "AnimationTestUtil.h"
#include "sorvane/arf/Arf.h"
#include "sorvane/arf/animation/AnimationFramework.h"

using namespace sorvane::arf;
using animtest::failure;

namespace {

const char* const kUrns[] = {
    "urn:mpeg:kelvar:blendshapes",
    "urn:mpeg:kelvar:eyes",
    "urn:mpeg:kelvar:controllers",
    "urn:khronos:openxr:facial-animation:fb-tracking2",
    "urn:khronos:openxr:body-tracking:meta-full-body",
    "urn:mpeg:avatar:landmarks:mediapipe",
    "urn:mpeg:avatar:body-tracking:mediapipe",
    "urn:mpeg:avatar:blendshapes:mediapipe",
};

} // namespace

TEST(AnimationFramework, BuiltInTables) {
    const long sizes[] = {84, 2, 55, 70, 84, 478, 33, 52};
    const char* types[] = {"ANIMATION_FACE", "ANIMATION_EYES",     "ANIMATION_FACE", "ANIMATION_FACE",
                           "ANIMATION_BODY", "ANIMATION_LANDMARK", "ANIMATION_BODY", "ANIMATION_FACE"};
    for (int i = 0; i < 8; ++i) {
        auto f = AnimationFramework::create(kUrns[i], 3);
        EXPECT_EQ(sizes[i], f->getInputCount(ANIMATION_LOCATION_STREAM, 3)) << kUrns[i];
        EXPECT_EQ(0, f->getInputCount(ANIMATION_LOCATION_STREAM, 0));
        EXPECT_EQ(types[i], f->getType());
        EXPECT_EQ(kUrns[i], f->getName());
        EXPECT_EQ(i != 5, AnimationFramework::knows(kUrns[i])); // landmarks: created but not known
        // Rows are numbered from 0 without gaps.
        EXPECT_EQ(AnimationLocation(ANIMATION_LOCATION_STREAM, 3, 0), f->getDefaultLocation());
        EXPECT_EQ(sizes[i] - 1, f->getInputs().rbegin()->first.index);
    }
    EXPECT_FALSE(AnimationFramework::knows("urn:nothing"));
    EXPECT_EQ("Unknow animation framework urn:nothing", failure([] { AnimationFramework::create("urn:nothing", 0); }));

    auto mp = AnimationFramework::create("urn:mpeg:avatar:blendshapes:mediapipe", 7);
    EXPECT_EQ("_neutral", mp->getInput({ANIMATION_LOCATION_STREAM, 7, 0})->name);
    EXPECT_EQ("jawOpen", mp->getInput({ANIMATION_LOCATION_STREAM, 7, 25})->name);
    EXPECT_EQ("Stream[007](051)", mp->getInput({ANIMATION_LOCATION_STREAM, 7, 51})->location.desc());

    EXPECT_EQ("AU23_Lip_Tightenerr",
              AnimationFramework::create(kUrns[0], 0)->getInputNames(ANIMATION_LOCATION_STREAM, 0)[19]);
    auto landmarks = AnimationFramework::create(kUrns[5], 0)->getInputNames(ANIMATION_LOCATION_STREAM, 0);
    EXPECT_EQ("0", landmarks.front());
    EXPECT_EQ("477", landmarks.back());
    auto eyes = AnimationFramework::create(kUrns[1], 0)->createData();
    EXPECT_EQ(1.0f, eyes->getValue({ANIMATION_LOCATION_STREAM, 0, 1})->data()[3]); // quaternions start at identity
}

TEST(AnimationFramework, ControllerRanges) {
    auto c = AnimationFramework::create("urn:mpeg:kelvar:controllers", 1);
    EXPECT_EQ("neckkkk", c->getInput({ANIMATION_LOCATION_STREAM, 1, 37})->name);
    auto [mins, maxs] = c->getInputRanges(ANIMATION_LOCATION_STREAM, 1);
    ASSERT_EQ(55u, mins.size());
    EXPECT_EQ(-0.3f, mins[9]);
    EXPECT_EQ(0.38f, maxs[9]);
    EXPECT_EQ(-1.3f, mins[21]);
    EXPECT_EQ(0.0f, maxs[21]);
    EXPECT_EQ(0.0f, mins[54]);
    EXPECT_EQ(1.3f, maxs[54]);
    EXPECT_EQ(-1.0f, mins[0]);
    EXPECT_EQ(-1.3f, mins[37]);
    long other = 0;
    for (size_t i = 0; i < mins.size(); ++i) other += mins[i] == 0.0f && maxs[i] == 1.3f;
    EXPECT_EQ(33, other);
}

TEST(AnimationFramework, InputRangesCheckOrder) {
    auto body = AnimationFramework::create("urn:mpeg:avatar:body-tracking:mediapipe", 0);
    // A null output gives the count before anything is looked at.
    EXPECT_EQ(33, body->getInputRanges(nullptr, 0, nullptr, 0, ANIMATION_LOCATION_STREAM, 0));
    float mins[84], maxs[84];
    EXPECT_EQ("Can't compute input ranges because some inputs are not weights",
              failure([&] { body->getInputRanges(mins, sizeof mins, maxs, sizeof maxs, ANIMATION_LOCATION_STREAM, 0); }));
    EXPECT_EQ("No inputs",
              failure([&] { body->getInputRanges(mins, sizeof mins, maxs, sizeof maxs, ANIMATION_LOCATION_STREAM, 5); }));
    auto face = AnimationFramework::create("urn:mpeg:kelvar:blendshapes", 0);
    EXPECT_EQ("outMin too small",
              failure([&] { face->getInputRanges(mins, 83 * 4, maxs, sizeof maxs, ANIMATION_LOCATION_STREAM, 0); }));
    EXPECT_EQ("outMax too small",
              failure([&] { face->getInputRanges(mins, sizeof mins, maxs, 4, ANIMATION_LOCATION_STREAM, 0); }));
    maxs[83] = 9;
    EXPECT_EQ(84, face->getInputRanges(mins, sizeof mins, maxs, sizeof maxs, ANIMATION_LOCATION_STREAM, 0));
    EXPECT_EQ(1.0f, maxs[83]);

    // Gaps in the indices stay zero; an index past the count is refused.
    AnimationFramework sparse("urn:x", "ANIMATION_FACE");
    sparse.addInput({ANIMATION_LOCATION_STREAM, 0, 1}, std::make_shared<AnimationWeightInput>("a", -2, 2));
    sparse.addInput({ANIMATION_LOCATION_STREAM, 0, 0}, std::make_shared<AnimationWeightInput>("b", -1, 1));
    auto [lo, hi] = sparse.getInputRanges(ANIMATION_LOCATION_STREAM, 0);
    EXPECT_EQ((std::vector<float>{-1, -2}), lo);
    sparse.addInput({ANIMATION_LOCATION_STREAM, 0, 5}, ANIMATION_VALUE_WEIGHT, "c");
    EXPECT_EQ("Input index out of range", failure([&] { sparse.getInputRanges(ANIMATION_LOCATION_STREAM, 0); }));
    EXPECT_EQ("Input index out of range", failure([&] { sparse.getInputNames(ANIMATION_LOCATION_STREAM, 0); }));
}

TEST(AnimationFramework, AddingInputs) {
    AnimationFramework f("urn:hand", "ANIMATION_FACE");
    EXPECT_EQ("No inputs set", failure([&] { f.getDefaultLocation(); }));
    f.addInput(ANIMATION_VALUE_WEIGHT, "a", ANIMATION_LOCATION_STREAM, 3);
    f.addInput(ANIMATION_VALUE_WEIGHT, "b", ANIMATION_LOCATION_STREAM, 3);
    auto d = f.addInput(ANIMATION_VALUE_WEIGHT, "d", ANIMATION_LOCATION_STREAM, 4);
    EXPECT_EQ(AnimationLocation(ANIMATION_LOCATION_STREAM, 4, 2), d->location); // index counts every input

    EXPECT_EQ("Input at 'Stream[003](001)' already defined",
              failure([&] { f.addInput({ANIMATION_LOCATION_STREAM, 3, 1}, ANIMATION_VALUE_TRANSFORM, "x"); }));
    EXPECT_EQ(3u, f.getInputs().size());
    EXPECT_EQ("b", f.getInput({ANIMATION_LOCATION_STREAM, 3, 1})->name);
    EXPECT_EQ("Input not found", failure([&] { f.getInput({ANIMATION_LOCATION_STREAM, 3, 2}); }));

    std::ostringstream out;
    out << *f.getInput({ANIMATION_LOCATION_STREAM, 4, 2});
    EXPECT_EQ("d: Stream[004](002)", out.str());

    AnimationFrameworkRef empty;
    EXPECT_EQ("framework is NULL", failure([&] { empty->getName(); }));
}

TEST(AnimationFramework, FrameworkIdsOfADocument) {
    const Arf arf = Arf::load(R"(memory:{"preamble": {"signature": "MPEG-ARF-2025", "version": "1.0.0",
        "supportedAnimations": {"faceAnimations": ["urn:a", "urn:b"], "bodyAnimations": ["urn:b"]}},
        "components": {"meshes": []}})");
    auto supported = arf.preamble->supportedAnimations.get();
    EXPECT_EQ(1, supported.findFrameworkId("ANIMATION_FACE", "urn:b"));
    EXPECT_EQ(0, supported.findFrameworkId("ANIMATION_BODY", "urn:b"));
    EXPECT_EQ(-1, supported.findFrameworkId("ANIMATION_HAND", "urn:b")); // absent list
    EXPECT_EQ(-1, supported.findFrameworkId("ANIMATION_EYES", "urn:a")); // not a list kind
    EXPECT_EQ(-1, supported.findFrameworkId("ANIMATION_FACE", "urn:c"));
}

TEST(AnimationFramework, DerivedFromADocument) {
    const Arf arf = animtest::avatarF();
    // F's only link has mappings, so it still names framework 0 of the face kind.
    auto rig = AnimationFramework::tryCreate(arf, "ANIMATION_FACE", "urn:example:rig", 4);
    ASSERT_TRUE(rig);
    EXPECT_EQ(3, rig->getInputCount(ANIMATION_LOCATION_STREAM, 4));
    EXPECT_EQ("b", rig->getInput({ANIMATION_LOCATION_STREAM, 4, 1})->name);
    // The link's target is index 0, not the mediapipe URN's index 1.
    EXPECT_FALSE(AnimationFramework::tryCreate(arf, "ANIMATION_FACE", "urn:mpeg:avatar:blendshapes:mediapipe", 0));
    EXPECT_FALSE(AnimationFramework::tryCreate(arf, "ANIMATION_BODY", "urn:example:rig", 0));

    const Arf links = Arf::load(std::string("memory:{") + animtest::kPreamble + R"(, "components": {"meshes": [],
      "blendshapeSets": [{"animationInfo": [{"type": "ANIMATION_FACE", "target": 0, "mappings": []},
                                            {"type": "ANIMATION_FACE", "target": 1},
                                            {"type": "ANIMATION_BODY", "target": 2, "mappings": []}],
        "shapes": [], "baseMesh": 1, "name": "f", "id": 1}]}})");
    auto info = links.components->blendshapeSets.get().getByIndex(0).animationInfo.get();
    EXPECT_EQ(std::make_pair(std::string("ANIMATION_FACE"), 1L), AnimationFramework::guessFramework(info));

    EXPECT_TRUE(AnimationLocation(ANIMATION_LOCATION_BLENDSHAPE_SET, 1, 2).existsIn(arf));
    EXPECT_FALSE(AnimationLocation(ANIMATION_LOCATION_BLENDSHAPE_SET, 1, 3).existsIn(arf));
    EXPECT_FALSE(AnimationLocation(ANIMATION_LOCATION_STREAM, 0, 0).existsIn(arf));
    const Arf s = animtest::avatarS();
    EXPECT_TRUE(AnimationLocation(ANIMATION_LOCATION_SKELETON, 1, 1).existsIn(s));
    EXPECT_FALSE(AnimationLocation(ANIMATION_LOCATION_SKELETON, 1, 2).existsIn(s));
}
