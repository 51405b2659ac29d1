/* Flat C interface: animation frameworks, frames and the live components of
 * an avatar. Included by sorvane/sorvane.h.
 *
 * One rule for every function here:
 * - names are sorvane_arf_<Class>_<operation>; results come first, then the
 *   object (self), then the inputs;
 * - _new/_create make a handle, _delete releases it;
 * - a location is three arguments: int32_t type (1 Stream, 2 BlendshapeSet,
 *   3 Skeleton, 4 LandmarkSet, 5 TextureSet), int64_t id, int64_t index;
 * - an array result is (out, outBytes, pvalueCount, self, ...): the number
 *   of elements of out (floats or 64-bit ids) is stored in *pvalueCount, a
 *   null out only asks for it, and an out of fewer bytes fails with the
 *   class's own text ("out too small", "out is too small");
 * - an array argument is (in, inBytes, count), count in the unit the
 *   function names;
 * - a failure returns -1 with the text of the operation that failed in the
 *   error slot.
 * Value types: 1 weight, 2 three-vector, 3 quaternion (x, y, z, w), 4 row-major
 * 4 by 4 matrix. */
#ifndef SORVANE_FLAT_SORVANE_ANIMATION_H
#define SORVANE_FLAT_SORVANE_ANIMATION_H

#include <stddef.h>
#include <stdint.h>
#ifndef __cplusplus
#include <stdbool.h>
#endif

#include "sorvane/core/Export.h"
#include "sorvane/flat/sorvane_arf.h"
#include "sorvane/flat/sorvane_datatree.h"
#include "sorvane/flat/sorvane_stream.h"

#ifdef __cplusplus
namespace sorvane {
namespace arf {
class AnimationFrameworkRef;
class AnimationData;
class AnimationComponents;
class AnimationMapper;
class AnimationOperatorRef;
} // namespace arf
} // namespace sorvane
typedef sorvane::arf::AnimationFrameworkRef sorvane_arf_AnimationFramework;
typedef sorvane::arf::AnimationData sorvane_arf_AnimationData;
typedef sorvane::arf::AnimationComponents sorvane_arf_AnimationComponents;
typedef sorvane::arf::AnimationMapper sorvane_arf_AnimationMapper;
typedef sorvane::arf::AnimationOperatorRef sorvane_arf_AnimationOperator;
#else
typedef struct sorvane_arf_AnimationFramework sorvane_arf_AnimationFramework;
typedef struct sorvane_arf_AnimationData sorvane_arf_AnimationData;
typedef struct sorvane_arf_AnimationComponents sorvane_arf_AnimationComponents;
typedef struct sorvane_arf_AnimationMapper sorvane_arf_AnimationMapper;
typedef struct sorvane_arf_AnimationOperator sorvane_arf_AnimationOperator;
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* Frameworks. A framework handle is released with _delete; frames made from
 * it are independent objects. */
SORVANE_API int32_t sorvane_arf_AnimationFramework_new(sorvane_arf_AnimationFramework** out, const char* name, const char* type);
/* One of the built-in frameworks by URN, its inputs at (1, id, row). */
SORVANE_API int32_t sorvane_arf_AnimationFramework_create(sorvane_arf_AnimationFramework** out, const char* urn, int64_t id);
/* The framework of the first component driven directly by (type, urn); no
 * match is status 0 with *out NULL. */
SORVANE_API int32_t sorvane_arf_AnimationFramework_tryCreate(sorvane_arf_AnimationFramework** out, const sorvane_arf_Arf* arf, const char* type, const char* urn, int64_t id);
SORVANE_API int32_t sorvane_arf_AnimationFramework_knows(bool* out, const char* urn);
SORVANE_API int32_t sorvane_arf_AnimationFramework_delete(sorvane_arf_AnimationFramework* self);
SORVANE_API int32_t sorvane_arf_AnimationFramework_getName(char* out, int64_t* outSize, const sorvane_arf_AnimationFramework* self);
SORVANE_API int32_t sorvane_arf_AnimationFramework_getType(char* out, int64_t* outSize, const sorvane_arf_AnimationFramework* self);
SORVANE_API int32_t sorvane_arf_AnimationFramework_addInput(sorvane_arf_AnimationFramework* self, int32_t type, int64_t id, int64_t index, int32_t valueType, const char* name);
/* A weight input with its range. */
SORVANE_API int32_t sorvane_arf_AnimationFramework_addWeightInput(sorvane_arf_AnimationFramework* self, int32_t type, int64_t id, int64_t index, const char* name, float min, float max);
/* At (type, id, number of inputs so far); *out is that index. */
SORVANE_API int32_t sorvane_arf_AnimationFramework_addNextInput(int64_t* out, sorvane_arf_AnimationFramework* self, int32_t valueType, const char* name, int32_t type, int64_t id);
SORVANE_API int32_t sorvane_arf_AnimationFramework_getInputCount(int64_t* out, const sorvane_arf_AnimationFramework* self, int32_t type, int64_t id);
SORVANE_API int32_t sorvane_arf_AnimationFramework_getInputName(char* out, int64_t* outSize, const sorvane_arf_AnimationFramework* self, int32_t type, int64_t id, int64_t index);
SORVANE_API int32_t sorvane_arf_AnimationFramework_getInputValueType(int32_t* out, const sorvane_arf_AnimationFramework* self, int32_t type, int64_t id, int64_t index);
SORVANE_API int32_t sorvane_arf_AnimationFramework_getDefaultLocation(int32_t* outType, int64_t* outId, int64_t* outIndex, const sorvane_arf_AnimationFramework* self);
/* Minimum and maximum of each weight input at (type, id), by index; both
 * arrays hold outBytes. */
