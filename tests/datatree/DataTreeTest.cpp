#include "sorvane/datatree/DataTree.h"

#include <cmath>
#include <limits>
#include <sstream>
#include <stdexcept>

#include <gtest/gtest.h>

#include "sorvane/archive/JsonImporter.h"
#include "sorvane/core/RuntimeException.h"
#include "sorvane/datatree/node/Node.h"
#include "tests/datatree/Expect.h"

using namespace sorvane;

namespace {

DataTree read(const std::string& text, DataTreeImport flags = DATATREE_IMPORT_DEFAULT) {
    std::istringstream stream(text);
    archive::JsonImporter importer(stream);
    return DataTree::createFromJson(importer, flags);
}

} // namespace

TEST(DataTreeTest, CopiesShareAndSettersOfAnotherKindReseatOnlyThisHandle) {
    DataTree a(1);
    DataTree b = a;
    b.setInteger(5);
    EXPECT_EQ(a.getInteger(), 5);
    EXPECT_EQ(&a.getNode(), &b.getNode());

    DataTree s("text");
    DataTree t = s;
    t.setInteger(5);
    EXPECT_TRUE(s.isString());
    EXPECT_EQ(s.getString(), "text");
    EXPECT_TRUE(t.isInteger());

    // A child in a container stays shared with the one who gave it.
    DataTree list = DataTree::createList();
    DataTree child(2.5);
    list.addItem(child);
    child.setFloat(3.5);
    EXPECT_EQ(list.getItem(0).getFloat(), 3.5);
    child.setString("other");  // re-seated: the list keeps the old node
    EXPECT_EQ(list.getItem(0).getFloat(), 3.5);

    // The old node goes with its last handle; weak observation proves it.
    std::weak_ptr<datatree::Node> watch;
    {
        DataTree x(7);
        watch = x.getNodeRef();
        x.setString("now a string");
        EXPECT_TRUE(watch.expired());
    }
    DataTree n;
    EXPECT_TRUE(n.isNull());
    n.setNull();
    EXPECT_TRUE(n.isNull());
    DataTree k(true);
    k.setItems({"a", "b"});
    EXPECT_EQ(k.getStringVector(), (std::vector<std::string>{"a", "b"}));
}

TEST(DataTreeTest, CloneIsDeep) {
    DataTree object = DataTree::createObject();
    object["list"] = DataTree({DataTree(1), DataTree("two")});
    const double values[] = {1.0, 2.0};
    object["array"] = DataTree::createArray(values, 2, ScalarType::Double);
    object["tensor"] = DataTree::createTensor(std::vector<long>{2}, ScalarType::Float);

    DataTree copy(object.getNode().clone());
    EXPECT_TRUE(copy.equals(object));
    copy["list"].getItem(0).setInteger(100);
    copy["array"].getData<double>()[0] = 9.0;
    copy["tensor"].getData<float>()[1] = 4.0f;
    EXPECT_EQ(object["list"].getItem(0).getInteger(), 1);
    EXPECT_EQ(object["array"].getData<double>()[0], 1.0);
    EXPECT_EQ(object["tensor"].getData<float>()[1], 0.0f);
    EXPECT_NE(copy["array"].getBuffer(), object["array"].getBuffer());
    EXPECT_FALSE(copy.equals(object));
}

