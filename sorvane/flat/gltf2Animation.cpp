// Flat functions of glTF animation sampling and the mixer.
#include <sstream>

#include "sorvane/core/RuntimeException.h"
#include "sorvane/flat/Frame.h"
#include "sorvane/flat/sorvane_gltf2_animation.h"
#include "sorvane/gltf2/property/animation/Animation.h"
#include "sorvane/gltf2/property/animation/AnimationSampler.h"
#include "sorvane/gltf2/property/animation/AnimationSamplerList.h"
#include "sorvane/gltf2/property/animation/mixer/AnimationMixer.h"

using namespace sorvane;
using namespace sorvane::gltf2;

namespace {

constexpr const char* kSampler = "animationSampler is NULL";
constexpr const char* kSamplerList = "animationSamplerList is NULL";
constexpr const char* kAnimation = "animation is NULL";
constexpr const char* kProcessor = "animationProcessor is NULL";
constexpr const char* kMixer = "animationMixer is NULL";

int32_t putRange(float* start, float* end, const std::pair<float, float>& range) {
    *start = range.first;
    *end = range.second;
    return 0;
}

std::optional<RangeConverter> converterOf(const float* c) {
    if (!c) return std::nullopt;
    return RangeConverter{c[0], c[1], c[2], c[3]};
}

TransformPolicy policyOf(int32_t policy) {
    if (policy < 0 || policy > 3) SORVANE_THROW("Invalid or unsupported policy");
    return static_cast<TransformPolicy>(policy);
}

const Channel& channelAt(const AnimationMixer& mixer, int64_t index) {
    if (index < 0 || static_cast<uint64_t>(index) >= mixer.channels.size())
        SORVANE_THROW("Invalid channel %ld", static_cast<long>(index));
    return *mixer.channels[static_cast<size_t>(index)];
}

TransformData appliedChannel(const AnimationMixer& mixer, int64_t index) {
    const Channel& channel = channelAt(mixer, index);
    TransformData data = channel.transformData;
    channel.apply(data);
    return data;
}

} // namespace

