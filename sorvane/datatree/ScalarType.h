#ifndef SORVANE_DATATREE_SCALARTYPE_H
#define SORVANE_DATATREE_SCALARTYPE_H

#include <cstdint>
#include <ostream>
#include <string>

#include "sorvane/core/Export.h"

namespace sorvane {

// Element type of every numeric buffer. The numbers cross the flat interface
// as plain integers and never change.
enum class ScalarType : int32_t {
    Invalid = 0,
    Boolean = 1,
    UInteger8 = 2,
    Integer8 = 3,
    UInteger16 = 4,
    Integer16 = 5,
    UInteger32 = 6,
    Integer32 = 7,
    UInteger64 = 8,
    Integer64 = 9,
    Float = 10,
    Double = 11,
};

// The kinds of value a DataTree holds; also numbered for the flat interface.
enum class DataTreeType : int32_t {
    Null = 0,
    String = 1,
    Integer = 2,
    Float = 3,
    Boolean = 4,
    Array = 5,
    Tensor = 6,
    Object = 7,
    List = 8,
};

// Size of one element in bytes; "Invalid scalar type" outside 1 to 11.
SORVANE_API long getScalarSize(ScalarType type);
// Boolean counts as an integer type on purpose.
SORVANE_API bool isScalarTypeInteger(ScalarType type);
SORVANE_API bool isScalarTypeFloat(ScalarType type);
// True for 1 to 11; never throws.
SORVANE_API bool isScalarTypeValid(ScalarType type);

SORVANE_API const char* scalarType2string(ScalarType type);
SORVANE_API std::ostream& operator<<(std::ostream& out, ScalarType type);
// Case-insensitive; an unknown name gives ScalarType::Invalid and no error.
SORVANE_API ScalarType string2scalarType(const std::string& name);

SORVANE_API const char* dataType2string(DataTreeType type);
SORVANE_API std::ostream& operator<<(std::ostream& out, DataTreeType type);

// Converts `count` elements. Only the pairs the library needs are supported;
// others raise "Invalid or unsupported scalar type conversion %s => %s".
// An infinite element bound for UInteger8 raises std::overflow_error, with
// the elements before it already written. The buffers may overlap: the result
// is that of a first-to-last element loop.
SORVANE_API void convertBufferScalarType(void* destination, ScalarType destinationType, const void* source,
                                         ScalarType sourceType, long count);

} // namespace sorvane

#endif
