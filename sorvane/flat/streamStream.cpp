// Flat functions of the animation sample stream, its unit header and the
// unit sample base class.
#include "sorvane/flat/sorvane_stream.h"

#include "sorvane/arf/animation/stream/AnimationSampleStream.h"
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
using sorvane::flat::streamframe::downcast;

extern "C" {

SORVANE_API int32_t sorvane_arf_AnimationSampleStream_create(sorvane_arf_AnimationSampleStream** out, bool littleEndian) {
    return create(out, [&] { return new AnimationSampleStream(littleEndian); });
}

SORVANE_API int32_t sorvane_arf_AnimationSampleStream_delete(sorvane_arf_AnimationSampleStream* self) {
    return flat::destroy("animationSampleStream is NULL", self);
}

SORVANE_API int32_t sorvane_arf_AnimationSampleStream_feed(sorvane_arf_AnimationSampleStream* self, const void* buffer, int64_t size) {
    if (!self) return flat::fail("animationSampleStream is NULL");
    if (!buffer) return flat::fail("buffer is NULL");
    return flat::guard([&] { self->feed(buffer, size); });
}

SORVANE_API int32_t sorvane_arf_AnimationSampleStream_flush(int64_t* out, sorvane_arf_AnimationSampleStream* self, void* buffer, int64_t size) {
    return flat::get(out, "animationSampleStream is NULL", self, [&](AnimationSampleStream& x) { return static_cast<int64_t>(x.flush(buffer, size)); });
}

SORVANE_API int32_t sorvane_arf_AnimationSampleStream_nextUnitSample(sorvane_arf_HeaderAnimationSample** header, sorvane_arf_UnitAnimationSample** sample, sorvane_arf_AnimationSampleStream* self) {
    if (!self) return flat::fail("animationSampleStream is NULL");
    if (!header || !sample) return flat::fail("out is NULL");
    return flat::guard([&] {
        auto next = self->nextUnitSamplePtr();
        *header = next.first;
        *sample = next.second;
    });
}

SORVANE_API int32_t sorvane_arf_AnimationSampleStream_addUnitSample(bool* out, sorvane_arf_AnimationSampleStream* self, sorvane_arf_HeaderAnimationSample* header, const sorvane_arf_UnitAnimationSample* sample) {
    if (!self) return flat::fail("animationSampleStream is NULL");
    if (!out) return flat::fail("out is NULL");
    if (!header) return flat::fail("headerAnimationSample is NULL");
    return flat::guard([&] { *out = self->addUnitSample(header, sample); });
}

SORVANE_API int32_t sorvane_arf_AnimationSampleStream_addUnitSampleTimestamp(bool* out, sorvane_arf_AnimationSampleStream* self, float timestamp, const sorvane_arf_UnitAnimationSample* sample) {
    return flat::get(out, "animationSampleStream is NULL", self, [&](AnimationSampleStream& x) { return x.addUnitSample(timestamp, sample); });
}

SORVANE_API int32_t sorvane_arf_AnimationSampleStream_getState(int32_t* out, const sorvane_arf_AnimationSampleStream* self) {
    return flat::get(out, "animationSampleStream is NULL", self, [](const AnimationSampleStream& x) { return x.getState(); });
}

SORVANE_API int32_t sorvane_arf_AnimationSampleStream_getErrorMsg(char* out, int64_t* outSize, const sorvane_arf_AnimationSampleStream* self) {
    return flat::text(out, outSize, "animationSampleStream is NULL", self, [](const AnimationSampleStream& x) { return x.getErrorMsg(); });
}

SORVANE_API int32_t sorvane_arf_AnimationSampleStream_getExtraBytePadding(int64_t* out, const sorvane_arf_AnimationSampleStream* self) {
    return flat::get(out, "animationSampleStream is NULL", self, [](const AnimationSampleStream& x) { return static_cast<int64_t>(x.getExtraBytePadding()); });
}

SORVANE_API int32_t sorvane_arf_AnimationSampleStream_setExtraBytePadding(sorvane_arf_AnimationSampleStream* self, int64_t value) {
    return flat::call("animationSampleStream is NULL", self, [&](AnimationSampleStream& x) { x.setExtraBytePadding(value); });
}

SORVANE_API int32_t sorvane_arf_AnimationSampleStream_isBigEndian(bool* out, const sorvane_arf_AnimationSampleStream* self) {
    return flat::get(out, "animationSampleStream is NULL", self, [](const AnimationSampleStream& x) { return x.isBigEndian(); });
}

SORVANE_API int32_t sorvane_arf_AnimationSampleStream_getBitSize(int64_t* out, const sorvane_arf_AnimationSampleStream* self) {
    return flat::get(out, "animationSampleStream is NULL", self, [](const AnimationSampleStream& x) { return static_cast<int64_t>(x.getBitSize()); });
}

SORVANE_API int32_t sorvane_arf_HeaderAnimationSample_create(sorvane_arf_HeaderAnimationSample** out) {
    return create(out, [] { return new HeaderAnimationSample(); });
}

SORVANE_API int32_t sorvane_arf_HeaderAnimationSample_delete(sorvane_arf_HeaderAnimationSample* self) {
    return flat::destroy("headerAnimationSample is NULL", self);
}

SORVANE_API int32_t sorvane_arf_HeaderAnimationSample_getUnitType(int32_t* out, const sorvane_arf_HeaderAnimationSample* self) {
    return flat::get(out, "headerAnimationSample is NULL", self, [](const HeaderAnimationSample& x) { return static_cast<int32_t>(x.getUnitType()); });
}

SORVANE_API int32_t sorvane_arf_HeaderAnimationSample_setUnitType(sorvane_arf_HeaderAnimationSample* self, int32_t value) {
    return flat::call("headerAnimationSample is NULL", self, [&](HeaderAnimationSample& x) { x.setUnitType(static_cast<AnimationUnitType>(value)); });
}

SORVANE_API int32_t sorvane_arf_HeaderAnimationSample_getTimestampPresent(bool* out, const sorvane_arf_HeaderAnimationSample* self) {
    return flat::get(out, "headerAnimationSample is NULL", self, [](const HeaderAnimationSample& x) { return static_cast<bool>(x.getTimestampPresent()); });
}

SORVANE_API int32_t sorvane_arf_HeaderAnimationSample_setTimestampPresent(sorvane_arf_HeaderAnimationSample* self, bool value) {
    return flat::call("headerAnimationSample is NULL", self, [&](HeaderAnimationSample& x) { x.setTimestampPresent(value); });
}

SORVANE_API int32_t sorvane_arf_HeaderAnimationSample_getExtensionPresent(bool* out, const sorvane_arf_HeaderAnimationSample* self) {
    return flat::get(out, "headerAnimationSample is NULL", self, [](const HeaderAnimationSample& x) { return static_cast<bool>(x.getExtensionPresent()); });
}

SORVANE_API int32_t sorvane_arf_HeaderAnimationSample_setExtensionPresent(sorvane_arf_HeaderAnimationSample* self, bool value) {
    return flat::call("headerAnimationSample is NULL", self, [&](HeaderAnimationSample& x) { x.setExtensionPresent(value); });
}

SORVANE_API int32_t sorvane_arf_HeaderAnimationSample_getUnitLength(int64_t* out, const sorvane_arf_HeaderAnimationSample* self) {
    return flat::get(out, "headerAnimationSample is NULL", self, [](const HeaderAnimationSample& x) { return static_cast<int64_t>(x.getUnitLength()); });
}

SORVANE_API int32_t sorvane_arf_HeaderAnimationSample_setUnitLength(sorvane_arf_HeaderAnimationSample* self, int64_t value) {
    return flat::call("headerAnimationSample is NULL", self, [&](HeaderAnimationSample& x) { x.setUnitLength(value); });
}

SORVANE_API int32_t sorvane_arf_HeaderAnimationSample_getTimestamp(int64_t* out, const sorvane_arf_HeaderAnimationSample* self) {
    return flat::get(out, "headerAnimationSample is NULL", self, [](const HeaderAnimationSample& x) { return static_cast<int64_t>(x.getTimestamp()); });
}

SORVANE_API int32_t sorvane_arf_HeaderAnimationSample_setTimestamp(sorvane_arf_HeaderAnimationSample* self, int64_t value) {
    return flat::call("headerAnimationSample is NULL", self, [&](HeaderAnimationSample& x) { x.setTimestamp(value); });
}

SORVANE_API int32_t sorvane_arf_HeaderAnimationSample_getExtension8bits(int64_t* out, const sorvane_arf_HeaderAnimationSample* self) {
    return flat::get(out, "headerAnimationSample is NULL", self, [](const HeaderAnimationSample& x) { return static_cast<int64_t>(x.getExtension8bits()); });
}

SORVANE_API int32_t sorvane_arf_HeaderAnimationSample_setExtension8bits(sorvane_arf_HeaderAnimationSample* self, int64_t value) {
    return flat::call("headerAnimationSample is NULL", self, [&](HeaderAnimationSample& x) { x.setExtension8bits(value); });
}

SORVANE_API int32_t sorvane_arf_HeaderAnimationSample_getExtensionData(bool* out, const sorvane_arf_HeaderAnimationSample* self) {
    return flat::get(out, "headerAnimationSample is NULL", self, [](const HeaderAnimationSample& x) { return static_cast<bool>(x.getExtensionData()); });
}

SORVANE_API int32_t sorvane_arf_HeaderAnimationSample_setExtensionData(sorvane_arf_HeaderAnimationSample* self, bool value) {
    return flat::call("headerAnimationSample is NULL", self, [&](HeaderAnimationSample& x) { x.setExtensionData(value); });
}

SORVANE_API int32_t sorvane_arf_UnitAnimationSample_delete(sorvane_arf_UnitAnimationSample* self) {
    return flat::destroy("unitAnimationSample is NULL", self);
}

SORVANE_API int32_t sorvane_arf_UnitAnimationSample_getUnitType(int32_t* out, const sorvane_arf_UnitAnimationSample* self) {
    return flat::get(out, "unitAnimationSample is NULL", self, [](const UnitAnimationSample& x) { return static_cast<int32_t>(x.type()); });
}

SORVANE_API int32_t sorvane_arf_UnitAnimationSample_toConfigAnimationSample(sorvane_arf_ConfigAnimationSample** out, sorvane_arf_UnitAnimationSample* self) {
    return downcast(out, self, "Can't cast to ConfigAnimationSample");
}

SORVANE_API int32_t sorvane_arf_UnitAnimationSample_toBlendshapeAnimationSample(sorvane_arf_BlendshapeAnimationSample** out, sorvane_arf_UnitAnimationSample* self) {
    return downcast(out, self, "Can't cast to BlendshapeAnimationSample");
}

SORVANE_API int32_t sorvane_arf_UnitAnimationSample_toJointAnimationSample(sorvane_arf_JointAnimationSample** out, sorvane_arf_UnitAnimationSample* self) {
    return downcast(out, self, "Can't cast to JointAnimationSample");
}

SORVANE_API int32_t sorvane_arf_UnitAnimationSample_toLandmarkAnimationSample(sorvane_arf_LandmarkAnimationSample** out, sorvane_arf_UnitAnimationSample* self) {
    return downcast(out, self, "Can't cast to LandmarkAnimationSample");
}

SORVANE_API int32_t sorvane_arf_UnitAnimationSample_toTextureAnimationSample(sorvane_arf_TextureAnimationSample** out, sorvane_arf_UnitAnimationSample* self) {
    return downcast(out, self, "Can't cast to TextureAnimationSample");
}

SORVANE_API int32_t sorvane_arf_UnitAnimationSample_toSilentAnimationSample(sorvane_arf_SilentAnimationSample** out, sorvane_arf_UnitAnimationSample* self) {
    return downcast(out, self, "Can't cast to SilentAnimationSample");
}

} // extern "C"
