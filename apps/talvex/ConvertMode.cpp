#include "apps/talvex/ConvertMode.h"

#include <filesystem>
#include <iostream>
#include <map>
#include <sstream>
#include <vector>

#include "sorvane/arf/Arf.h"

namespace talvex_app {

ConvertMode::ConvertMode(args::ArgumentParser& parser_)
    : Mode(parser_),
      input(parser_, "IN", "the document to read (.arf/.json, .arfz/.zip)", args::Options::Required),
      output(parser_, "OUT", "the document to write; its extension chooses the storage mode", args::Options::Required) {
    parser_.Description("Writes an ARF document again in the storage mode of OUT: a main JSON file with its "
                        "payload files (.arf, .json) or an archive (.arfz, .zip). Every payload is carried across; "
                        "embedded ones stay embedded.");
}

void ConvertMode::execute() {
    using namespace sorvane::arf;
    Arf source = Arf::load(args::get(input), true);
    const std::filesystem::path out = args::get(output);
    if (out.has_parent_path()) std::filesystem::create_directories(out.parent_path());
    Arf target = Arf::create(out);
    // The tree goes across as its JSON text, read into the new document.
    std::istringstream text(source.toJsonString());
    sorvane::archive::JsonImporter importer(text);
    target.fromJson(importer);
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
        std::vector<uint8_t> bytes(static_cast<size_t>(item.getDataSize()));
        if (!bytes.empty()) item.getData(bytes.data(), static_cast<int64_t>(bytes.size()));
        static const uint8_t none = 0;
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
    std::cout << args::get(input) << " (" << source.getStorageMode() << ") -> " << args::get(output) << " ("
              << target.getStorageMode() << ")" << std::endl;
}

} // namespace talvex_app