SORVANE_API int32_t sorvane_arf_AnimationFramework_getInputRanges(float* outMin, float* outMax, int64_t outBytes, int64_t* pvalueCount, const sorvane_arf_AnimationFramework* self, int32_t type, int64_t id);
SORVANE_API int32_t sorvane_arf_AnimationFramework_createData(sorvane_arf_AnimationData** out, const sorvane_arf_AnimationFramework* self);

/* Frames: one value per input, in location order. */
SORVANE_API int32_t sorvane_arf_AnimationData_delete(sorvane_arf_AnimationData* self);
SORVANE_API int32_t sorvane_arf_AnimationData_getValueCount(int64_t* out, const sorvane_arf_AnimationData* self);
SORVANE_API int32_t sorvane_arf_AnimationData_getWeights(float* out, int64_t outBytes, int64_t* pvalueCount, const sorvane_arf_AnimationData* self);
/* count: weights, one per value. */
SORVANE_API int32_t sorvane_arf_AnimationData_setWeights(sorvane_arf_AnimationData* self, const float* in, int64_t inBytes, int64_t count);
/* 16 floats per value; *pvalueCount counts floats. */
SORVANE_API int32_t sorvane_arf_AnimationData_getTransforms(float* out, int64_t outBytes, int64_t* pvalueCount, const sorvane_arf_AnimationData* self);
/* count: floats, 16 per value. */
SORVANE_API int32_t sorvane_arf_AnimationData_setTransforms(sorvane_arf_AnimationData* self, const float* in, int64_t inBytes, int64_t count);
SORVANE_API int32_t sorvane_arf_AnimationData_hasValue(bool* out, const sorvane_arf_AnimationData* self, int32_t type, int64_t id, int64_t index);
SORVANE_API int32_t sorvane_arf_AnimationData_getValueType(int32_t* out, const sorvane_arf_AnimationData* self, int32_t type, int64_t id, int64_t index);
SORVANE_API int32_t sorvane_arf_AnimationData_getValue(float* out, int64_t outBytes, int64_t* pvalueCount, const sorvane_arf_AnimationData* self, int32_t type, int64_t id, int64_t index);
/* count: floats, exactly the value's own count. */
SORVANE_API int32_t sorvane_arf_AnimationData_setValue(sorvane_arf_AnimationData* self, int32_t type, int64_t id, int64_t index, const float* in, int64_t inBytes, int64_t count);

/* Components: the live weights and joint matrices of an avatar, every set in
 * ascending id order. _create reads the document once (weights 0, joints in
 * their rest pose) and keeps nothing of it. Weight families exist twice, for
 * blendshape sets (Blendshape) and texture sets (Texture). */
