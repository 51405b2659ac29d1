#ifndef SORVANE_ARF_PROPERTY_DATA_DATALISTADDS_H
#define SORVANE_ARF_PROPERTY_DATA_DATALISTADDS_H

#include <cstdint>
#include <optional>
#include <vector>

#include "sorvane/arf/node/data/DataNodes.h"
#include "sorvane/arf/property/ListProperty.h"
#include "sorvane/arf/property/data/Data.h"

namespace sorvane::arf {

// The payload-adding operations of the data list's accessor. Each stores the
// payload and gives the accessor of the new item; the Ptr forms give it as a
// new object.
class SORVANE_API DataListAdds : public ListProperty<DataNodes, Data> {
public:
    using ListProperty::add;
    using ListProperty::addPtr;

    Data addDense(const void* buffer, int64_t size, DataDType dtype, const std::vector<long>& sizes,
                  bool embedded = false, const char* uri = nullptr, const char* name = nullptr,
                  std::optional<int64_t> id = std::nullopt) {
        return added(writable().addDense(buffer, size, dtype, sizes, embedded, uri, name, id));
    }
    Data addDenseTensor(const DataTree& tensor, bool embedded = false, const char* uri = nullptr,
                        const char* name = nullptr, std::optional<int64_t> id = std::nullopt) {
        return added(writable().addDenseTensor(tensor, embedded, uri, name, id));
    }
    Data addSparse(const void* indices, int64_t indicesSize, DataIType itype, const void* values, int64_t valuesSize,
                   DataDType dtype, const std::vector<long>& sizes, int64_t count, bool embedded = false,
                   const char* uri = nullptr, const char* name = nullptr, std::optional<int64_t> id = std::nullopt) {
        return added(writable().addSparse(indices, indicesSize, itype, values, valuesSize, dtype, sizes, count,
                                          embedded, uri, name, id));
    }
    Data addSparseFromDense(const void* buffer, int64_t valueCount, DataDType dtype, const std::vector<long>& sizes,
                            DataIType itype = DATA_ITYPE_NONE, bool embedded = false, const char* uri = nullptr,
                            const char* name = nullptr, std::optional<int64_t> id = std::nullopt) {
        return added(writable().addSparseFromDense(buffer, valueCount, dtype, sizes, itype, embedded, uri, name, id));
    }
    Data addSparseTensor(const DataTree& tensor, DataIType itype = DATA_ITYPE_NONE, bool embedded = false,
                         const char* uri = nullptr, const char* name = nullptr,
                         std::optional<int64_t> id = std::nullopt) {
        return added(writable().addSparseTensor(tensor, itype, embedded, uri, name, id));
    }
    // Stores bytes of any media type as they are.
    Data addContent(const void* content, int64_t size, bool embedded, const char* type, const char* uri = nullptr,
                    const char* name = nullptr, std::optional<int64_t> id = std::nullopt) {
        return added(writable().addContent(content, size, embedded, type, uri, ".bin", name, id));
    }

    // A binary glTF: a copy of the file at `localFile`, or a .glb document saved under `uri`.
    Data addGlb(const char* uri, const char* localFile, const char* name = nullptr,
                std::optional<int64_t> id = std::nullopt) {
        return added(writable().addGlb(uri, localFile, name, id));
    }
    Data addGlb(const char* uri, const gltf2::Gltf& gltf, const char* name = nullptr,
                std::optional<int64_t> id = std::nullopt) {
        return added(writable().addGlb(uri, gltf, name, id));
    }
    Data* addGlbPtr(const char* uri, const char* localFile, const char* name = nullptr,
                    std::optional<int64_t> id = std::nullopt) {
        return new Data(addGlb(uri, localFile, name, id));
    }
    Data* addGlbPtr(const char* uri, const gltf2::Gltf& gltf, const char* name = nullptr,
                    std::optional<int64_t> id = std::nullopt) {
        return new Data(addGlb(uri, gltf, name, id));
    }

    Data* addDensePtr(const void* buffer, int64_t size, DataDType dtype, const std::vector<long>& sizes,
                      bool embedded = false, const char* uri = nullptr, const char* name = nullptr,
                      std::optional<int64_t> id = std::nullopt) {
        return new Data(addDense(buffer, size, dtype, sizes, embedded, uri, name, id));
    }
    Data* addDenseTensorPtr(const DataTree& tensor, bool embedded = false, const char* uri = nullptr,
                            const char* name = nullptr, std::optional<int64_t> id = std::nullopt) {
        return new Data(addDenseTensor(tensor, embedded, uri, name, id));
    }
    Data* addSparsePtr(const void* indices, int64_t indicesSize, DataIType itype, const void* values,
                       int64_t valuesSize, DataDType dtype, const std::vector<long>& sizes, int64_t count,
                       bool embedded = false, const char* uri = nullptr, const char* name = nullptr,
                       std::optional<int64_t> id = std::nullopt) {
        return new Data(
            addSparse(indices, indicesSize, itype, values, valuesSize, dtype, sizes, count, embedded, uri, name, id));
    }
    Data* addSparseFromDensePtr(const void* buffer, int64_t valueCount, DataDType dtype,
                                const std::vector<long>& sizes, DataIType itype = DATA_ITYPE_NONE,
                                bool embedded = false, const char* uri = nullptr, const char* name = nullptr,
                                std::optional<int64_t> id = std::nullopt) {
        return new Data(addSparseFromDense(buffer, valueCount, dtype, sizes, itype, embedded, uri, name, id));
    }
    Data* addSparseTensorPtr(const DataTree& tensor, DataIType itype = DATA_ITYPE_NONE, bool embedded = false,
                             const char* uri = nullptr, const char* name = nullptr,
                             std::optional<int64_t> id = std::nullopt) {
        return new Data(addSparseTensor(tensor, itype, embedded, uri, name, id));
    }

    DataListAdds() = default;
    DataListAdds(const std::shared_ptr<RootNode>& root_, const std::shared_ptr<DataNodes>& node_, bool readOnly_)
        : ListProperty(root_, node_, readOnly_) {}

protected:

private:
    DataNodes& writable() {
        DataNodes& n = node();
        checkWritable(Change::ListAdd, n.getNodePath());
        return n;
    }
    Data added(int64_t index) { return Data(propertyRoot, node().getByIndex(index), false); }
};

} // namespace sorvane::arf

#endif
