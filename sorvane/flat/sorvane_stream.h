/* Flat C interface: stream. Included by sorvane/sorvane.h. */
#ifndef SORVANE_FLAT_SORVANE_STREAM_H
#define SORVANE_FLAT_SORVANE_STREAM_H

#include <stddef.h>
#include <stdint.h>

#include "sorvane/core/Export.h"

#ifdef __cplusplus
extern "C" {
#endif

#ifdef __cplusplus
}
#endif

#endif
