#ifndef SORVANE_ARF_FORMAT_DENSE_H
#define SORVANE_ARF_FORMAT_DENSE_H

#include <cstdint>
#include <vector>

#include "sorvane/archive/BitBuffer.h"
#include "sorvane/arf/node/data/DataDType.h"
#include "sorvane/core/Export.h"

namespace sorvane::arf {

// The two payload formats of data items. Header fields are written least
// significant byte first; values are the raw bytes of the writing machine.
//
// Dense:  dimCount:i32, dims:i32 x dimCount, dtype:i32, values.
// Sparse: dimCount:i32, dims:i32 x dimCount, count:i64, itype:i32, dtype:i32,
//         indices (count x itype), values (count x dtype).

// Most dimensions a payload may declare.
constexpr long kMaxPayloadDims = 5;

// Elements of a tensor of these sizes (1 for none); throws on a negative size
// or a count that does not fit 63 bits.
SORVANE_API long tensorElementCount(const std::vector<long>& sizes);
// Bytes of a tensor of these sizes and element size, with the same checks.
SORVANE_API long tensorByteSize(const std::vector<long>& sizes, long elementSize);

SORVANE_API void dense_encode(BitBuffer& buffer, const void* data, long size, DataDType dtype,
                              const std::vector<long>& sizes);
// Writes only the header of a dense payload whose values follow; returns the
// byte size of those values.
SORVANE_API long dense_encodeHeader(BitBuffer& buffer, DataDType dtype, const std::vector<long>& sizes);
// Reads the header; returns the byte size of the values that follow it.
SORVANE_API long dense_decodeHeader(std::vector<long>& sizes, DataDType& dtype, BitBuffer& buffer);
// Copies the values into out (null: only the size is returned).
SORVANE_API long dense_decodeContent(void* out, long size, const std::vector<long>& sizes, DataDType dtype,
                                     BitBuffer& buffer);

SORVANE_API void sparse_encode(BitBuffer& buffer, const void* indices, long indicesSize, DataIType itype,
                               const void* values, long valuesSize, DataDType dtype, const std::vector<long>& sizes,
                               long count);
// Reads the header; returns the byte size of the full (dense) tensor.
SORVANE_API long DataNode__decodeSparseHeader(std::vector<long>& sizes, long& count, DataDType& dtype,
                                              DataIType& itype, BitBuffer& buffer);
// Reads count indices and values and writes the full tensor into out.
SORVANE_API void DataNode_decodeSparse(void* out, long size, DataIType itype, DataDType dtype, BitBuffer& buffer,
                                       long count, const std::vector<long>& sizes);

} // namespace sorvane::arf

#endif
