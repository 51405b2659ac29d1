#include "sorvane/arf/format/dense.h"

#include <cstring>

#include "sorvane/core/RuntimeException.h"

namespace sorvane::arf {

namespace {

void readDims(std::vector<long>& sizes, BitBuffer& buffer) {
    int32_t dimCount = 0;
    if (!buffer.read(dimCount)) SORVANE_THROW("Unable to read dim count");
    // Compared unsigned so that a negative count is refused as well.
    if (static_cast<uint64_t>(static_cast<int64_t>(dimCount)) > static_cast<uint64_t>(kMaxPayloadDims))
        SORVANE_THROW("Invalid dim count %d", dimCount);
    sizes.assign(static_cast<size_t>(dimCount), 0);
    for (auto& size : sizes) {
        int32_t dim = 0;
        if (!buffer.read(dim)) SORVANE_THROW("Unable to read dim");
        if (dim < 0) SORVANE_THROW("Invalid dim %d", dim);
        size = dim;
    }
}

void writeDims(BitBuffer& buffer, const std::vector<long>& sizes) {
    buffer.write(static_cast<int32_t>(sizes.size()));
    for (long size : sizes) buffer.write(static_cast<uint32_t>(static_cast<uint64_t>(size) & 0xffffffffu));
}

void writeBlock(BitBuffer& buffer, const void* data, long size) {
    if (size <= 0) return;
    uint8_t* p = buffer.writeBlock(size);
    if (p) std::memcpy(p, data, static_cast<size_t>(size));
    else buffer.writeBytes(data, size);
}

template <class T>
long loadIndex(const uint8_t* p) {
    T v;
    std::memcpy(&v, p, sizeof v);
    return static_cast<long>(v);
}

template <size_t N>
void scatter(uint8_t* out, long outSize, const uint8_t* indices, long (*load)(const uint8_t*), long indexSize,
             const uint8_t* values, long count) {
    for (long i = 0; i < count; ++i) {
        const long index = load(indices + i * indexSize);
        if (index < 0 || index >= outSize / static_cast<long>(N)) SORVANE_THROW("Invalid index %ld", index);
        std::memcpy(out + index * static_cast<long>(N), values + i * static_cast<long>(N), N);
    }
}

} // namespace

long tensorElementCount(const std::vector<long>& sizes) {
    long count = 1;
    for (long size : sizes) {
        if (size < 0) SORVANE_THROW("Invalid dim %ld", size);
        if (__builtin_mul_overflow(count, size, &count)) SORVANE_THROW("Tensor is too large");
    }
    return count;
}

long tensorByteSize(const std::vector<long>& sizes, long elementSize) {
    long bytes = 0;
    if (__builtin_mul_overflow(tensorElementCount(sizes), elementSize, &bytes)) SORVANE_THROW("Tensor is too large");
    return bytes;
}

long dense_encodeHeader(BitBuffer& buffer, DataDType dtype, const std::vector<long>& sizes) {
    const long bytes = tensorByteSize(sizes, getDataDTypeSize(dtype));
    writeDims(buffer, sizes);
    buffer.write(static_cast<int32_t>(dtype));
    return bytes;
}

void dense_encode(BitBuffer& buffer, const void* data, long size, DataDType dtype, const std::vector<long>& sizes) {
    if (!data) SORVANE_THROW("buffer if NULL");
    const long bytes = tensorByteSize(sizes, getDataDTypeSize(dtype));
    if (bytes > size) SORVANE_THROW("buffer is too small");
    dense_encodeHeader(buffer, dtype, sizes);
    writeBlock(buffer, data, bytes);
}

long dense_decodeHeader(std::vector<long>& sizes, DataDType& dtype, BitBuffer& buffer) {
    readDims(sizes, buffer);
    int32_t type = 0;
    if (!buffer.read(type)) SORVANE_THROW("Unable to read dtype");
    dtype = int2DataDType(type);
    return tensorByteSize(sizes, getDataDTypeSize(dtype));
}

long dense_decodeContent(void* out, long size, const std::vector<long>& sizes, DataDType dtype, BitBuffer& buffer) {
    const long bytes = tensorByteSize(sizes, getDataDTypeSize(dtype));
    if (!out) return bytes;
    if (size < bytes) SORVANE_THROW("Output buffer is too small");
    if (!buffer.readBytes(out, bytes)) SORVANE_THROW("Error reading values");
    return bytes;
}

void sparse_encode(BitBuffer& buffer, const void* indices, long indicesSize, DataIType itype, const void* values,
                   long valuesSize, DataDType dtype, const std::vector<long>& sizes, long count) {
    if (!values) SORVANE_THROW("No values");
    if (!indices) SORVANE_THROW("No indices");
    if (count < 0) SORVANE_THROW("Invalid count");
    long valuesNeeded = 0, indicesNeeded = 0;
    if (__builtin_mul_overflow(count, getDataDTypeSize(dtype), &valuesNeeded) ||
        __builtin_mul_overflow(count, getDataITypeSize(itype), &indicesNeeded))
        SORVANE_THROW("Invalid count");
    if (valuesSize < valuesNeeded) SORVANE_THROW("Invalid values size %ld < %ld", valuesSize, valuesNeeded);
    if (indicesSize < indicesNeeded) SORVANE_THROW("Invalid indices size %ld < %ld", indicesSize, indicesNeeded);
    writeDims(buffer, sizes);
    buffer.write(static_cast<int64_t>(count));
    buffer.write(static_cast<int32_t>(itype));
    buffer.write(static_cast<int32_t>(dtype));
    writeBlock(buffer, indices, indicesNeeded);
    writeBlock(buffer, values, valuesNeeded);
}

long DataNode__decodeSparseHeader(std::vector<long>& sizes, long& count, DataDType& dtype, DataIType& itype,
                                  BitBuffer& buffer) {
    readDims(sizes, buffer);
    int64_t n = 0;
    if (!buffer.read(n)) SORVANE_THROW("Unable to read count");
    if (n < 0) SORVANE_THROW("Invalid count");
    count = static_cast<long>(n);
    int32_t type = 0;
    if (!buffer.read(type)) SORVANE_THROW("Unable to read itype");
    itype = int2DataIType(type);
    if (!buffer.read(type)) SORVANE_THROW("Unable to read dtype");
    dtype = int2DataDType(type);
    return tensorByteSize(sizes, getDataDTypeSize(dtype));
}

void DataNode_decodeSparse(void* out, long size, DataIType itype, DataDType dtype, BitBuffer& buffer, long count,
                           const std::vector<long>& sizes) {
    long (*load)(const uint8_t*) = nullptr;
    switch (itype) {
    case DATA_ITYPE_BYTE: load = loadIndex<int8_t>; break;
    case DATA_ITYPE_UNSIGNED_BYTE: load = loadIndex<uint8_t>; break;
    case DATA_ITYPE_SHORT: load = loadIndex<int16_t>; break;
    case DATA_ITYPE_UNSIGNED_SHORT: load = loadIndex<uint16_t>; break;
    case DATA_ITYPE_UNSIGNED_INT: load = loadIndex<uint32_t>; break;
    default: SORVANE_THROW("Invalid itype %d", static_cast<int>(itype));
    }
    const long indexSize = getDataITypeSize(itype);
    long valueSize = 0;
    switch (dtype) {
    case DATA_DTYPE_BYTE:
    case DATA_DTYPE_UNSIGNED_BYTE:
    case DATA_DTYPE_SHORT:
    case DATA_DTYPE_UNSIGNED_SHORT:
    case DATA_DTYPE_UNSIGNED_INT:
    case DATA_DTYPE_FLOAT: valueSize = getDataDTypeSize(dtype); break;
    default: SORVANE_THROW("Invalid dtype %d", static_cast<int>(dtype));
    }
    if (!out || size < tensorByteSize(sizes, valueSize)) SORVANE_THROW("Output buffer is too small");
    if (count < 0) SORVANE_THROW("Invalid count");
    // Both blocks are taken in place once the payload is known to hold them,
    // so a hostile count allocates nothing.
    const long available = buffer.bitsLeft() / 8;
    if (count > available / (indexSize + valueSize)) SORVANE_THROW("Error reading values");
    const uint8_t* indices = buffer.readBlock(count * indexSize);
    if (!indices) SORVANE_THROW("Error reading values");
    const uint8_t* values = buffer.readBlock(count * valueSize);
    if (!values) SORVANE_THROW("Error reading values");
    auto* target = static_cast<uint8_t*>(out);
    std::memset(target, 0, static_cast<size_t>(size));
    switch (valueSize) {
    case 1: scatter<1>(target, size, indices, load, indexSize, values, count); break;
    case 2: scatter<2>(target, size, indices, load, indexSize, values, count); break;
    default: scatter<4>(target, size, indices, load, indexSize, values, count); break;
    }
}

} // namespace sorvane::arf