TEST(DataTreeTest, KindErrorsNameTheKind) {
    DataTree integer(3);
    EXPECT_THROW_TEXT(integer.getString(), RuntimeException, "(): a Integer cannot be used as a String");
    EXPECT_THROW_TEXT(integer.isEmpty(), RuntimeException, "a Integer cannot be used as a container");
    EXPECT_THROW_TEXT(integer.getBuffer(), RuntimeException, "a Integer cannot be used as a type with a buffer");
    EXPECT_THROW_TEXT(DataTree("s").getInteger(), RuntimeException, "a String cannot be used as an Integer");
    EXPECT_THROW_TEXT(DataTree().getFloat(), RuntimeException, "a Null cannot be used as a Float");
    EXPECT_THROW_TEXT(DataTree(1.0).getBoolean(), RuntimeException, "a Float cannot be used as a Boolean");
    EXPECT_THROW_TEXT(DataTree().getScalarType(), RuntimeException, "a Null cannot be used as a type with scalars");
    EXPECT_THROW_TEXT(DataTree::createList().hasItem("a"), RuntimeException, "a List cannot be used as an Object");
    EXPECT_THROW_TEXT(DataTree::createObject().getItem(0), RuntimeException, "a Object cannot be used as a List");
    EXPECT_THROW_TEXT(DataTree(1).getTensorDim(), RuntimeException, "a Integer cannot be used as a Tensor");
    EXPECT_THROW_TEXT(DataTree(1).resizeArrayData(3), RuntimeException, "a Integer cannot be used as an Array");
    EXPECT_THROW_TEXT(DataTree(1).getNode().setNull(nullptr), RuntimeException, "a Integer cannot be used as a Null");
    EXPECT_THROW_TEXT(DataTree(1).convertToArray(ScalarType::Double), RuntimeException,
                      "Can't convert Integer to an array of Double");
    EXPECT_THROW_TEXT(DataTree(1).convertToIntegerArray(ScalarType::Integer64), RuntimeException,
                      "Can't convert Integer to an integer array");
    EXPECT_THROW_TEXT(DataTree(1).convertToFloatArray(ScalarType::Double), RuntimeException,
                      "Can't convert Integer to a float array");
    EXPECT_THROW_TEXT(DataTree(1).getNode().convertScalarType(ScalarType::Double), RuntimeException,
                      "Can't convert Integer scalar type");
    EXPECT_THROW_TEXT(DataTree(1).convertScalarType(ScalarType::Double), RuntimeException,
                      "Can't convert scalar type since this item has no scalars");
    EXPECT_THROW_TEXT(DataTree("s").convertToArray(), std::runtime_error, "Can't convert to an array");
    std::istringstream nothing("[]");
    archive::JsonImporter importer(nothing);
    EXPECT_THROW_TEXT(DataTree::createTensor(ScalarType::Float).getNode().fromJson(importer, DATATREE_IMPORT_DEFAULT),
                      RuntimeException, "Not implemented");
    EXPECT_THROW_TEXT(DataTree(static_cast<DataTreeType>(9), ScalarType::Invalid), std::runtime_error,
                      "Invalid or unsupported data type");
    EXPECT_THROW(DataTree(static_cast<const char*>(nullptr)), std::logic_error);
    // The scalar kinds answer a scalar type without claiming to have one.
    EXPECT_EQ(DataTree(1).getScalarType(), ScalarType::Integer64);
    EXPECT_EQ(DataTree(1.0).getScalarType(), ScalarType::Float);
    EXPECT_EQ(DataTree(false).getScalarType(), ScalarType::Boolean);
    EXPECT_FALSE(DataTree(1).hasScalarType());
}

TEST(DataTreeTest, EmptyValuesOfEachKind) {
    EXPECT_TRUE(DataTree(DataTreeType::String, ScalarType::Invalid).getString().empty());
    EXPECT_EQ(DataTree(DataTreeType::Integer, ScalarType::Invalid).getInteger(), 0);
    EXPECT_EQ(DataTree(DataTreeType::Float, ScalarType::Invalid).getFloat(), 0.0);
    EXPECT_FALSE(DataTree(DataTreeType::Boolean, ScalarType::Invalid).getBoolean());
    EXPECT_EQ(DataTree(DataTreeType::Array, ScalarType::Float).getSize(), 0);
    DataTree tensor(DataTreeType::Tensor, ScalarType::Double);
    EXPECT_EQ(tensor.getTensorSizes(), std::vector<long>{1});
    EXPECT_EQ(tensor.getBufferSize(), 8);
    EXPECT_TRUE(DataTree(DataTreeType::Object, ScalarType::Invalid).isEmpty());
    EXPECT_TRUE(DataTree(DataTreeType::List, ScalarType::Invalid).isEmpty());
    EXPECT_EQ(DataTree(5u).getInteger(), 5);
    EXPECT_EQ(DataTree::createInteger(static_cast<unsigned char>(200)).getInteger(), 200);
    EXPECT_EQ(DataTree::createInteger(static_cast<signed char>(-3)).getInteger(), -3);
}

