#include "sorvane/core/detail/ReadFile.h"

#include <sys/stat.h>

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

} // namespace sorvane::detail
