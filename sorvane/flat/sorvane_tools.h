/* Flat C interface, extensions: the comparison of tensors and images, for C
 * callers that check results without C++. Included by sorvane/sorvane.h. */
#ifndef SORVANE_FLAT_SORVANE_TOOLS_H
#define SORVANE_FLAT_SORVANE_TOOLS_H

#include <stdint.h>
#ifndef __cplusplus
#include <stdbool.h>
#endif

#include "sorvane/core/Export.h"
#include "sorvane/flat/sorvane_datatree.h"

#ifdef __cplusplus
extern "C" {
#endif

/* *out: the number of elements of two tensors (or arrays) of one scalar type
 * that differ by more than tolerance, 2147483647 when types or shapes differ;
 * with verbose the first 20 differences and a summary go to standard output. */
SORVANE_API int32_t sorvane_tools_compareDataTensors(int64_t* out, const DataTree* first, const DataTree* second,
                                                     double tolerance, bool verbose);
/* The same over two image objects ("pixelFormat", "imageFormat", "pixels"),
 * whose formats must agree; pixels compare exactly. */
SORVANE_API int32_t sorvane_tools_compareDataImages(int64_t* out, const DataTree* first, const DataTree* second,
                                                    bool verbose);

#ifdef __cplusplus
}
#endif

#endif