SORVANE_API int32_t sorvane_arf_AnimationComponents_create(sorvane_arf_AnimationComponents** out, const sorvane_arf_Arf* arf);
SORVANE_API int32_t sorvane_arf_AnimationComponents_delete(sorvane_arf_AnimationComponents* self);
SORVANE_API int32_t sorvane_arf_AnimationComponents_init(sorvane_arf_AnimationComponents* self, const sorvane_arf_Arf* arf);
SORVANE_API int32_t sorvane_arf_AnimationComponents_getBlendshapeSetIds(int64_t* out, int64_t outBytes, int64_t* pvalueCount, const sorvane_arf_AnimationComponents* self);
SORVANE_API int32_t sorvane_arf_AnimationComponents_getTextureSetIds(int64_t* out, int64_t outBytes, int64_t* pvalueCount, const sorvane_arf_AnimationComponents* self);
SORVANE_API int32_t sorvane_arf_AnimationComponents_getSkeletonIds(int64_t* out, int64_t outBytes, int64_t* pvalueCount, const sorvane_arf_AnimationComponents* self);
SORVANE_API int32_t sorvane_arf_AnimationComponents_hasBlendshape(bool* out, const sorvane_arf_AnimationComponents* self, int64_t setId, int64_t id);
SORVANE_API int32_t sorvane_arf_AnimationComponents_getBlendshapeCount(int64_t* out, const sorvane_arf_AnimationComponents* self, int64_t setId);
SORVANE_API int32_t sorvane_arf_AnimationComponents_getBlendshapeIds(int64_t* out, int64_t outBytes, int64_t* pvalueCount, const sorvane_arf_AnimationComponents* self, int64_t setId);
/* Relabels the entries: the i-th id given takes the i-th present entry in ascending order. */
SORVANE_API int32_t sorvane_arf_AnimationComponents_setBlendshapeIds(sorvane_arf_AnimationComponents* self, int64_t setId, const int64_t* in, int64_t inBytes, int64_t count);
SORVANE_API int32_t sorvane_arf_AnimationComponents_getBlendshapeWeight(float* out, const sorvane_arf_AnimationComponents* self, int64_t setId, int64_t id);
SORVANE_API int32_t sorvane_arf_AnimationComponents_getBlendshapeWeights(float* out, int64_t outBytes, int64_t* pvalueCount, const sorvane_arf_AnimationComponents* self, int64_t setId);
SORVANE_API int32_t sorvane_arf_AnimationComponents_setBlendshapeWeight(sorvane_arf_AnimationComponents* self, int64_t setId, int64_t id, float weight);
SORVANE_API int32_t sorvane_arf_AnimationComponents_setBlendshapeWeights(sorvane_arf_AnimationComponents* self, int64_t setId, const float* in, int64_t inBytes, int64_t count);
SORVANE_API int32_t sorvane_arf_AnimationComponents_hasTexture(bool* out, const sorvane_arf_AnimationComponents* self, int64_t setId, int64_t id);
SORVANE_API int32_t sorvane_arf_AnimationComponents_getTextureCount(int64_t* out, const sorvane_arf_AnimationComponents* self, int64_t setId);
SORVANE_API int32_t sorvane_arf_AnimationComponents_getTextureIds(int64_t* out, int64_t outBytes, int64_t* pvalueCount, const sorvane_arf_AnimationComponents* self, int64_t setId);
/* Relabels the entries: the i-th id given takes the i-th present entry in ascending order. */
SORVANE_API int32_t sorvane_arf_AnimationComponents_setTextureIds(sorvane_arf_AnimationComponents* self, int64_t setId, const int64_t* in, int64_t inBytes, int64_t count);
SORVANE_API int32_t sorvane_arf_AnimationComponents_getTextureWeight(float* out, const sorvane_arf_AnimationComponents* self, int64_t setId, int64_t id);
SORVANE_API int32_t sorvane_arf_AnimationComponents_getTextureWeights(float* out, int64_t outBytes, int64_t* pvalueCount, const sorvane_arf_AnimationComponents* self, int64_t setId);
SORVANE_API int32_t sorvane_arf_AnimationComponents_setTextureWeight(sorvane_arf_AnimationComponents* self, int64_t setId, int64_t id, float weight);
SORVANE_API int32_t sorvane_arf_AnimationComponents_setTextureWeights(sorvane_arf_AnimationComponents* self, int64_t setId, const float* in, int64_t inBytes, int64_t count);
SORVANE_API int32_t sorvane_arf_AnimationComponents_hasJoint(bool* out, const sorvane_arf_AnimationComponents* self, int64_t skeletonId, int64_t jointId);
SORVANE_API int32_t sorvane_arf_AnimationComponents_getJointCount(int64_t* out, const sorvane_arf_AnimationComponents* self, int64_t skeletonId);
SORVANE_API int32_t sorvane_arf_AnimationComponents_getJointIds(int64_t* out, int64_t outBytes, int64_t* pvalueCount, const sorvane_arf_AnimationComponents* self, int64_t skeletonId);
SORVANE_API int32_t sorvane_arf_AnimationComponents_setJointIds(sorvane_arf_AnimationComponents* self, int64_t skeletonId, const int64_t* in, int64_t inBytes, int64_t count);
/* One joint's floats (16 unless a shorter or longer vector was stored). */
SORVANE_API int32_t sorvane_arf_AnimationComponents_getJointTransform(float* out, int64_t outBytes, int64_t* pvalueCount, const sorvane_arf_AnimationComponents* self, int64_t skeletonId, int64_t jointId);
/* count: floats, the joint's own count. */
SORVANE_API int32_t sorvane_arf_AnimationComponents_setJointTransform(sorvane_arf_AnimationComponents* self, int64_t skeletonId, int64_t jointId, const float* in, int64_t inBytes, int64_t count);
/* 16 floats per joint; *pvalueCount counts floats. */
SORVANE_API int32_t sorvane_arf_AnimationComponents_getJointTransforms(float* out, int64_t outBytes, int64_t* pvalueCount, const sorvane_arf_AnimationComponents* self, int64_t skeletonId);
/* count: joints, 16 floats each. */
SORVANE_API int32_t sorvane_arf_AnimationComponents_setJointTransforms(sorvane_arf_AnimationComponents* self, int64_t skeletonId, const float* in, int64_t inBytes, int64_t count);
/* By location: 2 blendshape, 3 joint, 5 texture target. */
SORVANE_API int32_t sorvane_arf_AnimationComponents_hasValue(bool* out, const sorvane_arf_AnimationComponents* self, int32_t type, int64_t id, int64_t index);
SORVANE_API int32_t sorvane_arf_AnimationComponents_getValue(float* out, int64_t outBytes, int64_t* pvalueCount, const sorvane_arf_AnimationComponents* self, int32_t type, int64_t id, int64_t index);
/* A value of valueType made of count floats (its own count). */
SORVANE_API int32_t sorvane_arf_AnimationComponents_setValue(sorvane_arf_AnimationComponents* self, int32_t type, int64_t id, int64_t index, int32_t valueType, const float* in, int64_t inBytes, int64_t count);

