#include <cstring>
#include <filesystem>
#include <string>

#include <gtest/gtest.h>

#include "sorvane/core/ErrorSlot.h"
#include "sorvane/datatree/DataTree.h"
#include "sorvane/sorvane.h"

using namespace sorvane;

namespace {

std::string slot() {
    int64_t size = 0;
    sorvane_getErrorMessage(nullptr, &size);
    std::string text(static_cast<size_t>(size), '\0');
    sorvane_getErrorMessage(text.data(), &size);
    text.resize(std::strlen(text.c_str()));
    return text;
}

bool slotEndsWith(const std::string& end) {
    const std::string text = slot();
    return text.size() >= end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
}

struct Handle {
    DataTree* tree = nullptr;
    ~Handle() {
        if (tree) sorvane_datatree_DataTree_delete(tree);
    }
};

} // namespace

TEST(DataTreeFlatTest, NullTreesAndOuts) {
    sorvane_clearErrorMessage();
    bool b = false;
    int64_t i = 0;
    double d = 0;
    int32_t type = 0;
    void* p = nullptr;
    DataTree* t = nullptr;
    char text[8];
    int64_t size = 8;
    EXPECT_EQ(sorvane_datatree_DataTree_copy(&t, nullptr), -1);
    EXPECT_EQ(slot(), "dataTree is NULL");
    sorvane_clearErrorMessage();
    EXPECT_EQ(sorvane_datatree_DataTree_delete(nullptr), -1);
    EXPECT_EQ(slot(), "dataTree is NULL");
    EXPECT_EQ(sorvane_datatree_DataTree_getType(&type, nullptr), -1);
    EXPECT_EQ(sorvane_datatree_DataTree_isNull(&b, nullptr), -1);
    EXPECT_EQ(sorvane_datatree_DataTree_getInteger(&i, nullptr), -1);
    EXPECT_EQ(sorvane_datatree_DataTree_getFloat(&d, nullptr), -1);
    EXPECT_EQ(sorvane_datatree_DataTree_setString(nullptr, "x"), -1);
    EXPECT_EQ(sorvane_datatree_DataTree_getBuffer(&p, nullptr), -1);
    EXPECT_EQ(sorvane_datatree_DataTree_getString(text, &size, nullptr), -1);
    EXPECT_EQ(sorvane_datatree_DataTree_getValues(text, &size, nullptr), -1);
    EXPECT_EQ(sorvane_datatree_DataTree_addListItem(nullptr, nullptr), -1);
    EXPECT_EQ(sorvane_saveDataTree("x.json", nullptr), -1);
    EXPECT_EQ(slot(), "dataTree is NULL");
    EXPECT_EQ(sorvane_datatree_DataTree_getTensorSizes(nullptr, 0, &i, nullptr), -1);
    EXPECT_EQ(slot(), "node is NULL");

    Handle h;
    ASSERT_EQ(sorvane_datatree_DataTree_createList(&h.tree), 0);
    EXPECT_EQ(sorvane_datatree_DataTree_isList(nullptr, h.tree), -1);
    EXPECT_EQ(slot(), "out is NULL");
    EXPECT_EQ(sorvane_datatree_DataTree_createNull(nullptr), -1);
    EXPECT_EQ(slot(), "out is NULL");
    sorvane_clearErrorMessage();
    EXPECT_EQ(sorvane_datatree_DataTree_addListItem(h.tree, nullptr), -1);
    EXPECT_EQ(slot(), "dataTree is NULL");
    EXPECT_EQ(sorvane_datatree_DataTree_equals(&b, h.tree, nullptr), -1);
    EXPECT_EQ(sorvane_datatree_DataTree_getTensorSizes(nullptr, 0, nullptr, h.tree), -1);
    EXPECT_EQ(slot(), "pvalueCount is NULL");
    EXPECT_EQ(sorvane_datatree_DataTree_getTensorSizes(nullptr, 0, &i, h.tree), -1);
    EXPECT_TRUE(slotEndsWith("a List cannot be used as a Tensor"));
    EXPECT_EQ(sorvane_datatree_DataTree_createString(&t, nullptr), -1);
    EXPECT_EQ(slot(), "basic_string::_S_construct null not valid");
    EXPECT_EQ(sorvane_datatree_DataTree_hasItem(&b, h.tree, nullptr), -1);
    EXPECT_EQ(slot(), "basic_string::_S_construct null not valid");
}

