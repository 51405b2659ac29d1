#ifndef SORVANE_ARCHIVE_MEMORYFILEPROVIDER_H
#define SORVANE_ARCHIVE_MEMORYFILEPROVIDER_H

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>

#include "sorvane/archive/FileProvider.h"

namespace sorvane::archive {

// Frees a block of the memory store: mapped on its own when large, else from new[].
struct SORVANE_API MemoryBlockDelete {
    size_t mapped = 0;
    void operator()(uint8_t* block) const;
};

// Items in a table in memory, under canonical names. Content is written
// once: a later create with content leaves the first content in place, a
// create of size 0 empties the item. Offsets are ignored: reads return the
// whole item.
class SORVANE_API MemoryFileProvider : public FileProvider {
public:
    using BlockPtr = std::unique_ptr<uint8_t[], MemoryBlockDelete>;
    struct Item {
        int64_t size = 0;
        BlockPtr data;  // null for an emptied item
    };

    MemoryFileProvider();
    MemoryFileProvider(const MemoryFileProvider&) = delete;
    MemoryFileProvider& operator=(const MemoryFileProvider&) = delete;

    using FileProvider::create;

    const char* className() const override;
    std::string getMainDir() const override;
    bool exists(const std::string& name) const override;
    int64_t getDataSize(const std::string& name) const override;
    int64_t getData(void* out, int64_t outSize, const std::string& name, int64_t offset) const override;
    void getRange(void* out, int64_t size, const std::string& name, int64_t offset) const override;
    std::string getString(const std::string& name, int64_t offset) const override;
    void create(const std::string& name, const void* data, int64_t size) override;
    void createBlocks(const std::string& name, const Block* blocks, size_t count) override;
    // Reads the file and stores it like create; `overwrite` is ignored.
    void createFromFile(const std::string& name, const std::string& path, bool overwrite) override;

    // The stored bytes of an item in place, for reading without a copy; they
    // stay valid until the item is emptied or the provider goes. Fails like
    // getString.
    const uint8_t* view(const std::string& name, int64_t& size) const;

private:
    const Item& item(const std::string& canonical) const;
    void store(const std::string& canonical, BlockPtr data, int64_t size);

    std::unordered_map<std::string, Item> items_;
};

} // namespace sorvane::archive

#endif
