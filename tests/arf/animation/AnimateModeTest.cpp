// talvex animate, run as the program it is: avatar F driven by a stream that
// stream-make writes, in text, JSON lines, the graph and the plot.
#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include "AnimationAvatars.h"

namespace {

std::string run(const std::string& command, int& status) {
    std::string out;
    FILE* pipe = popen((command + " 2>&1").c_str(), "r");
    if (!pipe) return out;
    char buffer[512];
    size_t n;
    while ((n = fread(buffer, 1, sizeof buffer, pipe)) > 0) out.append(buffer, n);
    status = pclose(pipe);
    return out;
}

void write(const std::string& path, const std::string& text) {
    std::ofstream out(path, std::ios::binary);
    out << text;
}

} // namespace

TEST(AnimateMode, DrivesAvatarFromAStream) {
    const std::string program = std::string(TALVEX_BINARY_DIR) + "/apps/talvex";
    if (!std::filesystem::exists(program)) GTEST_SKIP() << "talvex program not built";
    const std::string dir = std::string(TALVEX_BINARY_DIR) + "/animate-mode-test";
    std::filesystem::create_directories(dir);
    write(dir + "/f.arf.json", animtest::avatarF().toJsonString());
    // The second unit drives input 25 out of nothing; the joint unit fits no
    // weight framework and is passed over.
    write(dir + "/f.txt", "blendshape t=0 set=99 w=1:0.2 w=2:0.4 w=25:0.3\n"
                          "blendshape t=33 set=99 w=1:0.4 w=2:0 w=25:0.1\n"
                          "joint t=40 set=0 j=0:1,0,0,0,0,1,0,0,0,0,1,0,0,0,0,1\n");
    int status = -1;
    const std::string made = run(program + " stream-make " + dir + "/f.txt " + dir + "/f.stream", status);
    ASSERT_EQ(status, 0) << made;

    const std::string base = program + " animate " + dir + "/f.arf.json " + dir + "/f.stream";
    const std::string mediapipe = " --framework urn:mpeg:avatar:blendshapes:mediapipe";
    const std::string text = run(base + mediapipe + " --plot " + dir + "/f.svg", status);
    EXPECT_EQ(status, 0) << text;
    EXPECT_NE(text.find("#0 t=0 blendshape -> urn:mpeg:avatar:blendshapes:mediapipe\n"
                        "  blendshape set 1: 0=0.2 1=0 2=0.6\n"),
              std::string::npos)
        << text;
    EXPECT_NE(text.find("#1 t=33 blendshape"), std::string::npos) << text;
    EXPECT_EQ(text.find("joint ->"), std::string::npos) << text;
    EXPECT_NE(text.find("3 units"), std::string::npos) << text;

    std::ifstream svg(dir + "/f.svg");
    std::stringstream page;
    page << svg.rdbuf();
    EXPECT_EQ(page.str().rfind("<svg", 0), 0u);
    EXPECT_NE(page.str().find(">blendshape set 1</text>"), std::string::npos);
    EXPECT_NE(page.str().find(">timestamp</text>"), std::string::npos);

    const std::string lines = run(base + mediapipe + " --json", status);
    EXPECT_EQ(status, 0) << lines;
    EXPECT_NE(lines.find("{\"unit\": 0, \"timestamp\": 0, \"kind\": \"blendshape\", \"framework\": "
                         "\"urn:mpeg:avatar:blendshapes:mediapipe\", \"weights\": {\"blendshape set 1\": "
                         "[0.2, 0, 0.6]}, \"joints\": {}}\n"),
              std::string::npos)
        << lines;

    // Without --framework every one the preamble lists: the rig drives the
    // same set directly, from inputs the stream's ids do not name.
    const std::string graph = run(base + " --describe", status);
    EXPECT_EQ(status, 0) << graph;
    EXPECT_NE(graph.find("urn:example:rig\n"), std::string::npos) << graph;
    EXPECT_NE(graph.find("\"queue\""), std::string::npos) << graph;

    const std::string unknown = run(base + " --framework urn:none", status);
    EXPECT_NE(status, 0);
    EXPECT_NE(unknown.find("No framework urn:none"), std::string::npos) << unknown;
}
