/* Flat C interface: ARF documents. Included by sorvane/sorvane.h.
 *
 * A document handle comes from sorvane_arf_Arf_create or sorvane_arf_Arf_load
 * and is released with sorvane_arf_Arf_delete. The accessors it hands out
 * (sorvane_arf_Arf_getIdentity, ...) are new objects owned by the caller and
 * keep the document alive on their own. */
#ifndef SORVANE_FLAT_SORVANE_ARF_H
#define SORVANE_FLAT_SORVANE_ARF_H

#include <stddef.h>
#include <stdint.h>
#ifndef __cplusplus
#include <stdbool.h>
#endif

#include "sorvane/core/Export.h"
#include "sorvane/flat/sorvane_archive.h"
#include "sorvane/flat/sorvane_arf_generated.h"
#include "sorvane/flat/sorvane_arf_data.h"
#include "sorvane/flat/sorvane_arf_components.h"

#ifdef __cplusplus
namespace sorvane::arf {
class Arf;
}
typedef sorvane::arf::Arf sorvane_arf_Arf;
#else
typedef struct sorvane_arf_Arf sorvane_arf_Arf;
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* A new empty document at path: "memory:" followed by JSON text, a main file .arf or .json, or an archive .arfz or .zip. */
SORVANE_API int32_t sorvane_arf_Arf_create(sorvane_arf_Arf** out, const char* path);
/* Loads a document (path as for _create); with readOnly every change is refused. */
SORVANE_API int32_t sorvane_arf_Arf_load(sorvane_arf_Arf** out, const char* path, bool readOnly);
/* Loads the document name from provider; mode: 0 AUTO, 1 MULTIPLE_FILES, 2 SINGLE_FILE, 3 MEMORY_ONLY. */
SORVANE_API int32_t sorvane_arf_Arf_loadProvider(sorvane_arf_Arf** out, sorvane_archive_FileProviderRef* provider,
                                                 const char* name, int mode, bool readOnly);
/* Closes the document's storage; the handle stays to be deleted. */
SORVANE_API int32_t sorvane_arf_Arf_close(sorvane_arf_Arf* self);
/* Releases the document handle; the document lives on while accessors of it do. */
SORVANE_API int32_t sorvane_arf_Arf_delete(sorvane_arf_Arf* self);
/* The folder of the main file; text size protocol. */
SORVANE_API int32_t sorvane_arf_Arf_getMainDir(char* out, int64_t* outSize, sorvane_arf_Arf* self);
/* The name of the main file; text size protocol. */
SORVANE_API int32_t sorvane_arf_Arf_getMainFileName(char* out, int64_t* outSize, sorvane_arf_Arf* self);
/* The document as JSON text; text size protocol. */
SORVANE_API int32_t sorvane_arf_Arf_toJsonString(char* out, int64_t* outSize, sorvane_arf_Arf* self);
/* The "preamble" section, as a new handle. */
SORVANE_API int32_t sorvane_arf_Arf_getPreamble(sorvane_arf_Preamble** out, sorvane_arf_Arf* self);
/* The "identity" section, as a new handle. */
SORVANE_API int32_t sorvane_arf_Arf_getIdentity(sorvane_arf_Identity** out, sorvane_arf_Arf* self);
/* The "structure" section, as a new handle. */
SORVANE_API int32_t sorvane_arf_Arf_getStructure(sorvane_arf_Structure** out, sorvane_arf_Arf* self);
/* The "components" section, as a new handle. */
SORVANE_API int32_t sorvane_arf_Arf_getComponents(sorvane_arf_Components** out, sorvane_arf_Arf* self);
/* The "data" list, as a new handle. */
SORVANE_API int32_t sorvane_arf_Arf_getData(sorvane_arf_DataList** out, sorvane_arf_Arf* self);
/* The storage of the document, as a new provider handle. */
SORVANE_API int32_t sorvane_arf_Arf_getFileProvider(sorvane_archive_FileProviderRef** out, sorvane_arf_Arf* self);

/* Generic values (strings, integers, lists and flat objects of those). A
 * created value is detached until stored with sorvane_arf_GenericProperty_setByKey. */

