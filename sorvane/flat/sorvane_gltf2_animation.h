/* Flat C interface: sampling glTF animation tracks and mixing them on nodes.
 * Included by sorvane/sorvane.h.
 *
 * The processor and mixer functions are extensions of this library: handles
 * come from their _create functions and are released with _delete. A mixer
 * keeps the time pointer it is given and reads it at every apply, so the
 * float must outlive the mixer. A range converter is NULL or four floats:
 * input start, input end, output start, output end. Policies: 0 default (by
 * path from the mixer's table), 1 replace, 2 add, 3 multiply. */
#ifndef SORVANE_FLAT_SORVANE_GLTF2_ANIMATION_H
#define SORVANE_FLAT_SORVANE_GLTF2_ANIMATION_H

#include <stddef.h>
#include <stdint.h>
#ifndef __cplusplus
#include <stdbool.h>
#endif

#include "sorvane/core/Export.h"
#include "sorvane/flat/sorvane_gltf2_generated.h"

#ifdef __cplusplus
namespace sorvane::gltf2 {
class AnimationProcessor;
class AnimationMixer;
}
typedef sorvane::gltf2::AnimationProcessor sorvane_gltf2_AnimationProcessor;
typedef sorvane::gltf2::AnimationMixer sorvane_gltf2_AnimationMixer;
#else
typedef struct sorvane_gltf2_AnimationProcessor sorvane_gltf2_AnimationProcessor;
typedef struct sorvane_gltf2_AnimationMixer sorvane_gltf2_AnimationMixer;
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* Sampling through the records (30 frames per second for a single sample). */

/* The sampler's value at time into out; capacity protocol: outSize bytes, a smaller out fails. */
SORVANE_API int32_t sorvane_gltf2_AnimationSampler_getSample(float* out, int64_t outSize,
                                                            sorvane_gltf2_AnimationSampler* self, float time);
/* The sampler resampled at frameRate; two calls: with a null times or values only the counts are reported,
 * then the capacity protocol (timesBytes, valuesBytes; a smaller array fails). */
SORVANE_API int32_t sorvane_gltf2_AnimationSampler_getData(int64_t* sampleCount, int64_t* valueSize, float* times,
                                                          int64_t timesBytes, float* values, int64_t valuesBytes,
                                                          sorvane_gltf2_AnimationSampler* self, float frameRate);
/* The first and last key time of the sampler. */
SORVANE_API int32_t sorvane_gltf2_AnimationSampler_getTimeRange(float* start, float* end,
                                                                sorvane_gltf2_AnimationSampler* self);
/* The earliest and latest key time over every sampler of the list. */
SORVANE_API int32_t sorvane_gltf2_AnimationSamplerList_getTimeRange(float* start, float* end,
                                                                    sorvane_gltf2_AnimationSamplerList* self);
/* The earliest and latest key time over every sampler of the animation. */
SORVANE_API int32_t sorvane_gltf2_Animation_getTimeRange(float* start, float* end, sorvane_gltf2_Animation* self);

/* Extension: one keyframe track. */

/* A new empty processor, released with _delete. */
SORVANE_API int32_t sorvane_gltf2_AnimationProcessor_create(sorvane_gltf2_AnimationProcessor** out);
/* Releases the processor. */
SORVANE_API int32_t sorvane_gltf2_AnimationProcessor_delete(sorvane_gltf2_AnimationProcessor* self);
/* Resamples a track of inputCount key times and outputCount values at frameRate, with interpolation "LINEAR" or "CUBICSPLINE". */
SORVANE_API int32_t sorvane_gltf2_AnimationProcessor_prepare(sorvane_gltf2_AnimationProcessor* self,
                                                            const float* input, int64_t inputCount,
                                                            const float* output, int64_t outputCount,
                                                            const char* interpolation, float frameRate);
/* Resamples a sampler's track of the document at frameRate. */
SORVANE_API int32_t sorvane_gltf2_AnimationProcessor_prepareSampler(sorvane_gltf2_AnimationProcessor* self,
                                                                   const sorvane_gltf2_AnimationSampler* sampler,
                                                                   float frameRate);
/* Replaces the key values of the prepared track, keeping its times. */
SORVANE_API int32_t sorvane_gltf2_AnimationProcessor_setOutput(sorvane_gltf2_AnimationProcessor* self,
                                                              const float* output, int64_t outputCount);
