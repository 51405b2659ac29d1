#include "sorvane/datatree/node/TensorBatch.h"

#include <cstdlib>
#include <memory>
#include <vector>

#include <gtest/gtest.h>

#include "sorvane/core/RuntimeException.h"
#include "sorvane/datatree/DataTree.h"
#include "tests/datatree/Expect.h"

using namespace sorvane;
using sorvane::datatree::Tensor;
using sorvane::datatree::TensorBatch;

namespace {

// Byte i of tensor t.
uint8_t pattern(size_t t, size_t i) { return static_cast<uint8_t>(t * 31 + i); }

bool holds(const DataTree& tensor, size_t t) {
    const auto* bytes = static_cast<const uint8_t*>(tensor.getBuffer());
    for (long i = 0; i < tensor.getBufferSize(); ++i)
        if (bytes[i] != pattern(t, static_cast<size_t>(i))) return false;
    return true;
}

} // namespace

// Tensors over many blocks, of every size up to and past the batched limit,
// each outliving the batch and its neighbours (ASan checks the lifetimes).
TEST(TensorBatchTest, TensorsOutliveTheirBatchAndNeighbours) {
    std::vector<DataTree> tensors;
    {
        TensorBatch batch;
        for (size_t t = 0; t < 600; ++t) {
            const long count = static_cast<long>((t * 37) % (TensorBatch::kMaxBatchedBytes + 200));
            std::shared_ptr<Tensor> node = batch.make(static_cast<size_t>(count), &count, 1, ScalarType::UInteger8);
            auto* bytes = static_cast<uint8_t*>(node->getBuffer());
            for (long i = 0; i < count; ++i) bytes[i] = pattern(t, static_cast<size_t>(i));
            tensors.emplace_back(node);
        }
    }
    for (size_t t = 0; t < tensors.size(); ++t) EXPECT_TRUE(holds(tensors[t], t)) << t;
    // Every other one goes; the rest still read.
    for (size_t t = 0; t < tensors.size(); t += 2) tensors[t] = DataTree();
    for (size_t t = 1; t < tensors.size(); t += 2) EXPECT_TRUE(holds(tensors[t], t)) << t;
}

// A batched tensor is a tensor like any other: its block may be released,
// replaced or reshaped, and it compares and clones as one.
TEST(TensorBatchTest, BatchedTensorsChangeLikeOthers) {
    TensorBatch batch;
    const long sizes[] = {2, 3};
    auto made = [&] {
        std::shared_ptr<Tensor> node = batch.make(24, sizes, 2, ScalarType::Float);
        float* values = static_cast<float*>(node->getBuffer());
        for (int i = 0; i < 6; ++i) values[i] = static_cast<float>(i);
        return DataTree(node);
    };
    DataTree tensor = made();
    DataTree neighbour = made();
    EXPECT_TRUE(tensor.equals(neighbour));
    EXPECT_NE(tensor.getBuffer(), neighbour.getBuffer());
    DataTree copy(tensor.getNode().clone());
    tensor.getData<float>()[0] = 9;
    EXPECT_EQ(copy.getData<float>()[0], 0);
    EXPECT_EQ(neighbour.getData<float>()[0], 0);

    void* released = tensor.releaseBuffer();
    EXPECT_EQ(static_cast<float*>(released)[0], 9);
    EXPECT_EQ(tensor.getTensorSizes(), std::vector<long>{1});
    std::free(released);
    void* other = std::malloc(8);
    neighbour.giveTensorData(other, 8, {2}, ScalarType::Integer32);
    EXPECT_EQ(neighbour.getBuffer(), other);
    DataTree rows = made();
    rows.setTensorSizes({2, 4});
    EXPECT_EQ(rows.getData<float>()[4], 3);

    // Sizes past the four held in the node.
    const long deep[] = {1, 2, 1, 3, 1, 1};
    DataTree six(batch.make(24, deep, 6, ScalarType::Float));
    EXPECT_EQ(six.getTensorSizes(), (std::vector<long>{1, 2, 1, 3, 1, 1}));
    const long none[] = {0, 3};
    EXPECT_EQ(DataTree(batch.make(0, none, 2, ScalarType::Float)).getValueCount(), 0);

    EXPECT_THROW_TEXT(batch.make(20, sizes, 2, ScalarType::Float), RuntimeException, "Invalid buffer size");
    const long negative[] = {-1};
    EXPECT_THROW_TEXT(batch.make(8, negative, 1, ScalarType::Float), RuntimeException, "Invalid size -1");
    const long large[] = {Tensor::kMaxAdjacentBytes};
    EXPECT_THROW_TEXT(batch.make(Tensor::kMaxAdjacentBytes + 1, large, 1, ScalarType::UInteger8), RuntimeException,
                      "Invalid buffer size");
}
