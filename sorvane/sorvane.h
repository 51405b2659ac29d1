/* The flat C interface of libtalvex. Compiles as C99 and as C++.
 *
 * Every function returns 0 on success and -1 on failure; the failure text is
 * in the error slot, read with sorvane_getErrorMessage. Text results follow
 * the size protocol: pass *outSize = 0 to learn the needed size (terminator
 * included), then call again with a buffer of that size.
 * Handles are opaque; every handle handed out is released with its _delete. */
#ifndef SORVANE_SORVANE_H
#define SORVANE_SORVANE_H

#include <stddef.h>
#include <stdint.h>

#include "sorvane/core/Export.h"

#ifdef __cplusplus
extern "C" {
#endif

/* The text of the last failure; text size protocol. */
SORVANE_API int32_t sorvane_getErrorMessage(char* out, int64_t* outSize);
/* Sets the error slot to str. */
SORVANE_API void sorvane_setErrorMessage(const char* str);
/* Empties the error slot. */
SORVANE_API void sorvane_clearErrorMessage(void);

#ifdef __cplusplus
}
#endif

#include "sorvane/flat/sorvane_archive.h"
#include "sorvane/flat/sorvane_arf.h"
#include "sorvane/flat/sorvane_arf_extensions.h"
#include "sorvane/flat/sorvane_gltf2.h"
#include "sorvane/flat/sorvane_gltf2_animation.h"
#include "sorvane/flat/sorvane_gltf2_generic.h"
#include "sorvane/flat/sorvane_gltf2_extensions.h"
#include "sorvane/flat/sorvane_datatree.h"
#include "sorvane/flat/sorvane_image.h"
#include "sorvane/flat/sorvane_media.h"
#include "sorvane/flat/sorvane_stream.h"
#include "sorvane/flat/sorvane_tools.h"
#include "sorvane/flat/sorvane_animation.h"

#endif