/* Mappers: built once from a document and a framework, then each frame or
 * stream sample of that framework updates a components object. A mapper is
 * only read by the update calls, so threads with their own components and
 * frames may share one. Failures of an update leave the targets it reached
 * before updated. */
SORVANE_API int32_t sorvane_arf_AnimationMapper_create(sorvane_arf_AnimationMapper** out, const sorvane_arf_Arf* arf, const sorvane_arf_AnimationFramework* framework);
SORVANE_API int32_t sorvane_arf_AnimationMapper_delete(sorvane_arf_AnimationMapper* self);
SORVANE_API int32_t sorvane_arf_AnimationMapper_updateComponents_data(const sorvane_arf_AnimationMapper* self, sorvane_arf_AnimationComponents* components, const sorvane_arf_AnimationData* data);
/* Any unit sample from a stream; config and silent samples are refused. */
SORVANE_API int32_t sorvane_arf_AnimationMapper_updateComponents_sample(const sorvane_arf_AnimationMapper* self, sorvane_arf_AnimationComponents* components, const sorvane_arf_UnitAnimationSample* sample);
/* A sample of another kind than the function names is refused. */
SORVANE_API int32_t sorvane_arf_AnimationMapper_updateComponents_blendshape(const sorvane_arf_AnimationMapper* self, sorvane_arf_AnimationComponents* components, const sorvane_arf_BlendshapeAnimationSample* sample);
SORVANE_API int32_t sorvane_arf_AnimationMapper_updateComponents_joint(const sorvane_arf_AnimationMapper* self, sorvane_arf_AnimationComponents* components, const sorvane_arf_JointAnimationSample* sample);
SORVANE_API int32_t sorvane_arf_AnimationMapper_updateComponents_texture(const sorvane_arf_AnimationMapper* self, sorvane_arf_AnimationComponents* components, const sorvane_arf_TextureAnimationSample* sample);
/* The graph, one item per target; a new tree released with sorvane_datatree_DataTree_delete. */
SORVANE_API int32_t sorvane_arf_AnimationMapper_buildDescription(DataTree** out, const sorvane_arf_AnimationMapper* self);
/* How many targets the mapper drives. */
SORVANE_API int32_t sorvane_arf_AnimationMapper_getOperatorCount(int64_t* out, const sorvane_arf_AnimationMapper* self);
/* The operator at a target (a location), a new handle on it. */
SORVANE_API int32_t sorvane_arf_AnimationMapper_getOperator(sorvane_arf_AnimationOperator** out, const sorvane_arf_AnimationMapper* self, int32_t type, int64_t id, int64_t index);

/* Operators: 1 Bypass, 2 Mul, 6 Transform, 7 Channel, 8 Queue. */
SORVANE_API int32_t sorvane_arf_AnimationOperator_getType(int32_t* out, const sorvane_arf_AnimationOperator* self);
SORVANE_API int32_t sorvane_arf_AnimationOperator_buildDescription(DataTree** out, const sorvane_arf_AnimationOperator* self);
SORVANE_API int32_t sorvane_arf_AnimationOperator_delete(sorvane_arf_AnimationOperator* self);

#ifdef __cplusplus
}
#endif

#endif
