#ifndef SORVANE_DATATREE_NODE_TENSORBATCH_H
#define SORVANE_DATATREE_NODE_TENSORBATCH_H

#include <cstddef>
#include <memory>

#include "sorvane/datatree/node/Tensor.h"

namespace sorvane::datatree {

// Makes many small tensors at once. Their nodes and values are cut from
// shared blocks of 64 KiB, and a block goes back to the allocator when the
// last tensor cut from it (and the batch, while it fills it) has gone. For
// tensors of a few hundred bytes one malloc and free each is a large part of
// the cost of making them; here it is one per block.
//
// Each tensor is a tensor like any other: it may be changed, given new data,
// released or handed to another thread. The price is memory: a tensor kept
// keeps its whole block. Tensors above kMaxBatchedBytes get an allocation of
// their own.
class SORVANE_API TensorBatch {
public:
    static constexpr size_t kBlockBytes = size_t(64) << 10;
    static constexpr size_t kMaxBatchedBytes = size_t(4) << 10;

    TensorBatch();
    ~TensorBatch();
    TensorBatch(const TensorBatch&) = delete;
    TensorBatch& operator=(const TensorBatch&) = delete;

    // As Tensor::makeWithBlock: `bytes` uninitialised bytes the caller fills,
    // at least what the sizes need ("Invalid buffer size" otherwise).
    std::shared_ptr<Tensor> make(size_t bytes, const long* sizes, size_t dimCount, ScalarType type);

private:
    class Block;
    std::shared_ptr<Block> block;
};

} // namespace sorvane::datatree

#endif