TEST(DataTreeTest, InitializerListAndObjectAccess) {
    DataTree object{{"b", 2}, {"a", 1}, {"b", 3}};
    ASSERT_TRUE(object.isObject());
    EXPECT_EQ(object.getItemNames(), (std::vector<std::string>{"a", "b"}));
    EXPECT_EQ(object.getItem("b").getInteger(), 3);
    DataTree list{{"a", 1}, 3};
    ASSERT_TRUE(list.isList());
    EXPECT_EQ(list.getSize(), 2);
    EXPECT_TRUE(DataTree(std::initializer_list<DataTree>{}).isObject());

    DataTree shared(10);
    DataTree holder{{"x", shared}};
    shared.setInteger(11);
    EXPECT_EQ(holder["x"].getInteger(), 11);

    EXPECT_TRUE(object["missing"].isNull());
    EXPECT_TRUE(object.hasItem("missing"));
    EXPECT_THROW_TEXT(list["x"], RuntimeException, "a List cannot be used as an Object");
    EXPECT_THROW_TEXT(object.getItem("nope"), RuntimeException, "Item 'nope' not found");
    object.removeItem("nope");
    object.removeItem("missing");
    EXPECT_FALSE(object.hasItem("missing"));

    // Keys in byte order, not insertion order; bytes above 0x7f sort last.
    DataTree keys = DataTree::createObject();
    for (const char* key : {"b", "\xc3\xa9", "B", "a", "aa"}) keys.setItem(key, DataTree(1));
    EXPECT_EQ(keys.getItemNames(), (std::vector<std::string>{"B", "a", "aa", "b", "\xc3\xa9"}));
}

TEST(DataTreeTest, ListSlotsCheckTheirIndex) {
    DataTree list = DataTree::createList();
    list.addItem(1);
    list.addItem(2);
    list.insertItem(0, DataTree(0));
    list.insertItem(3, DataTree(3));
    list.setItem(1L, DataTree("one"));
    list.removeItem(2L);
    EXPECT_EQ(list.toJsonString(), "[\n  0,\n  \"one\",\n  3\n]");
    EXPECT_THROW_TEXT(list.getItem(3), RuntimeException, "Invalid index 3");
    EXPECT_THROW_TEXT(list.getItem(-1), RuntimeException, "Invalid index -1");
    EXPECT_THROW_TEXT(list.insertItem(5, DataTree()), RuntimeException, "Invalid index 5");
    EXPECT_THROW_TEXT(list.setItem(3L, DataTree()), RuntimeException, "Invalid index 3");
    EXPECT_THROW_TEXT(list.removeItem(-1L), RuntimeException, "Invalid index -1");
    EXPECT_THROW_TEXT(list.getStringVector(), RuntimeException, "a Integer cannot be used as a String");
    list.removeItems();
    EXPECT_TRUE(list.isEmpty());
}

TEST(DataTreeTest, Equality) {
    EXPECT_FALSE(DataTree(1).equals(DataTree(1.0)));
    const double nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_FALSE(DataTree(nan).equals(DataTree(nan)));
    EXPECT_TRUE(DataTree().equals(DataTree(nullptr)));
    EXPECT_TRUE(DataTree(std::string("a\0b", 3)).equals(DataTree(std::string("a\0b", 3))));
    EXPECT_FALSE(DataTree(std::string("a\0b", 3)).equals(DataTree(std::string("a\0c", 3))));
    EXPECT_TRUE(DataTree({DataTree(1), DataTree("x")}).equals(DataTree({DataTree(1), DataTree("x")})));
    EXPECT_FALSE(DataTree({DataTree(1), DataTree("x")}).equals(DataTree({DataTree("x"), DataTree(1)})));
    EXPECT_TRUE(DataTree({{"a", 1}, {"b", 2}}).equals(DataTree({{"b", 2}, {"a", 1}})));
    EXPECT_FALSE(DataTree({{"a", 1}}).equals(DataTree({{"b", 1}})));
    const int32_t x[] = {1, 2};
    EXPECT_FALSE(DataTree::createArray(x, 2, ScalarType::Integer32)
                     .equals(DataTree::createArray(x, 2, ScalarType::UInteger32)));
    EXPECT_FALSE(DataTree::createArray(x, 2, ScalarType::Integer32)
                     .equals(DataTree::createTensor(static_cast<const void*>(x), 8, {2}, ScalarType::Integer32)));
}

