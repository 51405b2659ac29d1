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

/* path: "memory:" followed by JSON text, a main file .arf or .json, or an archive .arfz or .zip. */
SORVANE_API int32_t sorvane_arf_Arf_create(sorvane_arf_Arf** out, const char* path);
SORVANE_API int32_t sorvane_arf_Arf_load(sorvane_arf_Arf** out, const char* path, bool readOnly);
/* mode: 0 AUTO, 1 MULTIPLE_FILES, 2 SINGLE_FILE, 3 MEMORY_ONLY. */
SORVANE_API int32_t sorvane_arf_Arf_loadProvider(sorvane_arf_Arf** out, sorvane_archive_FileProviderRef* provider,
                                                 const char* name, int mode, bool readOnly);
SORVANE_API int32_t sorvane_arf_Arf_close(sorvane_arf_Arf* self);
SORVANE_API int32_t sorvane_arf_Arf_delete(sorvane_arf_Arf* self);
SORVANE_API int32_t sorvane_arf_Arf_getMainDir(char* out, int64_t* outSize, sorvane_arf_Arf* self);
SORVANE_API int32_t sorvane_arf_Arf_getMainFileName(char* out, int64_t* outSize, sorvane_arf_Arf* self);
SORVANE_API int32_t sorvane_arf_Arf_toJsonString(char* out, int64_t* outSize, sorvane_arf_Arf* self);
SORVANE_API int32_t sorvane_arf_Arf_getPreamble(sorvane_arf_Preamble** out, sorvane_arf_Arf* self);
SORVANE_API int32_t sorvane_arf_Arf_getIdentity(sorvane_arf_Identity** out, sorvane_arf_Arf* self);
SORVANE_API int32_t sorvane_arf_Arf_getStructure(sorvane_arf_Structure** out, sorvane_arf_Arf* self);
SORVANE_API int32_t sorvane_arf_Arf_getComponents(sorvane_arf_Components** out, sorvane_arf_Arf* self);
SORVANE_API int32_t sorvane_arf_Arf_getData(sorvane_arf_DataList** out, sorvane_arf_Arf* self);
SORVANE_API int32_t sorvane_arf_Arf_getFileProvider(sorvane_archive_FileProviderRef** out, sorvane_arf_Arf* self);

/* Generic values (strings, integers, lists and flat objects of those). A
 * created value is detached until stored with sorvane_arf_GenericProperty_setByKey. */
SORVANE_API int32_t sorvane_arf_GenericProperty_createNull(sorvane_arf_GenericProperty** out);
SORVANE_API int32_t sorvane_arf_GenericProperty_createInteger(sorvane_arf_GenericProperty** out, int64_t value);
SORVANE_API int32_t sorvane_arf_GenericProperty_createString(sorvane_arf_GenericProperty** out, const char* value);
SORVANE_API int32_t sorvane_arf_GenericProperty_createList(sorvane_arf_GenericProperty** out);
SORVANE_API int32_t sorvane_arf_GenericProperty_delete(sorvane_arf_GenericProperty* self);
SORVANE_API int32_t sorvane_arf_GenericProperty_removeProperty(sorvane_arf_GenericProperty* self);
SORVANE_API int32_t sorvane_arf_GenericProperty_getPropertyIndex(int64_t* out, sorvane_arf_GenericProperty* self);
SORVANE_API int32_t sorvane_arf_GenericProperty_getPropertyName(char* out, int64_t* outSize,
                                                                sorvane_arf_GenericProperty* self);
SORVANE_API int32_t sorvane_arf_GenericProperty_getPropertyPath(char* out, int64_t* outSize,
                                                                sorvane_arf_GenericProperty* self);
SORVANE_API int32_t sorvane_arf_GenericProperty_getPropertyTypeName(char* out, int64_t* outSize,
                                                                    sorvane_arf_GenericProperty* self);
SORVANE_API int32_t sorvane_arf_GenericProperty_toString(char* out, int64_t* outSize, sorvane_arf_GenericProperty* self);
SORVANE_API int32_t sorvane_arf_GenericProperty_isNull(bool* out, sorvane_arf_GenericProperty* self);
SORVANE_API int32_t sorvane_arf_GenericProperty_isInteger(bool* out, sorvane_arf_GenericProperty* self);
SORVANE_API int32_t sorvane_arf_GenericProperty_isString(bool* out, sorvane_arf_GenericProperty* self);
SORVANE_API int32_t sorvane_arf_GenericProperty_isList(bool* out, sorvane_arf_GenericProperty* self);
SORVANE_API int32_t sorvane_arf_GenericProperty_isObject(bool* out, sorvane_arf_GenericProperty* self);
SORVANE_API int32_t sorvane_arf_GenericProperty_isEmpty(bool* out, sorvane_arf_GenericProperty* self);
SORVANE_API int32_t sorvane_arf_GenericProperty_getInteger(int64_t* out, sorvane_arf_GenericProperty* self);
SORVANE_API int32_t sorvane_arf_GenericProperty_setInteger(sorvane_arf_GenericProperty* self, int64_t value);
SORVANE_API int32_t sorvane_arf_GenericProperty_getString(char* out, int64_t* outSize, sorvane_arf_GenericProperty* self);
SORVANE_API int32_t sorvane_arf_GenericProperty_setString(sorvane_arf_GenericProperty* self, const char* value);
SORVANE_API int32_t sorvane_arf_GenericProperty_getSize(int64_t* out, sorvane_arf_GenericProperty* self);
SORVANE_API int32_t sorvane_arf_GenericProperty_clear(sorvane_arf_GenericProperty* self);
SORVANE_API int32_t sorvane_arf_GenericProperty_hasByKey(bool* out, sorvane_arf_GenericProperty* self, const char* key);
SORVANE_API int32_t sorvane_arf_GenericProperty_getByKey(sorvane_arf_GenericProperty** out,
                                                         sorvane_arf_GenericProperty* self, const char* key);
/* Stores a copy of value under key; value is not taken over and is still deleted by the caller. */
SORVANE_API int32_t sorvane_arf_GenericProperty_setByKey(sorvane_arf_GenericProperty* self, const char* key,
                                                         sorvane_arf_GenericProperty* value);
SORVANE_API int32_t sorvane_arf_GenericProperty_getByIndex(sorvane_arf_GenericProperty** out,
                                                           sorvane_arf_GenericProperty* self, int64_t index);
SORVANE_API int32_t sorvane_arf_GenericProperty_addNull(sorvane_arf_GenericProperty* self);
SORVANE_API int32_t sorvane_arf_GenericProperty_addString(sorvane_arf_GenericProperty* self, const char* value);

#ifdef __cplusplus
}
#endif

#endif
