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

/* A new detached null value. */
SORVANE_API int32_t sorvane_gltf2_GenericProperty_createNull(sorvane_gltf2_GenericProperty** out);
/* A new detached integer value. */
SORVANE_API int32_t sorvane_gltf2_GenericProperty_createInteger(sorvane_gltf2_GenericProperty** out, int64_t value);
/* A new detached text value. */
SORVANE_API int32_t sorvane_gltf2_GenericProperty_createString(sorvane_gltf2_GenericProperty** out, const char* value);
/* A new detached empty list. */
SORVANE_API int32_t sorvane_gltf2_GenericProperty_createList(sorvane_gltf2_GenericProperty** out);
/* Releases the handle. */
SORVANE_API int32_t sorvane_gltf2_GenericProperty_delete(sorvane_gltf2_GenericProperty* self);
/* Removes the value from the document; the handle is then good for _delete only. */
SORVANE_API int32_t sorvane_gltf2_GenericProperty_removeProperty(sorvane_gltf2_GenericProperty* self);
/* The value's position in its parent. */
SORVANE_API int32_t sorvane_gltf2_GenericProperty_getPropertyIndex(int64_t* out, sorvane_gltf2_GenericProperty* self);
/* The value's key in its parent object ("<parentnotobject>" inside a list); text size protocol. */
SORVANE_API int32_t sorvane_gltf2_GenericProperty_getPropertyName(char* out, int64_t* outSize,
                                                                  sorvane_gltf2_GenericProperty* self);
/* The value's path in the document; text size protocol. */
SORVANE_API int32_t sorvane_gltf2_GenericProperty_getPropertyPath(char* out, int64_t* outSize,
                                                                  sorvane_gltf2_GenericProperty* self);
/* The class name, "GenericProperty"; text size protocol. */
SORVANE_API int32_t sorvane_gltf2_GenericProperty_getPropertyTypeName(char* out, int64_t* outSize,
                                                                      sorvane_gltf2_GenericProperty* self);
/* The value as JSON text; text size protocol. */
SORVANE_API int32_t sorvane_gltf2_GenericProperty_toString(char* out, int64_t* outSize,
                                                           sorvane_gltf2_GenericProperty* self);
/* Whether the value is null. */
SORVANE_API int32_t sorvane_gltf2_GenericProperty_isNull(bool* out, sorvane_gltf2_GenericProperty* self);
/* Whether the value is an integer. */
SORVANE_API int32_t sorvane_gltf2_GenericProperty_isInteger(bool* out, sorvane_gltf2_GenericProperty* self);
/* Whether the value is a text. */
SORVANE_API int32_t sorvane_gltf2_GenericProperty_isString(bool* out, sorvane_gltf2_GenericProperty* self);
/* Whether the value is a list. */
SORVANE_API int32_t sorvane_gltf2_GenericProperty_isList(bool* out, sorvane_gltf2_GenericProperty* self);
/* Whether the value is an object. */
SORVANE_API int32_t sorvane_gltf2_GenericProperty_isObject(bool* out, sorvane_gltf2_GenericProperty* self);
/* Whether the list or object has no items. */
SORVANE_API int32_t sorvane_gltf2_GenericProperty_isEmpty(bool* out, sorvane_gltf2_GenericProperty* self);
/* The integer value. */
SORVANE_API int32_t sorvane_gltf2_GenericProperty_getInteger(int64_t* out, sorvane_gltf2_GenericProperty* self);
/* Makes the value this integer. */
SORVANE_API int32_t sorvane_gltf2_GenericProperty_setInteger(sorvane_gltf2_GenericProperty* self, int64_t value);
/* The text value; text size protocol. */
SORVANE_API int32_t sorvane_gltf2_GenericProperty_getString(char* out, int64_t* outSize,
                                                            sorvane_gltf2_GenericProperty* self);
/* Makes the value this text. */
SORVANE_API int32_t sorvane_gltf2_GenericProperty_setString(sorvane_gltf2_GenericProperty* self, const char* value);
/* The number of items of the list or object. */
SORVANE_API int32_t sorvane_gltf2_GenericProperty_getSize(int64_t* out, sorvane_gltf2_GenericProperty* self);
/* Removes every item of the list or object. */
SORVANE_API int32_t sorvane_gltf2_GenericProperty_clear(sorvane_gltf2_GenericProperty* self);
/* Whether the object has an item under key. */
SORVANE_API int32_t sorvane_gltf2_GenericProperty_hasByKey(bool* out, sorvane_gltf2_GenericProperty* self,
                                                           const char* key);
/* The item under key, as a new handle. */
SORVANE_API int32_t sorvane_gltf2_GenericProperty_getByKey(sorvane_gltf2_GenericProperty** out,
                                                           sorvane_gltf2_GenericProperty* self, const char* key);
/* Stores a copy of value under key. */
SORVANE_API int32_t sorvane_gltf2_GenericProperty_setByKey(sorvane_gltf2_GenericProperty* self, const char* key,
                                                           sorvane_gltf2_GenericProperty* value);
/* The list item at index, as a new handle. */
SORVANE_API int32_t sorvane_gltf2_GenericProperty_getByIndex(sorvane_gltf2_GenericProperty** out,
                                                             sorvane_gltf2_GenericProperty* self, int64_t index);
/* Appends a null to the list. */
SORVANE_API int32_t sorvane_gltf2_GenericProperty_addNull(sorvane_gltf2_GenericProperty* self);
/* Appends a text to the list. */
SORVANE_API int32_t sorvane_gltf2_GenericProperty_addString(sorvane_gltf2_GenericProperty* self, const char* value);

#ifdef __cplusplus
}
#endif

#endif
