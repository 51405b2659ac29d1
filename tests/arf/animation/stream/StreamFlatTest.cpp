#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "sorvane/sorvane.h"

namespace {

std::string slot() {
    int64_t size = 0;
    sorvane_getErrorMessage(nullptr, &size);
    std::string text(static_cast<size_t>(size), '\0');
    sorvane_getErrorMessage(&text[0], &size);
    text.resize(static_cast<size_t>(size) - 1);
    const size_t at = text.find("(): ");
    return at == std::string::npos ? text : text.substr(at + 4);
}

} // namespace

TEST(StreamFlat, NullHandlesAndOutputs) {
    int64_t v = 0;
    bool b = false;
    float f = 0;
    EXPECT_EQ(sorvane_arf_AnimationSampleStream_create(nullptr, true), -1);
    EXPECT_EQ(slot(), "out is NULL");
    EXPECT_EQ(sorvane_arf_AnimationSampleStream_delete(nullptr), -1);
    EXPECT_EQ(slot(), "animationSampleStream is NULL");
    EXPECT_EQ(sorvane_arf_HeaderAnimationSample_getTimestamp(&v, nullptr), -1);
    EXPECT_EQ(slot(), "headerAnimationSample is NULL");
    EXPECT_EQ(sorvane_arf_UnitAnimationSample_getUnitType(nullptr, nullptr), -1);
    EXPECT_EQ(slot(), "unitAnimationSample is NULL");
    EXPECT_EQ(sorvane_arf_ConfigAnimationSample_getProfileCount(&v, nullptr), -1);
    EXPECT_EQ(slot(), "configAnimationSample is NULL");
    EXPECT_EQ(sorvane_arf_TextureAnimationSample_getConfidencePresent(&b, nullptr), -1);
    EXPECT_EQ(slot(), "textureAnimationSample is NULL");
    EXPECT_EQ(sorvane_arf_LandmarkAnimationSample_get3d(&b, nullptr), -1);
    EXPECT_EQ(slot(), "landmarkAnimationSample is NULL");
    EXPECT_EQ(sorvane_arf_SilentAnimationSample_getDuration(&v, nullptr), -1);
    EXPECT_EQ(slot(), "silentAnimationSample is NULL");
    EXPECT_EQ(sorvane_arf_JointAnimationSample_getJointId(&v, nullptr, 0), -1);
    EXPECT_EQ(slot(), "jointAnimationSample is NULL");
    EXPECT_EQ(sorvane_arf_BlendshapeAnimationSample_getBlendshapeWeight(&f, nullptr, 0), -1);
    EXPECT_EQ(slot(), "blendshapeAnimationSample is NULL");

    sorvane_arf_AnimationSampleStream* stream = nullptr;
    ASSERT_EQ(sorvane_arf_AnimationSampleStream_create(&stream, true), 0);
    EXPECT_EQ(sorvane_arf_AnimationSampleStream_feed(stream, nullptr, 3), -1);
    EXPECT_EQ(slot(), "buffer is NULL");
    EXPECT_EQ(sorvane_arf_AnimationSampleStream_getState(nullptr, stream), -1);
    EXPECT_EQ(slot(), "out is NULL");
    sorvane_arf_HeaderAnimationSample* header = nullptr;
    EXPECT_EQ(sorvane_arf_AnimationSampleStream_nextUnitSample(&header, nullptr, stream), -1);
    EXPECT_EQ(slot(), "out is NULL");
    EXPECT_EQ(sorvane_arf_AnimationSampleStream_addUnitSample(&b, stream, nullptr, nullptr), -1);
    EXPECT_EQ(slot(), "headerAnimationSample is NULL");
    // A null sample reaches the stream, which reports it in its state.
    EXPECT_EQ(sorvane_arf_AnimationSampleStream_addUnitSampleTimestamp(&b, stream, 0.0f, nullptr), 0);
    EXPECT_FALSE(b);
    int32_t state = 0;
    sorvane_arf_AnimationSampleStream_getState(&state, stream);
    EXPECT_EQ(state, 4);
    // getErrorMsg negotiates its size and leaves the slot alone.
    sorvane_setErrorMessage("earlier");
    int64_t size = 0;
    EXPECT_EQ(sorvane_arf_AnimationSampleStream_getErrorMsg(nullptr, &size, stream), -1);
    EXPECT_EQ(size, 15);
    EXPECT_EQ(slot(), "earlier");
    std::string text(15, '?');
    EXPECT_EQ(sorvane_arf_AnimationSampleStream_getErrorMsg(&text[0], &size, stream), 0);
    EXPECT_STREQ(text.c_str(), "sample is NULL");
    EXPECT_EQ(sorvane_arf_AnimationSampleStream_getErrorMsg(&text[0], nullptr, stream), -1);
    EXPECT_EQ(slot(), "outSize is NULL");
    sorvane_arf_AnimationSampleStream_delete(stream);
}