TEST(DataTreeTest, ReadingPicksTheKindFromTheShape) {
    EXPECT_TRUE(read("null").isNull());
    EXPECT_TRUE(read("true").getBoolean());
    EXPECT_EQ(read("\"s\"").getString(), "s");
    DataTree one = read("1.0");
    EXPECT_TRUE(one.isInteger());
    EXPECT_EQ(one.getInteger(), 1);
    EXPECT_TRUE(read("2.5").isFloat());
    EXPECT_TRUE(read("1e300").isFloat());
    EXPECT_EQ(read("-9223372036854775808").getInteger(), std::numeric_limits<long>::min());
    EXPECT_EQ(read("9223372036854775808").getInteger(), std::numeric_limits<long>::min());
    EXPECT_TRUE(read("9223372036854777856").isFloat());

    DataTree mixed = read("[1, 2.5]");
    EXPECT_TRUE(mixed.isArray());
    EXPECT_EQ(mixed.getScalarType(), ScalarType::Double);
    DataTree integers = read("[1, 2]");
    EXPECT_EQ(integers.getScalarType(), ScalarType::Integer64);
    EXPECT_EQ(integers.getData<long>()[1], 2);
    EXPECT_TRUE(read("[1, \"a\"]").isList());
    DataTree empty = read("[]");
    EXPECT_TRUE(empty.isArray());
    EXPECT_EQ(empty.getScalarType(), ScalarType::Integer64);
    EXPECT_EQ(empty.getSize(), 0);
    for (const char* text : {"[1, 2.5]", "[1, 2]", "[1, \"a\"]", "[]"})
        EXPECT_TRUE(read(text, DATATREE_IMPORT_KEEP_NUMBER_LISTS).isList()) << text;
    EXPECT_TRUE(read("[[1, 2], [3]]", DATATREE_IMPORT_KEEP_NUMBER_LISTS).getItem(1).isList());
    EXPECT_TRUE(read("[[1, 2], [3]]").getItem(1).isArray());

    DataTree twice = read("{\"a\": 1, \"a\": 2}");
    EXPECT_EQ(twice.getSize(), 1);
    EXPECT_EQ(twice["a"].getInteger(), 2);

    EXPECT_THROW_TEXT(read("\n\n  nope"), RuntimeException, "Unsupported or invalid object at line 1");
    EXPECT_THROW_TEXT(read("[1, 2"), RuntimeException, "Expect the end of an array at line 1");
    EXPECT_THROW_TEXT(read("[1,\n2, @]"), RuntimeException, "Unsupported or invalid object at line 2");
    EXPECT_THROW_TEXT(read("[\"a\", 2"), RuntimeException, "Expect the end of an array at line 1");
    EXPECT_THROW_TEXT(read("{\"a\": 2"), RuntimeException, "Expect the end of an object at line 1");
    EXPECT_THROW(read(std::string(2000, '[')), RuntimeException);
}

TEST(DataTreeTest, ConversionsReseatTheHandle) {
    DataTree list = read("[1, 2, 3]", DATATREE_IMPORT_KEEP_NUMBER_LISTS);
    DataTree other = list;
    EXPECT_TRUE(list.canConvertToIntegerArray(ScalarType::Integer64));
    list.convertToFloatArray(ScalarType::Float);
    EXPECT_TRUE(list.isArray());
    EXPECT_EQ(list.getData<float>()[2], 3.0f);
    EXPECT_TRUE(other.isList());

    DataTree floats = read("[1, 2.5]", DATATREE_IMPORT_KEEP_NUMBER_LISTS);
    EXPECT_FALSE(floats.canConvertToIntegerArray(ScalarType::Integer64));
    EXPECT_TRUE(floats.canConvertToFloatArray(ScalarType::Double));
    DataTree asArray = floats.convertToArray();
    EXPECT_EQ(asArray.getScalarType(), ScalarType::Double);
    EXPECT_EQ(DataTree::createList().convertToArray().getScalarType(), ScalarType::Integer64);
    EXPECT_THROW_TEXT(floats.convertToIntegerArray(ScalarType::Integer64), RuntimeException,
                      "a Float cannot be used as an Integer");
    DataTree strings = read("[1, \"x\"]");
    EXPECT_THROW_TEXT(DataTree(strings).convertToFloatArray(ScalarType::Double), RuntimeException,
                      "Can't convert to a Double");
    EXPECT_THROW_TEXT(DataTree(strings).convertToIntegerArray(ScalarType::Integer32), RuntimeException,
                      "Invalid or unsupported scalar type Integer32");
    EXPECT_THROW_TEXT(strings.convertToArray(ScalarType::Boolean), RuntimeException,
                      "Invalid or unsupported scalar type Boolean");

    DataTree array = read("[1, 300]");
    DataTree keep = array;
    array.convertScalarType(ScalarType::UInteger8);
    EXPECT_EQ(array.getData<unsigned char>()[1], 44);
    EXPECT_EQ(keep.getScalarType(), ScalarType::Integer64);
    const void* before = array.getBuffer();
    array.convertScalarType(ScalarType::UInteger8);
    EXPECT_EQ(array.getBuffer(), before);
    EXPECT_THROW_TEXT(array.convertScalarType(ScalarType::Integer16), RuntimeException,
                      "Invalid or unsupported scalar type conversion UInteger8 => Integer16");
}

