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

/* A framework of its own with no inputs yet, named name and of type type. */
SORVANE_API int32_t sorvane_arf_AnimationFramework_new(sorvane_arf_AnimationFramework** out, const char* name, const char* type);
/* One of the built-in frameworks by URN, its inputs at (1, id, row). */
SORVANE_API int32_t sorvane_arf_AnimationFramework_create(sorvane_arf_AnimationFramework** out, const char* urn, int64_t id);
/* The framework of the first component driven directly by (type, urn); no
 * match is status 0 with *out NULL. */
SORVANE_API int32_t sorvane_arf_AnimationFramework_tryCreate(sorvane_arf_AnimationFramework** out, const sorvane_arf_Arf* arf, const char* type, const char* urn, int64_t id);
/* Whether urn names a built-in framework. */
SORVANE_API int32_t sorvane_arf_AnimationFramework_knows(bool* out, const char* urn);
/* Releases the framework handle. */
SORVANE_API int32_t sorvane_arf_AnimationFramework_delete(sorvane_arf_AnimationFramework* self);
/* The framework's name; text size protocol. */
SORVANE_API int32_t sorvane_arf_AnimationFramework_getName(char* out, int64_t* outSize, const sorvane_arf_AnimationFramework* self);
/* The framework's type; text size protocol. */
SORVANE_API int32_t sorvane_arf_AnimationFramework_getType(char* out, int64_t* outSize, const sorvane_arf_AnimationFramework* self);
/* Adds an input at the location (type, id, index); arguments after self: type, id, index, valueType, name. */
SORVANE_API int32_t sorvane_arf_AnimationFramework_addInput(sorvane_arf_AnimationFramework* self, int32_t type, int64_t id, int64_t index, int32_t valueType, const char* name);
/* A weight input with its range; arguments after self: type, id, index, name, min, max. */
SORVANE_API int32_t sorvane_arf_AnimationFramework_addWeightInput(sorvane_arf_AnimationFramework* self, int32_t type, int64_t id, int64_t index, const char* name, float min, float max);
/* Adds an input at (type, id, number of inputs so far), *out is that index; arguments after self: valueType, name, type, id. */
SORVANE_API int32_t sorvane_arf_AnimationFramework_addNextInput(int64_t* out, sorvane_arf_AnimationFramework* self, int32_t valueType, const char* name, int32_t type, int64_t id);
/* The number of inputs at (type, id). */
SORVANE_API int32_t sorvane_arf_AnimationFramework_getInputCount(int64_t* out, const sorvane_arf_AnimationFramework* self, int32_t type, int64_t id);
/* The name of input index at (type, id); text size protocol. */
SORVANE_API int32_t sorvane_arf_AnimationFramework_getInputName(char* out, int64_t* outSize, const sorvane_arf_AnimationFramework* self, int32_t type, int64_t id, int64_t index);
/* The value type of input index at (type, id). */
SORVANE_API int32_t sorvane_arf_AnimationFramework_getInputValueType(int32_t* out, const sorvane_arf_AnimationFramework* self, int32_t type, int64_t id, int64_t index);
/* The location (type, id, index) new inputs take by default, in the three out pointers. */
SORVANE_API int32_t sorvane_arf_AnimationFramework_getDefaultLocation(int32_t* outType, int64_t* outId, int64_t* outIndex, const sorvane_arf_AnimationFramework* self);
/* Minimum and maximum of each weight input at (type, id), by index; both
 * arrays hold outBytes. Array size protocol (count in values, capacity in bytes of each array). */
SORVANE_API int32_t sorvane_arf_AnimationFramework_getInputRanges(float* outMin, float* outMax, int64_t outBytes, int64_t* pvalueCount, const sorvane_arf_AnimationFramework* self, int32_t type, int64_t id);
/* A new frame with one value per input of the framework, released with its _delete. */
SORVANE_API int32_t sorvane_arf_AnimationFramework_createData(sorvane_arf_AnimationData** out, const sorvane_arf_AnimationFramework* self);