TEST(DataTreeFlatTest, TextsUseTheTextSizeProtocol) {
    Handle h;
    ASSERT_EQ(sorvane_datatree_DataTree_createString(&h.tree, "hello"), 0);
    sorvane_setErrorMessage("older");
    int64_t size = 5;  // equal to the length: too small
    char text[16] = {};
    EXPECT_EQ(sorvane_datatree_DataTree_getString(text, &size, h.tree), -1);
    EXPECT_EQ(size, 6);
    EXPECT_EQ(slot(), "older");
    EXPECT_EQ(sorvane_datatree_DataTree_getString(text, &size, h.tree), 0);
    EXPECT_STREQ(text, "hello");
    EXPECT_EQ(sorvane_datatree_DataTree_getString(text, nullptr, h.tree), -1);
    EXPECT_EQ(slot(), "outSize is NULL");
    EXPECT_EQ(sorvane_datatree_DataTree_getString(nullptr, &size, h.tree), -1);
    EXPECT_EQ(slot(), "out is NULL");
    size = 0;
    EXPECT_EQ(sorvane_datatree_DataTree_toJsonString(nullptr, &size, h.tree), -1);
    EXPECT_EQ(size, 8);
    EXPECT_EQ(sorvane_datatree_DataTree_repr(text, &size, h.tree), 0);
    EXPECT_STREQ(text, "\"hello\"");

    Handle object;
    ASSERT_EQ(sorvane_datatree_DataTree_createObject(&object.tree), 0);
    EXPECT_EQ(sorvane_datatree_DataTree_setObjectItemString(object.tree, "k", "value"), 0);
    EXPECT_EQ(sorvane_datatree_DataTree_setObjectItemInteger(object.tree, "i", -4), 0);
    size = 16;
    EXPECT_EQ(sorvane_datatree_DataTree_getObjectItemString(text, &size, object.tree, "k"), 0);
    EXPECT_STREQ(text, "value");
    int64_t value = 0;
    EXPECT_EQ(sorvane_datatree_DataTree_getObjectItemInteger(&value, object.tree, "i"), 0);
    EXPECT_EQ(value, -4);
    value = 99;
    EXPECT_EQ(sorvane_datatree_DataTree_getObjectItemInteger(&value, object.tree, "k"), -1);
    EXPECT_EQ(value, 99);
    EXPECT_TRUE(slotEndsWith("a String cannot be used as an Integer"));
    EXPECT_EQ(sorvane_datatree_DataTree_getObjectItemString(text, &size, object.tree, "none"), -1);
    EXPECT_TRUE(slotEndsWith("Item 'none' not found"));
    EXPECT_EQ(sorvane_datatree_DataTree_setObjectItemString(object.tree, nullptr, "v"), -1);
    EXPECT_EQ(slot(), "basic_string::_S_construct null not valid");
}

TEST(DataTreeFlatTest, ValuesUseTheValueSizeProtocol) {
    const int32_t values[] = {1, 2, 3};
    Handle array;
    EXPECT_EQ(sorvane_datatree_DataTree_createArray(&array.tree, values, 11, 3, 7), -1);
    EXPECT_TRUE(slotEndsWith("Invalid data size"));
    ASSERT_EQ(sorvane_datatree_DataTree_createArray(&array.tree, values, 12, 3, 7), 0);
    sorvane_setErrorMessage("older");
    int64_t size = 11;
    int32_t out[3] = {};
    EXPECT_EQ(sorvane_datatree_DataTree_getValues(out, &size, array.tree), -1);
    EXPECT_EQ(size, 12);
    EXPECT_EQ(slot(), "older");
    EXPECT_EQ(sorvane_datatree_DataTree_getValues(out, &size, array.tree), 0);  // equal is enough
    EXPECT_EQ(out[2], 3);
    EXPECT_EQ(sorvane_datatree_DataTree_getValues(nullptr, &size, array.tree), -1);
    EXPECT_EQ(slot(), "out is NULL");
    EXPECT_EQ(sorvane_datatree_DataTree_getValues(out, nullptr, array.tree), -1);
    EXPECT_EQ(slot(), "outSize is NULL");
    int32_t type = 0;
    int64_t count = 0;
    void* buffer = nullptr;
    EXPECT_EQ(sorvane_datatree_DataTree_getScalarType(&type, array.tree), 0);
    EXPECT_EQ(type, 7);
    EXPECT_EQ(sorvane_datatree_DataTree_getValueCount(&count, array.tree), 0);
    EXPECT_EQ(count, 3);
    EXPECT_EQ(sorvane_datatree_DataTree_getBuffer(&buffer, array.tree), 0);
    EXPECT_EQ(buffer, array.tree->getBuffer());
    EXPECT_EQ(sorvane_datatree_DataTree_getType(&type, array.tree), 0);
    EXPECT_EQ(type, 5);
}

