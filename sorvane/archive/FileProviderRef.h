#ifndef SORVANE_ARCHIVE_FILEPROVIDERREF_H
#define SORVANE_ARCHIVE_FILEPROVIDERREF_H

#include <cstdint>
#include <memory>
#include <string>

#include "sorvane/archive/FileProvider.h"

namespace sorvane::archive {

// The handle the flat interface hands out: one shared reference to a
// provider. Every operation on an empty handle fails with "fileProvider is NULL".
class SORVANE_API FileProviderRef {
public:
    FileProviderRef() = default;
    explicit FileProviderRef(std::shared_ptr<FileProvider> provider);
    virtual ~FileProviderRef();

    const std::shared_ptr<FileProvider>& get() const { return provider_; }
    void set(std::shared_ptr<FileProvider> provider) { provider_ = std::move(provider); }

    std::string className() const;
    std::string getMainDir() const;
    void close();
    bool exists(const std::string& name) const;
    int64_t getDataSize(const std::string& name) const;
    int64_t getData(void* out, int64_t outSize, const std::string& name, int64_t offset) const;
    std::string getString(const std::string& name, int64_t offset) const;
    void create(const std::string& name, const void* data, int64_t size);
    void createFromFile(const std::string& name, const std::string& path, bool overwrite);

private:
    FileProvider& provider() const;

    std::shared_ptr<FileProvider> provider_;
};

} // namespace sorvane::archive

#endif
