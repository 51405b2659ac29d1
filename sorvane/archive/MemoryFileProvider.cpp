#include "sorvane/archive/MemoryFileProvider.h"

#include <sys/mman.h>

#include <cstdint>
#include <cstring>

#include "sorvane/core/RuntimeException.h"
#include "sorvane/core/detail/ReadFile.h"

namespace sorvane::archive {

namespace {

// A block for stored content, left uninitialised since it is filled at once.
// A large one asks for huge pages: fresh 4 KiB pages cost a fault each, which
// makes filling a new block several times slower than copying into a warm
// one. The advice is a hint; where it is refused nothing changes.
MemoryFileProvider::BlockPtr newBlock(int64_t size) {
#ifdef MADV_HUGEPAGE
    constexpr size_t kHuge = size_t(2) << 20;
    // Past glibc's largest mmap threshold every block is a fresh mapping:
    // mapped here on a huge page boundary, so that every page of it can be a
    // huge one (a block from new[] starts just past a 4 KiB page, and its
    // first and last partial huge pages fill a page at a time).
    if (size >= static_cast<int64_t>(16 * kHuge)) {
        const size_t length = (static_cast<size_t>(size) + kHuge - 1) & ~(kHuge - 1);
        void* mapped = ::mmap(nullptr, length + kHuge, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        if (mapped != MAP_FAILED) {
            const uintptr_t start = reinterpret_cast<uintptr_t>(mapped);
            const uintptr_t aligned = (start + kHuge - 1) & ~uintptr_t(kHuge - 1);
            if (aligned > start) ::munmap(mapped, aligned - start);
            const size_t tail = kHuge - (aligned - start);
            if (tail > 0) ::munmap(reinterpret_cast<void*>(aligned + length), tail);
            (void)::madvise(reinterpret_cast<void*>(aligned), length, MADV_HUGEPAGE);
            return MemoryFileProvider::BlockPtr(reinterpret_cast<uint8_t*>(aligned), {length});
        }
    }
    // Below it, glibc may hand back a block freed before, whose pages are
    // already there; a fresh one is still advised to use huge pages.
    MemoryFileProvider::BlockPtr block(new uint8_t[static_cast<size_t>(size)], {});
    if (size >= static_cast<int64_t>(4 * kHuge)) {
        const uintptr_t begin = (reinterpret_cast<uintptr_t>(block.get()) + kHuge - 1) & ~(kHuge - 1);
        const uintptr_t end = (reinterpret_cast<uintptr_t>(block.get()) + static_cast<uintptr_t>(size)) & ~(kHuge - 1);
        if (end > begin) (void)::madvise(reinterpret_cast<void*>(begin), end - begin, MADV_HUGEPAGE);
    }
    return block;
#else
    return MemoryFileProvider::BlockPtr(new uint8_t[static_cast<size_t>(size)], {});
#endif
}

} // namespace

void MemoryBlockDelete::operator()(uint8_t* block) const {
    if (mapped) ::munmap(block, mapped);
    else delete[] block;
}

MemoryFileProvider::MemoryFileProvider() = default;

const char* MemoryFileProvider::className() const {
    return "Memory";
}

std::string MemoryFileProvider::getMainDir() const {
    return "memory:";
}

const MemoryFileProvider::Item& MemoryFileProvider::item(const std::string& canonical) const {
    const auto found = items_.find(canonical);
    if (found == items_.end()) SORVANE_THROW("No item '%s'", canonical.c_str());
    return found->second;
}

bool MemoryFileProvider::exists(const std::string& name) const {
    return items_.count(canonizeName(name)) != 0;
}

int64_t MemoryFileProvider::getDataSize(const std::string& name) const {
    return item(canonizeName(name)).size;
}

int64_t MemoryFileProvider::getData(void* out, int64_t outSize, const std::string& name, int64_t) const {
    const std::string canonical = canonizeName(name);
    const Item& found = item(canonical);
    if (out) {
        if (found.size > outSize) SORVANE_THROW("Buffer too small for '%s'", canonical.c_str());
        if (!found.data) SORVANE_THROW("No data for '%s'", canonical.c_str());
        std::memcpy(out, found.data.get(), static_cast<size_t>(found.size));
    }
    return found.size;
}

void MemoryFileProvider::getRange(void* out, int64_t size, const std::string& name, int64_t offset) const {
    const std::string canonical = canonizeName(name);
    const Item& found = item(canonical);
    if (offset < 0 || size < 0 || offset > found.size || size > found.size - offset)
        SORVANE_THROW("Invalid range for '%s'", canonical.c_str());
    if (size == 0) return;
    if (!found.data) SORVANE_THROW("No data for '%s'", canonical.c_str());
    std::memcpy(out, found.data.get() + offset, static_cast<size_t>(size));
}

std::string MemoryFileProvider::getString(const std::string& name, int64_t) const {
    const std::string canonical = canonizeName(name);
    const Item& found = item(canonical);
    if (!found.data) SORVANE_THROW("No data for '%s'", canonical.c_str());
    return std::string(reinterpret_cast<const char*>(found.data.get()), static_cast<size_t>(found.size));
}

const uint8_t* MemoryFileProvider::view(const std::string& name, int64_t& size) const {
    const std::string canonical = canonizeName(name);
    const Item& found = item(canonical);
    if (!found.data) SORVANE_THROW("No data for '%s'", canonical.c_str());
    size = found.size;
    return found.data.get();
}

void MemoryFileProvider::store(const std::string& canonical, BlockPtr data, int64_t size) {
    if (size == 0) {
        Item& emptied = items_[canonical];
        emptied.data.reset();
        emptied.size = 0;
        return;
    }
    // First write wins: content already stored stays.
    auto inserted = items_.try_emplace(canonical);
    if (!inserted.second) return;
    inserted.first->second.size = size;
    inserted.first->second.data = std::move(data);
}

void MemoryFileProvider::create(const std::string& name, const void* data, int64_t size) {
    const std::string canonical = canonizeName(name);
    if (size < 0 || (size > 0 && !data)) SORVANE_THROW("Invalid data for '%s'", canonical.c_str());
    if (size == 0 || items_.count(canonical)) return store(canonical, nullptr, size);
    BlockPtr copy = newBlock(size);
    std::memcpy(copy.get(), data, static_cast<size_t>(size));
    store(canonical, std::move(copy), size);
}

void MemoryFileProvider::createBlocks(const std::string& name, const Block* blocks, size_t count) {
    const std::string canonical = canonizeName(name);
    int64_t size = 0;
    for (size_t i = 0; i < count; ++i)
        if (blocks[i].size < 0 || (blocks[i].size > 0 && !blocks[i].data) ||
            __builtin_add_overflow(size, blocks[i].size, &size))
            SORVANE_THROW("Invalid data for '%s'", canonical.c_str());
    if (size == 0 || items_.count(canonical)) return store(canonical, nullptr, size);
    BlockPtr copy = newBlock(size);
    uint8_t* at = copy.get();
    for (size_t i = 0; i < count; ++i) {
        if (blocks[i].size > 0) std::memcpy(at, blocks[i].data, static_cast<size_t>(blocks[i].size));
        at += blocks[i].size;
    }
    store(canonical, std::move(copy), size);
}

void MemoryFileProvider::createFromFile(const std::string& name, const std::string& path, bool) {
    const std::string canonical = canonizeName(name);
    detail::ReadFile file(path.c_str());
    BlockPtr data = newBlock(file.size());
    file.read(data.get(), file.size());
    store(canonical, std::move(data), file.size());
}

} // namespace sorvane::archive
