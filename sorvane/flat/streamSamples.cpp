// Flat functions of the six unit sample classes.
#include "sorvane/flat/sorvane_stream.h"

#include "sorvane/arf/animation/stream/BlendshapeAnimationSample.h"
#include "sorvane/arf/animation/stream/ConfigAnimationSample.h"
#include "sorvane/arf/animation/stream/JointAnimationSample.h"
#include "sorvane/arf/animation/stream/LandmarkAnimationSample.h"
#include "sorvane/arf/animation/stream/SilentAnimationSample.h"
#include "sorvane/arf/animation/stream/TextureAnimationSample.h"
#include "sorvane/flat/StreamFrame.h"

using namespace sorvane;
using namespace sorvane::arf;
using sorvane::flat::create;
using sorvane::flat::streamframe::valueCount;

extern "C" {

SORVANE_API int32_t sorvane_arf_ConfigAnimationSample_create(sorvane_arf_ConfigAnimationSample** out) {
    return create(out, [] { return new ConfigAnimationSample(); });
}

SORVANE_API int32_t sorvane_arf_ConfigAnimationSample_delete(sorvane_arf_ConfigAnimationSample* self) {
    return flat::destroy("configAnimationSample is NULL", self);
}

SORVANE_API int32_t sorvane_arf_ConfigAnimationSample_toUnitAnimationSample(sorvane_arf_UnitAnimationSample** out, sorvane_arf_ConfigAnimationSample* self) {
    return flat::get(out, "configAnimationSample is NULL", self, [](ConfigAnimationSample& x) { return static_cast<UnitAnimationSample*>(&x); });
}

SORVANE_API int32_t sorvane_arf_ConfigAnimationSample_getProfileCount(int64_t* out, const sorvane_arf_ConfigAnimationSample* self) {
    return flat::get(out, "configAnimationSample is NULL", self, [](const ConfigAnimationSample& x) { return static_cast<int64_t>(x.getProfileCount()); });
}

SORVANE_API int32_t sorvane_arf_ConfigAnimationSample_addProfile(int64_t* out, sorvane_arf_ConfigAnimationSample* self, const char* name) {
    return flat::get(out, "configAnimationSample is NULL", self, [&](ConfigAnimationSample& x) { return static_cast<int64_t>(x.addProfile(flat::str(name))); });
}

SORVANE_API int32_t sorvane_arf_ConfigAnimationSample_getProfile(char* out, int64_t* outSize, const sorvane_arf_ConfigAnimationSample* self, int64_t profile) {
    return flat::text(out, outSize, "configAnimationSample is NULL", self, [&](const ConfigAnimationSample& x) { return x.getProfile(profile); });
}

SORVANE_API int32_t sorvane_arf_ConfigAnimationSample_setProfile(sorvane_arf_ConfigAnimationSample* self, int64_t profile, const char* name) {
    return flat::call("configAnimationSample is NULL", self, [&](ConfigAnimationSample& x) { x.setProfile(profile, flat::str(name)); });
}

SORVANE_API int32_t sorvane_arf_ConfigAnimationSample_getAssociationCount(int64_t* out, const sorvane_arf_ConfigAnimationSample* self, int64_t profile) {
    return flat::get(out, "configAnimationSample is NULL", self, [&](const ConfigAnimationSample& x) { return static_cast<int64_t>(x.getAssociationCount(profile)); });
}

SORVANE_API int32_t sorvane_arf_ConfigAnimationSample_addAssociation(int64_t* out, sorvane_arf_ConfigAnimationSample* self, int64_t profile, int32_t unitType, int64_t setId, float timescale) {
    return flat::get(out, "configAnimationSample is NULL", self, [&](ConfigAnimationSample& x) {
        return static_cast<int64_t>(x.addAssociation(profile, static_cast<AnimationUnitType>(unitType), setId, timescale));
    });
}

SORVANE_API int32_t sorvane_arf_ConfigAnimationSample_getAssociationUnitType(int32_t* out, const sorvane_arf_ConfigAnimationSample* self, int64_t profile, int64_t association) {
    return flat::get(out, "configAnimationSample is NULL", self, [&](const ConfigAnimationSample& x) { return static_cast<int32_t>(x.getAssociationUnitType(profile, association)); });
}

SORVANE_API int32_t sorvane_arf_ConfigAnimationSample_setAssociationUnitType(sorvane_arf_ConfigAnimationSample* self, int64_t profile, int64_t association, int32_t value) {
    return flat::call("configAnimationSample is NULL", self, [&](ConfigAnimationSample& x) { x.setAssociationUnitType(profile, association, static_cast<AnimationUnitType>(value)); });
}

SORVANE_API int32_t sorvane_arf_ConfigAnimationSample_getAssociationSetId(int64_t* out, const sorvane_arf_ConfigAnimationSample* self, int64_t profile, int64_t association) {
    return flat::get(out, "configAnimationSample is NULL", self, [&](const ConfigAnimationSample& x) { return static_cast<int64_t>(x.getAssociationSetId(profile, association)); });
}

SORVANE_API int32_t sorvane_arf_ConfigAnimationSample_setAssociationSetId(sorvane_arf_ConfigAnimationSample* self, int64_t profile, int64_t association, int64_t value) {
    return flat::call("configAnimationSample is NULL", self, [&](ConfigAnimationSample& x) { x.setAssociationSetId(profile, association, value); });
}

SORVANE_API int32_t sorvane_arf_ConfigAnimationSample_getAssociationTimescale(float* out, const sorvane_arf_ConfigAnimationSample* self, int64_t profile, int64_t association) {
    return flat::get(out, "configAnimationSample is NULL", self, [&](const ConfigAnimationSample& x) { return static_cast<float>(x.getAssociationTimescale(profile, association)); });
}

SORVANE_API int32_t sorvane_arf_ConfigAnimationSample_setAssociationTimescale(sorvane_arf_ConfigAnimationSample* self, int64_t profile, int64_t association, float value) {
    return flat::call("configAnimationSample is NULL", self, [&](ConfigAnimationSample& x) { x.setAssociationTimescale(profile, association, value); });
}

SORVANE_API int32_t sorvane_arf_BlendshapeAnimationSample_create(sorvane_arf_BlendshapeAnimationSample** out) {
    return create(out, [] { return new BlendshapeAnimationSample(); });
}

SORVANE_API int32_t sorvane_arf_BlendshapeAnimationSample_delete(sorvane_arf_BlendshapeAnimationSample* self) {
    return flat::destroy("blendshapeAnimationSample is NULL", self);
}

SORVANE_API int32_t sorvane_arf_BlendshapeAnimationSample_toUnitAnimationSample(sorvane_arf_UnitAnimationSample** out, sorvane_arf_BlendshapeAnimationSample* self) {
    return flat::get(out, "blendshapeAnimationSample is NULL", self, [](BlendshapeAnimationSample& x) { return static_cast<UnitAnimationSample*>(&x); });
}

SORVANE_API int32_t sorvane_arf_BlendshapeAnimationSample_getSetId(int64_t* out, const sorvane_arf_BlendshapeAnimationSample* self) {
    return flat::get(out, "blendshapeAnimationSample is NULL", self, [](const BlendshapeAnimationSample& x) { return static_cast<int64_t>(x.getSetId()); });
}

SORVANE_API int32_t sorvane_arf_BlendshapeAnimationSample_setSetId(sorvane_arf_BlendshapeAnimationSample* self, int64_t value) {
    return flat::call("blendshapeAnimationSample is NULL", self, [&](BlendshapeAnimationSample& x) { x.setSetId(value); });
}

SORVANE_API int32_t sorvane_arf_BlendshapeAnimationSample_getConfidencePresent(bool* out, const sorvane_arf_BlendshapeAnimationSample* self) {
    return flat::get(out, "blendshapeAnimationSample is NULL", self, [](const BlendshapeAnimationSample& x) { return static_cast<bool>(x.getConfidencePresent()); });
}

SORVANE_API int32_t sorvane_arf_BlendshapeAnimationSample_setConfidencePresent(sorvane_arf_BlendshapeAnimationSample* self, bool value) {
    return flat::call("blendshapeAnimationSample is NULL", self, [&](BlendshapeAnimationSample& x) { x.setConfidencePresent(value); });
}

SORVANE_API int32_t sorvane_arf_BlendshapeAnimationSample_getBlendshapeCount(int64_t* out, const sorvane_arf_BlendshapeAnimationSample* self) {
    return flat::get(out, "blendshapeAnimationSample is NULL", self, [](const BlendshapeAnimationSample& x) { return static_cast<int64_t>(x.getBlendshapeCount()); });
}

SORVANE_API int32_t sorvane_arf_BlendshapeAnimationSample_setBlendshapeCount(sorvane_arf_BlendshapeAnimationSample* self, int64_t value) {
    return flat::call("blendshapeAnimationSample is NULL", self, [&](BlendshapeAnimationSample& x) { x.setBlendshapeCount(value); });
}

SORVANE_API int32_t sorvane_arf_BlendshapeAnimationSample_getBlendshapeId(int64_t* out, const sorvane_arf_BlendshapeAnimationSample* self, int64_t index) {
    return flat::get(out, "blendshapeAnimationSample is NULL", self, [&](const BlendshapeAnimationSample& x) { return static_cast<int64_t>(x.getBlendshapeId(index)); });
}

SORVANE_API int32_t sorvane_arf_BlendshapeAnimationSample_setBlendshapeId(sorvane_arf_BlendshapeAnimationSample* self, int64_t index, int64_t value) {
    return flat::call("blendshapeAnimationSample is NULL", self, [&](BlendshapeAnimationSample& x) { x.setBlendshapeId(index, value); });
}

SORVANE_API int32_t sorvane_arf_BlendshapeAnimationSample_getBlendshapeWeight(float* out, const sorvane_arf_BlendshapeAnimationSample* self, int64_t index) {
    return flat::get(out, "blendshapeAnimationSample is NULL", self, [&](const BlendshapeAnimationSample& x) { return static_cast<float>(x.getBlendshapeWeight(index)); });
}

SORVANE_API int32_t sorvane_arf_BlendshapeAnimationSample_setBlendshapeWeight(sorvane_arf_BlendshapeAnimationSample* self, int64_t index, float value) {
    return flat::call("blendshapeAnimationSample is NULL", self, [&](BlendshapeAnimationSample& x) { x.setBlendshapeWeight(index, value); });
}

SORVANE_API int32_t sorvane_arf_BlendshapeAnimationSample_getBlendshapeConfidence(float* out, const sorvane_arf_BlendshapeAnimationSample* self, int64_t index) {
    return flat::get(out, "blendshapeAnimationSample is NULL", self, [&](const BlendshapeAnimationSample& x) { return static_cast<float>(x.getBlendshapeConfidence(index)); });
}

SORVANE_API int32_t sorvane_arf_BlendshapeAnimationSample_setBlendshapeConfidence(sorvane_arf_BlendshapeAnimationSample* self, int64_t index, float value) {
    return flat::call("blendshapeAnimationSample is NULL", self, [&](BlendshapeAnimationSample& x) { x.setBlendshapeConfidence(index, value); });
}

SORVANE_API int32_t sorvane_arf_TextureAnimationSample_create(sorvane_arf_TextureAnimationSample** out) {
    return create(out, [] { return new TextureAnimationSample(); });
}

SORVANE_API int32_t sorvane_arf_TextureAnimationSample_delete(sorvane_arf_TextureAnimationSample* self) {
    return flat::destroy("textureAnimationSample is NULL", self);
}

SORVANE_API int32_t sorvane_arf_TextureAnimationSample_toUnitAnimationSample(sorvane_arf_UnitAnimationSample** out, sorvane_arf_TextureAnimationSample* self) {
    return flat::get(out, "textureAnimationSample is NULL", self, [](TextureAnimationSample& x) { return static_cast<UnitAnimationSample*>(&x); });
}

SORVANE_API int32_t sorvane_arf_TextureAnimationSample_getSetId(int64_t* out, const sorvane_arf_TextureAnimationSample* self) {
    return flat::get(out, "textureAnimationSample is NULL", self, [](const TextureAnimationSample& x) { return static_cast<int64_t>(x.getSetId()); });
}

SORVANE_API int32_t sorvane_arf_TextureAnimationSample_setSetId(sorvane_arf_TextureAnimationSample* self, int64_t value) {
    return flat::call("textureAnimationSample is NULL", self, [&](TextureAnimationSample& x) { x.setSetId(value); });
}

SORVANE_API int32_t sorvane_arf_TextureAnimationSample_getConfidencePresent(bool* out, const sorvane_arf_TextureAnimationSample* self) {
    return flat::get(out, "textureAnimationSample is NULL", self, [](const TextureAnimationSample& x) { return static_cast<bool>(x.getConfidencePresent()); });
}

SORVANE_API int32_t sorvane_arf_TextureAnimationSample_setConfidencePresent(sorvane_arf_TextureAnimationSample* self, bool value) {
    return flat::call("textureAnimationSample is NULL", self, [&](TextureAnimationSample& x) { x.setConfidencePresent(value); });
}

SORVANE_API int32_t sorvane_arf_TextureAnimationSample_getTextureCount(int64_t* out, const sorvane_arf_TextureAnimationSample* self) {
    return flat::get(out, "textureAnimationSample is NULL", self, [](const TextureAnimationSample& x) { return static_cast<int64_t>(x.getTextureCount()); });
}

SORVANE_API int32_t sorvane_arf_TextureAnimationSample_setTextureCount(sorvane_arf_TextureAnimationSample* self, int64_t value) {
    return flat::call("textureAnimationSample is NULL", self, [&](TextureAnimationSample& x) { x.setTextureCount(value); });
}

SORVANE_API int32_t sorvane_arf_TextureAnimationSample_getTextureId(int64_t* out, const sorvane_arf_TextureAnimationSample* self, int64_t index) {
    return flat::get(out, "textureAnimationSample is NULL", self, [&](const TextureAnimationSample& x) { return static_cast<int64_t>(x.getTextureId(index)); });
}

SORVANE_API int32_t sorvane_arf_TextureAnimationSample_setTextureId(sorvane_arf_TextureAnimationSample* self, int64_t index, int64_t value) {
    return flat::call("textureAnimationSample is NULL", self, [&](TextureAnimationSample& x) { x.setTextureId(index, value); });
}

SORVANE_API int32_t sorvane_arf_TextureAnimationSample_getTextureWeight(float* out, const sorvane_arf_TextureAnimationSample* self, int64_t index) {
    return flat::get(out, "textureAnimationSample is NULL", self, [&](const TextureAnimationSample& x) { return static_cast<float>(x.getTextureWeight(index)); });
}

SORVANE_API int32_t sorvane_arf_TextureAnimationSample_setTextureWeight(sorvane_arf_TextureAnimationSample* self, int64_t index, float value) {
    return flat::call("textureAnimationSample is NULL", self, [&](TextureAnimationSample& x) { x.setTextureWeight(index, value); });
}

SORVANE_API int32_t sorvane_arf_TextureAnimationSample_getTextureConfidence(float* out, const sorvane_arf_TextureAnimationSample* self, int64_t index) {
    return flat::get(out, "textureAnimationSample is NULL", self, [&](const TextureAnimationSample& x) { return static_cast<float>(x.getTextureConfidence(index)); });
}

SORVANE_API int32_t sorvane_arf_TextureAnimationSample_setTextureConfidence(sorvane_arf_TextureAnimationSample* self, int64_t index, float value) {
    return flat::call("textureAnimationSample is NULL", self, [&](TextureAnimationSample& x) { x.setTextureConfidence(index, value); });
}

SORVANE_API int32_t sorvane_arf_JointAnimationSample_create(sorvane_arf_JointAnimationSample** out) {
    return create(out, [] { return new JointAnimationSample(); });
}

SORVANE_API int32_t sorvane_arf_JointAnimationSample_delete(sorvane_arf_JointAnimationSample* self) {
    return flat::destroy("jointAnimationSample is NULL", self);
}

SORVANE_API int32_t sorvane_arf_JointAnimationSample_toUnitAnimationSample(sorvane_arf_UnitAnimationSample** out, sorvane_arf_JointAnimationSample* self) {
    return flat::get(out, "jointAnimationSample is NULL", self, [](JointAnimationSample& x) { return static_cast<UnitAnimationSample*>(&x); });
}

SORVANE_API int32_t sorvane_arf_JointAnimationSample_getSetId(int64_t* out, const sorvane_arf_JointAnimationSample* self) {
    return flat::get(out, "jointAnimationSample is NULL", self, [](const JointAnimationSample& x) { return static_cast<int64_t>(x.getSetId()); });
}

SORVANE_API int32_t sorvane_arf_JointAnimationSample_setSetId(sorvane_arf_JointAnimationSample* self, int64_t value) {
    return flat::call("jointAnimationSample is NULL", self, [&](JointAnimationSample& x) { x.setSetId(value); });
}

SORVANE_API int32_t sorvane_arf_JointAnimationSample_getVelocityPresent(bool* out, const sorvane_arf_JointAnimationSample* self) {
    return flat::get(out, "jointAnimationSample is NULL", self, [](const JointAnimationSample& x) { return static_cast<bool>(x.getVelocityPresent()); });
}

SORVANE_API int32_t sorvane_arf_JointAnimationSample_setVelocityPresent(sorvane_arf_JointAnimationSample* self, bool value) {
    return flat::call("jointAnimationSample is NULL", self, [&](JointAnimationSample& x) { x.setVelocityPresent(value); });
}

SORVANE_API int32_t sorvane_arf_JointAnimationSample_getRestPoseFlag(bool* out, const sorvane_arf_JointAnimationSample* self) {
    return flat::get(out, "jointAnimationSample is NULL", self, [](const JointAnimationSample& x) { return static_cast<bool>(x.getRestPoseFlag()); });
}

SORVANE_API int32_t sorvane_arf_JointAnimationSample_setRestPoseFlag(sorvane_arf_JointAnimationSample* self, bool value) {
    return flat::call("jointAnimationSample is NULL", self, [&](JointAnimationSample& x) { x.setRestPoseFlag(value); });
}

SORVANE_API int32_t sorvane_arf_JointAnimationSample_getJointCount(int64_t* out, const sorvane_arf_JointAnimationSample* self) {
    return flat::get(out, "jointAnimationSample is NULL", self, [](const JointAnimationSample& x) { return static_cast<int64_t>(x.getJointCount()); });
}

SORVANE_API int32_t sorvane_arf_JointAnimationSample_setJointCount(sorvane_arf_JointAnimationSample* self, int64_t value) {
    return flat::call("jointAnimationSample is NULL", self, [&](JointAnimationSample& x) { x.setJointCount(value); });
}

SORVANE_API int32_t sorvane_arf_JointAnimationSample_getJointId(int64_t* out, const sorvane_arf_JointAnimationSample* self, int64_t index) {
    return flat::get(out, "jointAnimationSample is NULL", self, [&](const JointAnimationSample& x) { return static_cast<int64_t>(x.getJointId(index)); });
}

SORVANE_API int32_t sorvane_arf_JointAnimationSample_setJointId(sorvane_arf_JointAnimationSample* self, int64_t index, int64_t value) {
    return flat::call("jointAnimationSample is NULL", self, [&](JointAnimationSample& x) { x.setJointId(index, value); });
}

SORVANE_API int32_t sorvane_arf_JointAnimationSample_getJointTransform(void* out, int64_t outSize, int64_t* pvalueCount, const sorvane_arf_JointAnimationSample* self, int64_t index) {
    return valueCount(pvalueCount, "jointAnimationSample is NULL", self, [&](const JointAnimationSample& x) { return x.getJointTransform(out, outSize, index); });
}

SORVANE_API int32_t sorvane_arf_JointAnimationSample_setJointTransform(sorvane_arf_JointAnimationSample* self, int64_t index, const void* in, int64_t inSize, int64_t count) {
    return flat::call("jointAnimationSample is NULL", self, [&](JointAnimationSample& x) { x.setJointTransform(index, in, inSize, count); });
}

SORVANE_API int32_t sorvane_arf_JointAnimationSample_getJointVelocity(void* out, int64_t outSize, int64_t* pvalueCount, const sorvane_arf_JointAnimationSample* self, int64_t index) {
    return valueCount(pvalueCount, "jointAnimationSample is NULL", self, [&](const JointAnimationSample& x) { return x.getJointVelocity(out, outSize, index); });
}

SORVANE_API int32_t sorvane_arf_JointAnimationSample_setJointVelocity(sorvane_arf_JointAnimationSample* self, int64_t index, const void* in, int64_t inSize, int64_t count) {
    return flat::call("jointAnimationSample is NULL", self, [&](JointAnimationSample& x) { x.setJointVelocity(index, in, inSize, count); });
}

SORVANE_API int32_t sorvane_arf_JointAnimationSample_selectJoints(sorvane_arf_JointAnimationSample* self, const int64_t* ids, int64_t size, int64_t count) {
    return flat::call("jointAnimationSample is NULL", self, [&](JointAnimationSample& x) { x.selectJoints(ids, size, count); });
}

SORVANE_API int32_t sorvane_arf_LandmarkAnimationSample_create(sorvane_arf_LandmarkAnimationSample** out) {
    return create(out, [] { return new LandmarkAnimationSample(); });
}

SORVANE_API int32_t sorvane_arf_LandmarkAnimationSample_delete(sorvane_arf_LandmarkAnimationSample* self) {
    return flat::destroy("landmarkAnimationSample is NULL", self);
}

SORVANE_API int32_t sorvane_arf_LandmarkAnimationSample_toUnitAnimationSample(sorvane_arf_UnitAnimationSample** out, sorvane_arf_LandmarkAnimationSample* self) {
    return flat::get(out, "landmarkAnimationSample is NULL", self, [](LandmarkAnimationSample& x) { return static_cast<UnitAnimationSample*>(&x); });
}

SORVANE_API int32_t sorvane_arf_LandmarkAnimationSample_getSetId(int64_t* out, const sorvane_arf_LandmarkAnimationSample* self) {
    return flat::get(out, "landmarkAnimationSample is NULL", self, [](const LandmarkAnimationSample& x) { return static_cast<int64_t>(x.getSetId()); });
}

SORVANE_API int32_t sorvane_arf_LandmarkAnimationSample_setSetId(sorvane_arf_LandmarkAnimationSample* self, int64_t value) {
    return flat::call("landmarkAnimationSample is NULL", self, [&](LandmarkAnimationSample& x) { x.setSetId(value); });
}

SORVANE_API int32_t sorvane_arf_LandmarkAnimationSample_getVelocityPresent(bool* out, const sorvane_arf_LandmarkAnimationSample* self) {
    return flat::get(out, "landmarkAnimationSample is NULL", self, [](const LandmarkAnimationSample& x) { return static_cast<bool>(x.getVelocityPresent()); });
}

SORVANE_API int32_t sorvane_arf_LandmarkAnimationSample_setVelocityPresent(sorvane_arf_LandmarkAnimationSample* self, bool value) {
    return flat::call("landmarkAnimationSample is NULL", self, [&](LandmarkAnimationSample& x) { x.setVelocityPresent(value); });
}

SORVANE_API int32_t sorvane_arf_LandmarkAnimationSample_getConfidencePresent(bool* out, const sorvane_arf_LandmarkAnimationSample* self) {
    return flat::get(out, "landmarkAnimationSample is NULL", self, [](const LandmarkAnimationSample& x) { return static_cast<bool>(x.getConfidencePresent()); });
}

SORVANE_API int32_t sorvane_arf_LandmarkAnimationSample_setConfidencePresent(sorvane_arf_LandmarkAnimationSample* self, bool value) {
    return flat::call("landmarkAnimationSample is NULL", self, [&](LandmarkAnimationSample& x) { x.setConfidencePresent(value); });
}

SORVANE_API int32_t sorvane_arf_LandmarkAnimationSample_get3d(bool* out, const sorvane_arf_LandmarkAnimationSample* self) {
    return flat::get(out, "landmarkAnimationSample is NULL", self, [](const LandmarkAnimationSample& x) { return static_cast<bool>(x.get3d()); });
}

SORVANE_API int32_t sorvane_arf_LandmarkAnimationSample_set3d(sorvane_arf_LandmarkAnimationSample* self, bool value) {
    return flat::call("landmarkAnimationSample is NULL", self, [&](LandmarkAnimationSample& x) { x.set3d(value); });
}

SORVANE_API int32_t sorvane_arf_LandmarkAnimationSample_getLandmarkCount(int64_t* out, const sorvane_arf_LandmarkAnimationSample* self) {
    return flat::get(out, "landmarkAnimationSample is NULL", self, [](const LandmarkAnimationSample& x) { return static_cast<int64_t>(x.getLandmarkCount()); });
}

SORVANE_API int32_t sorvane_arf_LandmarkAnimationSample_setLandmarkCount(sorvane_arf_LandmarkAnimationSample* self, int64_t value) {
    return flat::call("landmarkAnimationSample is NULL", self, [&](LandmarkAnimationSample& x) { x.setLandmarkCount(value); });
}

SORVANE_API int32_t sorvane_arf_LandmarkAnimationSample_getLandmarkId(int64_t* out, const sorvane_arf_LandmarkAnimationSample* self, int64_t index) {
    return flat::get(out, "landmarkAnimationSample is NULL", self, [&](const LandmarkAnimationSample& x) { return static_cast<int64_t>(x.getLandmarkId(index)); });
}

SORVANE_API int32_t sorvane_arf_LandmarkAnimationSample_setLandmarkId(sorvane_arf_LandmarkAnimationSample* self, int64_t index, int64_t value) {
    return flat::call("landmarkAnimationSample is NULL", self, [&](LandmarkAnimationSample& x) { x.setLandmarkId(index, value); });
}

SORVANE_API int32_t sorvane_arf_LandmarkAnimationSample_getLandmarkCoords(void* out, int64_t outSize, int64_t* pvalueCount, const sorvane_arf_LandmarkAnimationSample* self, int64_t index) {
    return valueCount(pvalueCount, "landmarkAnimationSample is NULL", self, [&](const LandmarkAnimationSample& x) { return x.getLandmarkCoords(out, outSize, index); });
}

SORVANE_API int32_t sorvane_arf_LandmarkAnimationSample_setLandmarkCoords(sorvane_arf_LandmarkAnimationSample* self, int64_t index, const void* in, int64_t inSize, int64_t count) {
    return flat::call("landmarkAnimationSample is NULL", self, [&](LandmarkAnimationSample& x) { x.setLandmarkCoords(index, in, inSize, count); });
}

SORVANE_API int32_t sorvane_arf_LandmarkAnimationSample_getLandmarkVelocity(float* out, const sorvane_arf_LandmarkAnimationSample* self, int64_t index) {
    return flat::get(out, "landmarkAnimationSample is NULL", self, [&](const LandmarkAnimationSample& x) { return static_cast<float>(x.getLandmarkVelocity(index)); });
}

SORVANE_API int32_t sorvane_arf_LandmarkAnimationSample_setLandmarkVelocity(sorvane_arf_LandmarkAnimationSample* self, int64_t index, float value) {
    return flat::call("landmarkAnimationSample is NULL", self, [&](LandmarkAnimationSample& x) { x.setLandmarkVelocity(index, value); });
}

SORVANE_API int32_t sorvane_arf_LandmarkAnimationSample_getLandmarkConfidence(float* out, const sorvane_arf_LandmarkAnimationSample* self, int64_t index) {
    return flat::get(out, "landmarkAnimationSample is NULL", self, [&](const LandmarkAnimationSample& x) { return static_cast<float>(x.getLandmarkConfidence(index)); });
}

SORVANE_API int32_t sorvane_arf_LandmarkAnimationSample_setLandmarkConfidence(sorvane_arf_LandmarkAnimationSample* self, int64_t index, float value) {
    return flat::call("landmarkAnimationSample is NULL", self, [&](LandmarkAnimationSample& x) { x.setLandmarkConfidence(index, value); });
}

SORVANE_API int32_t sorvane_arf_SilentAnimationSample_create(sorvane_arf_SilentAnimationSample** out) {
    return create(out, [] { return new SilentAnimationSample(); });
}

SORVANE_API int32_t sorvane_arf_SilentAnimationSample_delete(sorvane_arf_SilentAnimationSample* self) {
    return flat::destroy("silentAnimationSample is NULL", self);
}

SORVANE_API int32_t sorvane_arf_SilentAnimationSample_toUnitAnimationSample(sorvane_arf_UnitAnimationSample** out, sorvane_arf_SilentAnimationSample* self) {
    return flat::get(out, "silentAnimationSample is NULL", self, [](SilentAnimationSample& x) { return static_cast<UnitAnimationSample*>(&x); });
}

SORVANE_API int32_t sorvane_arf_SilentAnimationSample_getTimescale(int64_t* out, const sorvane_arf_SilentAnimationSample* self) {
    return flat::get(out, "silentAnimationSample is NULL", self, [](const SilentAnimationSample& x) { return static_cast<int64_t>(x.getTimescale()); });
}

SORVANE_API int32_t sorvane_arf_SilentAnimationSample_setTimescale(sorvane_arf_SilentAnimationSample* self, int64_t value) {
    return flat::call("silentAnimationSample is NULL", self, [&](SilentAnimationSample& x) { x.setTimescale(value); });
}

SORVANE_API int32_t sorvane_arf_SilentAnimationSample_getDuration(int64_t* out, const sorvane_arf_SilentAnimationSample* self) {
    return flat::get(out, "silentAnimationSample is NULL", self, [](const SilentAnimationSample& x) { return static_cast<int64_t>(x.getDuration()); });
}

SORVANE_API int32_t sorvane_arf_SilentAnimationSample_setDuration(sorvane_arf_SilentAnimationSample* self, int64_t value) {
    return flat::call("silentAnimationSample is NULL", self, [&](SilentAnimationSample& x) { x.setDuration(value); });
}

} // extern "C"
