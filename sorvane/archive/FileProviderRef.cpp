#include "sorvane/archive/FileProviderRef.h"

#include "sorvane/core/RuntimeException.h"

namespace sorvane::archive {

FileProviderRef::FileProviderRef(std::shared_ptr<FileProvider> provider) : provider_(std::move(provider)) {}

FileProviderRef::~FileProviderRef() = default;

FileProvider& FileProviderRef::provider() const {
    if (!provider_) SORVANE_THROW("fileProvider is NULL");
    return *provider_;
}

std::string FileProviderRef::className() const {
    return provider().className();
}

std::string FileProviderRef::getMainDir() const {
    return provider().getMainDir();
}

void FileProviderRef::close() {
    provider().close();
}

bool FileProviderRef::exists(const std::string& name) const {
    return provider().exists(name);
}

int64_t FileProviderRef::getDataSize(const std::string& name) const {
    return provider().getDataSize(name);
}

int64_t FileProviderRef::getData(void* out, int64_t outSize, const std::string& name, int64_t offset) const {
    return provider().getData(out, outSize, name, offset);
}

std::string FileProviderRef::getString(const std::string& name, int64_t offset) const {
    return provider().getString(name, offset);
}

void FileProviderRef::create(const std::string& name, const void* data, int64_t size) {
    provider().create(name, data, size);
}

void FileProviderRef::createFromFile(const std::string& name, const std::string& path, bool overwrite) {
    provider().createFromFile(name, path, overwrite);
}

} // namespace sorvane::archive
