// talvex skeleton, run as the program it is: it reports broken transforms and
// references and carries on, and draws the rest pose from the parent chain.
#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <sys/wait.h>

#include "RunTalvex.h"

namespace {

const char* kRig = R"({"components": {"meshes": [], "nodes": [
  {"mapping": "Hips", "children": [2, 7], "translation": [0, 1, 0], "name": "hips", "id": 1},
  {"mapping": "Spine", "parent": 1, "translation": [0, 0.5, 0], "name": "spine & co", "id": 2},
  {"mapping": "Head", "parent": 2, "scale": [2, 2, 2], "transform": [1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1], "name": "head", "id": 3},
  {"mapping": "Loop", "parent": 4, "name": "loop", "id": 4},
  {"mapping": "Tail", "parent": 12, "name": "tail", "id": 5}],
  "skeletons": [{"root": 1, "joints": [{"name": "hips", "node": 1}, {"node": 2}, {"node": 8}], "name": "body", "id": 1}]}})";

} // namespace

TEST(SkeletonMode, ReportsProblemsAndDrawsTheRestPose) {
    const std::string dir = std::string(TALVEX_BINARY_DIR) + "/skeleton-mode-test";
    if (!std::filesystem::exists(std::string(TALVEX_BINARY_DIR) + "/apps/talvex")) GTEST_SKIP() << "talvex not built";
    std::filesystem::create_directories(dir);
    std::ofstream(dir + "/rig.arf.json") << kRig;
    int code = -1;
    const std::string out = runTalvex("skeleton " + dir + "/rig.arf.json --svg " + dir + "/rig.svg --plane xy", code);
    EXPECT_EQ(code, 0) << out;
    for (const char* expected :
         {"  hips (id 1, mapping \"Hips\")", "    spine & co (id 2", "children: 2 7 (dangling)",
          "! matrix: Getting transform for components.nodes[3]: There is both transform and rotation, translation or scale",
          "! node 4 (loop) is in a parent cycle", "tail (id 5, mapping \"Tail\") ! dangling parent 12",
          "joint 0 \"hips\" -> node 1 (hips)", "joint 2 -> node 8 (dangling)", "5 problem(s)"})
        EXPECT_NE(out.find(expected), std::string::npos) << expected << "\n" << out;

    std::ifstream in(dir + "/rig.svg");
    std::stringstream svg;
    svg << in.rdbuf();
    const std::string text = svg.str();
    EXPECT_EQ(text.rfind("<svg ", 0), 0u);
    EXPECT_NE(text.find("spine &amp; co"), std::string::npos);
    // Bones from parent to child: hips-spine and spine-head (the head counts as the identity).
    size_t lines = 0;
    for (size_t at = text.find("<line"); at != std::string::npos; at = text.find("<line", at + 1)) ++lines;
    EXPECT_EQ(lines, 2u);

    runTalvex("skeleton " + dir + "/rig.arf.json --plane yx", code);
    EXPECT_EQ(code, 2);
}
