/* Flat C interface: the animation sample stream and its samples.
 * Included by sorvane/sorvane.h.
 *
 * Every function returns 0 on success and -1 on failure, with the text in the
 * error slot. A handle from _create or from a stream is released with its
 * _delete. The _to... casts return the same object under another handle type,
 * not a copy: delete it once, through either handle.
 *
 * Sample stream: sorvane_arf_AnimationSampleStream_nextUnitSample succeeds
 * with two null results when no whole unit is there yet; getState tells why
 * (-1 end of input, 0 unit returned, 1 feed more bytes, 2 decoder failure,
 * 3 unknown unit type, 4 encoding failure). The value getters of joints and
 * landmarks store the value count in *pvalueCount; a null out only asks for
 * it. Unit types: 0 config, 1 blendshape, 2 joint, 3 landmark, 4 texture,
 * 5 silent. */
#ifndef SORVANE_FLAT_SORVANE_STREAM_H
#define SORVANE_FLAT_SORVANE_STREAM_H

#include <stddef.h>
#include <stdint.h>
#ifndef __cplusplus
#include <stdbool.h>
#endif

#include "sorvane/core/Export.h"

#ifdef __cplusplus
namespace sorvane {
namespace arf {
class AnimationSampleStream;
class HeaderAnimationSample;
class UnitAnimationSample;
class ConfigAnimationSample;
class BlendshapeAnimationSample;
class JointAnimationSample;
class LandmarkAnimationSample;
class TextureAnimationSample;
class SilentAnimationSample;
} // namespace arf
} // namespace sorvane
typedef sorvane::arf::AnimationSampleStream sorvane_arf_AnimationSampleStream;
typedef sorvane::arf::HeaderAnimationSample sorvane_arf_HeaderAnimationSample;
typedef sorvane::arf::UnitAnimationSample sorvane_arf_UnitAnimationSample;
typedef sorvane::arf::ConfigAnimationSample sorvane_arf_ConfigAnimationSample;
typedef sorvane::arf::BlendshapeAnimationSample sorvane_arf_BlendshapeAnimationSample;
typedef sorvane::arf::JointAnimationSample sorvane_arf_JointAnimationSample;
typedef sorvane::arf::LandmarkAnimationSample sorvane_arf_LandmarkAnimationSample;
typedef sorvane::arf::TextureAnimationSample sorvane_arf_TextureAnimationSample;
typedef sorvane::arf::SilentAnimationSample sorvane_arf_SilentAnimationSample;
#else
typedef struct sorvane_arf_AnimationSampleStream sorvane_arf_AnimationSampleStream;
typedef struct sorvane_arf_HeaderAnimationSample sorvane_arf_HeaderAnimationSample;
typedef struct sorvane_arf_UnitAnimationSample sorvane_arf_UnitAnimationSample;
typedef struct sorvane_arf_ConfigAnimationSample sorvane_arf_ConfigAnimationSample;
typedef struct sorvane_arf_BlendshapeAnimationSample sorvane_arf_BlendshapeAnimationSample;
typedef struct sorvane_arf_JointAnimationSample sorvane_arf_JointAnimationSample;
typedef struct sorvane_arf_LandmarkAnimationSample sorvane_arf_LandmarkAnimationSample;
typedef struct sorvane_arf_TextureAnimationSample sorvane_arf_TextureAnimationSample;
typedef struct sorvane_arf_SilentAnimationSample sorvane_arf_SilentAnimationSample;
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* AnimationSampleStream */
/* Makes a stream codec of the given byte order, released with _delete. */
SORVANE_API int32_t sorvane_arf_AnimationSampleStream_create(sorvane_arf_AnimationSampleStream** out, bool littleEndian);
/* Releases the object. */
SORVANE_API int32_t sorvane_arf_AnimationSampleStream_delete(sorvane_arf_AnimationSampleStream* self);
/* Appends size bytes of encoded stream to the decoder's input. */
SORVANE_API int32_t sorvane_arf_AnimationSampleStream_feed(sorvane_arf_AnimationSampleStream* self, const void* buffer, int64_t size);
/* Moves up to size bytes of encoded output into buffer; *out is the count moved. */
SORVANE_API int32_t sorvane_arf_AnimationSampleStream_flush(int64_t* out, sorvane_arf_AnimationSampleStream* self, void* buffer, int64_t size);
/* The next decoded unit as two new handles (header, sample); both null when no whole unit is there yet. */
SORVANE_API int32_t sorvane_arf_AnimationSampleStream_nextUnitSample(sorvane_arf_HeaderAnimationSample** header, sorvane_arf_UnitAnimationSample** sample, sorvane_arf_AnimationSampleStream* self);
/* Encodes a sample, filling the header's type and length; arguments after self: header, sample. *out is false when refused. */
SORVANE_API int32_t sorvane_arf_AnimationSampleStream_addUnitSample(bool* out, sorvane_arf_AnimationSampleStream* self, sorvane_arf_HeaderAnimationSample* header, const sorvane_arf_UnitAnimationSample* sample);
/* Encodes a sample under a header with the timestamp truncated toward zero; arguments after self: timestamp, sample. *out is false when refused. */
SORVANE_API int32_t sorvane_arf_AnimationSampleStream_addUnitSampleTimestamp(bool* out, sorvane_arf_AnimationSampleStream* self, float timestamp, const sorvane_arf_UnitAnimationSample* sample);
/* Why the last call stopped: -1 end, 0 unit returned, 1 feed more, 2 decoder, 3 unknown unit, 4 encoder. */
SORVANE_API int32_t sorvane_arf_AnimationSampleStream_getState(int32_t* out, const sorvane_arf_AnimationSampleStream* self);
/* The text of the last decoder or encoder failure; text size protocol. */
SORVANE_API int32_t sorvane_arf_AnimationSampleStream_getErrorMsg(char* out, int64_t* outSize, const sorvane_arf_AnimationSampleStream* self);
/* The zero bytes that follow each unit on the wire. */
SORVANE_API int32_t sorvane_arf_AnimationSampleStream_getExtraBytePadding(int64_t* out, const sorvane_arf_AnimationSampleStream* self);
/* Sets the zero bytes that follow each unit on the wire. */
SORVANE_API int32_t sorvane_arf_AnimationSampleStream_setExtraBytePadding(sorvane_arf_AnimationSampleStream* self, int64_t value);
/* Whether the stream is big-endian. */
SORVANE_API int32_t sorvane_arf_AnimationSampleStream_isBigEndian(bool* out, const sorvane_arf_AnimationSampleStream* self);
/* The number of bits held in the stream's buffer. */
SORVANE_API int32_t sorvane_arf_AnimationSampleStream_getBitSize(int64_t* out, const sorvane_arf_AnimationSampleStream* self);

