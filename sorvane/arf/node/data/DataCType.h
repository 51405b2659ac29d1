#ifndef SORVANE_ARF_NODE_DATA_DATACTYPE_H
#define SORVANE_ARF_NODE_DATA_DATACTYPE_H

#include <cstdint>
#include <ostream>

#include "sorvane/core/Export.h"

namespace sorvane::arf {

// Colour type of a data item.
enum DataCType : int32_t {
    DATA_CTYPE_NONE = 0,
    DATA_CTYPE_RGB = 1,
    DATA_CTYPE_RGBA = 2,
};

SORVANE_API DataCType int2DataCType(long value);
SORVANE_API const char* dataCType2name(DataCType type);
SORVANE_API long getDataCTypeSize(DataCType type);
// Pixel formats 1 (RGB) and 2 (RGBA) share their numbers with the colour types.
SORVANE_API DataCType pixelFormat2DataCType(int pixelFormat);
SORVANE_API int dataCType2PixelFormat(DataCType type);
SORVANE_API std::ostream& operator<<(std::ostream& out, DataCType type);

} // namespace sorvane::arf

#endif
