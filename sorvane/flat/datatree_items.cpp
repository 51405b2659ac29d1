// Flat functions over the items of DataTree objects and lists, and files.
#include <fstream>
#include <memory>
#include <stdexcept>
#include <vector>

#include "sorvane/archive/JsonImporter.h"
#include "sorvane/datatree/DataTree.h"
#include "sorvane/flat/Frame.h"
#include "sorvane/flat/sorvane_datatree.h"

using sorvane::ScalarType;
namespace flat = sorvane::flat;

namespace {

constexpr const char* kNull = "dataTree is NULL";

std::vector<long> sizesOf(const int64_t* sizes, int64_t dimCount) {
    if (dimCount < 0) throw std::invalid_argument("Invalid size");
    if (!sizes && dimCount > 0) throw std::invalid_argument("sizes is NULL");
    return std::vector<long>(sizes, sizes + dimCount);
}

} // namespace

extern "C" {

int32_t sorvane_datatree_DataTree_hasItem(bool* out, const DataTree* dataTree, const char* name) {
    return flat::get(out, kNull, dataTree, [&](const DataTree& t) { return t.hasItem(flat::str(name)); });
}

int32_t sorvane_datatree_DataTree_getObjectItem(DataTree** out, const DataTree* dataTree, const char* name) {
    return flat::get(out, kNull, dataTree,
                     [&](const DataTree& t) { return new DataTree(t.getItem(flat::str(name))); });
}

int32_t sorvane_datatree_DataTree_getObjectItemInteger(int64_t* out, const DataTree* dataTree, const char* name) {
    return flat::get(out, kNull, dataTree, [&](const DataTree& t) {
        return static_cast<int64_t>(t.getItem(flat::str(name)).getInteger());
    });
}

int32_t sorvane_datatree_DataTree_getObjectItemString(char* out, int64_t* outSize, const DataTree* dataTree,
                                                      const char* name) {
    return flat::text(out, outSize, kNull, dataTree,
                      [&](const DataTree& t) { return t.getItem(flat::str(name)).getString(); });
}

int32_t sorvane_datatree_DataTree_setObjectItem(DataTree* dataTree, const char* name, const DataTree* item) {
    if (dataTree && !item) return flat::fail(kNull);
    return flat::call(kNull, dataTree, [&](DataTree& t) { t.setItem(flat::str(name), *item); });
}

int32_t sorvane_datatree_DataTree_setObjectItemInteger(DataTree* dataTree, const char* name, int64_t value) {
    return flat::call(kNull, dataTree, [&](DataTree& t) { t.setItem(flat::str(name), DataTree(static_cast<long>(value))); });
}

int32_t sorvane_datatree_DataTree_setObjectItemString(DataTree* dataTree, const char* name, const char* value) {
    return flat::call(kNull, dataTree, [&](DataTree& t) {
        std::string key = flat::str(name);
        t.setItem(key, DataTree(flat::str(value)));
    });
}

int32_t sorvane_datatree_DataTree_setObjectItemTensor(DataTree* dataTree, const char* name, const void* data,
                                                      int64_t dataSize, const int64_t* sizes, int64_t dimCount,
                                                      sorvane_ScalarType type) {
    return flat::call(kNull, dataTree, [&](DataTree& t) {
        std::string key = flat::str(name);
        std::vector<long> dims = sizesOf(sizes, dimCount);
        t.setItem(key, DataTree::createTensor(data, dataSize, dims, static_cast<ScalarType>(type)));
    });
}

int32_t sorvane_datatree_DataTree_getListItem(DataTree** out, const DataTree* dataTree, int64_t index) {
    return flat::get(out, kNull, dataTree, [&](const DataTree& t) { return new DataTree(t.getItem(static_cast<long>(index))); });
}

int32_t sorvane_datatree_DataTree_getListItemInteger(int64_t* out, const DataTree* dataTree, int64_t index) {
    return flat::get(out, kNull, dataTree, [&](const DataTree& t) {
        return static_cast<int64_t>(t.getItem(static_cast<long>(index)).getInteger());
    });
}

int32_t sorvane_datatree_DataTree_getListItemString(char* out, int64_t* outSize, const DataTree* dataTree,
                                                    int64_t index) {
    return flat::text(out, outSize, kNull, dataTree,
                      [&](const DataTree& t) { return t.getItem(static_cast<long>(index)).getString(); });
}

int32_t sorvane_datatree_DataTree_addListItem(DataTree* dataTree, const DataTree* item) {
    if (dataTree && !item) return flat::fail(kNull);
    return flat::call(kNull, dataTree, [&](DataTree& t) { t.addItem(*item); });
}

int32_t sorvane_datatree_DataTree_setListItem(DataTree* dataTree, int64_t index, const DataTree* item) {
    if (dataTree && !item) return flat::fail(kNull);
    return flat::call(kNull, dataTree, [&](DataTree& t) { t.setItem(static_cast<long>(index), *item); });
}

int32_t sorvane_datatree_DataTree_setListItemInteger(DataTree* dataTree, int64_t index, int64_t value) {
    return flat::call(kNull, dataTree,
                      [&](DataTree& t) { t.setItem(static_cast<long>(index), DataTree(static_cast<long>(value))); });
}

int32_t sorvane_datatree_DataTree_setListItemString(DataTree* dataTree, int64_t index, const char* value) {
    return flat::call(kNull, dataTree,
                      [&](DataTree& t) { t.setItem(static_cast<long>(index), DataTree(flat::str(value))); });
}

DataTree* sorvane_loadDataTree(const char* path) {
    DataTree* tree = nullptr;
    flat::guard([&] {
        // No existence check here: a missing file reads as an empty stream and
        // fails in the reader.
        std::ifstream stream(flat::str(path), std::ios::binary);
        sorvane::archive::JsonImporter importer(stream);
        tree = DataTree::createFromJsonPtr(importer, sorvane::DATATREE_IMPORT_DEFAULT);
    });
    return tree;
}

int32_t sorvane_saveDataTree(const char* path, const DataTree* dataTree) {
    return flat::call(kNull, dataTree, [&](const DataTree& t) {
        std::string file = flat::str(path);
        sorvane::saveDataTree(file.c_str(), t);
    });
}

} // extern "C"
