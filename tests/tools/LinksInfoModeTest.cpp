// talvex links and talvex info, run as the program they are, on a small
// avatar with one set of each kind, a directly driven skeleton and a mapping
// whose curves are embedded tensors (one channel points at a missing item).
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "RunTalvex.h"
#include "sorvane/arf/Arf.h"

namespace {

const char* kComponents = R"({"components": {
  "meshes": [{"id": 1, "name": "m", "data": [1]}],
  "nodes": [{"id": 1, "name": "n", "mapping": "Root"}],
  "skeletons": [{"root": 1, "joints": [{"node": 1, "id": 0}], "name": "body", "id": 4,
                 "animationInfo": [{"type": "ANIMATION_BODY", "target": 0}]}],
  "blendshapeSets": [{"id": 1, "name": "face", "baseMesh": 1,
    "shapes": [{"id": 1, "name": "s1", "shape": 2}, {"id": 2, "name": "s2", "shape": 2}],
    "animationInfo": [{"type": "ANIMATION_FACE", "target": 0, "mappings": [{"source": 1,
      "linearAssociations": [{"targetIndex": 1, "sourceIndices": [1, 7], "weights": [0.5, 0.25]}],
      "nonLinearAssociations": [{"targetIndex": 2, "combination": "COMBINATION_MAX", "channels": [
        {"sourceIndex": 5, "input": 2, "output": 3},
        {"sourceIndex": 6, "path": "CHANNEL_JOINT_ROTATION", "interpolation": "INTERPOLATION_STEP",
         "input": 9, "output": 3}]}]}]}]}],
  "landmarkSets": [{"id": 1, "name": "marks", "baseMesh": 2, "vertices": 1, "faces": 2, "weights": 3}],
  "textureSets": [{"id": 3, "name": "skin", "material": 2, "materialPath": "mp",
                   "targets": [{"id": 1, "name": "t1", "texturePath": "tp", "texture": 2},
                               {"id": 2, "name": "t2", "texturePath": "tp", "texture": 3}]}],
  "attachmentSets": [{"id": 1, "name": "hat", "node": 1, "meshes": [1], "vertices": [3]}],
  "gaussianSplatSets": [{"id": 1, "name": "cloud", "count": 4, "baseMesh": 1, "orientations": 1, "scales": 2,
                         "colors": 3, "alphas": 3}]}})";

class LinksInfoMode : public ::testing::Test {
protected:
    void SetUp() override {
        if (!std::filesystem::exists(std::string(TALVEX_BINARY_DIR) + "/apps/talvex")) GTEST_SKIP() << "talvex not built";
        // One folder per test: CTest runs the tests of this file side by side.
        dir = std::string(TALVEX_BINARY_DIR) + "/links-info-mode-test/" +
              ::testing::UnitTest::GetInstance()->current_test_info()->name();
        std::filesystem::create_directories(dir);
        // Items 1 to 3 embedded: 4 landmark vertices, 2 key times, 2 keys of 3 values.
        sorvane::arf::Arf arf = sorvane::arf::Arf::load(std::string("memory:") + kComponents);
        const std::vector<float> vertices = {0, 1, 2, 3}, times = {0, 1}, values = {0, 0, 0, 1, 2, 3};
        using sorvane::arf::DATA_DTYPE_FLOAT;
        arf.data.addDense(vertices.data(), 16, DATA_DTYPE_FLOAT, {4}, true, nullptr, "vertices");
        arf.data.addDense(times.data(), 8, DATA_DTYPE_FLOAT, {2}, true, nullptr, "times");
        arf.data.addDense(values.data(), 24, DATA_DTYPE_FLOAT, {2, 3}, true, nullptr, "values");
        std::ofstream(dir + "/avatar.arf.json") << arf.toJsonString();
        std::ofstream(dir + "/plain.arf.json") << R"({"components": {"meshes": [{"id": 1, "name": "m", "data": []}]}})";
    }

    // Fails the test for each expected line that is not a whole line of `out`.
    static void expectLines(const std::string& out, const std::vector<std::string>& lines) {
        for (const std::string& line : lines)
            EXPECT_NE(("\n" + out).find("\n" + line + "\n"), std::string::npos) << line << "\n--- output:\n" << out;
    }