/* HeaderAnimationSample */
/* Makes an empty unit header, released with _delete. */
SORVANE_API int32_t sorvane_arf_HeaderAnimationSample_create(sorvane_arf_HeaderAnimationSample** out);
/* Releases the object. */
SORVANE_API int32_t sorvane_arf_HeaderAnimationSample_delete(sorvane_arf_HeaderAnimationSample* self);
/* The unit type the header announces (0 config ... 5 silent). */
SORVANE_API int32_t sorvane_arf_HeaderAnimationSample_getUnitType(int32_t* out, const sorvane_arf_HeaderAnimationSample* self);
/* Sets the unit type. */
SORVANE_API int32_t sorvane_arf_HeaderAnimationSample_setUnitType(sorvane_arf_HeaderAnimationSample* self, int32_t value);
/* Whether the timestamp present flag is set. */
SORVANE_API int32_t sorvane_arf_HeaderAnimationSample_getTimestampPresent(bool* out, const sorvane_arf_HeaderAnimationSample* self);
/* Sets the timestamp present flag. */
SORVANE_API int32_t sorvane_arf_HeaderAnimationSample_setTimestampPresent(sorvane_arf_HeaderAnimationSample* self, bool value);
/* Whether the extension present flag is set. */
SORVANE_API int32_t sorvane_arf_HeaderAnimationSample_getExtensionPresent(bool* out, const sorvane_arf_HeaderAnimationSample* self);
/* Sets the extension present flag. */
SORVANE_API int32_t sorvane_arf_HeaderAnimationSample_setExtensionPresent(sorvane_arf_HeaderAnimationSample* self, bool value);
/* The unit's length in bytes as the header states it. */
SORVANE_API int32_t sorvane_arf_HeaderAnimationSample_getUnitLength(int64_t* out, const sorvane_arf_HeaderAnimationSample* self);
/* Sets the unit length. */
SORVANE_API int32_t sorvane_arf_HeaderAnimationSample_setUnitLength(sorvane_arf_HeaderAnimationSample* self, int64_t value);
/* The timestamp. */
SORVANE_API int32_t sorvane_arf_HeaderAnimationSample_getTimestamp(int64_t* out, const sorvane_arf_HeaderAnimationSample* self);
/* Sets the timestamp. */
SORVANE_API int32_t sorvane_arf_HeaderAnimationSample_setTimestamp(sorvane_arf_HeaderAnimationSample* self, int64_t value);
/* The 8-bit extension value. */
SORVANE_API int32_t sorvane_arf_HeaderAnimationSample_getExtension8bits(int64_t* out, const sorvane_arf_HeaderAnimationSample* self);
/* Sets the 8-bit extension value. */
SORVANE_API int32_t sorvane_arf_HeaderAnimationSample_setExtension8bits(sorvane_arf_HeaderAnimationSample* self, int64_t value);
/* Whether the extension data flag is set. */
SORVANE_API int32_t sorvane_arf_HeaderAnimationSample_getExtensionData(bool* out, const sorvane_arf_HeaderAnimationSample* self);
/* Sets the extension data flag. */
SORVANE_API int32_t sorvane_arf_HeaderAnimationSample_setExtensionData(sorvane_arf_HeaderAnimationSample* self, bool value);

