#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "sorvane/arf/property/data/DataList.h"
#include "sorvane/flat/Frame.h"
#include "sorvane/gltf2/Gltf.h"
#include "sorvane/gltf2/GltfCopy.h"
#include "sorvane/sorvane.h"

namespace flat = sorvane::flat;
using sorvane::gltf2::Accessor;
using sorvane::gltf2::Buffer;
using sorvane::gltf2::BufferView;
using sorvane::gltf2::Gltf;

namespace {

constexpr const char* kGltf = "gltf is NULL";

std::optional<sorvane::gltf2::BufferViewTarget> targetOf(int32_t target) {
    if (target == 0) return std::nullopt;
    return sorvane::gltf2::int2BufferViewTarget(target);
}

// A byte read whose result must outlive the work that made it.
template <class T, class Read>
int32_t bytes(void* out, int64_t* outSize, const char* nullText, T* self, Read&& read) {
    std::string held;
    return flat::values(out, outSize, nullText, self, [&](T& item) {
        held = read(item);
        return flat::Bytes{held.data(), static_cast<int64_t>(held.size())};
    });
}

template <class T>
int32_t cloneInto(int64_t* out, const char* nullText, T* self, Gltf* target) {
    if (self && out && !target) return flat::fail(kGltf);
    return flat::get(out, nullText, self, [&](T& item) { return item.clone(*target); });
}

} // namespace

extern "C" {

int32_t sorvane_gltf2_Gltf_save(sorvane_gltf2_Gltf* self) {
    return flat::call(kGltf, self, [](Gltf& gltf) {
        // As sorvane_arf_Arf_save: a read-only document never writes back.
        if (gltf.isReadOnly())
            SORVANE_THROW("Saving %s: Forbidden, read-only document", gltf.getMainFileName().c_str());
        gltf.save();
    });
}

int32_t sorvane_gltf2_Gltf_saveAs(sorvane_gltf2_Gltf* self, const char* path) {
    return flat::call(kGltf, self, [&](Gltf& gltf) { sorvane::gltf2::saveGltfAs(gltf, flat::str(path)); });
}

int32_t sorvane_gltf2_Buffer_getBytes(void* out, int64_t* outSize, sorvane_gltf2_Buffer* self) {
    return bytes(out, outSize, "buffer is NULL", self, [](Buffer& b) { return b.getString(0, -1, 1, -1); });
}

int32_t sorvane_gltf2_BufferView_getBytes(void* out, int64_t* outSize, sorvane_gltf2_BufferView* self) {
    return bytes(out, outSize, "bufferView is NULL", self, [](BufferView& v) { return v.getString(0, -1, -1); });
}

int32_t sorvane_gltf2_Buffer_clone(int64_t* out, sorvane_gltf2_Buffer* self, sorvane_gltf2_Gltf* target) {
    return cloneInto(out, "buffer is NULL", self, target);
}

int32_t sorvane_gltf2_BufferView_clone(int64_t* out, sorvane_gltf2_BufferView* self, sorvane_gltf2_Gltf* target) {
    return cloneInto(out, "bufferView is NULL", self, target);
}

int32_t sorvane_gltf2_Accessor_clone(int64_t* out, sorvane_gltf2_Accessor* self, sorvane_gltf2_Gltf* target) {
    return cloneInto(out, "accessor is NULL", self, target);
}

int32_t sorvane_gltf2_Accessor_getDims(int64_t* out, int64_t outBytes, int64_t* pvalueCount,
                                       sorvane_gltf2_Accessor* self) {
    std::vector<int64_t> dims;
    return flat::values(out, outBytes, pvalueCount, "accessor is NULL", self, [&](Accessor& a) -> const auto& {
        for (long d : a.getDims()) dims.push_back(d);
        return dims;
    });
}

int32_t sorvane_gltf2_Accessor_getTensor(DataTree** out, sorvane_gltf2_Accessor* self) {
    return flat::get(out, "accessor is NULL", self, [](Accessor& a) { return a.getTensorPtr(); });
}

int32_t sorvane_gltf2_Accessor_getDataArray(DataTree** out, sorvane_gltf2_Accessor* self) {
    return flat::get(out, "accessor is NULL", self, [](Accessor& a) { return new DataTree(a.getDataArray()); });
}

int32_t sorvane_gltf2_AccessorList_getTensors(DataTree** out, int64_t outBytes, int64_t* pvalueCount,
                                              sorvane_gltf2_AccessorList* self) {
    if (!self) return flat::fail("accessorList is NULL");
    if (!pvalueCount) return flat::fail("pvalueCount is NULL");
    bool filled = false;
    if (flat::guard([&] {
            // The count is the list's size: asking for it reads nothing.
            const int64_t count = self->size();
            if (*pvalueCount != count) *pvalueCount = count;
            if (!out || outBytes < 0 || static_cast<uint64_t>(outBytes) / sizeof(DataTree*) < static_cast<uint64_t>(count))
                return;
            std::vector<DataTree> tensors = self->getTensors();
            // Handed out only once every handle is made.
            std::vector<std::unique_ptr<DataTree>> handles;
            handles.reserve(tensors.size());
            for (DataTree& tensor : tensors) handles.push_back(std::make_unique<DataTree>(std::move(tensor)));
            for (size_t i = 0; i < handles.size(); ++i) out[i] = handles[i].release();
            filled = true;
        }) != 0)
        return -1;
    return (filled || !out) ? 0 : -1;
}

int32_t sorvane_gltf2_BufferViewList_addBuffer(sorvane_gltf2_BufferView** out, sorvane_gltf2_BufferViewList* self,
                                               int64_t buffer, int32_t target, int64_t byteLength, int64_t byteOffset,
                                               const char* name) {
    return flat::get(out, "bufferViewList is NULL", self, [&](sorvane::gltf2::BufferViewList& l) {
        return new BufferView(l.addBuffer(buffer, targetOf(target), byteLength, byteOffset, name));
    });
}

int32_t sorvane_gltf2_BufferViewList_addData(sorvane_gltf2_BufferView** out, sorvane_gltf2_BufferViewList* self,
                                             const void* data, int64_t dataSize, int64_t valueCount,
                                             int64_t valueSize, int32_t target, bool embedded, const char* name) {
    if (self && out && !data) return flat::fail("data is NULL");
    return flat::get(out, "bufferViewList is NULL", self, [&](sorvane::gltf2::BufferViewList& l) {
        return l.addDataPtr(data, dataSize, valueCount, valueSize, targetOf(target), embedded, name);
    });
}

int32_t sorvane_gltf2_AccessorList_addTensor(sorvane_gltf2_Accessor** out, sorvane_gltf2_AccessorList* self,
                                             DataTree* tensor, int32_t target, bool embedded, const char* name) {
    if (self && out && !tensor) return flat::fail("tensor is NULL");
    return flat::get(out, "accessorList is NULL", self, [&](sorvane::gltf2::AccessorList& l) {
        return l.addTensorPtr(*tensor, targetOf(target), embedded, name);
    });
}

int32_t sorvane_arf_DataList_addGlbDocument(sorvane_arf_Data** out, sorvane_arf_DataList* self, const char* uri,
                                            sorvane_gltf2_Gltf* gltf, const char* name, bool autoId, int64_t id) {
    if (self && out && !gltf) return flat::fail(kGltf);
    return flat::get(out, "dataList is NULL", self, [&](sorvane::arf::DataList& l) {
        return l.addGlbPtr(uri, *gltf, name, autoId ? std::nullopt : std::optional<int64_t>(id));
    });
}

} // extern "C"
