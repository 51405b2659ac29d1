#ifndef SORVANE_ARF_NODE_DATA_DATADTYPE_H
#define SORVANE_ARF_NODE_DATA_DATADTYPE_H

#include <cstdint>
#include <ostream>

#include "sorvane/core/Export.h"
#include "sorvane/datatree/ScalarType.h"

namespace sorvane::arf {

// Element type of payload values, numbered as the glTF component types.
enum DataDType : int32_t {
    DATA_DTYPE_NONE = 0,
    DATA_DTYPE_BYTE = 5120,
    DATA_DTYPE_UNSIGNED_BYTE = 5121,
    DATA_DTYPE_SHORT = 5122,
    DATA_DTYPE_UNSIGNED_SHORT = 5123,
    DATA_DTYPE_UNSIGNED_INT = 5125,
    DATA_DTYPE_FLOAT = 5126,
};

// Element type of sparse indices: the value types without FLOAT.
enum DataIType : int32_t {
    DATA_ITYPE_NONE = 0,
    DATA_ITYPE_BYTE = 5120,
    DATA_ITYPE_UNSIGNED_BYTE = 5121,
    DATA_ITYPE_SHORT = 5122,
    DATA_ITYPE_UNSIGNED_SHORT = 5123,
    DATA_ITYPE_UNSIGNED_INT = 5125,
};

SORVANE_API DataDType int2DataDType(long value);
SORVANE_API const char* dataDType2name(DataDType type);
SORVANE_API long getDataDTypeSize(DataDType type);
SORVANE_API DataDType scalarType2DataDType(ScalarType type);
SORVANE_API ScalarType dataDType2ScalarType(DataDType type);
SORVANE_API std::ostream& operator<<(std::ostream& out, DataDType type);

SORVANE_API DataIType int2DataIType(long value);
SORVANE_API const char* dataIType2name(DataIType type);
SORVANE_API long getDataITypeSize(DataIType type);
SORVANE_API DataIType scalarType2dataIType(ScalarType type);
SORVANE_API ScalarType dataIType2ScalarType(DataIType type);
SORVANE_API std::ostream& operator<<(std::ostream& out, DataIType type);

} // namespace sorvane::arf

#endif