TEST(DataTreeFlatTest, Tensors) {
    const float values[] = {1, 2, 3, 4, 5, 6};
    const int64_t sizes[] = {2, 3};
    Handle tensor;
    EXPECT_EQ(sorvane_datatree_DataTree_createTensor(&tensor.tree, values, 20, sizes, 2, 10), -1);
    EXPECT_TRUE(slotEndsWith("Invalid buffer size"));
    ASSERT_EQ(sorvane_datatree_DataTree_createTensor(&tensor.tree, values, 24, sizes, 2, 10), 0);
    int64_t dim = 0;
    EXPECT_EQ(sorvane_datatree_DataTree_getTensorSizes(nullptr, 0, &dim, tensor.tree), 0);
    EXPECT_EQ(dim, 2);
    int64_t got[2] = {};
    EXPECT_EQ(sorvane_datatree_DataTree_getTensorSizes(got, 15, &dim, tensor.tree), -1);
    EXPECT_EQ(sorvane_datatree_DataTree_getTensorSizes(got, 16, &dim, tensor.tree), 0);
    EXPECT_EQ(got[1], 3);
    int64_t value = 0;
    EXPECT_EQ(sorvane_datatree_DataTree_getTensorDim(&value, tensor.tree), 0);
    EXPECT_EQ(value, 2);
    EXPECT_EQ(sorvane_datatree_DataTree_getTensorSize(&value, tensor.tree, 1), 0);
    EXPECT_EQ(value, 3);
    EXPECT_EQ(sorvane_datatree_DataTree_getSize(&value, tensor.tree), 0);
    EXPECT_EQ(value, 6);
    EXPECT_EQ(sorvane_datatree_DataTree_getTensorSize(&value, tensor.tree, 2), -1);
    EXPECT_TRUE(slotEndsWith("Invalid dim index 2"));
    const int64_t flat[] = {6};
    EXPECT_EQ(sorvane_datatree_DataTree_setTensorData(tensor.tree, values, 23, flat, 1, 10), -1);
    EXPECT_TRUE(slotEndsWith("Invalid buffer size"));
    EXPECT_EQ(sorvane_datatree_DataTree_setTensorData(tensor.tree, values, 24, flat, 1, 10), 0);
    EXPECT_EQ(tensor.tree->getTensorSizes(), std::vector<long>{6});

    Handle empty;
    ASSERT_EQ(sorvane_datatree_DataTree_createTensor(&empty.tree, nullptr, 0, nullptr, 0, 11), 0);
    EXPECT_EQ(empty.tree->getTensorSizes(), std::vector<long>{1});
    EXPECT_EQ(empty.tree->getScalarType(), ScalarType::Invalid);
    const int64_t huge[] = {1L << 20, 1L << 20};
    EXPECT_EQ(sorvane_datatree_DataTree_createTensor(&empty.tree, values, 24, huge, 2, 11), -1);
    EXPECT_TRUE(slotEndsWith("Invalid buffer size"));

    Handle object;
    ASSERT_EQ(sorvane_datatree_DataTree_createObject(&object.tree), 0);
    EXPECT_EQ(sorvane_datatree_DataTree_setObjectItemTensor(object.tree, "t", values, 24, sizes, 2, 10), 0);
    EXPECT_EQ((*object.tree)["t"].getTensorSizes(), (std::vector<long>{2, 3}));
}

