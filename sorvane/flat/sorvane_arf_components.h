/* Flat C interface: what the skeletal components compute. Included by
 * sorvane/flat/sorvane_arf.h. */
#ifndef SORVANE_FLAT_SORVANE_ARF_COMPONENTS_H
#define SORVANE_FLAT_SORVANE_ARF_COMPONENTS_H

#include <stddef.h>
#include <stdint.h>

#include "sorvane/core/Export.h"
#include "sorvane/flat/sorvane_arf_generated.h"

#ifdef __cplusplus
extern "C" {
#endif

/* The node's local matrix, row-major (16 values, or "transform" in its
 * stored length), under the array size protocol: *pvalueCount receives the
 * count; the values are copied when out holds outBytes >= count * 8. */
SORVANE_API int32_t sorvane_arf_Node_getTransformMatrix(double* out, int64_t outBytes, int64_t* pvalueCount,
                                                        sorvane_arf_Node* self);

#ifdef __cplusplus
}
#endif

#endif