/* UnitAnimationSample */
/* Releases the sample (through any of its handles, once). */
SORVANE_API int32_t sorvane_arf_UnitAnimationSample_delete(sorvane_arf_UnitAnimationSample* self);
/* The unit type: 0 config, 1 blendshape, 2 joint, 3 landmark, 4 texture, 5 silent. */
SORVANE_API int32_t sorvane_arf_UnitAnimationSample_getUnitType(int32_t* out, const sorvane_arf_UnitAnimationSample* self);
/* The same object as a ConfigAnimationSample handle, not a copy: delete it once, through either handle. */
SORVANE_API int32_t sorvane_arf_UnitAnimationSample_toConfigAnimationSample(sorvane_arf_ConfigAnimationSample** out, sorvane_arf_UnitAnimationSample* self);
/* The same object as a BlendshapeAnimationSample handle, not a copy: delete it once, through either handle. */
SORVANE_API int32_t sorvane_arf_UnitAnimationSample_toBlendshapeAnimationSample(sorvane_arf_BlendshapeAnimationSample** out, sorvane_arf_UnitAnimationSample* self);
/* The same object as a JointAnimationSample handle, not a copy: delete it once, through either handle. */
SORVANE_API int32_t sorvane_arf_UnitAnimationSample_toJointAnimationSample(sorvane_arf_JointAnimationSample** out, sorvane_arf_UnitAnimationSample* self);
/* The same object as a LandmarkAnimationSample handle, not a copy: delete it once, through either handle. */
SORVANE_API int32_t sorvane_arf_UnitAnimationSample_toLandmarkAnimationSample(sorvane_arf_LandmarkAnimationSample** out, sorvane_arf_UnitAnimationSample* self);
/* The same object as a TextureAnimationSample handle, not a copy: delete it once, through either handle. */
SORVANE_API int32_t sorvane_arf_UnitAnimationSample_toTextureAnimationSample(sorvane_arf_TextureAnimationSample** out, sorvane_arf_UnitAnimationSample* self);
/* The same object as a SilentAnimationSample handle, not a copy: delete it once, through either handle. */
SORVANE_API int32_t sorvane_arf_UnitAnimationSample_toSilentAnimationSample(sorvane_arf_SilentAnimationSample** out, sorvane_arf_UnitAnimationSample* self);

