#include "sorvane/arf/ArfCopy.h"

#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "sorvane/archive/JsonImporter.h"
#include "sorvane/arf/node/RootNode.h"
#include "sorvane/arf/node/data/DataNodes.h"

namespace sorvane::arf {

Arf saveArfAs(const Arf& source, const std::filesystem::path& path) {
    if (Arf::detectStorageMode(path) != MEMORY_ONLY && path.has_parent_path())
        std::filesystem::create_directories(path.parent_path());
    Arf target = Arf::create(path);
    // The tree goes across as its JSON text, read into the new document; the
    // text is dropped before the payloads are copied, so it adds nothing to
    // the peak of a save.
    {
        const std::string text = source.toJsonString();
        archive::JsonImporter importer(text.data(), text.size());
        target.fromJson(importer);
    }
    // Payloads go across one by one: each is read from the source, wherever
    // it lies (own file, shared file, archive entry, "data:" uri), and stored
    // again where the target's storage mode puts it.
    auto& items = *target.getRoot()->getData();
    const int64_t count = items.getNodeSize();
    std::map<std::string, int> uses;
    for (int64_t i = 0; i < count; ++i) ++uses[items.getByIndex(i)->getUri()];
    for (int64_t i = 0; i < count; ++i) items.removeByIndex(0);
    auto sourceItems = source.data.get();
    for (int64_t i = 0; i < count; ++i) {
        Data item = sourceItems.getByIndex(i);
        const std::string uri = item.uri.get();
        const bool embedded = uri.rfind("data:", 0) == 0;
        // Sized by the checked read: a stored "byteLength" alone could claim any size.
        const std::string bytes = item.getString();
        static const char none = 0;
        // A file of its own keeps its name; parts of a shared file get names of their own.
        const char* keep = !embedded && uses[uri] == 1 ? uri.c_str() : nullptr;
        const std::string name = item.name.get();
        const std::string type = item.type.get();
        Data copy = target.data.addContent(bytes.empty() ? &none : bytes.data(), static_cast<int64_t>(bytes.size()),
                                           embedded, type.c_str(), keep, name.c_str(), item.id.get());
        if (item.compression.isPropertyPresent()) copy.compression.set(item.compression.get());
        if (item.protection.isPropertyPresent()) copy.protection.set(item.protection.get());
    }
    target.save();
    return target;
}

} // namespace sorvane::arf
