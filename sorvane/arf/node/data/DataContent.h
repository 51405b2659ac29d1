#ifndef SORVANE_ARF_NODE_DATA_DATACONTENT_H
#define SORVANE_ARF_NODE_DATA_DATACONTENT_H

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "sorvane/archive/BitBuffer.h"
#include "sorvane/arf/node/data/DataDType.h"
#include "sorvane/core/Export.h"
#include "sorvane/datatree/DataTree.h"

namespace sorvane::gltf2 {
class Gltf;
}

namespace sorvane::arf {

class DataNode;

// The payload of a data item, read on demand from the raw data cache, the
// document's provider or the item's "data:" uri. The record node itself only
// holds the uri, offset and length.
class SORVANE_API DataContent {
public:
    // A sparse payload may describe a full tensor at most this many times its
    // own size (plus the slack below) before a tensor is allocated for it.
    static constexpr long kMaxSparseExpansion = 1L << 16;
    static constexpr long kSparseExpansionSlack = 1L << 20;

    static int64_t getDataSize(const DataNode& node);
    // Copies the content to out and returns its size; a null out only
    // returns the size.
    static int64_t getData(const DataNode& node, void* out, int64_t size);
    static std::string getString(const DataNode& node);
    static BitBuffer getBitBuffer(const DataNode& node);

    // Decodes a dense or sparse payload; a null out gives sizes and dtype only.
    static int64_t getTensorData(const DataNode& node, std::vector<long>& sizes, DataDType& dtype, void* out,
                                 int64_t size);
    static DataTree getTensor(const DataNode& node);
    static DataTree* getTensorPtr(const DataNode& node);

    // The compact form of a [rows, cols] matrix, typically of vertex weights:
    // for each row its K largest values and their columns, K being
    // *pColSize. With a null indices or values buffer only K is measured: the
    // largest count of non-zero values in a row.
    static void getColSparseTensorData(const DataNode& node, std::vector<long>& sizes, DataDType& dtype,
                                       long* indices, long indicesSize, void* values, long valuesSize,
                                       long* pColSize, bool normalize);
    // The pair (values, column indices), K clamped to [minCols, maxCols].
    static std::pair<DataTree, DataTree> getColSparseTensor(const DataNode& node, long minCols, long maxCols,
                                                            bool normalize);
    // The item as a glTF document (type "model/gltf-binary"), opened in its folder.
    static gltf2::Gltf getGltf(const DataNode& node, bool readOnly);
    static gltf2::Gltf* getGltfPtr(const DataNode& node, bool readOnly);
    static std::pair<DataTree, DataTree>* getColSparseTensorPtr(const DataNode& node, long minCols, long maxCols,
                                                                bool normalize);

    // A whole payload of the given media type as a tensor; used by the reads
    // above and by anything that holds payload bytes of its own.
    static DataTree decodeTensor(const std::string& type, BitBuffer& buffer);
};

} // namespace sorvane::arf

#endif