/* ConfigAnimationSample */
/* Makes an empty config sample, released with _delete. */
SORVANE_API int32_t sorvane_arf_ConfigAnimationSample_create(sorvane_arf_ConfigAnimationSample** out);
/* Releases the object. */
SORVANE_API int32_t sorvane_arf_ConfigAnimationSample_delete(sorvane_arf_ConfigAnimationSample* self);
/* The same object as a UnitAnimationSample handle, not a copy: delete it once, through either handle. */
SORVANE_API int32_t sorvane_arf_ConfigAnimationSample_toUnitAnimationSample(sorvane_arf_UnitAnimationSample** out, sorvane_arf_ConfigAnimationSample* self);
/* The number of profiles. */
SORVANE_API int32_t sorvane_arf_ConfigAnimationSample_getProfileCount(int64_t* out, const sorvane_arf_ConfigAnimationSample* self);
/* Appends a profile named name; *out is its position. */
SORVANE_API int32_t sorvane_arf_ConfigAnimationSample_addProfile(int64_t* out, sorvane_arf_ConfigAnimationSample* self, const char* name);
/* The name of the profile at position profile; text size protocol. */
SORVANE_API int32_t sorvane_arf_ConfigAnimationSample_getProfile(char* out, int64_t* outSize, const sorvane_arf_ConfigAnimationSample* self, int64_t profile);
/* Renames the profile at position profile. */
SORVANE_API int32_t sorvane_arf_ConfigAnimationSample_setProfile(sorvane_arf_ConfigAnimationSample* self, int64_t profile, const char* name);
/* The number of associations of a profile. */
SORVANE_API int32_t sorvane_arf_ConfigAnimationSample_getAssociationCount(int64_t* out, const sorvane_arf_ConfigAnimationSample* self, int64_t profile);
/* Appends an association to a profile; arguments after self: profile, unitType, setId, timescale. *out is its position. */
SORVANE_API int32_t sorvane_arf_ConfigAnimationSample_addAssociation(int64_t* out, sorvane_arf_ConfigAnimationSample* self, int64_t profile, int32_t unitType, int64_t setId, float timescale);
/* The unit type of an association of a profile. */
SORVANE_API int32_t sorvane_arf_ConfigAnimationSample_getAssociationUnitType(int32_t* out, const sorvane_arf_ConfigAnimationSample* self, int64_t profile, int64_t association);
/* Sets the unit type of an association of a profile. */
SORVANE_API int32_t sorvane_arf_ConfigAnimationSample_setAssociationUnitType(sorvane_arf_ConfigAnimationSample* self, int64_t profile, int64_t association, int32_t value);
/* The set id of an association of a profile. */
SORVANE_API int32_t sorvane_arf_ConfigAnimationSample_getAssociationSetId(int64_t* out, const sorvane_arf_ConfigAnimationSample* self, int64_t profile, int64_t association);
/* Sets the set id of an association of a profile. */
SORVANE_API int32_t sorvane_arf_ConfigAnimationSample_setAssociationSetId(sorvane_arf_ConfigAnimationSample* self, int64_t profile, int64_t association, int64_t value);
/* The timescale of an association of a profile. */
SORVANE_API int32_t sorvane_arf_ConfigAnimationSample_getAssociationTimescale(float* out, const sorvane_arf_ConfigAnimationSample* self, int64_t profile, int64_t association);
/* Sets the timescale of an association of a profile. */
SORVANE_API int32_t sorvane_arf_ConfigAnimationSample_setAssociationTimescale(sorvane_arf_ConfigAnimationSample* self, int64_t profile, int64_t association, float value);

