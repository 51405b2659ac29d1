#include <filesystem>
#include <fstream>
#include <limits>

#include <gtest/gtest.h>

#include "sorvane/core/RuntimeException.h"
#include "sorvane/datatree/DataTree.h"
#include "tests/datatree/Expect.h"

using namespace sorvane;

namespace {

std::string tempPath(const char* name) {
    const std::filesystem::path dir = std::filesystem::path(TALVEX_BINARY_DIR) / "datatree-files";
    std::filesystem::create_directories(dir);
    return (dir / name).string();
}

std::string fileText(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

} // namespace

TEST(DataTreeFileTest, SavedAndLoadedEqualForValuesExactIn16Digits) {
    DataTree tree = DataTree::createObject();
    tree["z"] = DataTree("quote \" back \\ tab \t line \n");
    tree["a"] = DataTree(true);
    tree["n"] = DataTree();
    tree["int"] = DataTree(-1234567890123456L);
    tree["float"] = DataTree(0.1);
    tree["small"] = DataTree(-1.2345678901234e-300);
    tree["list"] = DataTree({DataTree("x"), DataTree(2.5), DataTree::createObject()});
    const double doubles[] = {0.1, -3.25, 1e100, 123456789.0123456};
    tree["doubles"] = DataTree::createArray(doubles, 4, ScalarType::Double);
    const int64_t ints[] = {0, -1, std::numeric_limits<int64_t>::max()};
    tree["ints"] = DataTree::createArray(ints, 3, ScalarType::Integer64);
    tree["empty"] = DataTree::createObject();

    const std::string path = tempPath("round.json");
    saveDataTree(path.c_str(), tree);
    DataTree back = loadDataTree(path.c_str());
    EXPECT_TRUE(back.equals(tree)) << fileText(path);
    // Keys sorted, two-blank indentation, no line feed at the end.
    const std::string text = fileText(path);
    EXPECT_EQ(text.substr(0, 13), "{\n  \"a\": true");
    EXPECT_NE(text.back(), '\n');
    EXPECT_NE(text.find("\"doubles\": [0.1, -3.25, 1e+100, 123456789.0123456]"), std::string::npos);
    std::unique_ptr<DataTree> again(loadDataTreePtr(path.c_str()));
    EXPECT_TRUE(again->equals(tree));
    EXPECT_EQ(tree.toJsonString(), text);
}

TEST(DataTreeFileTest, WhatDoesNotComeBackTheSame) {
    const std::string path = tempPath("shapes.json");
    DataTree tree = DataTree::createObject();
    tree["whole"] = DataTree(2.0);
    tree["numbers"] = DataTree({DataTree(1), DataTree(2)});
    const float floats[] = {0.1f};
    tree["floats"] = DataTree::createArray(floats, 1, ScalarType::Float);
    saveDataTree(path.c_str(), tree);
    DataTree back = loadDataTree(path.c_str());
    EXPECT_TRUE(back["whole"].isInteger());
    EXPECT_TRUE(back["numbers"].isArray());
    // Single numbers go through a double: 2^63 - 1 comes back rounded.
    tree["big"] = DataTree(std::numeric_limits<long>::max());
    saveDataTree(path.c_str(), tree);
    EXPECT_EQ(loadDataTree(path.c_str())["big"].getInteger(), std::numeric_limits<long>::min());
    EXPECT_EQ(back["floats"].getScalarType(), ScalarType::Double);
    EXPECT_EQ(back["floats"].getData<double>()[0], 0.1);
    DataTree lists = loadDataTree(path.c_str(), DATATREE_IMPORT_KEEP_NUMBER_LISTS);
    EXPECT_TRUE(lists["numbers"].isList());
    EXPECT_TRUE(lists["numbers"].equals(tree["numbers"]));
}

TEST(DataTreeFileTest, Failures) {
    EXPECT_THROW_TEXT(loadDataTree(nullptr), RuntimeException, "No file path");
    const std::string missing = tempPath("missing.json");
    std::filesystem::remove(missing);
    EXPECT_THROW_TEXT(loadDataTree(missing.c_str()), RuntimeException, missing + " does not exist");
    EXPECT_THROW_TEXT(loadDataTreePtr(missing.c_str()), RuntimeException, missing + " does not exist");
    const std::string folder = tempPath("no-such-folder/x/out.json");
    EXPECT_THROW_TEXT(saveDataTree(folder.c_str(), DataTree(1)), RuntimeException,
                      "Error while writing file " + folder);
    const std::string bad = tempPath("bad.json");
    std::ofstream(bad) << "{\"a\": [1, 2,]}";
    EXPECT_THROW(loadDataTree(bad.c_str()), RuntimeException);
    std::ofstream(bad) << "[1, 2] trailing bytes are not looked at";
    EXPECT_EQ(loadDataTree(bad.c_str()).getSize(), 2);
}
