#ifndef SORVANE_ARF_NODE_DATA_DATANODES_H
#define SORVANE_ARF_NODE_DATA_DATANODES_H

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "sorvane/archive/FileProvider.h"
#include "sorvane/arf/node/ItemList.h"
#include "sorvane/arf/node/data/DataDType.h"
#include "sorvane/arf/node/data/DataNode.h"

namespace sorvane {
class DataTree;
}

namespace sorvane::gltf2 {
class Gltf;
}

namespace sorvane::arf {

constexpr const char* kDenseMimeType = "application/mpeg.arf.dense";
constexpr const char* kSparseMimeType = "application/mpeg.arf.sparse";
constexpr const char* kGlbMimeType = "model/gltf-binary";

// The "data" list of a document: every binary payload, addressed by id. The
// add... operations store a payload where the storage mode puts it and
// return the position of the new item.
class SORVANE_API DataNodes : public IdItemList<DataNode> {
public:
    static constexpr const char* kTypeName = DataNode::kListTypeName;

    explicit DataNodes(const NodeParent& parent);
    ~DataNodes() override;

    using IdItemList<DataNode>::add;
    // A new record made by DataNode::init with these arguments, appended.
    std::shared_ptr<DataNode> add(const char* type, const char* uri, const char* name, std::optional<int64_t> id);

    // Stores finished bytes: in the open shared raw data file, embedded as a
    // "data:" uri, or as a file of the provider; then appends the item.
    int64_t addContent(const void* content, int64_t size, bool embedded, const char* type, const char* uri,
                       const std::string& extension, const char* name, std::optional<int64_t> id);
    // The same for bytes given in pieces (a header and its values), which go
    // to the store without being put together first.
    int64_t addContent(const archive::FileProvider::Block* blocks, size_t count, bool embedded, const char* type,
                       const char* uri, const std::string& extension, const char* name, std::optional<int64_t> id);
    int64_t addDense(const void* buffer, int64_t size, DataDType dtype, const std::vector<long>& sizes, bool embedded,
                     const char* uri, const char* name, std::optional<int64_t> id);
    int64_t addDenseTensor(const DataTree& tensor, bool embedded, const char* uri, const char* name,
                           std::optional<int64_t> id);
    int64_t addSparse(const void* indices, int64_t indicesSize, DataIType itype, const void* values,
                      int64_t valuesSize, DataDType dtype, const std::vector<long>& sizes, int64_t count,
                      bool embedded, const char* uri, const char* name, std::optional<int64_t> id);
    // Keeps the non-zero elements of a dense buffer; itype NONE picks the
    // smallest unsigned index type for the element count.
    int64_t addSparseFromDense(const void* buffer, int64_t valueCount, DataDType dtype,
                               const std::vector<long>& sizes, DataIType itype, bool embedded, const char* uri,
                               const char* name, std::optional<int64_t> id);
    // A binary glTF stored under `uri`: a copy of the file at `localFile`, or
    // a .glb document saved through this document's provider.
    int64_t addGlb(const char* uri, const char* localFile, const char* name, std::optional<int64_t> id);
    int64_t addGlb(const char* uri, const gltf2::Gltf& gltf, const char* name, std::optional<int64_t> id);
    int64_t addSparseTensor(const DataTree& tensor, DataIType itype, bool embedded, const char* uri,
                            const char* name, std::optional<int64_t> id);

private:
    template <class T>
    int64_t addSparseFromDenseTyped(const T* buffer, int64_t valueCount, const std::vector<long>& sizes,
                                    DataIType itype, bool embedded, const char* uri, const char* name,
                                    std::optional<int64_t> id);
};

} // namespace sorvane::arf

#endif
