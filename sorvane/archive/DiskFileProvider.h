#ifndef SORVANE_ARCHIVE_DISKFILEPROVIDER_H
#define SORVANE_ARCHIVE_DISKFILEPROVIDER_H

#include <filesystem>
#include <string>

#include "sorvane/archive/FileProvider.h"

namespace sorvane::archive {

// Items are files under a main directory. Names with a root directory are
// used as they are; others are joined to the main directory (an empty main
// directory means the working directory). Names are not canonized.
class SORVANE_API DiskFileProvider : public FileProvider {
public:
    explicit DiskFileProvider(const std::string& mainDir = std::string());

    using FileProvider::create;

    const char* className() const override;
    std::string getMainDir() const override;
    bool exists(const std::string& name) const override;
    int64_t getDataSize(const std::string& name) const override;
    int64_t getData(void* out, int64_t outSize, const std::string& name, int64_t offset) const override;
    void getRange(void* out, int64_t size, const std::string& name, int64_t offset) const override;
    std::string getString(const std::string& name, int64_t offset) const override;
    // Creates the parent directories first.
    void create(const std::string& name, const void* data, int64_t size) override;
    void createBlocks(const std::string& name, const Block* blocks, size_t count) override;
    // Copies `path` unless the target is the same file, or exists and
    // `overwrite` is false; an existing target is replaced only by a newer file.
    void createFromFile(const std::string& name, const std::string& path, bool overwrite) override;

    // The file-system path a name stands for.
    std::filesystem::path resolve(const std::string& name) const;

private:
    std::string mainDir_;
};

} // namespace sorvane::archive

#endif
