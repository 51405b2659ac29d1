#ifndef SORVANE_GLTF2_NODE_BUFFER_BINARYDATA_H
#define SORVANE_GLTF2_NODE_BUFFER_BINARYDATA_H

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "sorvane/core/Export.h"
#include "sorvane/datatree/DataTree.h"

namespace sorvane::gltf2 {

class AccessorNode;
class AccessorNodes;
class BufferNode;
class BufferViewNode;
class RootNode;

// The read path of binary data: a buffer's bytes, a range of a view, an
// accessor's elements as bytes, an array or a tensor; and the copies of
// these objects into another document. With a null `out` the reads measure
// only. Each read fetches its buffer anew; only the open shared buffer (a
// .glb's BIN chunk) is in memory.
struct SORVANE_API BinaryData {
    // `byteStride` below 0 means not given; a negative `valueCount` the rest of the buffer.
    static int64_t getData(const BufferNode& buffer, void* out, int64_t outSize, int64_t byteOffset,
                           int64_t valueCount, int64_t valueSize, int64_t byteStride);
    // `valueSize` below 1 and `valueCount` below 0 mean not given.
    static int64_t getData(const BufferViewNode& view, void* out, int64_t outSize, int64_t byteOffset,
                           int64_t valueCount, int64_t valueSize);
    static int64_t getData(const AccessorNode& accessor, void* out, int64_t outSize);
    static int64_t getDataSize(const AccessorNode& accessor);
    // The accessor's bytes where they lie in the open shared buffer, without a
    // copy, and `length` as getData would return it; null for any other read,
    // which getData does (and words its failures). Valid until the buffer grows.
    static const uint8_t* peekData(const AccessorNode& accessor, int64_t& length);
    static std::vector<long> getDims(const AccessorNode& accessor);
    static DataTree getDataArray(const AccessorNode& accessor);
    static DataTree getTensor(const AccessorNode& accessor);
    static DataTree* getTensorPtr(const AccessorNode& accessor);
    // Every accessor of the list as a tensor, in order; fails as getTensor
    // does at the first accessor that cannot be read. Small tensors share
    // blocks (see datatree::TensorBatch).
    static std::vector<DataTree> getTensors(const AccessorNodes& accessors);

    static std::string getString(const BufferNode& buffer, int64_t byteOffset, int64_t valueCount, int64_t valueSize,
                                 int64_t byteStride);
    static std::string getString(const BufferViewNode& view, int64_t byteOffset, int64_t valueCount,
                                 int64_t valueSize);

    // Copies into `target` and returns the new index; a buffer always
    // becomes a new file there, and each accessor brings its own view and buffer.
    static int64_t clone(const BufferNode& buffer, RootNode& target);
    static int64_t clone(const BufferViewNode& view, RootNode& target);
    static int64_t clone(const AccessorNode& accessor, RootNode& target);
};

} // namespace sorvane::gltf2

#endif
