#include <memory>
#include <optional>
#include <vector>

#include "sorvane/arf/property/data/DataList.h"
#include "sorvane/datatree/DataTree.h"
#include "sorvane/flat/DataFrame.h"
#include "sorvane/flat/Frame.h"
#include "sorvane/gltf2/Gltf.h"
#include "sorvane/sorvane.h"

namespace flat = sorvane::flat;
using sorvane::arf::Data;
using sorvane::arf::DataList;

namespace {

constexpr const char* kData = "data is NULL";
constexpr const char* kDataList = "dataList is NULL";

std::optional<int64_t> idOf(bool autoId, int64_t id) { return autoId ? std::nullopt : std::optional<int64_t>(id); }

std::vector<long> dimsOf(const int64_t* dims, int64_t dimCount) {
    if (dimCount < 0) SORVANE_THROW("Invalid dim count %ld", static_cast<long>(dimCount));
    if (dimCount > 0 && !dims) SORVANE_THROW("dims is NULL");
    return std::vector<long>(dims, dims + dimCount);
}

} // namespace

extern "C" {

int32_t sorvane_arf_Data_getDataSize(int64_t* out, sorvane_arf_Data* self) {
    return flat::get(out, kData, self, [](Data& d) { return d.getDataSize(); });
}

int32_t sorvane_arf_Data_getData(int64_t* out, void* buffer, int64_t bufferSize, sorvane_arf_Data* self) {
    return flat::get(out, kData, self, [&](Data& d) { return d.getData(buffer, bufferSize); });
}

int32_t sorvane_arf_Data_getTensorPtr(DataTree** out, sorvane_arf_Data* self) {
    return flat::get(out, kData, self, [](Data& d) { return d.getTensorPtr(); });
}

int32_t sorvane_arf_Data_getTensorData(int64_t* out, int32_t* pdtype, int64_t* dims, int64_t dimsCapacity,
                                       int64_t* pdimCount, void* buffer, int64_t bufferSize, sorvane_arf_Data* self) {
    return flat::tensorData(out, pdtype, dims, dimsCapacity, pdimCount, kData, self,
                            [&](Data& d, std::vector<long>& sizes, sorvane::arf::DataDType& dtype) {
                                return d.getTensorData(sizes, dtype, buffer, bufferSize);
                            });
}

int32_t sorvane_arf_Data_getGltf(sorvane_gltf2_Gltf** out, sorvane_arf_Data* self, bool readOnly) {
    return flat::get(out, kData, self, [&](Data& d) { return d.getGltfPtr(readOnly); });
}

int32_t sorvane_arf_Data_getColSparseTensorPtr(DataTree** values, DataTree** indices, sorvane_arf_Data* self,
                                               int64_t minCols, int64_t maxCols, bool normalize) {
    return flat::colSparseTensor(values, indices, kData, self,
                                 [&](Data& d) { return d.getColSparseTensor(minCols, maxCols, normalize); });
}

int32_t sorvane_arf_DataList_addDense(sorvane_arf_Data** out, sorvane_arf_DataList* self, const void* buffer,
                                      int64_t size, int32_t dtype, const int64_t* dims, int64_t dimCount,
                                      bool embedded, const char* uri, const char* name, bool autoId, int64_t id) {
    return flat::get(out, kDataList, self, [&](DataList& l) {
        return l.addDensePtr(buffer, size, sorvane::arf::int2DataDType(dtype), dimsOf(dims, dimCount), embedded, uri,
                             name, idOf(autoId, id));
    });
}

int32_t sorvane_arf_DataList_addDenseTensor(sorvane_arf_Data** out, sorvane_arf_DataList* self, DataTree* tensor,
                                            bool embedded, const char* uri, const char* name, bool autoId,
                                            int64_t id) {
    if (self && out && !tensor) return flat::fail("tensor is NULL");
    return flat::get(out, kDataList, self, [&](DataList& l) {
        return l.addDenseTensorPtr(*tensor, embedded, uri, name, idOf(autoId, id));
    });
}

int32_t sorvane_arf_DataList_addSparse(sorvane_arf_Data** out, sorvane_arf_DataList* self, const void* indices,
                                       int64_t indicesSize, int32_t itype, const void* values, int64_t valuesSize,
                                       int32_t dtype, const int64_t* dims, int64_t dimCount, int64_t count,
                                       bool embedded, const char* uri, const char* name, bool autoId, int64_t id) {
    return flat::get(out, kDataList, self, [&](DataList& l) {
        return l.addSparsePtr(indices, indicesSize, sorvane::arf::int2DataIType(itype), values, valuesSize,
                              sorvane::arf::int2DataDType(dtype), dimsOf(dims, dimCount), count, embedded, uri, name,
                              idOf(autoId, id));
    });
}

int32_t sorvane_arf_DataList_addSparseFromDense(sorvane_arf_Data** out, sorvane_arf_DataList* self,
                                                const void* buffer, int64_t valueCount, int32_t dtype,
                                                const int64_t* dims, int64_t dimCount, int32_t itype, bool embedded,
                                                const char* uri, const char* name, bool autoId, int64_t id) {
    return flat::get(out, kDataList, self, [&](DataList& l) {
        return l.addSparseFromDensePtr(buffer, valueCount, static_cast<sorvane::arf::DataDType>(dtype),
                                       dimsOf(dims, dimCount), static_cast<sorvane::arf::DataIType>(itype), embedded,
                                       uri, name, idOf(autoId, id));
    });
}

int32_t sorvane_arf_DataList_addSparseTensor(sorvane_arf_Data** out, sorvane_arf_DataList* self, DataTree* tensor,
                                             int32_t itype, bool embedded, const char* uri, const char* name,
                                             bool autoId, int64_t id) {
    if (self && out && !tensor) return flat::fail("tensor is NULL");
    return flat::get(out, kDataList, self, [&](DataList& l) {
        return l.addSparseTensorPtr(*tensor, static_cast<sorvane::arf::DataIType>(itype), embedded, uri, name,
                                    idOf(autoId, id));
    });
}

int32_t sorvane_arf_DataList_addGlb(sorvane_arf_Data** out, sorvane_arf_DataList* self, const char* uri,
                                    const char* localFile, const char* name, bool autoId, int64_t id) {
    return flat::get(out, kDataList, self, [&](DataList& l) {
        const std::string file = flat::str(localFile);
        return l.addGlbPtr(uri, file.c_str(), name, idOf(autoId, id));
    });
}

} // extern "C"