/* BlendshapeAnimationSample */
/* Makes an empty blendshape sample, released with _delete. */
SORVANE_API int32_t sorvane_arf_BlendshapeAnimationSample_create(sorvane_arf_BlendshapeAnimationSample** out);
/* Releases the object. */
SORVANE_API int32_t sorvane_arf_BlendshapeAnimationSample_delete(sorvane_arf_BlendshapeAnimationSample* self);
/* The same object as a UnitAnimationSample handle, not a copy: delete it once, through either handle. */
SORVANE_API int32_t sorvane_arf_BlendshapeAnimationSample_toUnitAnimationSample(sorvane_arf_UnitAnimationSample** out, sorvane_arf_BlendshapeAnimationSample* self);
/* The set id. */
SORVANE_API int32_t sorvane_arf_BlendshapeAnimationSample_getSetId(int64_t* out, const sorvane_arf_BlendshapeAnimationSample* self);
/* Sets the set id. */
SORVANE_API int32_t sorvane_arf_BlendshapeAnimationSample_setSetId(sorvane_arf_BlendshapeAnimationSample* self, int64_t value);
/* Whether the confidence present flag is set. */
SORVANE_API int32_t sorvane_arf_BlendshapeAnimationSample_getConfidencePresent(bool* out, const sorvane_arf_BlendshapeAnimationSample* self);
/* Sets the confidence present flag. */
SORVANE_API int32_t sorvane_arf_BlendshapeAnimationSample_setConfidencePresent(sorvane_arf_BlendshapeAnimationSample* self, bool value);
/* The number of blendshapes. */
SORVANE_API int32_t sorvane_arf_BlendshapeAnimationSample_getBlendshapeCount(int64_t* out, const sorvane_arf_BlendshapeAnimationSample* self);
/* Sets the number of blendshapes. */
SORVANE_API int32_t sorvane_arf_BlendshapeAnimationSample_setBlendshapeCount(sorvane_arf_BlendshapeAnimationSample* self, int64_t value);
/* The blendshape id at index. */
SORVANE_API int32_t sorvane_arf_BlendshapeAnimationSample_getBlendshapeId(int64_t* out, const sorvane_arf_BlendshapeAnimationSample* self, int64_t index);
/* Sets the blendshape id at index. */
SORVANE_API int32_t sorvane_arf_BlendshapeAnimationSample_setBlendshapeId(sorvane_arf_BlendshapeAnimationSample* self, int64_t index, int64_t value);
/* The blendshape weight at index. */
SORVANE_API int32_t sorvane_arf_BlendshapeAnimationSample_getBlendshapeWeight(float* out, const sorvane_arf_BlendshapeAnimationSample* self, int64_t index);
/* Sets the blendshape weight at index. */
SORVANE_API int32_t sorvane_arf_BlendshapeAnimationSample_setBlendshapeWeight(sorvane_arf_BlendshapeAnimationSample* self, int64_t index, float value);
/* The blendshape confidence at index. */
SORVANE_API int32_t sorvane_arf_BlendshapeAnimationSample_getBlendshapeConfidence(float* out, const sorvane_arf_BlendshapeAnimationSample* self, int64_t index);
/* Sets the blendshape confidence at index. */
SORVANE_API int32_t sorvane_arf_BlendshapeAnimationSample_setBlendshapeConfidence(sorvane_arf_BlendshapeAnimationSample* self, int64_t index, float value);

