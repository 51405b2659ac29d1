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
std::unique_ptr<uint8_t[]> newBlock(int64_t size) {
    std::unique_ptr<uint8_t[]> block(new uint8_t[static_cast<size_t>(size)]);
#ifdef MADV_HUGEPAGE
    constexpr uintptr_t kHuge = uintptr_t(2) << 20;
    if (size >= static_cast<int64_t>(4 * kHuge)) {
        const uintptr_t begin = (reinterpret_cast<uintptr_t>(block.get()) + kHuge - 1) & ~(kHuge - 1);
        const uintptr_t end = (reinterpret_cast<uintptr_t>(block.get()) + static_cast<uintptr_t>(size)) & ~(kHuge - 1);
        if (end > begin) (void)::madvise(reinterpret_cast<void*>(begin), end - begin, MADV_HUGEPAGE);
    }
#endif
    return block;
}

} // namespace

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

void MemoryFileProvider::store(const std::string& canonical, std::unique_ptr<uint8_t[]> data, int64_t size) {
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
    std::unique_ptr<uint8_t[]> copy = newBlock(size);
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
    std::unique_ptr<uint8_t[]> copy = newBlock(size);
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
    std::unique_ptr<uint8_t[]> data = newBlock(file.size());
    file.read(data.get(), file.size());
    store(canonical, std::move(data), file.size());
}

} // namespace sorvane::archive
