#include "sorvane/archive/DiskFileProvider.h"

#include <cstdio>
#include <memory>

#include "sorvane/core/RuntimeException.h"
#include "sorvane/core/detail/ReadFile.h"

namespace fs = std::filesystem;

namespace sorvane::archive {

DiskFileProvider::DiskFileProvider(const std::string& mainDir) : mainDir_(mainDir) {}

const char* DiskFileProvider::className() const {
    return "Disk";
}

std::string DiskFileProvider::getMainDir() const {
    return mainDir_;
}

fs::path DiskFileProvider::resolve(const std::string& name) const {
    fs::path path(name);
    if (path.has_root_directory()) return path;
    return fs::path(mainDir_) / path;
}

bool DiskFileProvider::exists(const std::string& name) const {
    std::error_code error;
    return fs::status(resolve(name), error).type() != fs::file_type::not_found;
}

int64_t DiskFileProvider::getDataSize(const std::string& name) const {
    return static_cast<int64_t>(fs::file_size(resolve(name)));
}

int64_t DiskFileProvider::getData(void* out, int64_t outSize, const std::string& name, int64_t offset) const {
    const std::string path = resolve(name).string();
    if (offset < 0) SORVANE_THROW("Invalid offset for '%s'", path.c_str());
    detail::ReadFile file(path.c_str());
    if (offset > file.size()) SORVANE_THROW("Invalid offset for '%s'", path.c_str());
    const int64_t size = file.size() - offset;
    if (!out) return size;
    if (size > outSize) SORVANE_THROW("Buffer too small for '%s'", path.c_str());
    file.seek(offset);
    file.read(out, size);
    return size;
}

void DiskFileProvider::getRange(void* out, int64_t size, const std::string& name, int64_t offset) const {
    const std::string path = resolve(name).string();
    detail::ReadFile file(path.c_str());
    if (offset < 0 || size < 0 || offset > file.size() || size > file.size() - offset)
        SORVANE_THROW("Invalid range for '%s'", path.c_str());
    if (size == 0) return;
    file.readAt(out, size, offset);
}

std::string DiskFileProvider::getString(const std::string& name, int64_t offset) const {
    const std::string path = resolve(name).string();
    if (offset < 0) SORVANE_THROW("Invalid offset for '%s'", path.c_str());
    detail::ReadFile file(path.c_str());
    if (offset > file.size()) SORVANE_THROW("Invalid offset for '%s'", path.c_str());
    std::string text(static_cast<size_t>(file.size() - offset), '\0');
    file.seek(offset);
    file.read(&text[0], file.size() - offset);
    return text;
}

void DiskFileProvider::create(const std::string& name, const void* data, int64_t size) {
    const Block block{data, size};
    createBlocks(name, &block, 1);
}

void DiskFileProvider::createBlocks(const std::string& name, const Block* blocks, size_t count) {
    const fs::path path = resolve(name);
    if (path.has_parent_path()) fs::create_directories(path.parent_path());
    std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.c_str(), "wb"), &std::fclose);
    if (!file) SORVANE_THROW("Error when creating '%s'", path.c_str());
    bool ok = true;
    for (size_t i = 0; ok && i < count; ++i) {
        const int64_t size = blocks[i].size;
        ok = size >= 0 && (size == 0 || (blocks[i].data && std::fwrite(blocks[i].data, 1, static_cast<size_t>(size),
                                                                        file.get()) == static_cast<size_t>(size)));
    }
    ok = std::fclose(file.release()) == 0 && ok;
    if (!ok) SORVANE_THROW("Error when writing '%s'", path.c_str());
}

void DiskFileProvider::createFromFile(const std::string& name, const std::string& path, bool overwrite) {
    if (!fs::exists(path)) SORVANE_THROW("File not found: %s", path.c_str());
    const fs::path target = resolve(name);
    const bool targetExists = fs::exists(target);
    if (targetExists && fs::equivalent(path, target)) return;
    if (targetExists && !overwrite) return;
    if (target.has_parent_path()) fs::create_directories(target.parent_path());
    fs::copy_file(path, target, fs::copy_options::update_existing);
}

} // namespace sorvane::archive