    std::string dir;
};

} // namespace

TEST_F(LinksInfoMode, LinksPrintEachComponentDownToTheCurves) {
    int code = -1;
    const std::string out = runTalvex("links " + dir + "/avatar.arf.json", code);
    EXPECT_EQ(code, 0) << out;
    expectLines(out, {
        "skeleton 4 \"body\": 1 link(s)",
        "    link 0: ANIMATION_BODY, target 0, driven directly",
        "blendshapeSet 1 \"face\": 1 link(s)",
        "    link 0: ANIMATION_FACE, target 0, 1 mapping(s)",
        "      mapping 0: source 1",
        "        linear 0: target 1 <- 1*0.5 7*0.25",
        "        non-linear 0: target 2, COMBINATION_MAX, 2 channel(s)",
        // The interpolation read as absent is the default; the curve sizes come from the tensors.
        "          channel 0: source 5, INTERPOLATION_LINEAR, input 2, output 3, 2 key(s), sample size 3",
    });
    // A channel whose input is gone is reported on its line, and the rest still prints.
    const size_t broken = out.find("          channel 1: source 6, CHANNEL_JOINT_ROTATION, INTERPOLATION_STEP, input 9, "
                                   "output 3, curve unreadable: ");
    ASSERT_NE(broken, std::string::npos) << out;
    EXPECT_NE(out.find("Invalid id 9", broken), std::string::npos) << out;
    // Skeletons come before the sets; components without links are not listed.
    EXPECT_LT(out.find("skeleton 4"), out.find("blendshapeSet 1"));
    for (const char* absent : {"landmarkSet", "textureSet", "gaussianSplatSet"})
        EXPECT_EQ(out.find(absent), std::string::npos) << absent;

    expectLines(runTalvex("links " + dir + "/plain.arf.json", code), {"no animation links"});
    EXPECT_EQ(code, 0);
    runTalvex("links " + dir + "/missing.arf.json", code);
    EXPECT_NE(code, 0);
}

TEST_F(LinksInfoMode, InfoListsEverySetWithItsCountAndBase) {
    int code = -1;
    const std::string out = runTalvex("info " + dir + "/avatar.arf.json", code);
    EXPECT_EQ(code, 0) << out;
    expectLines(out, {
        "components:   1 mesh(es), 1 node(s), 1 skeleton(s), 0 skin(s), 5 set(s)",
        "  blendshapeSet 1 \"face\": 2 shape(s), base mesh 1",
        // A landmark set counts the first size of its vertices tensor and is built on a data item.
        "  landmarkSet 1 \"marks\": 4 landmark(s), base mesh data 2",
        "  textureSet 3 \"skin\": 2 target(s), material data 2",
        "  attachmentSet 1 \"hat\": 1 mesh(es), node 1",
        // "mode" was not written: the read default is shown.
        "  gaussianSplatSet 1 \"cloud\": 4 splat(s), mode triangleBarycentric, base mesh 1",
        "data:         3 item(s)",
    });
    // Sets are listed in kind order after the meshes and before the data items.
    const size_t mesh = out.find("  mesh 1 \"m\": data 1");
    ASSERT_NE(mesh, std::string::npos) << out;
    EXPECT_LT(mesh, out.find("  blendshapeSet 1"));
    EXPECT_LT(out.find("  blendshapeSet 1"), out.find("  landmarkSet 1"));
    EXPECT_LT(out.find("  attachmentSet 1"), out.find("  gaussianSplatSet 1"));
    EXPECT_LT(out.find("  gaussianSplatSet 1"), out.find("data:         3"));
    EXPECT_NE(out.find("  data 3 \"values\": application/mpeg.arf.dense, embedded"), std::string::npos) << out;

    // A document without sets lists none.
    const std::string plain = runTalvex("info " + dir + "/plain.arf.json", code);
    EXPECT_EQ(code, 0) << plain;
    expectLines(plain, {"components:   1 mesh(es), 0 node(s), 0 skeleton(s), 0 skin(s), 0 set(s)"});
    for (const char* kind : {"blendshapeSet", "landmarkSet", "textureSet", "attachmentSet", "gaussianSplatSet"})
        EXPECT_EQ(plain.find(std::string("  ") + kind), std::string::npos) << kind;
}
