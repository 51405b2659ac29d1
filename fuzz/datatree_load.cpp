// Arbitrary bytes read as a DataTree file, written again, and the written
// text read back: whatever was read must be written as readable JSON.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <sstream>
#include <string>

#include "sorvane/archive/JsonImporter.h"
#include "sorvane/core/RuntimeException.h"
#include "sorvane/datatree/DataTree.h"

namespace {

sorvane::DataTree read(const std::string& text, sorvane::DataTreeImport flags) {
    std::istringstream stream(text);
    sorvane::archive::JsonImporter importer(stream);
    return sorvane::DataTree::createFromJson(importer, flags);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string input(reinterpret_cast<const char*>(data), size);
    const auto flags = (size > 0 && (data[0] & 1)) ? sorvane::DATATREE_IMPORT_KEEP_NUMBER_LISTS
                                                   : sorvane::DATATREE_IMPORT_DEFAULT;
    std::string written;
    try {
        sorvane::DataTree tree = read(input, flags);
        written = tree.toJsonString();
        // The reader makes no NaN, so every value equals itself.
        if (!tree.equals(tree)) std::abort();
    } catch (const sorvane::RuntimeException&) {
        return 0;
    }
    try {
        sorvane::DataTree again = read(written, flags);
        if (again.toJsonString().empty()) std::abort();
    } catch (const sorvane::RuntimeException& e) {
        std::fprintf(stderr, "written text does not read back: %s\n%s\n", e.what(), written.c_str());
        std::abort();
    }
    return 0;
}
