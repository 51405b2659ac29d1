// The document checker, and the check modes of the talvex program run as the
// program they are (exit codes 0 clean or equal, 3 invalid or different, 2 error).
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <sys/wait.h>

#include "sorvane/arf/Arf.h"
#include "sorvane/datatree/DataTree.h"
#include "sorvane/gltf2/Gltf.h"
#include "sorvane/imageio/imageio.h"
#include "sorvane/tools/validate.h"
#include "RunTalvex.h"

namespace {

const char* kBroken = R"(memory:{"components": {
  "nodes": [{"mapping": "Hips", "children": [2, 7], "name": "hips", "id": 1},
            {"mapping": "Spine", "parent": 1, "name": "spine", "id": 2},
            {"mapping": "Head", "name": "head", "id": 2}],
  "skeletons": [{"root": 1, "joints": [{"node": 1}], "name": "s", "id": 1}]},
  "data": [{"type": "application/mpeg.arf.dense", "uri": "missing.bin", "name": "gone", "id": 1}]})";

std::string run(const std::string& arguments, int& code) { return runTalvex(arguments, code); }

bool programBuilt() { return std::filesystem::exists(std::string(TALVEX_BINARY_DIR) + "/apps/talvex"); }

std::string writeFile(const std::string& name, const std::string& text) {
    const std::string path = std::string(TALVEX_BINARY_DIR) + "/check-test-" + name;
    std::ofstream(path) << text;
    return path;
}

} // namespace

TEST(ValidateArf, DanglingDuplicateAndUnreadable) {
    const auto problems = sorvane::validateArf(sorvane::arf::Arf::load(kBroken, true));
    const std::vector<std::string> expected = {
        "components.nodes[2]: duplicate id 2 in components.nodes",
        "components.nodes[0].children[1]: dangling reference to id 7 in components.nodes",
    };
    ASSERT_EQ(problems.size(), 3u) << ::testing::PrintToString(problems);
    EXPECT_EQ(problems[0], expected[0]);
    EXPECT_EQ(problems[1], expected[1]);
    EXPECT_EQ(problems[2].rfind("data[0]: payload fails to read: ", 0), 0u) << problems[2];
}

TEST(ValidateArf, CleanDocumentHasNoLines) {
    const char* clean = R"(memory:{"components": {
      "nodes": [{"mapping": "Hips", "children": [2], "name": "hips", "id": 1},
                {"mapping": "Spine", "parent": 1, "name": "spine", "id": 2}],
      "meshes": []}, "structure": {"assets": [{"name": "a", "id": 1, "lods": [{"name": "l", "id": 1}]},
                                              {"name": "b", "id": 2, "lods": [{"name": "l", "id": 1}]}]}})";
    // Equal ids in two different lists are no duplicates.
    EXPECT_TRUE(sorvane::validateArf(sorvane::arf::Arf::load(clean, true)).empty());
}

TEST(ValidateGltf, IndicesPastTheirListAndUnreadableAccessors) {
    const std::string path = writeFile("indices.gltf", R"({"asset": {"version": "2.0"},
      "buffers": [{"byteLength": 8, "uri": "data:application/octet-stream;base64,AAAAAAAAAAA="}],
      "bufferViews": [{"buffer": 0, "byteLength": 8}, {"buffer": 1, "byteLength": 4}],
      "accessors": [{"bufferView": 0, "componentType": 5126, "count": 2, "type": "SCALAR"},
                    {"bufferView": 2, "componentType": 5126, "count": 2, "type": "SCALAR"},
                    {"bufferView": 0, "componentType": 5126, "count": 9, "type": "VEC3"}]})");
    const auto problems = sorvane::validateGltf(sorvane::gltf2::Gltf::load(path, true));
    ASSERT_EQ(problems.size(), 4u) << ::testing::PrintToString(problems);
    // The last valid index is one less than the size: 1 of 2 views is fine, 2 is not.
    EXPECT_EQ(problems[0], "accessors[1].bufferView: dangling reference to index 2 in bufferViews");
    EXPECT_EQ(problems[1], "bufferViews[1].buffer: dangling reference to index 1 in buffers");
    EXPECT_EQ(problems[2].rfind("accessors[1]: accessor fails to read: ", 0), 0u);
    EXPECT_EQ(problems[3].rfind("accessors[2]: accessor fails to read: ", 0), 0u);
}