TEST(StreamFlat, SamplesThroughTheFlatInterface) {
    sorvane_arf_ConfigAnimationSample* config = nullptr;
    ASSERT_EQ(sorvane_arf_ConfigAnimationSample_create(&config), 0);
    int64_t index = -1;
    EXPECT_EQ(sorvane_arf_ConfigAnimationSample_addProfile(&index, config, "urn:face"), 0);
    EXPECT_EQ(index, 0);
    EXPECT_EQ(sorvane_arf_ConfigAnimationSample_addProfile(&index, config, nullptr), -1);
    EXPECT_EQ(slot(), "basic_string::_S_construct null not valid");
    EXPECT_EQ(sorvane_arf_ConfigAnimationSample_addAssociation(&index, config, 0, 2, 7, 30.0f), 0);
    int32_t type = 0;
    EXPECT_EQ(sorvane_arf_ConfigAnimationSample_getAssociationUnitType(&type, config, 0, 0), 0);
    EXPECT_EQ(type, 2);
    EXPECT_EQ(sorvane_arf_ConfigAnimationSample_getAssociationSetId(&index, config, 0, 1), -1);
    EXPECT_EQ(slot(), "Invalid association index 1 for profile 0");
    int64_t size = 0;
    EXPECT_EQ(sorvane_arf_ConfigAnimationSample_getProfile(nullptr, &size, config, 0), -1);
    EXPECT_EQ(size, 9);
    std::string name(9, '?');
    EXPECT_EQ(sorvane_arf_ConfigAnimationSample_getProfile(&name[0], &size, config, 0), 0);
    EXPECT_STREQ(name.c_str(), "urn:face");

    sorvane_arf_UnitAnimationSample* unit = nullptr;
    ASSERT_EQ(sorvane_arf_ConfigAnimationSample_toUnitAnimationSample(&unit, config), 0);
    sorvane_arf_SilentAnimationSample* silent = nullptr;
    EXPECT_EQ(sorvane_arf_UnitAnimationSample_toSilentAnimationSample(&silent, unit), -1);
    EXPECT_EQ(slot(), "Can't cast to SilentAnimationSample");
    sorvane_arf_ConfigAnimationSample* same = nullptr;
    EXPECT_EQ(sorvane_arf_UnitAnimationSample_toConfigAnimationSample(&same, unit), 0);
    EXPECT_EQ(same, config);
    EXPECT_EQ(sorvane_arf_UnitAnimationSample_delete(unit), 0); // one object, deleted once

    sorvane_arf_JointAnimationSample* joints = nullptr;
    ASSERT_EQ(sorvane_arf_JointAnimationSample_create(&joints), 0);
    sorvane_arf_JointAnimationSample_setJointCount(joints, 3);
    for (int64_t i = 0; i < 3; ++i) sorvane_arf_JointAnimationSample_setJointId(joints, i, 5 - i);
    float m[16] = {};
    m[3] = 7.0f;
    EXPECT_EQ(sorvane_arf_JointAnimationSample_setJointTransform(joints, 1, m, 64, 16), 0);
    EXPECT_EQ(sorvane_arf_JointAnimationSample_setJointTransform(joints, 1, m, 64, 4), -1);
    EXPECT_EQ(slot(), "Invalid value count (expect 16)");
    int64_t count = 0;
    EXPECT_EQ(sorvane_arf_JointAnimationSample_getJointTransform(nullptr, 0, &count, joints, 1), 0);
    EXPECT_EQ(count, 16);
    EXPECT_EQ(sorvane_arf_JointAnimationSample_getJointTransform(m, 64, nullptr, joints, 1), -1);
    EXPECT_EQ(slot(), "pvalueCount is NULL");
    const int64_t keep[2] = {4, 5};
    EXPECT_EQ(sorvane_arf_JointAnimationSample_selectJoints(joints, keep, sizeof keep, 2), 0);
    sorvane_arf_JointAnimationSample_getJointCount(&count, joints);
    EXPECT_EQ(count, 2);
    float back[16] = {};
    EXPECT_EQ(sorvane_arf_JointAnimationSample_getJointTransform(back, 64, &count, joints, 0), 0);
    EXPECT_EQ(back[3], 7.0f);
    sorvane_arf_JointAnimationSample_delete(joints);

    sorvane_arf_LandmarkAnimationSample* marks = nullptr;
    ASSERT_EQ(sorvane_arf_LandmarkAnimationSample_create(&marks), 0);
    sorvane_arf_LandmarkAnimationSample_setLandmarkCount(marks, 1);
    sorvane_arf_LandmarkAnimationSample_set3d(marks, true);
    const float xyz[3] = {1, 2, 3};
    EXPECT_EQ(sorvane_arf_LandmarkAnimationSample_setLandmarkCoords(marks, 0, xyz, 12, 2), -1);
    EXPECT_EQ(slot(), "Invalid value count (expect 3)");
    EXPECT_EQ(sorvane_arf_LandmarkAnimationSample_getLandmarkCoords(nullptr, 0, &count, marks, 0), 0);
    EXPECT_EQ(count, 3);
    sorvane_arf_LandmarkAnimationSample_delete(marks);

    sorvane_arf_HeaderAnimationSample* header = nullptr;
    ASSERT_EQ(sorvane_arf_HeaderAnimationSample_create(&header), 0);
    EXPECT_EQ(sorvane_arf_HeaderAnimationSample_getUnitType(&type, header), 0);
    EXPECT_EQ(type, -1);
    sorvane_arf_HeaderAnimationSample_delete(header);
}
