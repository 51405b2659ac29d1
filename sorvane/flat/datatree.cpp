// Flat functions over sorvane::DataTree handles.
#include <memory>
#include <vector>

#include "sorvane/datatree/DataTree.h"
#include "sorvane/flat/Frame.h"
#include "sorvane/flat/sorvane_datatree.h"

using sorvane::DataTreeType;
using sorvane::ScalarType;
namespace flat = sorvane::flat;

namespace {

constexpr const char* kNull = "dataTree is NULL";

ScalarType scalar(sorvane_ScalarType type) { return static_cast<ScalarType>(type); }

std::vector<long> sizesOf(const int64_t* sizes, int64_t dimCount) {
    if (dimCount < 0) throw std::invalid_argument("Invalid size");
    if (!sizes && dimCount > 0) throw std::invalid_argument("sizes is NULL");
    return std::vector<long>(sizes, sizes + dimCount);
}

} // namespace

extern "C" {

int32_t sorvane_datatree_DataTree_copy(DataTree** out, const DataTree* dataTree) {
    return flat::get(out, kNull, dataTree, [](const DataTree& t) { return new DataTree(t); });
}

int32_t sorvane_datatree_DataTree_delete(DataTree* dataTree) { return flat::destroy(kNull, dataTree); }

int32_t sorvane_datatree_DataTree_getType(sorvane_DataTreeType* out, const DataTree* dataTree) {
    return flat::get(out, kNull, dataTree, [](const DataTree& t) { return static_cast<int32_t>(t.getType()); });
}

int32_t sorvane_datatree_DataTree_equals(bool* out, const DataTree* dataTree, const DataTree* other) {
    if (dataTree && !other) return flat::fail(kNull);
    return flat::get(out, kNull, dataTree, [other](const DataTree& t) { return t.equals(*other); });
}

int32_t sorvane_datatree_DataTree_repr(char* out, int64_t* outSize, const DataTree* dataTree) {
    return flat::text(out, outSize, kNull, dataTree, [](const DataTree& t) { return t.toJsonString(); });
}

int32_t sorvane_datatree_DataTree_toJsonString(char* out, int64_t* outSize, const DataTree* dataTree) {
    return flat::text(out, outSize, kNull, dataTree, [](const DataTree& t) { return t.toJsonString(); });
}

int32_t sorvane_datatree_DataTree_createNull(DataTree** out) {
    return flat::create(out, [] { return DataTree::createNullPtr(); });
}

int32_t sorvane_datatree_DataTree_createObject(DataTree** out) {
    return flat::create(out, [] { return DataTree::createObjectPtr(); });
}

int32_t sorvane_datatree_DataTree_createList(DataTree** out) {
    return flat::create(out, [] { return DataTree::createListPtr(); });
}

int32_t sorvane_datatree_DataTree_createInteger(DataTree** out, int64_t value) {
    return flat::create(out, [&] { return DataTree::createIntegerPtr(value); });
}

int32_t sorvane_datatree_DataTree_createFloat(DataTree** out, double value) {
    return flat::create(out, [&] { return DataTree::createFloatPtr(value); });
}

int32_t sorvane_datatree_DataTree_createString(DataTree** out, const char* value) {
    return flat::create(out, [&] { return new DataTree(flat::str(value)); });
}

int32_t sorvane_datatree_DataTree_createArray(DataTree** out, const void* data, int64_t dataSize, int64_t count,
                                              sorvane_ScalarType type) {
    return flat::create(out, [&] { return DataTree::createArrayPtr(data, dataSize, count, scalar(type)); });
}

int32_t sorvane_datatree_DataTree_createTensor(DataTree** out, const void* data, int64_t dataSize,
                                               const int64_t* sizes, int64_t dimCount, sorvane_ScalarType type) {
    return flat::create(out, [&] {
        if (!data) return new DataTree(DataTreeType::Tensor, ScalarType::Invalid);
        std::vector<long> dims = sizesOf(sizes, dimCount);
        return DataTree::createTensorPtr(data, dataSize, dims.data(), static_cast<long>(dims.size()), scalar(type));
    });
}

#define SORVANE_FLAT_IS(name)                                                                      \
    int32_t sorvane_datatree_DataTree_##name(bool* out, const DataTree* dataTree) {                 \
        return flat::get(out, kNull, dataTree, [](const DataTree& t) { return t.name(); });         \
    }
SORVANE_FLAT_IS(isNull)
SORVANE_FLAT_IS(isInteger)
SORVANE_FLAT_IS(isFloat)
SORVANE_FLAT_IS(isString)
SORVANE_FLAT_IS(isObject)
SORVANE_FLAT_IS(isArray)
SORVANE_FLAT_IS(isTensor)
SORVANE_FLAT_IS(isList)
#undef SORVANE_FLAT_IS

