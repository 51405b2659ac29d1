#include "sorvane/core/detail/ReadFile.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "sorvane/core/RuntimeException.h"

namespace sorvane::detail {

ReadFile::ReadFile(const char* path) : path_(path) {
    file_ = std::fopen(path, "rb");
    struct stat info;
    if (file_ && (::fstat(fileno(file_), &info) != 0 || S_ISDIR(info.st_mode))) {
        std::fclose(file_);
        file_ = nullptr;
    }
    if (!file_) SORVANE_THROW("Error when opening '%s'", path);
    off_t end = -1;
    if (fseeko(file_, 0, SEEK_END) == 0) end = ftello(file_);
    if (end < 0 || fseeko(file_, 0, SEEK_SET) != 0) {
        std::fclose(file_);  // the destructor does not run for a throwing constructor
        file_ = nullptr;
        SORVANE_THROW("Error when computing size of '%s'", path);
    }
    size_ = static_cast<int64_t>(end);
}

ReadFile::~ReadFile() {
    if (file_) std::fclose(file_);
}

void ReadFile::seek(int64_t offset) {
    if (offset < 0 || offset > size_ || fseeko(file_, static_cast<off_t>(offset), SEEK_SET) != 0)
        SORVANE_THROW("Error when computing size of '%s'", path_);
}

void ReadFile::read(void* out, int64_t count) {
    if (count <= 0) return;
    if (std::fread(out, 1, static_cast<size_t>(count), file_) != static_cast<size_t>(count))
        SORVANE_THROW("Error when reading '%s'", path_);
}

void ReadFile::readAt(void* out, int64_t count, int64_t offset) {
    if (count <= 0) return;
    if (offset < 0 || offset > size_ || count > size_ - offset) SORVANE_THROW("Error when reading '%s'", path_);
    // One read for the whole range from the page cache; the loop only takes
    // the rest of a short read.
    char* target = static_cast<char*>(out);
    const int fd = fileno(file_);
    while (count > 0) {
        const ssize_t got = ::pread(fd, target, static_cast<size_t>(count), static_cast<off_t>(offset));
        if (got < 0 && errno == EINTR) continue;
        if (got <= 0) SORVANE_THROW("Error when reading '%s'", path_);
        target += got;
        offset += got;
        count -= got;
    }
}

} // namespace sorvane::detail