/* The value at time into out; capacity protocol: outSize bytes, a smaller out fails. */
SORVANE_API int32_t sorvane_gltf2_AnimationProcessor_getSample(float* out, int64_t outSize,
                                                              sorvane_gltf2_AnimationProcessor* self, float time);
/* Every resampled time and value; capacity protocol: timesBytes and valuesBytes, a smaller array fails. */
SORVANE_API int32_t sorvane_gltf2_AnimationProcessor_getData(float* times, int64_t timesBytes, float* values,
                                                            int64_t valuesBytes,
                                                            sorvane_gltf2_AnimationProcessor* self);
/* The number of resampled frames. */
SORVANE_API int32_t sorvane_gltf2_AnimationProcessor_getSampleCount(int64_t* out,
                                                                   sorvane_gltf2_AnimationProcessor* self);
/* The number of floats per value. */
SORVANE_API int32_t sorvane_gltf2_AnimationProcessor_getValueSize(int64_t* out,
                                                                 sorvane_gltf2_AnimationProcessor* self);
/* The duration of the track in seconds. */
SORVANE_API int32_t sorvane_gltf2_AnimationProcessor_getDuration(float* out, sorvane_gltf2_AnimationProcessor* self);

/* Extension: the mixer. */

/* A new mixer sampling at frameRate, released with _delete. */
SORVANE_API int32_t sorvane_gltf2_AnimationMixer_create(sorvane_gltf2_AnimationMixer** out, float frameRate);
/* Releases the mixer. */
SORVANE_API int32_t sorvane_gltf2_AnimationMixer_delete(sorvane_gltf2_AnimationMixer* self);
/* Sets the policy (1 Replace, 2 Add, 3 Multiply) for channels of this path without their own. */
SORVANE_API int32_t sorvane_gltf2_AnimationMixer_setDefaultTransformPolicy(sorvane_gltf2_AnimationMixer* self,
                                                                          const char* path, int32_t policy);
/* Adds every channel of a document's animation; arguments after self: animation, time, name, converter, policy. */
SORVANE_API int32_t sorvane_gltf2_AnimationMixer_addAnimation(sorvane_gltf2_AnimationMixer* self,
                                                             const sorvane_gltf2_Animation* animation,
                                                             const float* time, const char* name,
                                                             const float* converter, int32_t policy);
/* A track on node `nodeIndex`; a node without a channel yet starts from the identity. Arguments after self:
 * nodeIndex, path, input, inputCount, output, outputCount, interpolation, time, name, converter, policy. */
SORVANE_API int32_t sorvane_gltf2_AnimationMixer_addAnimationChannel(
    sorvane_gltf2_AnimationMixer* self, int64_t nodeIndex, const char* path, const float* input, int64_t inputCount,
    const float* output, int64_t outputCount, const char* interpolation, const float* time, const char* name,
    const float* converter, int32_t policy);
/* Replaces the key values of the channel of animation name. */
SORVANE_API int32_t sorvane_gltf2_AnimationMixer_setAnimationChannelOutput(sorvane_gltf2_AnimationMixer* self,
                                                                          const char* name, const float* output,
                                                                          int64_t outputCount);
/* Removes every channel of animation name. */
SORVANE_API int32_t sorvane_gltf2_AnimationMixer_removeAnimation(sorvane_gltf2_AnimationMixer* self,
                                                                const char* name);
/* The number of channels. */
SORVANE_API int32_t sorvane_gltf2_AnimationMixer_getChannelCount(int64_t* out, sorvane_gltf2_AnimationMixer* self);
/* Applies channel `channel` to a copy of its rest state: its node index and
 * the column-major matrix (16 floats) of the result. */
SORVANE_API int32_t sorvane_gltf2_AnimationMixer_getChannelMatrix(float* out, int64_t* nodeIndex,
                                                                 sorvane_gltf2_AnimationMixer* self,
                                                                 int64_t channel);
/* The morph weights after applying channel `channel`, under the array size protocol. */
SORVANE_API int32_t sorvane_gltf2_AnimationMixer_getChannelWeights(float* out, int64_t outBytes,
                                                                  int64_t* pvalueCount,
                                                                  sorvane_gltf2_AnimationMixer* self,
                                                                  int64_t channel);
/* The mixer in text form; text size protocol. */
SORVANE_API int32_t sorvane_gltf2_AnimationMixer_toString(char* out, int64_t* outSize,
                                                         sorvane_gltf2_AnimationMixer* self);

#ifdef __cplusplus
}
#endif

#endif
