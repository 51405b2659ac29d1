#include "sorvane/archive/FileProvider.h"

#include <cstdlib>
#include <cstring>
#include <stdexcept>

#include "sorvane/core/RuntimeException.h"
#include "sorvane/core/detail/ReadFile.h"

namespace sorvane::archive {

FileProvider::StreamBuffer::StreamBuffer(char* block, int64_t size) : block_(block) {
    setg(block, block, block + size);
}

FileProvider::StreamBuffer::~StreamBuffer() {
    std::free(block_);
}

FileProvider::StreamBuffer::pos_type FileProvider::StreamBuffer::seekoff(off_type offset, std::ios_base::seekdir dir,
                                                                         std::ios_base::openmode which) {
    if (!(which & std::ios_base::in)) return pos_type(off_type(-1));
    off_type base = 0;
    if (dir == std::ios_base::cur) base = gptr() - eback();
    else if (dir == std::ios_base::end) base = egptr() - eback();
    const off_type target = base + offset;
    if (target < 0 || target > egptr() - eback()) return pos_type(off_type(-1));
    setg(eback(), eback() + target, egptr());
    return pos_type(target);
}

FileProvider::StreamBuffer::pos_type FileProvider::StreamBuffer::seekpos(pos_type position,
                                                                         std::ios_base::openmode which) {
    return seekoff(off_type(position), std::ios_base::beg, which);
}

FileProvider::InputStream::InputStream(char* block, int64_t size) : std::istream(nullptr), buffer_(block, size) {
    rdbuf(&buffer_);
}

FileProvider::~FileProvider() = default;

void FileProvider::close() {}

std::vector<std::string> FileProvider::getAllNames() const {
    SORVANE_THROW("Not implemented");
}

void FileProvider::getRange(void* out, int64_t size, const std::string& name, int64_t offset) const {
    const int64_t total = getData(nullptr, 0, name, 0);
    if (offset < 0 || size < 0 || offset > total || size > total - offset)
        SORVANE_THROW("Invalid range for '%s'", name.c_str());
    if (size == 0) return;
    if (offset == 0 && size == total) {
        getData(out, size, name, 0);
        return;
    }
    // Stores that cannot read a part read the whole item once.
    std::vector<uint8_t> whole(static_cast<size_t>(total));
    getData(whole.data(), total, name, 0);
    std::memcpy(out, whole.data() + offset, static_cast<size_t>(size));
}

std::vector<uint8_t> FileProvider::getBytes(const std::string& name, int64_t offset) const {
    const int64_t size = getData(nullptr, 0, name, offset);
    if (size < 0) throw std::length_error("cannot create std::vector larger than max_size()");
    std::vector<uint8_t> bytes(static_cast<size_t>(size));
    getData(bytes.data(), size, name, 0);
    return bytes;
}

std::shared_ptr<std::istream> FileProvider::getInputStream(const std::string& name, int64_t offset) const {
    const int64_t size = getData(nullptr, 0, name, offset);
    if (size < 0) throw std::length_error("cannot create std::vector larger than max_size()");
    char* block = static_cast<char*>(std::malloc(static_cast<size_t>(size) + 1));
    if (!block) throw std::bad_alloc();
    try {
        getData(block, size, name, 0);
    } catch (const std::exception& e) {
        std::free(block);
        // The old text is kept verbatim (it may hold '%').
        throw RuntimeException(std::string(e.what()));
    }
    try {
        return std::make_shared<InputStream>(block, size);
    } catch (...) {
        std::free(block);  // only the allocation can fail, before the stream owns the block
        throw;
    }
}

void FileProvider::create(const std::string& name, const std::string& text) {
    create(name, text.data(), static_cast<int64_t>(text.size()));
}

void FileProvider::createBlocks(const std::string& name, const Block* blocks, size_t count) {
    if (count == 1) return create(name, blocks[0].data, blocks[0].size);
    std::vector<uint8_t> whole;
    for (size_t i = 0; i < count; ++i) {
        if (blocks[i].size < 0 || (blocks[i].size > 0 && !blocks[i].data)) return create(name, nullptr, -1);
        const auto* bytes = static_cast<const uint8_t*>(blocks[i].data);
        whole.insert(whole.end(), bytes, bytes + blocks[i].size);
    }
    create(name, whole.data(), static_cast<int64_t>(whole.size()));
}

void FileProvider::createFromFile(const std::string& name, const std::string& path, bool overwrite) {
    if (!overwrite && exists(name)) return;
    detail::ReadFile file(path.c_str());
    std::vector<char> data(static_cast<size_t>(file.size()));
    file.read(data.data(), file.size());
    create(name, data.data(), file.size());
}

std::string FileProvider::canonizeName(const std::filesystem::path& path) const {
    return path.lexically_normal().generic_string();
}

std::string FileProvider::canonizeName(const std::string& name) const {
    return canonizeName(std::filesystem::path(name));
}

} // namespace sorvane::archive
