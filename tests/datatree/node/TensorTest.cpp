#include "sorvane/datatree/node/Tensor.h"

#include <cmath>
#include <cstdlib>
#include <memory>
#include <numeric>
#include <sstream>

#include <gtest/gtest.h>

#include "sorvane/archive/JsonImporter.h"
#include "sorvane/core/RuntimeException.h"
#include "sorvane/datatree/DataTree.h"
#include "tests/datatree/Expect.h"

using namespace sorvane;
using sorvane::datatree::Tensor;

namespace {

DataTree iota(const std::vector<long>& sizes, ScalarType type = ScalarType::Float) {
    DataTree tree = DataTree::createTensor(sizes, type);
    float* values = tree.getData<float>();
    for (long i = 0; i < tree.getValueCount(); ++i) values[i] = static_cast<float>(i);
    return tree;
}

} // namespace

TEST(TensorTest, ShapeStridesAndCounts) {
    DataTree tensor = DataTree::createTensor({2, 3}, ScalarType::Float);
    EXPECT_EQ(tensor.getValueCount(), 6);
    EXPECT_EQ(tensor.getBufferSize(), 24);
    EXPECT_EQ(tensor.getTensorStrides(true), (std::vector<long>{12, 4}));
    EXPECT_EQ(tensor.getTensorStrides(false), (std::vector<long>{3, 1}));
    EXPECT_EQ(tensor.getTensorSize(1), 3);
    EXPECT_THROW_TEXT(tensor.getTensorSize(2), RuntimeException, "Invalid dim index 2");
    EXPECT_THROW_TEXT(tensor.getTensorSize(-1), RuntimeException, "Invalid dim index -1");
    std::ostringstream shown;
    tensor.showTensorSizes(shown);
    EXPECT_EQ(shown.str(), "2,3");

    DataTree none = DataTree::createTensor(std::vector<long>{}, ScalarType::Double);
    EXPECT_EQ(none.getValueCount(), 0);
    EXPECT_EQ(none.getBufferSize(), 0);
    std::ostringstream nothing;
    none.showTensorSizes(nothing);
    EXPECT_EQ(nothing.str(), "");

    DataTree one = DataTree::createTensor(ScalarType::Double);  // sizes [1], a whole element
    one.getData<double>()[0] = 2.0;
    one.setTensorSizes({});  // 1 value either way: a reshape
    EXPECT_EQ(one.getTensorDim(), 0);
}

TEST(TensorTest, ReshapeAndRowResize) {
    DataTree tensor = iota({4});
    const void* before = tensor.getBuffer();
    tensor.setTensorSizes({2, 2});
    EXPECT_EQ(tensor.getBuffer(), before);
    EXPECT_EQ(tensor.getData<float>()[3], 3.0f);

    tensor.setTensorSizes({2, 3});
    const float* rows = tensor.getData<float>();
    EXPECT_EQ(std::vector<float>(rows, rows + 6), (std::vector<float>{0, 1, 0, 2, 3, 0}));
    tensor.setTensorSizes({2, 1});
    rows = tensor.getData<float>();
    EXPECT_EQ(std::vector<float>(rows, rows + 2), (std::vector<float>{0, 2}));

    // A refused resize leaves the tensor whole.
    DataTree square = iota({2, 2});
    EXPECT_THROW_TEXT(square.setTensorSizes({3, 2}), RuntimeException, "Unsupported resize");
    EXPECT_EQ(square.getTensorSizes(), (std::vector<long>{2, 2}));
    EXPECT_EQ(square.getData<float>()[3], 3.0f);
    DataTree line = iota({4});
    EXPECT_THROW_TEXT(line.setTensorSizes({5}), RuntimeException, "Unsupported resize");
    EXPECT_EQ(line.getValueCount(), 4);
    DataTree flags = DataTree::createTensor({2, 2}, ScalarType::Boolean);
    EXPECT_THROW_TEXT(flags.setTensorSizes({2, 3}), RuntimeException, "Invalid or unsupported scalar type");
    EXPECT_THROW_TEXT(square.setTensorSizes({2, -3}), RuntimeException, "Invalid size -3");
}

TEST(TensorTest, SubTensorIsACopyOfOneSlice) {
    DataTree tensor = iota({3, 2, 2});
    DataTree sub = tensor.getSubTensor(1);
    EXPECT_EQ(sub.getTensorSizes(), (std::vector<long>{2, 2}));
    const float* values = sub.getData<float>();
    EXPECT_EQ(std::vector<float>(values, values + 4), (std::vector<float>{4, 5, 6, 7}));
    sub.getData<float>()[0] = 100.0f;
    EXPECT_EQ(tensor.getData<float>()[4], 4.0f);
    EXPECT_THROW_TEXT(tensor.getSubTensor(3), RuntimeException, "Invalid index 3");
    EXPECT_THROW_TEXT(tensor.getSubTensor(-1), RuntimeException, "Invalid index -1");
    EXPECT_THROW_TEXT(iota({4}).getSubTensor(0), RuntimeException, "There is no sub tensor");
}

