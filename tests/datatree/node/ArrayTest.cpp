#include "sorvane/datatree/node/Array.h"

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <sstream>

#include <gtest/gtest.h>

#include "sorvane/archive/JsonExporter.h"
#include "sorvane/archive/JsonImporter.h"
#include "sorvane/core/RuntimeException.h"
#include "sorvane/datatree/DataTree.h"
#include "tests/datatree/Expect.h"

using namespace sorvane;
using sorvane::datatree::Array;

TEST(ArrayTest, SetGiveAndReleaseOwnTheBlockOnce) {
    const int16_t values[] = {1, -2, 3};
    Array copied(values, 3, ScalarType::Integer16);
    EXPECT_NE(copied.getBuffer(), static_cast<const void*>(values));
    EXPECT_EQ(copied.getBufferSize(), 6);
    EXPECT_EQ(copied.getValueCount(), 3);

    // Given blocks are freed by the node; a released block by the caller.
    auto* block = static_cast<double*>(std::malloc(2 * sizeof(double)));
    block[0] = 1.0;
    block[1] = 2.0;
    DataTree tree = DataTree::createArray(ScalarType::Double);
    tree.giveArrayData(block, 2, ScalarType::Double);
    EXPECT_EQ(tree.getBuffer(), block);
    tree.giveArrayData(std::malloc(8), 1, ScalarType::Integer64);  // frees `block`
    void* released = tree.releaseBuffer();
    EXPECT_EQ(tree.getSize(), 0);
    EXPECT_EQ(tree.getBuffer(), nullptr);
    EXPECT_EQ(tree.getScalarType(), ScalarType::Integer64);
    std::free(released);

    tree.setArrayData(values, 3, ScalarType::Integer16);
    EXPECT_EQ(tree.getData<short>()[1], -2);
    // A handle of another kind moves to a new Array.
    DataTree other(5);
    other.giveArrayData(std::malloc(4), 1, ScalarType::Float);
    EXPECT_TRUE(other.isArray());

    EXPECT_THROW_TEXT(Array(-1L, ScalarType::Float), RuntimeException, "Invalid size -1");
    EXPECT_THROW_TEXT(Array(values, -2, ScalarType::Float), RuntimeException, "Invalid size -2");
    // A count with no source holds zeros instead of pointing nowhere.
    Array zeros(static_cast<const void*>(nullptr), 4, ScalarType::Float);
    ASSERT_NE(zeros.getBuffer(), nullptr);
    EXPECT_EQ(static_cast<const float*>(zeros.getBuffer())[3], 0.0f);
    Array empty(ScalarType::Float);
    EXPECT_EQ(empty.getBuffer(), nullptr);
    EXPECT_EQ(empty.getSize(), 0);
    EXPECT_EQ(DataTree::createArray(3, ScalarType::UInteger32).getData<unsigned int>()[2], 0u);
}

TEST(ArrayTest, CloneCopiesAndConversionsLeaveTheSource) {
    const int64_t values[] = {257, -1};
    Array array(values, 2, ScalarType::Integer64);
    std::unique_ptr<datatree::Node> clone(array.clone());
    EXPECT_TRUE(clone->equals(array));
    EXPECT_NE(clone->getBuffer(), array.getBuffer());
    std::unique_ptr<datatree::Node> same(array.convertToArray());
    EXPECT_NE(same->getBuffer(), array.getBuffer());

    std::unique_ptr<datatree::Node> bytes(array.convertScalarType(ScalarType::UInteger8));
    EXPECT_EQ(static_cast<const uint8_t*>(bytes->getBuffer())[0], 1);
    EXPECT_EQ(static_cast<const uint8_t*>(bytes->getBuffer())[1], 255);
    EXPECT_EQ(array.getScalarType(), ScalarType::Integer64);
    EXPECT_TRUE(array.canConvertToArray());
    EXPECT_TRUE(array.canConvertToIntegerArray(ScalarType::Integer64));
    EXPECT_FALSE(array.canConvertToFloatArray(ScalarType::Double));

    const float infinite[] = {1.0f, HUGE_VALF};
    Array floats(infinite, 2, ScalarType::Float);
    EXPECT_THROW_TEXT(floats.convertScalarType(ScalarType::UInteger8), RuntimeException,
                      "Error converting array scalar type from Float to UInteger8:\nOverflow in scalar conversion");
}