/* Releases the frame. */
SORVANE_API int32_t sorvane_arf_AnimationData_delete(sorvane_arf_AnimationData* self);
/* The number of values of the frame. */
SORVANE_API int32_t sorvane_arf_AnimationData_getValueCount(int64_t* out, const sorvane_arf_AnimationData* self);
/* Every value as a weight, in location order; array size protocol (count in values, capacity in bytes). */
SORVANE_API int32_t sorvane_arf_AnimationData_getWeights(float* out, int64_t outBytes, int64_t* pvalueCount, const sorvane_arf_AnimationData* self);
/* Sets every value as a weight from count floats, one per value. */
SORVANE_API int32_t sorvane_arf_AnimationData_setWeights(sorvane_arf_AnimationData* self, const float* in, int64_t inBytes, int64_t count);
/* Every value as a matrix, 16 floats each; array size protocol (count in floats, capacity in bytes). */
SORVANE_API int32_t sorvane_arf_AnimationData_getTransforms(float* out, int64_t outBytes, int64_t* pvalueCount, const sorvane_arf_AnimationData* self);
/* Sets every value as a matrix from count floats, 16 per value. */
SORVANE_API int32_t sorvane_arf_AnimationData_setTransforms(sorvane_arf_AnimationData* self, const float* in, int64_t inBytes, int64_t count);
/* Whether the frame has a value at (type, id, index). */
SORVANE_API int32_t sorvane_arf_AnimationData_hasValue(bool* out, const sorvane_arf_AnimationData* self, int32_t type, int64_t id, int64_t index);
/* The value type at (type, id, index). */
SORVANE_API int32_t sorvane_arf_AnimationData_getValueType(int32_t* out, const sorvane_arf_AnimationData* self, int32_t type, int64_t id, int64_t index);
/* The floats of the value at (type, id, index); array size protocol (count in values, capacity in bytes). */
SORVANE_API int32_t sorvane_arf_AnimationData_getValue(float* out, int64_t outBytes, int64_t* pvalueCount, const sorvane_arf_AnimationData* self, int32_t type, int64_t id, int64_t index);
/* Sets the value at (type, id, index) from count floats, exactly the value's own count. */
SORVANE_API int32_t sorvane_arf_AnimationData_setValue(sorvane_arf_AnimationData* self, int32_t type, int64_t id, int64_t index, const float* in, int64_t inBytes, int64_t count);

/* Components: the live weights and joint matrices of an avatar, every set in
 * ascending id order. _create reads the document once (weights 0, joints in
 * their rest pose) and keeps nothing of it. Weight families exist twice, for
 * blendshape sets (Blendshape) and texture sets (Texture). */

