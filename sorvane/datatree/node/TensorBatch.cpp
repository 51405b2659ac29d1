#include "sorvane/datatree/node/TensorBatch.h"

#include <cstdint>
#include <cstdlib>
#include <new>

#include "sorvane/core/RuntimeException.h"
#include "sorvane/datatree/node/Buffers.h"

namespace sorvane::datatree {

namespace {

constexpr size_t kAlign = alignof(std::max_align_t);

constexpr size_t roundUp(size_t n) { return (n + kAlign - 1) & ~(kAlign - 1); }

constexpr size_t kNodeBytes = roundUp(sizeof(Tensor));

} // namespace

// The block's header, then its tensor nodes side by side from the front, and
// their values from the back. Kept apart, the nodes of many small tensors
// share cache lines: a caller walking every tensor, and the release of the
// block, read consecutive lines, not one line per tensor among the values.
// Destroyed when the last reference goes, it destroys the tensors made in it.
class TensorBatch::Block {
public:
    static std::shared_ptr<Block> create() {
        void* memory = std::malloc(kBlockBytes);
        if (!memory) throw std::bad_alloc();
        // Should the shared state not be made, the deleter frees the block.
        return std::shared_ptr<Block>(new (memory) Block, [](Block* b) {
            b->~Block();
            std::free(b);
        });
    }

    ~Block() {
        for (size_t at = kHeadBytes; at < nodesEnd; at += kNodeBytes)
            reinterpret_cast<Tensor*>(bytes() + at)->Tensor::~Tensor();
    }

    // Where a node and `valueBytes` (rounded) would go, or false when the block is full.
    bool room(size_t valueBytes, unsigned char*& node, unsigned char*& values) {
        if (valuesBegin - nodesEnd < kNodeBytes + valueBytes) return false;
        node = bytes() + nodesEnd;
        values = bytes() + valuesBegin - valueBytes;
        return true;
    }
    // The node at room() is built: the destructor will destroy it.
    void commit(size_t valueBytes) {
        nodesEnd += kNodeBytes;
        valuesBegin -= valueBytes;
    }

private:
    static constexpr size_t kHeadBytes = roundUp(2 * sizeof(size_t));

    unsigned char* bytes() { return reinterpret_cast<unsigned char*>(this); }

    size_t nodesEnd = kHeadBytes;
    size_t valuesBegin = kBlockBytes;
};

TensorBatch::TensorBatch() = default;
TensorBatch::~TensorBatch() = default;

std::shared_ptr<Tensor> TensorBatch::make(size_t bytes, const long* sizes, size_t dimCount, ScalarType type) {
    if (bytes > kMaxBatchedBytes) return Tensor::makeWithBlock(bytes, sizes, dimCount, type);
    const size_t need = detail::byteCount(detail::valueCount(sizes, dimCount), type);
    if (bytes < need) SORVANE_THROW("Invalid buffer size");
    const size_t valueBytes = roundUp(bytes ? bytes : 1);
    unsigned char* node = nullptr;
    unsigned char* values = nullptr;
    if (!block || !block->room(valueBytes, node, values)) {
        block = Block::create();
        block->room(valueBytes, node, values);
    }
    void* buffer = values;
    auto* tensor = new (node) Tensor(Tensor::BlockTag{}, &buffer, sizes, dimCount, type);
    block->commit(valueBytes);
    // Shares the block's count: the tensor's own lifetime ends with the block.
    return std::shared_ptr<Tensor>(block, tensor);
}

} // namespace sorvane::datatree