TEST(ArrayTest, ResizeAndRemoveValue) {
    const int32_t values[] = {1, 2, 3, 4};
    DataTree tree = DataTree::createArray(values, 4, ScalarType::Integer32);
    tree.removeArrayValue(1);
    EXPECT_EQ(tree.getSize(), 3);
    EXPECT_EQ(tree.getData<int>()[1], 3);
    tree.removeArrayValue(2);  // the last: shortens, moves nothing
    EXPECT_EQ(tree.getSize(), 2);
    EXPECT_EQ(tree.getData<int>()[1], 3);
    EXPECT_THROW_TEXT(tree.removeArrayValue(2), RuntimeException, "Invalid array index 2");
    tree.resizeArrayData(4);
    EXPECT_EQ(tree.getData<int>()[0], 1);
    EXPECT_EQ(tree.getData<int>()[1], 3);
    EXPECT_THROW_TEXT(tree.resizeArrayData(0), RuntimeException, "Invalid size 0");

    DataTree one = DataTree::createArray(values, 1, ScalarType::Integer32);
    EXPECT_THROW_TEXT(one.removeArrayValue(0), RuntimeException, "Invalid size 0");
    EXPECT_EQ(one.getSize(), 1);
    DataTree tensor = DataTree::createTensor(values, 16, {4}, ScalarType::Integer32);
    EXPECT_THROW_TEXT(tensor.removeArrayValue(0), RuntimeException, "a Tensor cannot be used as an Array");
    EXPECT_EQ(tensor.getData<int>()[0], 1);
    DataTree none = DataTree::createArray(ScalarType::Integer16);
    none.resizeArrayData(2);
    EXPECT_EQ(none.getBufferSize(), 4);
}

TEST(ArrayTest, JsonLines) {
    const float floats[] = {0.1f, 1.0f, -2.5e-7f, 123456789.0f};
    EXPECT_EQ(DataTree::createArray(floats, 4, ScalarType::Float).toJsonString(),
              "[0.1, 1, -2.5e-07, 1.2345679e+08]");
    const double doubles[] = {0.1, 1.0 / 3.0, 1e16, 2.0};
    EXPECT_EQ(DataTree::createArray(doubles, 4, ScalarType::Double).toJsonString(),
              "[0.1, 0.3333333333333333, 1e+16, 2]");
    const uint8_t u8[] = {0, 65, 255};
    EXPECT_EQ(DataTree::createArray(u8, 3, ScalarType::UInteger8).toJsonString(), "[0, 65, 255]");
    const int8_t i8[] = {-128, 10};
    EXPECT_EQ(DataTree::createArray(i8, 2, ScalarType::Integer8).toJsonString(), "[-128, 10]");
    const uint64_t u64[] = {18446744073709551615ull};
    EXPECT_EQ(DataTree::createArray(u64, 1, ScalarType::UInteger64).toJsonString(), "[18446744073709551615]");
    EXPECT_EQ(DataTree::createArray(ScalarType::Integer32).toJsonString(), "[]");
    EXPECT_THROW_TEXT(DataTree::createArray(u8, 1, ScalarType::Boolean).toJsonString(), RuntimeException,
                      "Invalid or unsupported scalar type");

    // Float values come back as Doubles printed to 8 digits.
    DataTree object = DataTree::createObject();
    object["f"] = DataTree::createArray(floats, 4, ScalarType::Float);
    const int64_t ints[] = {-5, 1LL << 40};
    object["i"] = DataTree::createArray(ints, 2, ScalarType::Integer64);
    std::istringstream stream(object.toJsonString());
    archive::JsonImporter importer(stream);
    DataTree back = DataTree::createFromJson(importer);
    EXPECT_EQ(back["i"].getScalarType(), ScalarType::Integer64);
    EXPECT_TRUE(back["i"].equals(object["i"]));
    EXPECT_EQ(back["f"].getScalarType(), ScalarType::Double);
    EXPECT_EQ(back["f"].getData<double>()[0], 0.1);
    EXPECT_EQ(back["f"].getData<double>()[3], 123456790.0);

    std::istringstream numbers("[1, 2.5, 3]");
    archive::JsonImporter numberReader(numbers);
    Array array(ScalarType::UInteger8);
    array.fromJson(numberReader, DATATREE_IMPORT_DEFAULT);
    EXPECT_EQ(array.getScalarType(), ScalarType::Double);
    EXPECT_EQ(array.getSize(), 3);
    std::istringstream bad("[1, \"x\"]");
    archive::JsonImporter badReader(bad);
    EXPECT_THROW_TEXT(array.fromJson(badReader, DATATREE_IMPORT_DEFAULT), RuntimeException,
                      "Expect an array of numbers at line 1");
}

TEST(ArrayTest, ExporterMadeElsewhereGetsTheListsThroughItsOwnCalls) {
    std::ostringstream out;
    {
        archive::JsonExporter exporter(out);
        exporter.beginObject();
        exporter.addObjectItem("i");
        const int16_t ints[] = {-1, 2};
        DataTree::createArray(ints, 2, ScalarType::Integer16).toJson(exporter);
        exporter.addObjectItem("d");
        const double doubles[] = {0.5, 1.0 / 3.0};
        DataTree::createArray(doubles, 2, ScalarType::Double).toJson(exporter);
        exporter.endObject();
    }
    EXPECT_EQ(out.str(), "{\n  \"i\": [-1, 2],\n  \"d\": [0.5, 0.3333333333333333]\n}");
    // Through the stream form the same text comes out of the direct path.
    std::ostringstream direct;
    DataTree object = DataTree::createObject();
    const int16_t ints[] = {-1, 2};
    object["i"] = DataTree::createArray(ints, 2, ScalarType::Integer16);
    object.toJson(direct);
    EXPECT_EQ(direct.str(), "{\n  \"i\": [-1, 2]\n}");
}