/* The live values of the avatar arf, released with _delete. */
SORVANE_API int32_t sorvane_arf_AnimationComponents_create(sorvane_arf_AnimationComponents** out, const sorvane_arf_Arf* arf);
/* Releases the components. */
SORVANE_API int32_t sorvane_arf_AnimationComponents_delete(sorvane_arf_AnimationComponents* self);
/* Reads the avatar arf again, replacing every set's entries (weights 0, joints at rest). */
SORVANE_API int32_t sorvane_arf_AnimationComponents_init(sorvane_arf_AnimationComponents* self, const sorvane_arf_Arf* arf);
/* The ids of the blendshape sets; array size protocol (count in values, capacity in bytes). */
SORVANE_API int32_t sorvane_arf_AnimationComponents_getBlendshapeSetIds(int64_t* out, int64_t outBytes, int64_t* pvalueCount, const sorvane_arf_AnimationComponents* self);
/* The ids of the texture sets; array size protocol (count in values, capacity in bytes). */
SORVANE_API int32_t sorvane_arf_AnimationComponents_getTextureSetIds(int64_t* out, int64_t outBytes, int64_t* pvalueCount, const sorvane_arf_AnimationComponents* self);
/* The ids of the skeletons; array size protocol (count in values, capacity in bytes). */
SORVANE_API int32_t sorvane_arf_AnimationComponents_getSkeletonIds(int64_t* out, int64_t outBytes, int64_t* pvalueCount, const sorvane_arf_AnimationComponents* self);
/* Whether blendshape set setId has an entry with this id. */
SORVANE_API int32_t sorvane_arf_AnimationComponents_hasBlendshape(bool* out, const sorvane_arf_AnimationComponents* self, int64_t setId, int64_t id);
/* The number of entries of blendshape set setId. */
SORVANE_API int32_t sorvane_arf_AnimationComponents_getBlendshapeCount(int64_t* out, const sorvane_arf_AnimationComponents* self, int64_t setId);
/* The entry ids of blendshape set setId; array size protocol (count in values, capacity in bytes). */
SORVANE_API int32_t sorvane_arf_AnimationComponents_getBlendshapeIds(int64_t* out, int64_t outBytes, int64_t* pvalueCount, const sorvane_arf_AnimationComponents* self, int64_t setId);
/* Relabels the entries of set setId: the i-th id given takes the i-th present entry in ascending order. */
SORVANE_API int32_t sorvane_arf_AnimationComponents_setBlendshapeIds(sorvane_arf_AnimationComponents* self, int64_t setId, const int64_t* in, int64_t inBytes, int64_t count);
/* The weight of entry id of blendshape set setId. */
SORVANE_API int32_t sorvane_arf_AnimationComponents_getBlendshapeWeight(float* out, const sorvane_arf_AnimationComponents* self, int64_t setId, int64_t id);
/* The weights of blendshape set setId, in id order; array size protocol (count in values, capacity in bytes). */
SORVANE_API int32_t sorvane_arf_AnimationComponents_getBlendshapeWeights(float* out, int64_t outBytes, int64_t* pvalueCount, const sorvane_arf_AnimationComponents* self, int64_t setId);
/* Sets the weight of entry id of blendshape set setId. */
SORVANE_API int32_t sorvane_arf_AnimationComponents_setBlendshapeWeight(sorvane_arf_AnimationComponents* self, int64_t setId, int64_t id, float weight);
/* Sets the weights of blendshape set setId from count floats, in id order. */
SORVANE_API int32_t sorvane_arf_AnimationComponents_setBlendshapeWeights(sorvane_arf_AnimationComponents* self, int64_t setId, const float* in, int64_t inBytes, int64_t count);
/* Whether texture set setId has an entry with this id. */
SORVANE_API int32_t sorvane_arf_AnimationComponents_hasTexture(bool* out, const sorvane_arf_AnimationComponents* self, int64_t setId, int64_t id);
/* The number of entries of texture set setId. */
SORVANE_API int32_t sorvane_arf_AnimationComponents_getTextureCount(int64_t* out, const sorvane_arf_AnimationComponents* self, int64_t setId);
/* The entry ids of texture set setId; array size protocol (count in values, capacity in bytes). */
SORVANE_API int32_t sorvane_arf_AnimationComponents_getTextureIds(int64_t* out, int64_t outBytes, int64_t* pvalueCount, const sorvane_arf_AnimationComponents* self, int64_t setId);
/* Relabels the entries of set setId: the i-th id given takes the i-th present entry in ascending order. */
SORVANE_API int32_t sorvane_arf_AnimationComponents_setTextureIds(sorvane_arf_AnimationComponents* self, int64_t setId, const int64_t* in, int64_t inBytes, int64_t count);
/* The weight of entry id of texture set setId. */
SORVANE_API int32_t sorvane_arf_AnimationComponents_getTextureWeight(float* out, const sorvane_arf_AnimationComponents* self, int64_t setId, int64_t id);
/* The weights of texture set setId, in id order; array size protocol (count in values, capacity in bytes). */
SORVANE_API int32_t sorvane_arf_AnimationComponents_getTextureWeights(float* out, int64_t outBytes, int64_t* pvalueCount, const sorvane_arf_AnimationComponents* self, int64_t setId);
/* Sets the weight of entry id of texture set setId. */
SORVANE_API int32_t sorvane_arf_AnimationComponents_setTextureWeight(sorvane_arf_AnimationComponents* self, int64_t setId, int64_t id, float weight);
/* Sets the weights of texture set setId from count floats, in id order. */
SORVANE_API int32_t sorvane_arf_AnimationComponents_setTextureWeights(sorvane_arf_AnimationComponents* self, int64_t setId, const float* in, int64_t inBytes, int64_t count);
/* Whether skeleton skeletonId has a joint with this id. */
SORVANE_API int32_t sorvane_arf_AnimationComponents_hasJoint(bool* out, const sorvane_arf_AnimationComponents* self, int64_t skeletonId, int64_t jointId);
/* The number of joints of skeleton skeletonId. */
SORVANE_API int32_t sorvane_arf_AnimationComponents_getJointCount(int64_t* out, const sorvane_arf_AnimationComponents* self, int64_t skeletonId);
/* The joint ids of skeleton skeletonId; array size protocol (count in values, capacity in bytes). */
SORVANE_API int32_t sorvane_arf_AnimationComponents_getJointIds(int64_t* out, int64_t outBytes, int64_t* pvalueCount, const sorvane_arf_AnimationComponents* self, int64_t skeletonId);
/* Relabels the joints of skeleton skeletonId: the i-th id given takes the i-th joint in ascending order. */
SORVANE_API int32_t sorvane_arf_AnimationComponents_setJointIds(sorvane_arf_AnimationComponents* self, int64_t skeletonId, const int64_t* in, int64_t inBytes, int64_t count);
/* One joint's floats (16 unless a shorter or longer vector was stored); array size protocol (count in floats, capacity in bytes). */
SORVANE_API int32_t sorvane_arf_AnimationComponents_getJointTransform(float* out, int64_t outBytes, int64_t* pvalueCount, const sorvane_arf_AnimationComponents* self, int64_t skeletonId, int64_t jointId);
/* Sets one joint's transform from count floats, the joint's own count. */
SORVANE_API int32_t sorvane_arf_AnimationComponents_setJointTransform(sorvane_arf_AnimationComponents* self, int64_t skeletonId, int64_t jointId, const float* in, int64_t inBytes, int64_t count);
/* Every joint's matrix, 16 floats each; array size protocol (count in floats, capacity in bytes). */
SORVANE_API int32_t sorvane_arf_AnimationComponents_getJointTransforms(float* out, int64_t outBytes, int64_t* pvalueCount, const sorvane_arf_AnimationComponents* self, int64_t skeletonId);
/* Sets every joint's matrix from count joints, 16 floats each. */
SORVANE_API int32_t sorvane_arf_AnimationComponents_setJointTransforms(sorvane_arf_AnimationComponents* self, int64_t skeletonId, const float* in, int64_t inBytes, int64_t count);
/* Whether there is a value at a location (type 2 blendshape, 3 joint, 5 texture target; id, index). */
SORVANE_API int32_t sorvane_arf_AnimationComponents_hasValue(bool* out, const sorvane_arf_AnimationComponents* self, int32_t type, int64_t id, int64_t index);
/* The floats of the value at (type, id, index); array size protocol (count in values, capacity in bytes). */
SORVANE_API int32_t sorvane_arf_AnimationComponents_getValue(float* out, int64_t outBytes, int64_t* pvalueCount, const sorvane_arf_AnimationComponents* self, int32_t type, int64_t id, int64_t index);
/* Sets the value at (type, id, index) to a value of valueType made of count floats (its own count). */
SORVANE_API int32_t sorvane_arf_AnimationComponents_setValue(sorvane_arf_AnimationComponents* self, int32_t type, int64_t id, int64_t index, int32_t valueType, const float* in, int64_t inBytes, int64_t count);

