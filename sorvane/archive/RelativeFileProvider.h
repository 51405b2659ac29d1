#ifndef SORVANE_ARCHIVE_RELATIVEFILEPROVIDER_H
#define SORVANE_ARCHIVE_RELATIVEFILEPROVIDER_H

#include <memory>
#include <string>

#include "sorvane/archive/FileProvider.h"

namespace sorvane::archive {

// A subdirectory of another provider (a directory, an archive, memory): each
// name is joined to the main directory, unless it has a root directory, and
// handed to the parent.
class SORVANE_API RelativeFileProvider : public FileProvider {
public:
    RelativeFileProvider(std::shared_ptr<FileProvider> parent, const std::string& mainDir);

    using FileProvider::create;

    const char* className() const override;
    std::string getMainDir() const override;
    bool exists(const std::string& name) const override;
    int64_t getDataSize(const std::string& name) const override;
    int64_t getData(void* out, int64_t outSize, const std::string& name, int64_t offset) const override;
    std::string getString(const std::string& name, int64_t offset) const override;
    void create(const std::string& name, const void* data, int64_t size) override;
    // Forwarded whole, so that the pieces are not put together here first.
    void createBlocks(const std::string& name, const Block* blocks, size_t count) override;
    void createFromFile(const std::string& name, const std::string& path, bool overwrite) override;

    const std::shared_ptr<FileProvider>& getParent() const { return parent_; }
    // The name as the parent sees it.
    std::string resolve(const std::string& name) const;

private:
    std::shared_ptr<FileProvider> parent_;
    std::string mainDir_;
};

} // namespace sorvane::archive

#endif
