/* Flat C interface: archive. Included by sorvane/sorvane.h. */
#ifndef SORVANE_FLAT_SORVANE_ARCHIVE_H
#define SORVANE_FLAT_SORVANE_ARCHIVE_H

#include <stddef.h>
#include <stdint.h>
#ifndef __cplusplus
#include <stdbool.h>
#endif

#include "sorvane/core/Export.h"

/* A shared reference to a file provider (a directory, a subdirectory of
 * another provider, memory, or a zip archive). Every handle handed out is
 * released with sorvane_archive_FileProvider_delete; the provider goes with
 * its last reference. A null handle fails with "instancePtr_ is NULL". */
#ifdef __cplusplus
namespace sorvane::archive {
class FileProviderRef;
}
typedef sorvane::archive::FileProviderRef sorvane_archive_FileProviderRef;
#else
typedef struct sorvane_archive_FileProviderRef sorvane_archive_FileProviderRef;
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* A new provider holding its files in memory. */
SORVANE_API int32_t sorvane_archive_FileProvider_createMemory(sorvane_archive_FileProviderRef** out);
/* A new provider over the folder dir on disk. */
SORVANE_API int32_t sorvane_archive_FileProvider_createDisk(sorvane_archive_FileProviderRef** out, const char* dir);
/* The new provider resolves names under `dir` inside `parent`, sharing it. */
SORVANE_API int32_t sorvane_archive_FileProvider_createRelative(sorvane_archive_FileProviderRef** out,
                                                                sorvane_archive_FileProviderRef* parent,
                                                                const char* dir);
/* Creates the archive, or opens an existing one for changes; written on close. */
SORVANE_API int32_t sorvane_archive_FileProvider_createZip(sorvane_archive_FileProviderRef** out, const char* path);
/* Releases the provider handle. */
SORVANE_API int32_t sorvane_archive_FileProvider_delete(sorvane_archive_FileProviderRef* handle);
/* The kind of provider ("MemoryFileProvider", ...); text size protocol. */
SORVANE_API int32_t sorvane_archive_FileProvider_className(char* out, int64_t* outSize,
                                                           sorvane_archive_FileProviderRef* handle);
/* The folder names are resolved in; text size protocol. */
SORVANE_API int32_t sorvane_archive_FileProvider_getMainDir(char* out, int64_t* outSize,
                                                            sorvane_archive_FileProviderRef* handle);
/* Finishes the provider; an archive is written now. */
SORVANE_API int32_t sorvane_archive_FileProvider_close(sorvane_archive_FileProviderRef* handle);
/* Whether the item name exists. */
SORVANE_API int32_t sorvane_archive_FileProvider_exists(bool* out, sorvane_archive_FileProviderRef* handle,
                                                        const char* name);
/* The byte size of the item name. */
SORVANE_API int32_t sorvane_archive_FileProvider_getDataSize(int64_t* out, sorvane_archive_FileProviderRef* handle,
                                                             const char* name);
/* Reads the item from `offset` into `out` (capacity *outSize); on success
 * *outSize is the byte count from `offset` to the end. A null `out` only
 * reports that count. Value size protocol, in bytes. */
SORVANE_API int32_t sorvane_archive_FileProvider_getData(void* out, int64_t* outSize,
                                                         sorvane_archive_FileProviderRef* handle, const char* name,
                                                         int64_t offset);
/* The item name from offset as text; text size protocol. */
SORVANE_API int32_t sorvane_archive_FileProvider_getString(char* out, int64_t* outSize,
                                                           sorvane_archive_FileProviderRef* handle, const char* name,
                                                           int64_t offset);
/* Stores size bytes of buffer as the item name. */
SORVANE_API int32_t sorvane_archive_FileProvider_create(sorvane_archive_FileProviderRef* handle, const char* name,
                                                        const void* buffer, int64_t size);
/* Stores the file at path as the item name; an existing item is replaced only with overwrite. */
SORVANE_API int32_t sorvane_archive_FileProvider_createFromFile(sorvane_archive_FileProviderRef* handle,
                                                                const char* name, const char* path, bool overwrite);

#ifdef __cplusplus
}
#endif

#endif