/* TextureAnimationSample */
/* Makes an empty texture sample, released with _delete. */
SORVANE_API int32_t sorvane_arf_TextureAnimationSample_create(sorvane_arf_TextureAnimationSample** out);
/* Releases the object. */
SORVANE_API int32_t sorvane_arf_TextureAnimationSample_delete(sorvane_arf_TextureAnimationSample* self);
/* The same object as a UnitAnimationSample handle, not a copy: delete it once, through either handle. */
SORVANE_API int32_t sorvane_arf_TextureAnimationSample_toUnitAnimationSample(sorvane_arf_UnitAnimationSample** out, sorvane_arf_TextureAnimationSample* self);
/* The set id. */
SORVANE_API int32_t sorvane_arf_TextureAnimationSample_getSetId(int64_t* out, const sorvane_arf_TextureAnimationSample* self);
/* Sets the set id. */
SORVANE_API int32_t sorvane_arf_TextureAnimationSample_setSetId(sorvane_arf_TextureAnimationSample* self, int64_t value);
/* Whether the confidence present flag is set. */
SORVANE_API int32_t sorvane_arf_TextureAnimationSample_getConfidencePresent(bool* out, const sorvane_arf_TextureAnimationSample* self);
/* Sets the confidence present flag. */
SORVANE_API int32_t sorvane_arf_TextureAnimationSample_setConfidencePresent(sorvane_arf_TextureAnimationSample* self, bool value);
/* The number of textures. */
SORVANE_API int32_t sorvane_arf_TextureAnimationSample_getTextureCount(int64_t* out, const sorvane_arf_TextureAnimationSample* self);
/* Sets the number of textures. */
SORVANE_API int32_t sorvane_arf_TextureAnimationSample_setTextureCount(sorvane_arf_TextureAnimationSample* self, int64_t value);
/* The texture id at index. */
SORVANE_API int32_t sorvane_arf_TextureAnimationSample_getTextureId(int64_t* out, const sorvane_arf_TextureAnimationSample* self, int64_t index);
/* Sets the texture id at index. */
SORVANE_API int32_t sorvane_arf_TextureAnimationSample_setTextureId(sorvane_arf_TextureAnimationSample* self, int64_t index, int64_t value);
/* The texture weight at index. */
SORVANE_API int32_t sorvane_arf_TextureAnimationSample_getTextureWeight(float* out, const sorvane_arf_TextureAnimationSample* self, int64_t index);
/* Sets the texture weight at index. */
SORVANE_API int32_t sorvane_arf_TextureAnimationSample_setTextureWeight(sorvane_arf_TextureAnimationSample* self, int64_t index, float value);
/* The texture confidence at index. */
SORVANE_API int32_t sorvane_arf_TextureAnimationSample_getTextureConfidence(float* out, const sorvane_arf_TextureAnimationSample* self, int64_t index);
/* Sets the texture confidence at index. */
SORVANE_API int32_t sorvane_arf_TextureAnimationSample_setTextureConfidence(sorvane_arf_TextureAnimationSample* self, int64_t index, float value);

/* JointAnimationSample */
/* Makes an empty joint sample, released with _delete. */
SORVANE_API int32_t sorvane_arf_JointAnimationSample_create(sorvane_arf_JointAnimationSample** out);
/* Releases the object. */
SORVANE_API int32_t sorvane_arf_JointAnimationSample_delete(sorvane_arf_JointAnimationSample* self);
/* The same object as a UnitAnimationSample handle, not a copy: delete it once, through either handle. */
SORVANE_API int32_t sorvane_arf_JointAnimationSample_toUnitAnimationSample(sorvane_arf_UnitAnimationSample** out, sorvane_arf_JointAnimationSample* self);
/* The set id. */
SORVANE_API int32_t sorvane_arf_JointAnimationSample_getSetId(int64_t* out, const sorvane_arf_JointAnimationSample* self);
/* Sets the set id. */
SORVANE_API int32_t sorvane_arf_JointAnimationSample_setSetId(sorvane_arf_JointAnimationSample* self, int64_t value);
/* Whether the velocity present flag is set. */
SORVANE_API int32_t sorvane_arf_JointAnimationSample_getVelocityPresent(bool* out, const sorvane_arf_JointAnimationSample* self);
/* Sets the velocity present flag. */
SORVANE_API int32_t sorvane_arf_JointAnimationSample_setVelocityPresent(sorvane_arf_JointAnimationSample* self, bool value);
/* Whether the rest pose flag is set. */
SORVANE_API int32_t sorvane_arf_JointAnimationSample_getRestPoseFlag(bool* out, const sorvane_arf_JointAnimationSample* self);
/* Sets the rest pose flag. */
SORVANE_API int32_t sorvane_arf_JointAnimationSample_setRestPoseFlag(sorvane_arf_JointAnimationSample* self, bool value);
/* The number of joints. */
SORVANE_API int32_t sorvane_arf_JointAnimationSample_getJointCount(int64_t* out, const sorvane_arf_JointAnimationSample* self);
/* Sets the number of joints. */
SORVANE_API int32_t sorvane_arf_JointAnimationSample_setJointCount(sorvane_arf_JointAnimationSample* self, int64_t value);
/* The joint id at index. */
SORVANE_API int32_t sorvane_arf_JointAnimationSample_getJointId(int64_t* out, const sorvane_arf_JointAnimationSample* self, int64_t index);
/* Sets the joint id at index. */
SORVANE_API int32_t sorvane_arf_JointAnimationSample_setJointId(sorvane_arf_JointAnimationSample* self, int64_t index, int64_t value);
/* The transform floats of the joint at index; array size protocol (count in values, capacity in bytes). */
SORVANE_API int32_t sorvane_arf_JointAnimationSample_getJointTransform(void* out, int64_t outSize, int64_t* pvalueCount, const sorvane_arf_JointAnimationSample* self, int64_t index);
/* Sets the transform of the joint at index from count floats of in (inSize bytes). */
SORVANE_API int32_t sorvane_arf_JointAnimationSample_setJointTransform(sorvane_arf_JointAnimationSample* self, int64_t index, const void* in, int64_t inSize, int64_t count);
/* The velocity floats of the joint at index; array size protocol (count in values, capacity in bytes). */
SORVANE_API int32_t sorvane_arf_JointAnimationSample_getJointVelocity(void* out, int64_t outSize, int64_t* pvalueCount, const sorvane_arf_JointAnimationSample* self, int64_t index);
/* Sets the velocity of the joint at index from count floats of in (inSize bytes). */
SORVANE_API int32_t sorvane_arf_JointAnimationSample_setJointVelocity(sorvane_arf_JointAnimationSample* self, int64_t index, const void* in, int64_t inSize, int64_t count);
/* Keeps the joints of count listed ids (size bytes), in the list's order; unknown ids are dropped. */
SORVANE_API int32_t sorvane_arf_JointAnimationSample_selectJoints(sorvane_arf_JointAnimationSample* self, const int64_t* ids, int64_t size, int64_t count);

