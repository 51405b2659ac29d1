#include "sorvane/archive/RelativeFileProvider.h"

#include <filesystem>

#include "sorvane/core/RuntimeException.h"

namespace fs = std::filesystem;

namespace sorvane::archive {

RelativeFileProvider::RelativeFileProvider(std::shared_ptr<FileProvider> parent, const std::string& mainDir)
    : parent_(std::move(parent)), mainDir_(mainDir) {
    if (!parent_) SORVANE_THROW("fileProvider is NULL");
}

const char* RelativeFileProvider::className() const {
    return "Relative";
}

std::string RelativeFileProvider::getMainDir() const {
    return mainDir_;
}

std::string RelativeFileProvider::resolve(const std::string& name) const {
    fs::path path(name);
    if (path.has_root_directory()) return name;
    return (fs::path(mainDir_) / path).string();
}

bool RelativeFileProvider::exists(const std::string& name) const {
    return parent_->exists(resolve(name));
}

int64_t RelativeFileProvider::getDataSize(const std::string& name) const {
    return parent_->getDataSize(resolve(name));
}

int64_t RelativeFileProvider::getData(void* out, int64_t outSize, const std::string& name, int64_t offset) const {
    return parent_->getData(out, outSize, resolve(name), offset);
}

std::string RelativeFileProvider::getString(const std::string& name, int64_t offset) const {
    return parent_->getString(resolve(name), offset);
}

void RelativeFileProvider::create(const std::string& name, const void* data, int64_t size) {
    parent_->create(resolve(name), data, size);
}

void RelativeFileProvider::createBlocks(const std::string& name, const Block* blocks, size_t count) {
    parent_->createBlocks(resolve(name), blocks, count);
}

void RelativeFileProvider::createFromFile(const std::string& name, const std::string& path, bool overwrite) {
    parent_->createFromFile(resolve(name), path, overwrite);
}

} // namespace sorvane::archive
