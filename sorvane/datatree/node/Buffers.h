#ifndef SORVANE_DATATREE_NODE_BUFFERS_H
#define SORVANE_DATATREE_NODE_BUFFERS_H

// Internal: checked sizes and malloc blocks of arrays and tensors.

#include <cstddef>
#include <vector>

#include "sorvane/datatree/ScalarType.h"

namespace sorvane::datatree::detail {

// count times the element size; "Invalid size %ld" when it cannot be held.
size_t byteCount(long count, ScalarType type);
[[noreturn]] void failSize(long size);
// Product of the sizes (0 for none); "Invalid size %ld" for a negative size
// or a product past 64 bits. Inline: every tensor read asks it.
inline long valueCount(const long* sizes, size_t dimCount) {
    if (dimCount == 0) return 0;
    long count = 1;
    for (size_t d = 0; d < dimCount; ++d) {
        if (sizes[d] < 0 || __builtin_mul_overflow(count, sizes[d], &count)) failSize(sizes[d]);
    }
    return count;
}
inline long valueCount(const std::vector<long>& sizes) { return valueCount(sizes.data(), sizes.size()); }
// malloc that raises std::bad_alloc instead of returning null.
void* allocBytes(size_t bytes);
void* allocZeroed(size_t bytes);

} // namespace sorvane::datatree::detail

#endif
