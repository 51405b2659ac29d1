// DataTree to and from JSON text and files.
#include <filesystem>
#include <fstream>
#include <sstream>

#include "sorvane/archive/JsonExporter.h"
#include "sorvane/archive/JsonImporter.h"
#include "sorvane/core/RuntimeException.h"
#include "sorvane/datatree/DataTree.h"
#include "sorvane/datatree/node/JsonValues.h"

namespace sorvane {

void DataTree::toJson(std::ostream& stream) const {
    archive::JsonExporter exporter(stream);
    datatree::detail::JsonStreamBinding binding(exporter, stream);
    getNode().toJson(exporter);
    exporter.flush();
}

std::string DataTree::toJsonString() const {
    std::ostringstream stream;
    toJson(stream);
    return stream.str();
}

std::ostream& operator<<(std::ostream& out, const DataTree& tree) {
    tree.toJson(out);
    return out;
}

namespace {

DataTree* load(const char* path, DataTreeImport flags) {
    if (!path) SORVANE_THROW("No file path");
    std::error_code error;
    if (!std::filesystem::exists(std::filesystem::path(path), error)) SORVANE_THROW("%s does not exist", path);
    std::ifstream stream(path, std::ios::binary);
    archive::JsonImporter importer(stream);
    return DataTree::createFromJsonPtr(importer, flags);
}

} // namespace

DataTree loadDataTree(const char* path, DataTreeImport flags) {
    std::unique_ptr<DataTree> tree(load(path, flags));
    return *tree;
}

DataTree* loadDataTreePtr(const char* path, DataTreeImport flags) { return load(path, flags); }

void saveDataTree(const char* path, const DataTree& tree) {
    if (!path) SORVANE_THROW("No file path");
    std::ofstream stream(path, std::ios::binary | std::ios::trunc);
    if (stream) tree.toJson(stream);
    stream.flush();
    if (!stream) SORVANE_THROW("Error while writing file %s", path);
}

} // namespace sorvane