/* LandmarkAnimationSample */
/* Makes an empty landmark sample, released with _delete. */
SORVANE_API int32_t sorvane_arf_LandmarkAnimationSample_create(sorvane_arf_LandmarkAnimationSample** out);
/* Releases the object. */
SORVANE_API int32_t sorvane_arf_LandmarkAnimationSample_delete(sorvane_arf_LandmarkAnimationSample* self);
/* The same object as a UnitAnimationSample handle, not a copy: delete it once, through either handle. */
SORVANE_API int32_t sorvane_arf_LandmarkAnimationSample_toUnitAnimationSample(sorvane_arf_UnitAnimationSample** out, sorvane_arf_LandmarkAnimationSample* self);
/* The set id. */
SORVANE_API int32_t sorvane_arf_LandmarkAnimationSample_getSetId(int64_t* out, const sorvane_arf_LandmarkAnimationSample* self);
/* Sets the set id. */
SORVANE_API int32_t sorvane_arf_LandmarkAnimationSample_setSetId(sorvane_arf_LandmarkAnimationSample* self, int64_t value);
/* Whether the velocity present flag is set. */
SORVANE_API int32_t sorvane_arf_LandmarkAnimationSample_getVelocityPresent(bool* out, const sorvane_arf_LandmarkAnimationSample* self);
/* Sets the velocity present flag. */
SORVANE_API int32_t sorvane_arf_LandmarkAnimationSample_setVelocityPresent(sorvane_arf_LandmarkAnimationSample* self, bool value);
/* Whether the confidence present flag is set. */
SORVANE_API int32_t sorvane_arf_LandmarkAnimationSample_getConfidencePresent(bool* out, const sorvane_arf_LandmarkAnimationSample* self);
/* Sets the confidence present flag. */
SORVANE_API int32_t sorvane_arf_LandmarkAnimationSample_setConfidencePresent(sorvane_arf_LandmarkAnimationSample* self, bool value);
/* Whether landmarks have three coordinates (else two). */
SORVANE_API int32_t sorvane_arf_LandmarkAnimationSample_get3d(bool* out, const sorvane_arf_LandmarkAnimationSample* self);
/* Sets whether landmarks have three coordinates. */
SORVANE_API int32_t sorvane_arf_LandmarkAnimationSample_set3d(sorvane_arf_LandmarkAnimationSample* self, bool value);
/* The number of landmarks. */
SORVANE_API int32_t sorvane_arf_LandmarkAnimationSample_getLandmarkCount(int64_t* out, const sorvane_arf_LandmarkAnimationSample* self);
/* Sets the number of landmarks. */
SORVANE_API int32_t sorvane_arf_LandmarkAnimationSample_setLandmarkCount(sorvane_arf_LandmarkAnimationSample* self, int64_t value);
/* The landmark id at index. */
SORVANE_API int32_t sorvane_arf_LandmarkAnimationSample_getLandmarkId(int64_t* out, const sorvane_arf_LandmarkAnimationSample* self, int64_t index);
/* Sets the landmark id at index. */
SORVANE_API int32_t sorvane_arf_LandmarkAnimationSample_setLandmarkId(sorvane_arf_LandmarkAnimationSample* self, int64_t index, int64_t value);
/* The coordinates of the landmark at index (2 or 3 floats); array size protocol (count in values, capacity in bytes). */
SORVANE_API int32_t sorvane_arf_LandmarkAnimationSample_getLandmarkCoords(void* out, int64_t outSize, int64_t* pvalueCount, const sorvane_arf_LandmarkAnimationSample* self, int64_t index);
/* Sets the coordinates of the landmark at index from count floats of in (inSize bytes). */
SORVANE_API int32_t sorvane_arf_LandmarkAnimationSample_setLandmarkCoords(sorvane_arf_LandmarkAnimationSample* self, int64_t index, const void* in, int64_t inSize, int64_t count);
/* The landmark velocity at index. */
SORVANE_API int32_t sorvane_arf_LandmarkAnimationSample_getLandmarkVelocity(float* out, const sorvane_arf_LandmarkAnimationSample* self, int64_t index);
/* Sets the landmark velocity at index. */
SORVANE_API int32_t sorvane_arf_LandmarkAnimationSample_setLandmarkVelocity(sorvane_arf_LandmarkAnimationSample* self, int64_t index, float value);
/* The landmark confidence at index. */
SORVANE_API int32_t sorvane_arf_LandmarkAnimationSample_getLandmarkConfidence(float* out, const sorvane_arf_LandmarkAnimationSample* self, int64_t index);
/* Sets the landmark confidence at index. */
SORVANE_API int32_t sorvane_arf_LandmarkAnimationSample_setLandmarkConfidence(sorvane_arf_LandmarkAnimationSample* self, int64_t index, float value);