int32_t sorvane_datatree_DataTree_getInteger(int64_t* out, const DataTree* dataTree) {
    return flat::get(out, kNull, dataTree, [](const DataTree& t) { return static_cast<int64_t>(t.getInteger()); });
}

int32_t sorvane_datatree_DataTree_getFloat(double* out, const DataTree* dataTree) {
    return flat::get(out, kNull, dataTree, [](const DataTree& t) { return t.getFloat(); });
}

int32_t sorvane_datatree_DataTree_setInteger(DataTree* dataTree, int64_t value) {
    return flat::call(kNull, dataTree, [&](DataTree& t) { t.setInteger(value); });
}

int32_t sorvane_datatree_DataTree_setFloat(DataTree* dataTree, double value) {
    return flat::call(kNull, dataTree, [&](DataTree& t) { t.setFloat(value); });
}

int32_t sorvane_datatree_DataTree_setString(DataTree* dataTree, const char* value) {
    return flat::call(kNull, dataTree, [&](DataTree& t) { t.setString(flat::str(value)); });
}

int32_t sorvane_datatree_DataTree_getString(char* out, int64_t* outSize, const DataTree* dataTree) {
    return flat::text(out, outSize, kNull, dataTree, [](const DataTree& t) { return t.getString(); });
}

int32_t sorvane_datatree_DataTree_getScalarType(sorvane_ScalarType* out, const DataTree* dataTree) {
    return flat::get(out, kNull, dataTree,
                     [](const DataTree& t) { return static_cast<int32_t>(t.getScalarType()); });
}

int32_t sorvane_datatree_DataTree_getBuffer(void** out, const DataTree* dataTree) {
    return flat::get(out, kNull, dataTree,
                     [](const DataTree& t) { return const_cast<void*>(t.getBuffer()); });
}

int32_t sorvane_datatree_DataTree_getValueCount(int64_t* out, const DataTree* dataTree) {
    return flat::get(out, kNull, dataTree, [](const DataTree& t) { return static_cast<int64_t>(t.getValueCount()); });
}

int32_t sorvane_datatree_DataTree_getValues(void* out, int64_t* outSize, const DataTree* dataTree) {
    return flat::values(out, outSize, kNull, dataTree, [](const DataTree& t) {
        const long count = t.getValueCount();
        const long bytes = count == 0 ? 0 : count * sorvane::getScalarSize(t.getScalarType());
        return flat::Bytes{t.getBuffer(), bytes};
    });
}

int32_t sorvane_datatree_DataTree_getSize(int64_t* out, const DataTree* dataTree) {
    return flat::get(out, kNull, dataTree, [](const DataTree& t) { return static_cast<int64_t>(t.getSize()); });
}

int32_t sorvane_datatree_DataTree_getTensorDim(int64_t* out, const DataTree* dataTree) {
    return flat::get(out, kNull, dataTree, [](const DataTree& t) { return static_cast<int64_t>(t.getTensorDim()); });
}

int32_t sorvane_datatree_DataTree_getTensorSize(int64_t* out, const DataTree* dataTree, int64_t dim) {
    return flat::get(out, kNull, dataTree,
                     [&](const DataTree& t) { return static_cast<int64_t>(t.getTensorSize(dim)); });
}

int32_t sorvane_datatree_DataTree_getTensorSizes(int64_t* out, int64_t outSize, int64_t* pvalueCount,
                                                 const DataTree* dataTree) {
    if (!dataTree) return flat::fail("node is NULL");
    if (!pvalueCount) return flat::fail("pvalueCount is NULL");
    std::vector<long> sizes;
    if (flat::guard([&] { sizes = dataTree->getTensorSizes(); }) != 0) return -1;
    const int64_t dim = static_cast<int64_t>(sizes.size());
    if (*pvalueCount != dim) *pvalueCount = dim;
    if (!out) return 0;
    if (outSize < dim * static_cast<int64_t>(sizeof(int64_t))) return -1;
    for (int64_t i = 0; i < dim; ++i) out[i] = sizes[static_cast<size_t>(i)];
    return 0;
}

int32_t sorvane_datatree_DataTree_setTensorData(DataTree* dataTree, const void* data, int64_t dataSize,
                                                const int64_t* sizes, int64_t dimCount, sorvane_ScalarType type) {
    return flat::call(kNull, dataTree, [&](DataTree& t) {
        std::vector<long> dims = sizesOf(sizes, dimCount);
        t.setTensorData(data, dataSize, dims, scalar(type));
    });
}

} // extern "C"