extern "C" {

int32_t sorvane_gltf2_AnimationSampler_getSample(float* out, int64_t outSize, sorvane_gltf2_AnimationSampler* self,
                                                float time) {
    return flat::call(kSampler, self, [&](AnimationSampler& s) {
        if (!out) SORVANE_THROW("out is NULL");
        s.getNode()->getSample(out, static_cast<long>(outSize), time);
    });
}

int32_t sorvane_gltf2_AnimationSampler_getData(int64_t* sampleCount, int64_t* valueSize, float* times,
                                              int64_t timesBytes, float* values, int64_t valuesBytes,
                                              sorvane_gltf2_AnimationSampler* self, float frameRate) {
    if (self && (!sampleCount || !valueSize)) return flat::fail("out is NULL");
    return flat::call(kSampler, self, [&](AnimationSampler& s) {
        const auto counts = s.getNode()->getData(times, static_cast<long>(timesBytes), values,
                                                 static_cast<long>(valuesBytes), frameRate);
        *sampleCount = counts.first;
        *valueSize = counts.second;
    });
}

int32_t sorvane_gltf2_AnimationSampler_getTimeRange(float* start, float* end, sorvane_gltf2_AnimationSampler* self) {
    if (self && (!start || !end)) return flat::fail("out is NULL");
    return flat::call(kSampler, self, [&](AnimationSampler& s) { putRange(start, end, s.getNode()->getTimeRange()); });
}

int32_t sorvane_gltf2_AnimationSamplerList_getTimeRange(float* start, float* end,
                                                        sorvane_gltf2_AnimationSamplerList* self) {
    if (self && (!start || !end)) return flat::fail("out is NULL");
    return flat::call(kSamplerList, self, [&](AnimationSamplerList& s) { putRange(start, end, s.getTimeRange()); });
}

int32_t sorvane_gltf2_Animation_getTimeRange(float* start, float* end, sorvane_gltf2_Animation* self) {
    if (self && (!start || !end)) return flat::fail("out is NULL");
    return flat::call(kAnimation, self, [&](Animation& a) { putRange(start, end, a.getNode()->getTimeRange()); });
}

int32_t sorvane_gltf2_AnimationProcessor_create(sorvane_gltf2_AnimationProcessor** out) {
    return flat::create(out, [] { return new AnimationProcessor(); });
}

int32_t sorvane_gltf2_AnimationProcessor_delete(sorvane_gltf2_AnimationProcessor* self) {
    return flat::destroy(kProcessor, self);
}

int32_t sorvane_gltf2_AnimationProcessor_prepare(sorvane_gltf2_AnimationProcessor* self, const float* input,
                                                int64_t inputCount, const float* output, int64_t outputCount,
                                                const char* interpolation, float frameRate) {
    return flat::call(kProcessor, self, [&](AnimationProcessor& p) {
        p.prepare(flat::array(input, inputCount), flat::array(output, outputCount), flat::str(interpolation),
                  frameRate);
    });
}

int32_t sorvane_gltf2_AnimationProcessor_prepareSampler(sorvane_gltf2_AnimationProcessor* self,
                                                       const sorvane_gltf2_AnimationSampler* sampler,
                                                       float frameRate) {
    return flat::call(kProcessor, self, [&](AnimationProcessor& p) {
        if (!sampler) SORVANE_THROW("%s", kSampler);
        p.prepare(*sampler->getNode(), frameRate);
    });
}

int32_t sorvane_gltf2_AnimationProcessor_setOutput(sorvane_gltf2_AnimationProcessor* self, const float* output,
                                                  int64_t outputCount) {
    return flat::call(kProcessor, self,
                      [&](AnimationProcessor& p) { p.setOutput(flat::array(output, outputCount)); });
}

int32_t sorvane_gltf2_AnimationProcessor_getSample(float* out, int64_t outSize, sorvane_gltf2_AnimationProcessor* self,
                                                  float time) {
    return flat::call(kProcessor, self, [&](AnimationProcessor& p) {
        if (!out) SORVANE_THROW("out is NULL");
        p.getSample(out, static_cast<long>(outSize), time);
    });
}

int32_t sorvane_gltf2_AnimationProcessor_getData(float* times, int64_t timesBytes, float* values, int64_t valuesBytes,
                                                sorvane_gltf2_AnimationProcessor* self) {
    return flat::call(kProcessor, self, [&](AnimationProcessor& p) {
        if (!times || !values) SORVANE_THROW("out is NULL");
        p.getData(times, static_cast<long>(timesBytes), values, static_cast<long>(valuesBytes));
    });
}

int32_t sorvane_gltf2_AnimationProcessor_getSampleCount(int64_t* out, sorvane_gltf2_AnimationProcessor* self) {
    return flat::get(out, kProcessor, self, [](AnimationProcessor& p) { return int64_t(p.sampleCount); });
}

int32_t sorvane_gltf2_AnimationProcessor_getValueSize(int64_t* out, sorvane_gltf2_AnimationProcessor* self) {
    return flat::get(out, kProcessor, self, [](AnimationProcessor& p) { return int64_t(p.valueSize); });
}

int32_t sorvane_gltf2_AnimationProcessor_getDuration(float* out, sorvane_gltf2_AnimationProcessor* self) {
    return flat::get(out, kProcessor, self, [](AnimationProcessor& p) { return p.duration; });
}

int32_t sorvane_gltf2_AnimationMixer_create(sorvane_gltf2_AnimationMixer** out, float frameRate) {
    return flat::create(out, [&] { return new AnimationMixer(frameRate); });
}

int32_t sorvane_gltf2_AnimationMixer_delete(sorvane_gltf2_AnimationMixer* self) { return flat::destroy(kMixer, self); }

int32_t sorvane_gltf2_AnimationMixer_setDefaultTransformPolicy(sorvane_gltf2_AnimationMixer* self, const char* path,
                                                              int32_t policy) {
    return flat::call(kMixer, self, [&](AnimationMixer& m) {
        m.defaultTransformPolicies[flat::str(path)] = policyOf(policy);
    });
}

int32_t sorvane_gltf2_AnimationMixer_addAnimation(sorvane_gltf2_AnimationMixer* self,
                                                 const sorvane_gltf2_Animation* animation, const float* time,
                                                 const char* name, const float* converter, int32_t policy) {
    return flat::call(kMixer, self, [&](AnimationMixer& m) {
        if (!animation) SORVANE_THROW("%s", kAnimation);
        if (!time) SORVANE_THROW("time is NULL");
        m.addAnimation(*animation, *time, flat::str(name), converterOf(converter), policyOf(policy));
    });
}

int32_t sorvane_gltf2_AnimationMixer_addAnimationChannel(sorvane_gltf2_AnimationMixer* self, int64_t nodeIndex,
                                                        const char* path, const float* input, int64_t inputCount,
                                                        const float* output, int64_t outputCount,
                                                        const char* interpolation, const float* time,
                                                        const char* name, const float* converter, int32_t policy) {
    return flat::call(kMixer, self, [&](AnimationMixer& m) {
        if (!time) SORVANE_THROW("time is NULL");
        m.addAnimationChannel(static_cast<long>(nodeIndex), TransformData(), flat::str(path),
                              flat::array(input, inputCount), flat::array(output, outputCount),
                              flat::str(interpolation), *time, flat::str(name), converterOf(converter),
                              policyOf(policy));
    });
}

int32_t sorvane_gltf2_AnimationMixer_setAnimationChannelOutput(sorvane_gltf2_AnimationMixer* self, const char* name,
                                                              const float* output, int64_t outputCount) {
    return flat::call(kMixer, self, [&](AnimationMixer& m) {
        m.setAnimationChannelOutput(flat::str(name), flat::array(output, outputCount));
    });
}

int32_t sorvane_gltf2_AnimationMixer_removeAnimation(sorvane_gltf2_AnimationMixer* self, const char* name) {
    return flat::call(kMixer, self, [&](AnimationMixer& m) { m.removeAnimation(flat::str(name)); });
}

int32_t sorvane_gltf2_AnimationMixer_getChannelCount(int64_t* out, sorvane_gltf2_AnimationMixer* self) {
    return flat::get(out, kMixer, self, [](AnimationMixer& m) { return static_cast<int64_t>(m.channels.size()); });
}

int32_t sorvane_gltf2_AnimationMixer_getChannelMatrix(float* out, int64_t* nodeIndex,
                                                     sorvane_gltf2_AnimationMixer* self, int64_t channel) {
    if (!self) return flat::fail(kMixer);
    if (!out || !nodeIndex) return flat::fail("out is NULL");
    return flat::guard([&] {
        TransformData data = appliedChannel(*self, channel);
        data.setTransformType(TransformType::Matrix);
        std::copy(data.matrix, data.matrix + 16, out);
        *nodeIndex = self->channels[static_cast<size_t>(channel)]->nodeIndex;
    });
}

int32_t sorvane_gltf2_AnimationMixer_getChannelWeights(float* out, int64_t outBytes, int64_t* pvalueCount,
                                                      sorvane_gltf2_AnimationMixer* self, int64_t channel) {
    return flat::values(out, outBytes, pvalueCount, kMixer, self,
                        [&](AnimationMixer& m) { return appliedChannel(m, channel).weights; });
}

int32_t sorvane_gltf2_AnimationMixer_toString(char* out, int64_t* outSize, sorvane_gltf2_AnimationMixer* self) {
    return flat::text(out, outSize, kMixer, self, [](AnimationMixer& m) {
        std::ostringstream text;
        text << m;
        return text.str();
    });
}

} // extern "C"