TEST(DataTreeFlatTest, HandlesShareNodes) {
    Handle list;
    ASSERT_EQ(sorvane_datatree_DataTree_createList(&list.tree), 0);
    Handle item;
    ASSERT_EQ(sorvane_datatree_DataTree_createInteger(&item.tree, 1), 0);
    EXPECT_EQ(sorvane_datatree_DataTree_addListItem(list.tree, item.tree), 0);
    EXPECT_EQ(sorvane_datatree_DataTree_addListItem(list.tree, item.tree), 0);
    Handle first, again;
    ASSERT_EQ(sorvane_datatree_DataTree_getListItem(&first.tree, list.tree, 0), 0);
    ASSERT_EQ(sorvane_datatree_DataTree_getListItem(&again.tree, list.tree, 0), 0);
    EXPECT_EQ(sorvane_datatree_DataTree_setInteger(first.tree, 42), 0);
    int64_t value = 0;
    EXPECT_EQ(sorvane_datatree_DataTree_getInteger(&value, again.tree), 0);
    EXPECT_EQ(value, 42);
    EXPECT_EQ(sorvane_datatree_DataTree_getListItemInteger(&value, list.tree, 1), 0);
    EXPECT_EQ(value, 42);  // the same node was added twice

    EXPECT_EQ(sorvane_datatree_DataTree_setListItemString(list.tree, 1, "s"), 0);
    char text[4];
    int64_t size = 4;
    EXPECT_EQ(sorvane_datatree_DataTree_getListItemString(text, &size, list.tree, 1), 0);
    EXPECT_STREQ(text, "s");
    EXPECT_EQ(sorvane_datatree_DataTree_setListItemInteger(list.tree, 5, 1), -1);
    EXPECT_TRUE(slotEndsWith("Invalid index 5"));
    EXPECT_EQ(sorvane_datatree_DataTree_setListItem(list.tree, 0, item.tree), 0);
    EXPECT_EQ(sorvane_datatree_DataTree_getListItem(&first.tree, list.tree, 9), -1);

    Handle copy;
    ASSERT_EQ(sorvane_datatree_DataTree_copy(&copy.tree, list.tree), 0);
    bool same = false;
    EXPECT_EQ(sorvane_datatree_DataTree_equals(&same, copy.tree, list.tree), 0);
    EXPECT_TRUE(same);
    EXPECT_EQ(&copy.tree->getNode(), &list.tree->getNode());

    Handle object, child, got;
    ASSERT_EQ(sorvane_datatree_DataTree_createObject(&object.tree), 0);
    ASSERT_EQ(sorvane_datatree_DataTree_createFloat(&child.tree, 1.5), 0);
    EXPECT_EQ(sorvane_datatree_DataTree_setObjectItem(object.tree, "c", child.tree), 0);
    EXPECT_EQ(sorvane_datatree_DataTree_setFloat(child.tree, 2.5), 0);
    ASSERT_EQ(sorvane_datatree_DataTree_getObjectItem(&got.tree, object.tree, "c"), 0);
    double d = 0;
    EXPECT_EQ(sorvane_datatree_DataTree_getFloat(&d, got.tree), 0);
    EXPECT_EQ(d, 2.5);
    bool has = false;
    EXPECT_EQ(sorvane_datatree_DataTree_hasItem(&has, object.tree, "c"), 0);
    EXPECT_TRUE(has);
    bool is = true;
    EXPECT_EQ(sorvane_datatree_DataTree_isObject(&is, object.tree), 0);
    EXPECT_TRUE(is);
    EXPECT_EQ(sorvane_datatree_DataTree_isTensor(&is, object.tree), 0);
    EXPECT_FALSE(is);
}

TEST(DataTreeFlatTest, Files) {
    const std::filesystem::path dir = std::filesystem::path(TALVEX_BINARY_DIR) / "datatree-files";
    std::filesystem::create_directories(dir);
    const std::string path = (dir / "flat.json").string();
    Handle object;
    ASSERT_EQ(sorvane_datatree_DataTree_createObject(&object.tree), 0);
    ASSERT_EQ(sorvane_datatree_DataTree_setObjectItemInteger(object.tree, "n", 3), 0);
    EXPECT_EQ(sorvane_saveDataTree(path.c_str(), object.tree), 0);
    Handle back;
    back.tree = sorvane_loadDataTree(path.c_str());
    ASSERT_NE(back.tree, nullptr);
    EXPECT_TRUE(back.tree->equals(*object.tree));

    sorvane_clearErrorMessage();
    const std::string missing = (dir / "missing.json").string();
    std::filesystem::remove(missing);
    EXPECT_EQ(sorvane_loadDataTree(missing.c_str()), nullptr);
    EXPECT_TRUE(slotEndsWith("Unsupported or invalid object at line 1"));
    EXPECT_EQ(sorvane_loadDataTree(nullptr), nullptr);
    EXPECT_EQ(slot(), "basic_string::_S_construct null not valid");
    EXPECT_EQ(sorvane_saveDataTree(nullptr, object.tree), -1);
    EXPECT_EQ(slot(), "basic_string::_S_construct null not valid");
    const std::string unwritable = (dir / "no-folder" / "x.json").string();
    EXPECT_EQ(sorvane_saveDataTree(unwritable.c_str(), object.tree), -1);
    EXPECT_TRUE(slotEndsWith("Error while writing file " + unwritable));
}
