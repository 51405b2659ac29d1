#ifndef SORVANE_GLTF2_NODE_BUFFER_BYTEBLOCK_H
#define SORVANE_GLTF2_NODE_BUFFER_BYTEBLOCK_H

#include <cstddef>
#include <cstdint>
#include <new>
#include <vector>

#include "sorvane/core/Export.h"

namespace sorvane::gltf2 {

// A malloc block for bytes about to be overwritten; freed with std::free.
// Large blocks ask the system for huge pages: a first write then costs one
// page fault per 2 MiB instead of one per 4 KiB, which is most of the time of
// reading a large .glb. Null when memory is short.
SORVANE_API void* allocateBlock(size_t bytes);

// An allocator over allocateBlock whose default construction leaves the
// value unset: a buffer grown to be filled from a file or a copy is not
// zero-filled first. Growing with an explicit value (resize(n, 0)) fills.
template <class T>
struct BlockAllocator {
    using value_type = T;

    BlockAllocator() = default;
    template <class U>
    BlockAllocator(const BlockAllocator<U>&) noexcept {}

    T* allocate(size_t n) {
        if (n > static_cast<size_t>(-1) / sizeof(T)) throw std::bad_alloc();
        void* p = allocateBlock(n * sizeof(T));
        if (!p) throw std::bad_alloc();
        return static_cast<T*>(p);
    }
    void deallocate(T* p, size_t) noexcept;

    template <class U>
    void construct(U* p) noexcept {
        ::new (static_cast<void*>(p)) U;
    }
    template <class U, class... A>
    void construct(U* p, A&&... args) {
        ::new (static_cast<void*>(p)) U(static_cast<A&&>(args)...);
    }

    template <class U>
    bool operator==(const BlockAllocator<U>&) const noexcept {
        return true;
    }
    template <class U>
    bool operator!=(const BlockAllocator<U>&) const noexcept {
        return false;
    }
};

SORVANE_API void freeBlock(void* p) noexcept;

template <class T>
void BlockAllocator<T>::deallocate(T* p, size_t) noexcept {
    freeBlock(p);
}

// The bytes of the shared buffer.
using ByteVector = std::vector<uint8_t, BlockAllocator<uint8_t>>;

} // namespace sorvane::gltf2

#endif