/* A new detached null value. */
SORVANE_API int32_t sorvane_arf_GenericProperty_createNull(sorvane_arf_GenericProperty** out);
/* A new detached integer value. */
SORVANE_API int32_t sorvane_arf_GenericProperty_createInteger(sorvane_arf_GenericProperty** out, int64_t value);
/* A new detached text value. */
SORVANE_API int32_t sorvane_arf_GenericProperty_createString(sorvane_arf_GenericProperty** out, const char* value);
/* A new detached empty list. */
SORVANE_API int32_t sorvane_arf_GenericProperty_createList(sorvane_arf_GenericProperty** out);
/* Releases the handle. */
SORVANE_API int32_t sorvane_arf_GenericProperty_delete(sorvane_arf_GenericProperty* self);
/* Removes the value from the document; the handle is then good for _delete only. */
SORVANE_API int32_t sorvane_arf_GenericProperty_removeProperty(sorvane_arf_GenericProperty* self);
/* The value's position in its parent. */
SORVANE_API int32_t sorvane_arf_GenericProperty_getPropertyIndex(int64_t* out, sorvane_arf_GenericProperty* self);
/* The value's key in its parent object ("<parentnotobject>" inside a list); text size protocol. */
SORVANE_API int32_t sorvane_arf_GenericProperty_getPropertyName(char* out, int64_t* outSize,
                                                                sorvane_arf_GenericProperty* self);
/* The value's path in the document; text size protocol. */
SORVANE_API int32_t sorvane_arf_GenericProperty_getPropertyPath(char* out, int64_t* outSize,
                                                                sorvane_arf_GenericProperty* self);
/* The class name, "GenericProperty"; text size protocol. */
SORVANE_API int32_t sorvane_arf_GenericProperty_getPropertyTypeName(char* out, int64_t* outSize,
                                                                    sorvane_arf_GenericProperty* self);
/* The value as JSON text; text size protocol. */
SORVANE_API int32_t sorvane_arf_GenericProperty_toString(char* out, int64_t* outSize, sorvane_arf_GenericProperty* self);
/* Whether the value is null. */
SORVANE_API int32_t sorvane_arf_GenericProperty_isNull(bool* out, sorvane_arf_GenericProperty* self);
/* Whether the value is an integer. */
SORVANE_API int32_t sorvane_arf_GenericProperty_isInteger(bool* out, sorvane_arf_GenericProperty* self);
/* Whether the value is a text. */
SORVANE_API int32_t sorvane_arf_GenericProperty_isString(bool* out, sorvane_arf_GenericProperty* self);
/* Whether the value is a list. */
SORVANE_API int32_t sorvane_arf_GenericProperty_isList(bool* out, sorvane_arf_GenericProperty* self);
/* Whether the value is an object. */
SORVANE_API int32_t sorvane_arf_GenericProperty_isObject(bool* out, sorvane_arf_GenericProperty* self);
/* Whether the list or object has no items. */
SORVANE_API int32_t sorvane_arf_GenericProperty_isEmpty(bool* out, sorvane_arf_GenericProperty* self);
/* The integer value. */
SORVANE_API int32_t sorvane_arf_GenericProperty_getInteger(int64_t* out, sorvane_arf_GenericProperty* self);
/* Makes the value this integer. */
SORVANE_API int32_t sorvane_arf_GenericProperty_setInteger(sorvane_arf_GenericProperty* self, int64_t value);
/* The text value; text size protocol. */
SORVANE_API int32_t sorvane_arf_GenericProperty_getString(char* out, int64_t* outSize, sorvane_arf_GenericProperty* self);
/* Makes the value this text. */
SORVANE_API int32_t sorvane_arf_GenericProperty_setString(sorvane_arf_GenericProperty* self, const char* value);
/* The number of items of the list or object. */
SORVANE_API int32_t sorvane_arf_GenericProperty_getSize(int64_t* out, sorvane_arf_GenericProperty* self);
/* Removes every item of the list or object. */
SORVANE_API int32_t sorvane_arf_GenericProperty_clear(sorvane_arf_GenericProperty* self);
/* Whether the object has an item under key. */
SORVANE_API int32_t sorvane_arf_GenericProperty_hasByKey(bool* out, sorvane_arf_GenericProperty* self, const char* key);
/* The item under key, as a new handle. */
SORVANE_API int32_t sorvane_arf_GenericProperty_getByKey(sorvane_arf_GenericProperty** out,
                                                         sorvane_arf_GenericProperty* self, const char* key);
/* Stores a copy of value under key; value is not taken over and is still deleted by the caller. */
SORVANE_API int32_t sorvane_arf_GenericProperty_setByKey(sorvane_arf_GenericProperty* self, const char* key,
                                                         sorvane_arf_GenericProperty* value);
/* The list item at index, as a new handle. */
SORVANE_API int32_t sorvane_arf_GenericProperty_getByIndex(sorvane_arf_GenericProperty** out,
                                                           sorvane_arf_GenericProperty* self, int64_t index);
/* Appends a null to the list. */
SORVANE_API int32_t sorvane_arf_GenericProperty_addNull(sorvane_arf_GenericProperty* self);
/* Appends a text to the list. */
SORVANE_API int32_t sorvane_arf_GenericProperty_addString(sorvane_arf_GenericProperty* self, const char* value);

#ifdef __cplusplus
}
#endif

#endif
