// talvex mesh-convert between OBJ and glTF, run as the program it is.
#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <sys/wait.h>

#include "RunTalvex.h"

namespace {

std::string run(const std::string& arguments, int& code) { return runTalvex(arguments, code); }

} // namespace

TEST(MeshConvertMode, ObjToGltfAndBack) {
    const std::string base = std::string(TALVEX_BINARY_DIR) + "/mesh-convert-test-";
    if (!std::filesystem::exists(std::string(TALVEX_BINARY_DIR) + "/apps/talvex")) GTEST_SKIP() << "no program";
    std::ofstream(base + "quad.obj") << "v 0 0 0\nv 1 0 0\nv 1 1 0\nv 0 1 0\nf 1 2 3 4\n";
    int code = -1;
    // The quad becomes two triangles on its way through glTF.
    std::string out = run("mesh-convert " + base + "quad.obj " + base + "quad.glb", code);
    EXPECT_EQ(code, 0) << out;
    EXPECT_NE(out.find("quad.glb: 4 vertices, 1 faces"), std::string::npos) << out;
    out = run("mesh-convert " + base + "quad.glb " + base + "back.gltf", code);
    EXPECT_EQ(code, 0) << out;
    EXPECT_NE(out.find("back.gltf: 4 vertices, 2 faces"), std::string::npos) << out;
    out = run("mesh-convert " + base + "back.gltf " + base + "back.obj", code);
    EXPECT_EQ(code, 0) << out;
    EXPECT_NE(out.find("back.obj: 4 vertices, 2 faces"), std::string::npos) << out;
    out = run("mesh-convert " + base + "quad.ply " + base + "x.obj", code);
    EXPECT_NE(code, 0);
    EXPECT_NE(out.find("Unsupported file extension .ply"), std::string::npos) << out;
}