TEST(TensorTest, GiveReleaseAndCopyOwnership) {
    // Given once, released once, freed once: the sanitizer build checks it.
    auto* block = static_cast<int32_t*>(std::malloc(6 * sizeof(int32_t)));
    std::iota(block, block + 6, 0);
    DataTree tensor = DataTree::createTensor(static_cast<void*>(block), 24, {2, 3}, ScalarType::Integer32);
    EXPECT_EQ(tensor.getBuffer(), block);
    DataTree shared = tensor;
    void* released = tensor.releaseBuffer();
    EXPECT_EQ(released, block);
    EXPECT_EQ(shared.getTensorSizes(), std::vector<long>{1});
    EXPECT_NE(shared.getBuffer(), nullptr);
    shared.giveTensorData(released, 24, {3, 2}, ScalarType::Integer32);
    EXPECT_EQ(tensor.getData<int>()[5], 5);
    tensor.getNode().giveTensorData(tensor.releaseBuffer(), tensor.getTensorSizes(), ScalarType::Integer32);

    EXPECT_THROW_TEXT(DataTree::createTensor(static_cast<const void*>(block), 23, {2, 3}, ScalarType::Integer32),
                      RuntimeException, "Invalid buffer size");
    void* small = std::malloc(4);
    EXPECT_THROW_TEXT(DataTree::createTensor(small, 4, {2}, ScalarType::Integer32), RuntimeException,
                      "Invalid buffer size");
    std::free(small);  // refused blocks stay the caller's

    const double values[] = {1.0, 2.0};
    DataTree copy = DataTree::createTensor(static_cast<const void*>(values), 16, {2}, ScalarType::Double);
    EXPECT_NE(copy.getBuffer(), static_cast<const void*>(values));
    DataTree other(1);
    other.setTensorData(values, 16, {2}, ScalarType::Double);
    EXPECT_TRUE(other.equals(copy));
    std::unique_ptr<datatree::Node> clone(copy.getNode().clone());
    EXPECT_NE(clone->getBuffer(), copy.getBuffer());
    EXPECT_TRUE(clone->equals(copy.getNode()));
}

TEST(TensorTest, HostileSizesRaiseBeforeAllocating) {
    // 2^40 elements: an exception, not an attempt to allocate terabytes.
    EXPECT_THROW_TEXT(DataTree::createTensor({1L << 20, 1L << 20}, ScalarType::Double), RuntimeException,
                      "Invalid buffer size");
    const double one = 1.0;
    EXPECT_THROW_TEXT(DataTree::createTensor(&one, 8, std::vector<long>{1L << 40}, ScalarType::Double),
                      RuntimeException, "Invalid buffer size");
    EXPECT_THROW_TEXT(DataTree::createTensor({1L << 62, 1L << 62}, ScalarType::Double), RuntimeException,
                      "Invalid size 4611686018427387904");
    EXPECT_THROW_TEXT(DataTree::createTensor({-2}, ScalarType::Double), RuntimeException, "Invalid size -2");
    EXPECT_THROW(DataTree::createArrayPtr(&one, 8, 1L << 60, ScalarType::Double), RuntimeException);
}

TEST(TensorTest, ConvertAndJson) {
    DataTree tensor = iota({2, 3});
    DataTree alias = tensor;
    tensor.convertScalarType(ScalarType::UInteger8);
    EXPECT_EQ(tensor.getTensorSizes(), (std::vector<long>{2, 3}));
    EXPECT_EQ(tensor.getData<unsigned char>()[5], 5);
    EXPECT_EQ(alias.getScalarType(), ScalarType::Float);
    alias.getData<float>()[0] = HUGE_VALF;
    EXPECT_THROW_TEXT(alias.convertScalarType(ScalarType::UInteger8), RuntimeException,
                      "Conversion failed:\nOverflow in scalar conversion");
    EXPECT_THROW_TEXT(alias.convertScalarType(ScalarType::Double), RuntimeException,
                      "Invalid or unsupported scalar type conversion Float => Double");

    EXPECT_EQ(iota({2, 3}).toJsonString(), "[\n  [0, 1, 2],\n  [3, 4, 5]\n]");
    EXPECT_EQ(iota({3}).toJsonString(), "[0, 1, 2]");
    EXPECT_EQ(iota({2, 0, 3}).toJsonString(), "[\n  [],\n  []\n]");
    EXPECT_EQ(iota({1, 2, 1, 2}).toJsonString(),
              "[\n  [\n    [\n      [0, 1]\n    ],\n    [\n      [2, 3]\n    ]\n  ]\n]");
    // As deep as a read accepts, and no deeper.
    const std::string deep = iota(std::vector<long>(512, 1)).toJsonString();
    std::istringstream deepStream(deep);
    archive::JsonImporter deepReader(deepStream);
    EXPECT_TRUE(DataTree::createFromJson(deepReader).isList());
    EXPECT_THROW_TEXT(iota(std::vector<long>(513, 1)).toJsonString(), RuntimeException,
                      "Tensor dimension 513 is too deep to write");
    EXPECT_EQ(DataTree::createTensor(std::vector<long>{}, ScalarType::Float).toJsonString(), "[]");
    DataTree empty = DataTree::createTensor(ScalarType::Float);
    std::free(empty.releaseBuffer());
    empty.getNode().giveTensorData(nullptr, {4}, ScalarType::Float);
    EXPECT_EQ(empty.toJsonString(), "[]");

    std::istringstream stream(iota({2, 2, 2}).toJsonString());
    archive::JsonImporter importer(stream);
    DataTree back = DataTree::createFromJson(importer);
    ASSERT_TRUE(back.isList());
    ASSERT_TRUE(back.getItem(1).isList());
    EXPECT_TRUE(back.getItem(1).getItem(1).isArray());
    EXPECT_EQ(back.getItem(1).getItem(1).getData<long>()[1], 7);
    EXPECT_THROW_TEXT(DataTree::createTensor({2}, ScalarType::Boolean).toJsonString(), RuntimeException,
                      "Invalid or unsupported scalar type");
}

