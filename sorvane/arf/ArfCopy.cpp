#include "sorvane/arf/ArfCopy.h"

#include <map>
#include <optional>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "sorvane/archive/JsonImporter.h"
#include "sorvane/arf/node/RootNode.h"
#include "sorvane/arf/node/data/DataNodes.h"

namespace sorvane::arf {

namespace {

void makeParentFolder(const std::filesystem::path& path) {
    if (Arf::detectStorageMode(path) != MEMORY_ONLY && path.has_parent_path())
        std::filesystem::create_directories(path.parent_path());
}

// How many items use each uri: a file of its own keeps its name in the copy,
// parts of a shared file get names of their own.
std::map<std::string, int> countUses(const DataNodes& items) {
    std::map<std::string, int> uses;
    const int64_t count = items.getNodeSize();
    for (int64_t i = 0; i < count; ++i) ++uses[items.getByIndex(i)->getUri()];
    return uses;
}

// Items that share an id cannot be taken out and added again one by one (the
// second add of the id fails while its twin is still in the list).
bool hasSharedIds(const DataNodes& items) {
    std::set<int64_t> ids;
    const int64_t count = items.getNodeSize();
    for (int64_t i = 0; i < count; ++i)
        if (!ids.insert(items.getByIndex(i)->getId()).second) return true;
    return false;
}

// What a payload is copied with: read while the item is still there, since
// the moving copy takes the item away before it adds the new one.
struct PayloadCopy {
    std::string bytes;
    std::string uri;
    std::string name;
    std::string type;
    int64_t id = 0;
    bool embedded = false;
    std::optional<std::string> compression;
    std::optional<int64_t> protection;
};

PayloadCopy readPayload(Data item) {
    PayloadCopy copy;
    copy.uri = item.uri.get();
    copy.embedded = copy.uri.rfind("data:", 0) == 0;
    // Sized by the checked read: a stored "byteLength" alone could claim any size.
    copy.bytes = item.getString();
    copy.name = item.name.get();
    copy.type = item.type.get();
    copy.id = item.id.get();
    if (item.compression.isPropertyPresent()) copy.compression = item.compression.get();
    if (item.protection.isPropertyPresent()) copy.protection = item.protection.get();
    return copy;
}

// Stores the payload where the target's storage mode puts it.
void addPayload(const PayloadCopy& payload, Arf& target, const std::map<std::string, int>& uses) {
    static const char none = 0;
    const auto found = uses.find(payload.uri);
    const char* keep = !payload.embedded && found != uses.end() && found->second == 1 ? payload.uri.c_str() : nullptr;
    Data copy = target.data.addContent(payload.bytes.empty() ? &none : payload.bytes.data(),
                                       static_cast<int64_t>(payload.bytes.size()), payload.embedded,
                                       payload.type.c_str(), keep, payload.name.c_str(), payload.id);
    if (payload.compression) copy.compression.set(*payload.compression);
    if (payload.protection) copy.protection.set(*payload.protection);
}

} // namespace

Arf saveArfAs(const Arf& source, const std::filesystem::path& path) {
    makeParentFolder(path);
    Arf target = Arf::create(path);
    // The tree goes across as its JSON text, read into the new document; the
    // text is dropped before the payloads are copied, so it adds nothing to
    // the peak of a save.
    {
        const std::string text = source.toJsonString();
        archive::JsonImporter importer(text.data(), text.size());
        target.fromJson(importer);
    }
    auto& items = *target.getRoot()->getData();
    const auto uses = countUses(items);
    const int64_t count = items.getNodeSize();
    for (int64_t i = 0; i < count; ++i) items.removeByIndex(0);
    auto sourceItems = source.data.get();
    for (int64_t i = 0; i < count; ++i) addPayload(readPayload(sourceItems.getByIndex(i)), target, uses);
    target.save();
    return target;
}

Arf saveArfAs(Arf&& source, const std::filesystem::path& path) {
    const std::shared_ptr<RootNode> root = source.getRoot();
    if (root->getData() && hasSharedIds(*root->getData())) return saveArfAs(static_cast<const Arf&>(source), path);
    makeParentFolder(path);
    // The new storage, as creating a document there makes it.
    std::shared_ptr<archive::FileProvider> provider;
    std::string mainFileName;
    StorageMode mode = AUTO;
    {
        const Arf empty = Arf::create(path);
        provider = empty.getFileProvider();
        mainFileName = empty.getMainFileName();
        mode = empty.getStorageMode();
    }
    const std::shared_ptr<archive::FileProvider> oldProvider = root->getFileProvider();
    const std::string oldMainFileName = root->getMainFileName();
    const StorageMode oldMode = root->getStorageMode();
    // Bytes kept for the new files would be found under old names.
    const bool keepRawData = root->getKeepRawData();
    root->setKeepRawData(false);
    Arf target(root, false);
    try {
        const auto& items = root->getData();
        const int64_t count = items ? items->getNodeSize() : 0;
        const auto uses = items ? countUses(*items) : std::map<std::string, int>();
        // One payload at a time: read from the old storage, then the item is
        // replaced by one at the end of the list, stored in the new one.
        for (int64_t i = 0; i < count; ++i) {
            const PayloadCopy payload = readPayload(target.data.get().getByIndex(0));
            root->__setStorage(provider, mainFileName, mode);
            items->removeByIndex(0);
            addPayload(payload, target, uses);
            root->__setStorage(oldProvider, oldMainFileName, oldMode);
        }
    } catch (...) {
        root->__setStorage(oldProvider, oldMainFileName, oldMode);
        root->setKeepRawData(keepRawData);
        throw;
    }
    root->__setStorage(provider, mainFileName, mode);
    root->setKeepRawData(keepRawData);
    target.save();
    return target;
}

} // namespace sorvane::arf
