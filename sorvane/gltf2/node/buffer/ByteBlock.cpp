#include "sorvane/gltf2/node/buffer/ByteBlock.h"

#include <cstdlib>

#if defined(__linux__)
#include <sys/mman.h>
#endif

namespace sorvane::gltf2 {

namespace {
constexpr size_t kHugePage = size_t(2) << 20;
// From this size malloc always maps a block of its own, so the advice stays
// within it; smaller blocks may be carved from the heap.
constexpr size_t kHugeFrom = size_t(32) << 20;
} // namespace

void* allocateBlock(size_t bytes) {
    void* block = std::malloc(bytes ? bytes : 1);
#if defined(__linux__) && defined(MADV_HUGEPAGE)
    if (block && bytes >= kHugeFrom) {
        // Only the whole huge pages inside the block; advice is a hint, and a
        // refusal changes nothing but speed.
        const uintptr_t start = (reinterpret_cast<uintptr_t>(block) + kHugePage - 1) & ~(kHugePage - 1);
        const uintptr_t end = (reinterpret_cast<uintptr_t>(block) + bytes) & ~(kHugePage - 1);
        if (end > start) ::madvise(reinterpret_cast<void*>(start), end - start, MADV_HUGEPAGE);
    }
#endif
    return block;
}

void freeBlock(void* p) noexcept { std::free(p); }

} // namespace sorvane::gltf2
