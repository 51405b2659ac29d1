#ifndef SORVANE_ARCHIVE_ZIP_H
#define SORVANE_ARCHIVE_ZIP_H

#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "sorvane/archive/FileProvider.h"

struct zip;

namespace sorvane::archive {

// A FileProvider over one zip archive (libzip). Changes reach the file only
// when the archive is closed; until then items added in this session are read
// back from the bytes kept for libzip. A closed archive refuses every call.
class SORVANE_API Zip : public FileProvider {
public:
    // Wraps an open libzip handle; the Zip closes it.
    Zip(struct zip* handle, const std::filesystem::path& path);
    Zip(struct zip* handle, const std::string& path);
    Zip(struct zip* handle, const char* path);
    Zip(Zip&& other) noexcept;
    Zip(const Zip&) = delete;
    Zip& operator=(const Zip&) = delete;
    Zip& operator=(Zip&&) = delete;
    ~Zip() override;

    // Creates the archive, or opens an existing one for changes.
    static Zip create(const std::filesystem::path& path);
    static Zip* createPtr(const std::filesystem::path& path);
    static std::shared_ptr<Zip> createShared(const std::filesystem::path& path);
    // Opens an existing archive read-only.
    static Zip open(const std::filesystem::path& path);
    static Zip* openPtr(const std::filesystem::path& path);
    static std::shared_ptr<Zip> openShared(const std::filesystem::path& path);
    // Opens an existing archive for changes, kept as they were until close
    // writes them (through a temporary file renamed over the archive).
    static std::shared_ptr<Zip> openForChangesShared(const std::filesystem::path& path);

    using FileProvider::create;

    const char* className() const override;
    std::string getMainDir() const override;
    // Writes the archive (libzip's zip_close); a failed write throws. Nothing
    // can be done afterwards.
    void close() override;
    bool isOpen() const { return archive_ != nullptr; }
    bool exists(const std::string& name) const override;
    std::vector<std::string> getAllNames() const override;
    int64_t getDataSize(const std::string& name) const override;
    int64_t getData(void* out, int64_t outSize, const std::string& name, int64_t offset) const override;
    void getRange(void* out, int64_t size, const std::string& name, int64_t offset) const override;
    // Only offset 0 is of use: the text has the entry's full size.
    std::string getString(const std::string& name, int64_t offset) const override;
    // Adds or replaces the entry, deflated at level 6.
    void create(const std::string& name, const void* data, int64_t size) override;
    void createBlocks(const std::string& name, const Block* blocks, size_t count) override;
    // The file is read when the archive is closed: it must stay until then.
    void createFromFile(const std::string& name, const std::string& path, bool overwrite) override;

    // libzip's method and level for entries added from now on (deflate, 6).
    void setCompression(int32_t method, uint32_t level);
    int32_t getCompressionMethod() const { return compressionMethod_; }
    uint32_t getCompressionLevel() const { return compressionLevel_; }

private:
    // An entry added in this session and not yet written: its bytes (ours,
    // lent to libzip) or the file libzip will read at close.
    struct Spill;
    struct Pending {
        std::shared_ptr<void> block;
        int64_t size = 0;
        std::string file;
        // Set when the bytes wait in our spill file, at `offset`, rather than in `block`.
        std::shared_ptr<Spill> spill;
        int64_t offset = 0;
    };
    struct Entry;

    void guard() const;
    // Writes and releases the archive; a failed write throws when `report`,
    // and is only printed otherwise (from the destructor).
    void finish(bool report);
    bool stat(const std::string& canonical, Entry& entry) const;
    void findEntry(const std::string& canonical, Entry& entry) const;
    void readEntry(const Entry& entry, void* out, int64_t count, int64_t offset) const;
    void addSource(const std::string& canonical, void* source, bool overwrite, bool fromFile,
                   Pending pending);

    struct zip* archive_ = nullptr;
    std::filesystem::path path_;
    int32_t compressionMethod_ = 8;
    uint32_t compressionLevel_ = 6;
    int64_t archiveSize_ = 0;  // size of the file when opened, to check entry sizes against
    std::map<std::string, Pending> pending_;
    std::shared_ptr<Spill> spill_;  // large added entries, one after the other, until the close
    // The last compressed entry inflated for a read of a part of it: the
    // header and the values of a payload, and a payload read again, are then
    // inflated once. One entry at most, dropped on close and on any change.
    mutable std::string cachedName_;
    mutable std::unique_ptr<uint8_t[]> cached_;
    mutable int64_t cachedSize_ = 0;
};

} // namespace sorvane::archive

#endif
