/* Flat C interface, extensions: calls beyond the accessor families that a C
 * caller needs to finish a job without C++ (saving, removing records and
 * single list entries). Included by sorvane/sorvane.h. */
#ifndef SORVANE_FLAT_SORVANE_ARF_EXTENSIONS_H
#define SORVANE_FLAT_SORVANE_ARF_EXTENSIONS_H

#include <stdint.h>

#include "sorvane/core/Export.h"
#include "sorvane/flat/sorvane_arf.h"
#include "sorvane/flat/sorvane_arf_extensions_generated.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Writes the document where it was created or loaded from; a document loaded
 * read-only is refused ("Saving %s: Forbidden, read-only document"). */
SORVANE_API int32_t sorvane_arf_Arf_save(sorvane_arf_Arf* self);
/* Writes a copy of the document at path, in the storage mode the extension
 * names (.arf/.json main file with payload files, .arfz/.zip archive), with
 * every payload carried across; self stays attached to its own storage. */
SORVANE_API int32_t sorvane_arf_Arf_saveAs(sorvane_arf_Arf* self, const char* path);

#ifdef __cplusplus
}
#endif

#endif
