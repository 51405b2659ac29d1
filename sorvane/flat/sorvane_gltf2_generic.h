/* Flat C interface: glTF generic values. Included by sorvane/sorvane.h.
 *
 * The same family as the ARF GenericProperty: strings, integers, lists and
 * flat objects of those; a created value is detached until stored with
 * sorvane_gltf2_GenericProperty_setByKey. */
#ifndef SORVANE_FLAT_SORVANE_GLTF2_GENERIC_H
#define SORVANE_FLAT_SORVANE_GLTF2_GENERIC_H

#include <stdint.h>
#ifndef __cplusplus
#include <stdbool.h>
#endif

#include "sorvane/core/Export.h"
#include "sorvane/flat/sorvane_gltf2_generated.h"

#ifdef __cplusplus
extern "C" {
#endif

SORVANE_API int32_t sorvane_gltf2_GenericProperty_createNull(sorvane_gltf2_GenericProperty** out);
SORVANE_API int32_t sorvane_gltf2_GenericProperty_createInteger(sorvane_gltf2_GenericProperty** out, int64_t value);
SORVANE_API int32_t sorvane_gltf2_GenericProperty_createString(sorvane_gltf2_GenericProperty** out, const char* value);
SORVANE_API int32_t sorvane_gltf2_GenericProperty_createList(sorvane_gltf2_GenericProperty** out);
SORVANE_API int32_t sorvane_gltf2_GenericProperty_delete(sorvane_gltf2_GenericProperty* self);
SORVANE_API int32_t sorvane_gltf2_GenericProperty_removeProperty(sorvane_gltf2_GenericProperty* self);
SORVANE_API int32_t sorvane_gltf2_GenericProperty_getPropertyIndex(int64_t* out, sorvane_gltf2_GenericProperty* self);
SORVANE_API int32_t sorvane_gltf2_GenericProperty_getPropertyName(char* out, int64_t* outSize,
                                                                  sorvane_gltf2_GenericProperty* self);
SORVANE_API int32_t sorvane_gltf2_GenericProperty_getPropertyPath(char* out, int64_t* outSize,
                                                                  sorvane_gltf2_GenericProperty* self);
SORVANE_API int32_t sorvane_gltf2_GenericProperty_getPropertyTypeName(char* out, int64_t* outSize,
                                                                      sorvane_gltf2_GenericProperty* self);
SORVANE_API int32_t sorvane_gltf2_GenericProperty_toString(char* out, int64_t* outSize,
                                                           sorvane_gltf2_GenericProperty* self);
SORVANE_API int32_t sorvane_gltf2_GenericProperty_isNull(bool* out, sorvane_gltf2_GenericProperty* self);
SORVANE_API int32_t sorvane_gltf2_GenericProperty_isInteger(bool* out, sorvane_gltf2_GenericProperty* self);
SORVANE_API int32_t sorvane_gltf2_GenericProperty_isString(bool* out, sorvane_gltf2_GenericProperty* self);
SORVANE_API int32_t sorvane_gltf2_GenericProperty_isList(bool* out, sorvane_gltf2_GenericProperty* self);
SORVANE_API int32_t sorvane_gltf2_GenericProperty_isObject(bool* out, sorvane_gltf2_GenericProperty* self);
SORVANE_API int32_t sorvane_gltf2_GenericProperty_isEmpty(bool* out, sorvane_gltf2_GenericProperty* self);
SORVANE_API int32_t sorvane_gltf2_GenericProperty_getInteger(int64_t* out, sorvane_gltf2_GenericProperty* self);
SORVANE_API int32_t sorvane_gltf2_GenericProperty_setInteger(sorvane_gltf2_GenericProperty* self, int64_t value);
SORVANE_API int32_t sorvane_gltf2_GenericProperty_getString(char* out, int64_t* outSize,
                                                            sorvane_gltf2_GenericProperty* self);
SORVANE_API int32_t sorvane_gltf2_GenericProperty_setString(sorvane_gltf2_GenericProperty* self, const char* value);
SORVANE_API int32_t sorvane_gltf2_GenericProperty_getSize(int64_t* out, sorvane_gltf2_GenericProperty* self);
SORVANE_API int32_t sorvane_gltf2_GenericProperty_clear(sorvane_gltf2_GenericProperty* self);
SORVANE_API int32_t sorvane_gltf2_GenericProperty_hasByKey(bool* out, sorvane_gltf2_GenericProperty* self,
                                                           const char* key);
/* A new accessor for the value under key. */
SORVANE_API int32_t sorvane_gltf2_GenericProperty_getByKey(sorvane_gltf2_GenericProperty** out,
                                                           sorvane_gltf2_GenericProperty* self, const char* key);
/* Stores a copy of value under key. */
SORVANE_API int32_t sorvane_gltf2_GenericProperty_setByKey(sorvane_gltf2_GenericProperty* self, const char* key,
                                                           sorvane_gltf2_GenericProperty* value);
SORVANE_API int32_t sorvane_gltf2_GenericProperty_getByIndex(sorvane_gltf2_GenericProperty** out,
                                                             sorvane_gltf2_GenericProperty* self, int64_t index);
SORVANE_API int32_t sorvane_gltf2_GenericProperty_addNull(sorvane_gltf2_GenericProperty* self);
SORVANE_API int32_t sorvane_gltf2_GenericProperty_addString(sorvane_gltf2_GenericProperty* self, const char* value);

#ifdef __cplusplus
}
#endif

#endif
