#ifndef SORVANE_CORE_DETAIL_READFILE_H
#define SORVANE_CORE_DETAIL_READFILE_H

// Internal: the one way the library opens, measures and reads a file, so that
// the whole-file helpers and the providers fail with the same texts.

#include <cstdint>
#include <cstdio>

namespace sorvane::detail {

class ReadFile {
public:
    // Opens `path` for binary reading and measures it: "Error when opening
    // '%s'" (a directory cannot be opened), "Error when computing size of '%s'".
    explicit ReadFile(const char* path);
    ReadFile(const ReadFile&) = delete;
    ReadFile& operator=(const ReadFile&) = delete;
    ~ReadFile();

    int64_t size() const { return size_; }
    // Positions at `offset` (0 <= offset <= size()), else the size text.
    void seek(int64_t offset);
    // Reads exactly `count` bytes at the current position, else "Error when
    // reading '%s'".
    void read(void* out, int64_t count);
    // Reads exactly `count` bytes at `offset` straight into `out` (no stream
    // buffer in between), else "Error when reading '%s'".
    void readAt(void* out, int64_t count, int64_t offset);

private:
    std::FILE* file_ = nullptr;
    const char* path_;
    int64_t size_ = 0;
};

} // namespace sorvane::detail

#endif