TEST(DataTreeTest, FloatVectorAndArithmetic) {
    const int64_t ints[] = {-3, 1 << 24, 7};
    EXPECT_EQ(DataTree::createArray(ints, 3, ScalarType::Integer64).getVector<float>(),
              (std::vector<float>{-3.0f, 16777216.0f, 7.0f}));
    const double doubles[] = {1e300, 0.5};
    std::vector<float> narrowed = DataTree::createArray(doubles, 2, ScalarType::Double).getVector<float>();
    EXPECT_TRUE(std::isinf(narrowed[0]));
    EXPECT_EQ(narrowed[1], 0.5f);
    const uint8_t flags[] = {1};
    EXPECT_THROW_TEXT(DataTree::createArray(flags, 1, ScalarType::Boolean).getVector<float>(), RuntimeException,
                      "Unsupported conversion");

    const uint8_t a[] = {250, 3, 9};
    const uint8_t b[] = {10, 5, 3};
    DataTree left = DataTree::createArray(a, 3, ScalarType::UInteger8);
    DataTree alias = left;
    DataTree right = DataTree::createArray(b, 3, ScalarType::UInteger8);
    left += right;
    EXPECT_EQ(alias.getData<unsigned char>()[0], 4);  // wrapped, seen by every handle
    left -= right;
    left *= right;
    EXPECT_EQ(left.getData<unsigned char>()[0], static_cast<unsigned char>(2500 % 256));
    left /= right;
    EXPECT_EQ(left.getData<unsigned char>()[2], 9);

    const int32_t lowest[] = {std::numeric_limits<int32_t>::min()};
    const int32_t minusOne[] = {-1};
    DataTree l = DataTree::createArray(lowest, 1, ScalarType::Integer32);
    l /= DataTree::createArray(minusOne, 1, ScalarType::Integer32);
    EXPECT_EQ(l.getData<int>()[0], std::numeric_limits<int32_t>::min());
    l += l;
    EXPECT_EQ(l.getData<int>()[0], 0);

    EXPECT_THROW_TEXT(left += DataTree::createArray(b, 2, ScalarType::UInteger8), RuntimeException,
                      "Different value counts 3 != 2");
    EXPECT_THROW_TEXT(left += DataTree::createArray(a, 3, ScalarType::Integer8), RuntimeException,
                      "Invalid scalar type");
    EXPECT_THROW_TEXT(DataTree::createArray(flags, 1, ScalarType::Boolean) +=
                      DataTree::createArray(flags, 1, ScalarType::Boolean),
                      RuntimeException, "Invalid or unsupported scalar type 'Boolean'");
    EXPECT_THROW_TEXT(DataTree(1) += DataTree(2), RuntimeException, "a Integer cannot be used as a type with a buffer");

    const double x[] = {1.5, 2.0};
    DataTree tensor = DataTree::createTensor(static_cast<const void*>(x), 16, {2}, ScalarType::Double);
    tensor *= tensor;
    EXPECT_EQ(tensor.getData<double>()[0], 2.25);
    EXPECT_THROW_TEXT(tensor.getData<float>(), RuntimeException, "Invalid scalar type");
}