/* Mappers: built once from a document and a framework, then each frame or
 * stream sample of that framework updates a components object. A mapper is
 * only read by the update calls, so threads with their own components and
 * frames may share one. Failures of an update leave the targets it reached
 * before updated. */

/* Builds the mapper of the avatar arf for framework, released with _delete. */
SORVANE_API int32_t sorvane_arf_AnimationMapper_create(sorvane_arf_AnimationMapper** out, const sorvane_arf_Arf* arf, const sorvane_arf_AnimationFramework* framework);
/* Releases the mapper. */
SORVANE_API int32_t sorvane_arf_AnimationMapper_delete(sorvane_arf_AnimationMapper* self);
/* Applies a frame of the mapper's framework to components. */
SORVANE_API int32_t sorvane_arf_AnimationMapper_updateComponents_data(const sorvane_arf_AnimationMapper* self, sorvane_arf_AnimationComponents* components, const sorvane_arf_AnimationData* data);
/* Applies any unit sample from a stream to components; config and silent samples are refused. */
SORVANE_API int32_t sorvane_arf_AnimationMapper_updateComponents_sample(const sorvane_arf_AnimationMapper* self, sorvane_arf_AnimationComponents* components, const sorvane_arf_UnitAnimationSample* sample);
/* Applies a blendshape sample to components; a sample of another kind is refused. */
SORVANE_API int32_t sorvane_arf_AnimationMapper_updateComponents_blendshape(const sorvane_arf_AnimationMapper* self, sorvane_arf_AnimationComponents* components, const sorvane_arf_BlendshapeAnimationSample* sample);
/* Applies a joint sample to components; a sample of another kind is refused. */
SORVANE_API int32_t sorvane_arf_AnimationMapper_updateComponents_joint(const sorvane_arf_AnimationMapper* self, sorvane_arf_AnimationComponents* components, const sorvane_arf_JointAnimationSample* sample);
/* Applies a texture sample to components; a sample of another kind is refused. */
SORVANE_API int32_t sorvane_arf_AnimationMapper_updateComponents_texture(const sorvane_arf_AnimationMapper* self, sorvane_arf_AnimationComponents* components, const sorvane_arf_TextureAnimationSample* sample);
/* The graph, one item per target; a new tree released with sorvane_datatree_DataTree_delete. */
SORVANE_API int32_t sorvane_arf_AnimationMapper_buildDescription(DataTree** out, const sorvane_arf_AnimationMapper* self);
/* How many targets the mapper drives. */
SORVANE_API int32_t sorvane_arf_AnimationMapper_getOperatorCount(int64_t* out, const sorvane_arf_AnimationMapper* self);
/* The operator at a target (a location), a new handle on it. */
SORVANE_API int32_t sorvane_arf_AnimationMapper_getOperator(sorvane_arf_AnimationOperator** out, const sorvane_arf_AnimationMapper* self, int32_t type, int64_t id, int64_t index);

/* The operator kind: 1 Bypass, 2 Mul, 6 Transform, 7 Channel, 8 Queue. */
SORVANE_API int32_t sorvane_arf_AnimationOperator_getType(int32_t* out, const sorvane_arf_AnimationOperator* self);
/* The operator and its inputs as a new tree, released with sorvane_datatree_DataTree_delete. */
SORVANE_API int32_t sorvane_arf_AnimationOperator_buildDescription(DataTree** out, const sorvane_arf_AnimationOperator* self);
/* Releases the operator handle. */
SORVANE_API int32_t sorvane_arf_AnimationOperator_delete(sorvane_arf_AnimationOperator* self);

#ifdef __cplusplus
}
#endif

#endif
