#ifndef SORVANE_ARCHIVE_FILEPROVIDER_H
#define SORVANE_ARCHIVE_FILEPROVIDER_H

#include <cstdint>
#include <filesystem>
#include <istream>
#include <memory>
#include <streambuf>
#include <string>
#include <vector>

#include "sorvane/core/Export.h"

namespace sorvane::archive {

// A store of named byte items: a directory, a subdirectory of another store,
// a table in memory or a zip archive. Documents name their files to a
// provider and never open files themselves. Every failure is an exception.
class SORVANE_API FileProvider {
public:
    // Read-only stream buffer over a byte block it owns (freed with std::free).
    class SORVANE_API StreamBuffer : public std::streambuf {
    public:
        StreamBuffer(char* block, int64_t size);
        StreamBuffer(const StreamBuffer&) = delete;
        StreamBuffer& operator=(const StreamBuffer&) = delete;
        ~StreamBuffer() override;

    protected:
        pos_type seekoff(off_type offset, std::ios_base::seekdir dir, std::ios_base::openmode which) override;
        pos_type seekpos(pos_type position, std::ios_base::openmode which) override;

    private:
        char* block_;
    };

    // An input stream over a StreamBuffer.
    class SORVANE_API InputStream : public std::istream {
    public:
        InputStream(char* block, int64_t size);

    private:
        StreamBuffer buffer_;
    };

    virtual ~FileProvider();

    virtual const char* className() const = 0;
    virtual std::string getMainDir() const = 0;
    virtual void close();
    virtual bool exists(const std::string& name) const = 0;
    // "Not implemented" unless the store can list itself (Zip).
    virtual std::vector<std::string> getAllNames() const;
    virtual int64_t getDataSize(const std::string& name) const = 0;
    // Copies the item from `offset` on into `out` (capacity `outSize`) and
    // returns the byte count from `offset` to the end. With a null `out`
    // nothing is read: that is the size query.
    virtual int64_t getData(void* out, int64_t outSize, const std::string& name, int64_t offset) const = 0;
    // Copies exactly `size` bytes of the item from `offset` on into `out`;
    // the range must lie inside the item ("Invalid range for '%s'"). This is
    // how one part of a file shared by several payloads is read.
    virtual void getRange(void* out, int64_t size, const std::string& name, int64_t offset) const;
    // The whole item (read from 0; use offset 0).
    virtual std::vector<uint8_t> getBytes(const std::string& name, int64_t offset) const;
    virtual std::string getString(const std::string& name, int64_t offset) const = 0;
    // A stream over a copy of the whole item (read from 0; use offset 0).
    virtual std::shared_ptr<std::istream> getInputStream(const std::string& name, int64_t offset) const;
    virtual void create(const std::string& name, const void* data, int64_t size) = 0;
    virtual void create(const std::string& name, const std::string& text);
    // One piece of an item given in several.
    struct Block {
        const void* data;
        int64_t size;
    };
    // Stores the item made of the `count` blocks one after the other, as
    // create with their concatenation does; a store that can lays them down
    // in place, so the bytes are copied once.
    virtual void createBlocks(const std::string& name, const Block* blocks, size_t count);
    // Stores a copy of the file at `path`; does nothing when `overwrite` is
    // false and the name exists.
    virtual void createFromFile(const std::string& name, const std::string& path, bool overwrite);
    // Lexically normal form with "/" separators: "a/./b", "a/c/../b" -> "a/b".
    virtual std::string canonizeName(const std::filesystem::path& path) const;
    virtual std::string canonizeName(const std::string& name) const;
    std::string canonizeName(const char* name) const { return canonizeName(std::string(name)); }
};

} // namespace sorvane::archive

#endif
