// talvex skeleton, run as the program it is: it reports broken transforms and
// references and carries on, draws the rest pose from the parent chain, and
// lists the skins with what they draw on.
#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <sys/wait.h>

#include "RunTalvex.h"
#include "sorvane/arf/Arf.h"

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

TEST(SkeletonMode, PrintsSkinsWithJointsMatricesAndWeights) {
    using namespace sorvane::arf;
    const std::string dir = std::string(TALVEX_BINARY_DIR) + "/skeleton-mode-test";
    if (!std::filesystem::exists(std::string(TALVEX_BINARY_DIR) + "/apps/talvex")) GTEST_SKIP() << "talvex not built";
    std::filesystem::create_directories(dir);
    const std::string path = dir + "/skins.arf.json";
    {
        Arf arf = Arf::create(path);
        const float matrices[32] = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
        const float weights[6] = {1, 0, 0.5f, 0.5f, 0, 1};
        auto ibm = arf.data->addDense(matrices, sizeof matrices, DATA_DTYPE_FLOAT, {2, 16}, true, nullptr, "ibm");
        auto w = arf.data->addDense(weights, sizeof weights, DATA_DTYPE_FLOAT, {3, 2}, true, nullptr, "w");
        auto gone = arf.data->addDense(weights, sizeof weights, DATA_DTYPE_FLOAT, {6}, true, nullptr, "gone");
        auto components = arf.components.get();
        components.nodes.add("Hips", "hips", 1);
        components.nodes.add("Spine", "spine", 2).parent.set(1);
        auto body = components.skeletons.add(1, "body", 1);
        body.joints.add(1).name.set("hips");
        body.joints.add(2);
        body.inverseBindMatrix.set(ibm);
        components.skeletons.add(1, "gone skeleton", 2);
        components.meshes.add("body mesh", 1);
        components.meshes.add("gone mesh", 2);
        auto skin = components.skins.add(1, "body skin", 1);
        skin.skeleton.set(1);
        skin.weights.set(w);
        auto broken = components.skins.add(2, "broken", 2);
        broken.skeleton.set(2);
        broken.weights.set(gone);
        // Removing what the second skin names leaves its references dangling.
        components.meshes.get().remove(2);
        components.skeletons.get().remove(2);
        arf.data.get().remove(gone.id.get());
        arf.save();
    }
    int code = -1;
    const std::string out = runTalvex("skeleton " + path, code);
    EXPECT_EQ(code, 0) << out;
    for (const char* expected :
         {"skins: 2\n", "  skin 1 \"body skin\" mesh 1 (body mesh), skeleton 1 (body)\n",
          "    joints (2): 1 (hips), 2 (spine)\n", "    inverseBindMatrix: data 1, FLOAT [2, 16]\n",
          "    weights: data 2, FLOAT [3, 2]\n", "  skin 2 \"broken\" mesh 2 (dangling), skeleton 2 (dangling)\n",
          "    weights: data 3 (Getting item from data: Invalid id 3)\n", "3 problem(s)"})
        EXPECT_NE(out.find(expected), std::string::npos) << expected << "\n" << out;
    // The broken skin has no skeleton to take joints from.
    EXPECT_EQ(out.find("joints (2)"), out.rfind("joints (2)"));
}
