// talvex gltf-nodes run as the program it is.
#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <sys/wait.h>

#include "RunTalvex.h"

namespace {

std::string run(const std::string& arguments, int& code) { return runTalvex(arguments, code); }

std::string writeFile(const std::string& name, const std::string& text) {
    const std::string path = std::string(TALVEX_BINARY_DIR) + "/gltf-nodes-test-" + name;
    std::ofstream(path) << text;
    return path;
}

} // namespace

TEST(GltfNodesMode, TreeTypesAndSkins) {
    if (!std::filesystem::exists(std::string(TALVEX_BINARY_DIR) + "/apps/talvex")) GTEST_SKIP() << "no program";
    const std::string path = writeFile("a.gltf", R"({"asset": {"version": "2.0"}, "scene": 0,
      "scenes": [{"name": "main", "nodes": [0]}], "meshes": [{"primitives": []}],
      "nodes": [{"name": "root", "children": [1, 2]}, {"mesh": 0}, {"name": "hip", "children": [3, 9]},
                {"children": [2]}],
      "skins": [{"joints": [2, 3], "skeleton": 2}]})");
    int code = -1;
    const std::string out = run("gltf-nodes " + path, code);
    EXPECT_EQ(code, 0) << out;
    EXPECT_NE(out.find("scene: main\n"), std::string::npos) << out;
    EXPECT_NE(out.find("node 0 \"root\"\n  node 1 mesh 0\n  node 2 \"hip\"\n    node 3\n      node 2: cycle\n"
                       "    node 9: invalid index\n"),
              std::string::npos)
        << out;
    // The cycle makes the types fail; the program says so and goes on.
    EXPECT_NE(out.find("node types: "), std::string::npos) << out;
    EXPECT_NE(out.find("skin 0: joints [2, 3], skeleton 2\n"), std::string::npos) << out;
}