TEST(ValidateGltf, SceneGraphIndices) {
    // Child lists, joints and the attribute and target maps are checked as
    // single indices are.
    const std::string path = writeFile("scene.gltf", R"({"asset": {"version": "2.0"},
      "meshes": [{"primitives": [{"attributes": {"POSITION": 4}, "targets": [{"NORMAL": 5}]}]}],
      "nodes": [{"children": [0, 3], "mesh": 1}], "skins": [{"joints": [2]}]})");
    auto problems = sorvane::validateGltf(sorvane::gltf2::Gltf::load(path, true));
    std::sort(problems.begin(), problems.end());
    const std::vector<std::string> expected = {
        "meshes[0].primitives[0].attributes[POSITION]: dangling reference to index 4 in accessors",
        "meshes[0].primitives[0].targets[0][NORMAL]: dangling reference to index 5 in accessors",
        "nodes[0].children[1]: dangling reference to index 3 in nodes",
        "nodes[0].mesh: dangling reference to index 1 in meshes",
        "skins[0].joints[0]: dangling reference to index 2 in nodes",
    };
    EXPECT_EQ(problems, expected);
}

TEST(CheckModes, ValidateExitCodes) {
    if (!programBuilt()) GTEST_SKIP() << "talvex program not built";
    int code = -1;
    const std::string broken = writeFile("broken.arf", std::string(kBroken).substr(7));
    std::string out = run("validate " + broken, code);
    EXPECT_EQ(code, 3) << out;
    EXPECT_NE(out.find("dangling reference to id 7"), std::string::npos) << out;
    const std::string clean = writeFile("clean.arf", R"({"components": {"meshes": []}})");
    out = run("validate " + clean, code);
    EXPECT_EQ(code, 0) << out;
    EXPECT_EQ(out, "valid\n");
    out = run("validate " + std::string(TALVEX_BINARY_DIR) + "/no-such-document.arf", code);
    EXPECT_EQ(code, 2) << out;
}

TEST(CheckModes, CompareTensorsExitCodes) {
    if (!programBuilt()) GTEST_SKIP() << "talvex program not built";
    const float a[4] = {1, 2, 3, 4}, b[4] = {1, 2, 3, 5};
    const std::string pathA = std::string(TALVEX_BINARY_DIR) + "/check-test-a.json";
    const std::string pathB = std::string(TALVEX_BINARY_DIR) + "/check-test-b.json";
    sorvane::saveDataTree(pathA.c_str(), sorvane::DataTree::createTensor(a, sizeof a, std::vector<long>{2, 2},
                                                                         sorvane::ScalarType::Float));
    sorvane::saveDataTree(pathB.c_str(), sorvane::DataTree::createTensor(b, sizeof b, std::vector<long>{2, 2},
                                                                         sorvane::ScalarType::Float));
    int code = -1;
    std::string out = run("compare-tensors " + pathA + " " + pathB, code);
    EXPECT_EQ(code, 3) << out;
    EXPECT_EQ(out, "1,1: 4 != 5\n1/4 differences (25%)\n");
    out = run("compare-tensors " + pathA + " " + pathB + " --tolerance 1", code);
    EXPECT_EQ(code, 0) << out;
    out = run("compare-tensors " + pathA + " " + pathA, code);
    EXPECT_EQ(code, 0) << out;
    EXPECT_EQ(out, "equal\n");
    out = run("compare-tensors " + pathA, code);
    EXPECT_EQ(code, 2) << out;
}

TEST(CheckModes, CompareImagesExitCodes) {
    if (!programBuilt()) GTEST_SKIP() << "talvex program not built";
    const unsigned char rgb[12] = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12};
    unsigned char other[12];
    std::copy(rgb, rgb + 12, other);
    other[11] = 99;
    const unsigned char rgba[16] = {};
    const std::string dir = std::string(TALVEX_BINARY_DIR) + "/check-test-";
    using sorvane::ImageFormat;
    using sorvane::PixelFormat;
    sorvane::saveImage(dir + "a.png", rgb, 12, 2, 2, 3, sorvane::ScalarType::UInteger8, ImageFormat::YXC, PixelFormat::RGB);
    sorvane::saveImage(dir + "b.png", other, 12, 2, 2, 3, sorvane::ScalarType::UInteger8, ImageFormat::YXC,
                       PixelFormat::RGB);
    sorvane::saveImage(dir + "c.png", rgba, 16, 2, 2, 4, sorvane::ScalarType::UInteger8, ImageFormat::YXC,
                       PixelFormat::RGBA);
    int code = -1;
    std::string out = run("compare-images " + dir + "a.png " + dir + "a.png", code);
    EXPECT_EQ(code, 0) << out;
    out = run("compare-images " + dir + "a.png " + dir + "b.png", code);
    EXPECT_EQ(code, 3) << out;
    EXPECT_EQ(out, "1,1,2: 12 != 99\n1/12 differences (8.33333%)\n");
    out = run("compare-images " + dir + "a.png " + dir + "c.png", code);
    EXPECT_EQ(code, 3) << out;
    EXPECT_EQ(out, "Different pixel formats: RGB != RGBA\n");
    out = run("compare-images " + dir + "a.png " + dir + "missing.png", code);
    EXPECT_EQ(code, 2) << out;
}
