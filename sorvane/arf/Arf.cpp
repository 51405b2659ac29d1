#include "sorvane/arf/Arf.h"

#include <sstream>

#include "sorvane/archive/DiskFileProvider.h"
#include "sorvane/archive/FileProvider.h"
#include "sorvane/archive/MemoryFileProvider.h"
#include "sorvane/archive/Zip.h"
#include "sorvane/core/RuntimeException.h"
#include "sorvane/core/file.h"

namespace sorvane::arf {

namespace {
constexpr const char kMemoryPrefix[] = "memory:";
constexpr size_t kMemoryPrefixLength = sizeof kMemoryPrefix - 1;
} // namespace

Arf::Arf() : Arf(std::make_shared<RootNode>(), false) {}

Arf::Arf(std::shared_ptr<RootNode> root_, bool readOnly_)
    : root(std::move(root_)), readOnly(readOnly_), preamble(root, readOnly), identity(root, readOnly),
      structure(root, readOnly), components(root, readOnly), data(root, readOnly) {}

Arf::Arf(const std::shared_ptr<archive::FileProvider>& provider, const std::string& mainFileName, StorageMode mode,
         bool readOnly_)
    : Arf(std::make_shared<RootNode>(provider, mainFileName, mode), readOnly_) {}

void Arf::init() { root->init(); }

StorageMode Arf::detectStorageMode(const std::filesystem::path& path, StorageMode mode) {
    if (mode != AUTO) return mode;
    const std::string text = path.string();
    if (text.size() >= kMemoryPrefixLength && text.compare(0, kMemoryPrefixLength, kMemoryPrefix) == 0)
        return MEMORY_ONLY;
    const std::string extension = getFileExtension(text);
    if (extension == ".arf" || extension == ".json") return MULTIPLE_FILES;
    if (extension == ".arfz" || extension == ".zip") return SINGLE_FILE;
    SORVANE_THROW("Unable to guess storage mode from extension");
}

Arf Arf::fromPath(const std::filesystem::path& path, bool load, bool readOnly_) {
    const StorageMode mode = detectStorageMode(path, AUTO);
    std::shared_ptr<archive::FileProvider> provider;
    std::string mainFileName = "arf.json";
    switch (mode) {
    case MULTIPLE_FILES:
        provider = std::make_shared<archive::DiskFileProvider>(path.parent_path().string());
        mainFileName = path.filename().string();
        break;
    case SINGLE_FILE:
        // A document loaded for changes must be able to save into its archive.
        if (!load) provider = archive::Zip::createShared(path);
        else if (readOnly_) provider = archive::Zip::openShared(path);
        else provider = archive::Zip::openForChangesShared(path);
        break;
    case MEMORY_ONLY: return fromMemory(path.native(), load, readOnly_);
    default: SORVANE_THROW("Unsupported storage mode");
    }
    Arf arf(provider, mainFileName, mode, load ? readOnly_ : false);
    if (load) arf.root->__load();
    else arf.init();
    return arf;
}

Arf Arf::fromText(std::string_view path, bool load, bool readOnly_) {
    if (path.size() >= kMemoryPrefixLength && path.compare(0, kMemoryPrefixLength, kMemoryPrefix) == 0)
        return fromMemory(path, load, readOnly_);
    return fromPath(std::filesystem::path(path), load, readOnly_);
}

Arf Arf::fromMemory(std::string_view text, bool load, bool readOnly_) {
    // The text goes into the store once, straight from the path.
    auto memory = std::make_shared<archive::MemoryFileProvider>();
    if (load && text.size() <= kMemoryPrefixLength) SORVANE_THROW("No initial JSON");
    if (text.size() > kMemoryPrefixLength)
        memory->create("arf.json", text.data() + kMemoryPrefixLength,
                       static_cast<int64_t>(text.size() - kMemoryPrefixLength));
    Arf arf(memory, "arf.json", MEMORY_ONLY, load ? readOnly_ : false);
    if (load) arf.root->__load();
    else arf.init();
    return arf;
}

Arf Arf::create(const std::filesystem::path& path) { return fromPath(path, false, false); }

Arf* Arf::createPtr(const std::filesystem::path& path) { return new Arf(create(path)); }

Arf Arf::load(const std::filesystem::path& path, bool readOnly_) { return fromPath(path, true, readOnly_); }

Arf* Arf::loadPtr(const std::filesystem::path& path, bool readOnly_) { return new Arf(load(path, readOnly_)); }

Arf Arf::create(const std::string& path) { return fromText(path, false, false); }

Arf Arf::create(const char* path) { return fromText(path ? path : "", false, false); }

Arf* Arf::createPtr(const std::string& path) { return new Arf(create(path)); }

Arf* Arf::createPtr(const char* path) { return new Arf(create(path)); }

Arf Arf::load(const std::string& path, bool readOnly_) { return fromText(path, true, readOnly_); }

Arf Arf::load(const char* path, bool readOnly_) { return fromText(path ? path : "", true, readOnly_); }

Arf* Arf::loadPtr(const std::string& path, bool readOnly_) { return new Arf(load(path, readOnly_)); }

Arf* Arf::loadPtr(const char* path, bool readOnly_) { return new Arf(load(path, readOnly_)); }

Arf Arf::load(const std::shared_ptr<archive::FileProvider>& provider, const std::string& name, StorageMode mode,
              bool readOnly_) {
    std::string mainFileName = name;
    if (mode == AUTO) {
        const std::string className = provider ? provider->className() : "";
        if (className == "Zip" || className == "Memory") {
            mode = className == "Zip" ? SINGLE_FILE : MEMORY_ONLY;
            mainFileName = "arf.json";
        } else {
            mode = MULTIPLE_FILES;
        }
    }
    Arf arf(provider, mainFileName, mode, readOnly_);
    arf.root->__load();
    return arf;
}

Arf* Arf::loadPtr(const std::shared_ptr<archive::FileProvider>& provider, const std::string& name, StorageMode mode,
                  bool readOnly_) {
    return new Arf(load(provider, name, mode, readOnly_));
}

void Arf::save() const { root->save(); }

void Arf::close() { root->close(); }

void Arf::toJson(archive::JsonExporter& exporter) const { root->toJson(exporter); }

void Arf::fromJson(archive::JsonImporter& importer) const { root->fromJson(importer); }

std::string Arf::toJsonString(const archive::JsonExporter::Options& options) const {
    return root->toJsonString(options);
}

StorageMode Arf::getStorageMode() const { return root->getStorageMode(); }

std::string Arf::getMainDir() const {
    const auto& provider = root->getFileProvider();
    if (!provider) SORVANE_THROW("No file provider");
    return provider->getMainDir();
}

std::string Arf::getMainFileName() const { return root->getMainFileName(); }

std::shared_ptr<archive::FileProvider> Arf::getFileProvider() const { return root->getFileProvider(); }

} // namespace sorvane::arf
