#include "sorvane/datatree/node/Buffers.h"

#include <cstdint>
#include <cstdlib>
#include <new>

#include "sorvane/core/RuntimeException.h"

namespace sorvane::datatree::detail {

size_t byteCount(long count, ScalarType type) {
    const long element = getScalarSize(type);
    long bytes = 0;
    if (count < 0 || __builtin_mul_overflow(count, element, &bytes)) SORVANE_THROW("Invalid size %ld", count);
    return static_cast<size_t>(bytes);
}

void failSize(long size) { SORVANE_THROW("Invalid size %ld", size); }

void* allocBytes(size_t bytes) {
    void* block = std::malloc(bytes ? bytes : 1);
    if (!block) throw std::bad_alloc();
    return block;
}

void* allocZeroed(size_t bytes) {
    void* block = std::calloc(bytes ? bytes : 1, 1);
    if (!block) throw std::bad_alloc();
    return block;
}

} // namespace sorvane::datatree::detail