/* SilentAnimationSample */
/* Makes an empty silent sample, released with _delete. */
SORVANE_API int32_t sorvane_arf_SilentAnimationSample_create(sorvane_arf_SilentAnimationSample** out);
/* Releases the object. */
SORVANE_API int32_t sorvane_arf_SilentAnimationSample_delete(sorvane_arf_SilentAnimationSample* self);
/* The same object as a UnitAnimationSample handle, not a copy: delete it once, through either handle. */
SORVANE_API int32_t sorvane_arf_SilentAnimationSample_toUnitAnimationSample(sorvane_arf_UnitAnimationSample** out, sorvane_arf_SilentAnimationSample* self);
/* The timescale of the silence. */
SORVANE_API int32_t sorvane_arf_SilentAnimationSample_getTimescale(int64_t* out, const sorvane_arf_SilentAnimationSample* self);
/* Sets the timescale. */
SORVANE_API int32_t sorvane_arf_SilentAnimationSample_setTimescale(sorvane_arf_SilentAnimationSample* self, int64_t value);
/* The duration of the silence, in timescale ticks. */
SORVANE_API int32_t sorvane_arf_SilentAnimationSample_getDuration(int64_t* out, const sorvane_arf_SilentAnimationSample* self);
/* Sets the duration. */
SORVANE_API int32_t sorvane_arf_SilentAnimationSample_setDuration(sorvane_arf_SilentAnimationSample* self, int64_t value);

#ifdef __cplusplus
}
#endif

#endif