// A tensor whose values lie in its own allocation behaves as one that owns a
// malloc block: what leaves it is a malloc block, what replaces it is freed.
// The sanitizer build catches a free of the inner block.
TEST(TensorTest, BlockBesideTheNode) {
    const long sizes[] = {2, 3};
    auto made = [&] {
        std::shared_ptr<Tensor> node = Tensor::makeWithBlock(24, sizes, 2, ScalarType::Float);
        float* values = static_cast<float*>(node->getBuffer());
        for (int i = 0; i < 6; ++i) values[i] = static_cast<float>(i);
        return DataTree(node);
    };
    DataTree tensor = made();
    EXPECT_EQ(tensor.getTensorSizes(), (std::vector<long>{2, 3}));
    EXPECT_EQ(tensor.getBufferSize(), 24);
    EXPECT_TRUE(tensor.equals(iota({2, 3})));
    DataTree copy(tensor.getNode().clone());
    tensor.getData<float>()[0] = 9;
    EXPECT_EQ(copy.getData<float>()[0], 0);

    // Released: a copy the caller frees; the tensor goes on with sizes [1].
    void* released = tensor.releaseBuffer();
    EXPECT_EQ(static_cast<float*>(released)[0], 9);
    EXPECT_EQ(static_cast<float*>(released)[5], 5);
    EXPECT_EQ(tensor.getTensorSizes(), std::vector<long>{1});
    std::free(released);

    // Given its own block back, a tensor keeps it; given another, it takes it.
    DataTree again = made();
    again.getNode().giveTensorData(again.getBuffer(), {3, 2}, ScalarType::Float);
    EXPECT_EQ(again.getData<float>()[5], 5);
    void* other = std::malloc(8);
    again.giveTensorData(other, 8, {2}, ScalarType::Integer32);
    EXPECT_EQ(again.getBuffer(), other);
    made().setTensorData(nullptr, 12, {3}, ScalarType::Float);
    DataTree rows = made();
    rows.setTensorSizes({2, 4});
    EXPECT_EQ(rows.getData<float>()[4], 3);
    EXPECT_EQ(rows.getData<float>()[7], 0);

    // Sizes past the four held in the node, and a reshape in place.
    const long deep[] = {1, 2, 1, 3, 1, 1};
    DataTree six(Tensor::makeWithBlock(24, deep, 6, ScalarType::Float));
    EXPECT_EQ(six.getTensorSizes(), (std::vector<long>{1, 2, 1, 3, 1, 1}));
    six.setTensorSizes({6});
    EXPECT_EQ(six.getTensorDim(), 1);
    six.setTensorSizes({1, 1, 1, 1, 2, 3});
    EXPECT_EQ(six.getTensorSize(5), 3);

    EXPECT_THROW_TEXT(Tensor::makeWithBlock(20, sizes, 2, ScalarType::Float), RuntimeException, "Invalid buffer size");
    const long large[] = {Tensor::kMaxAdjacentBytes};
    EXPECT_THROW_TEXT(Tensor::makeWithBlock(Tensor::kMaxAdjacentBytes + 1, large, 1, ScalarType::UInteger8),
                      RuntimeException, "Invalid buffer size");
    const long negative[] = {-1};
    EXPECT_THROW_TEXT(Tensor::makeWithBlock(8, negative, 1, ScalarType::Float), RuntimeException, "Invalid size -1");
}
