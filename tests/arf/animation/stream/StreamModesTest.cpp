// The talvex stream modes, run as the program they are: stream-make turns the
// example description into a stream, which the library and stream-dump read.
#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>

#include "StreamSamples.h"

using namespace streamtest;

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

} // namespace

TEST(StreamModes, MakeThenDump) {
    const std::string program = std::string(TALVEX_BINARY_DIR) + "/apps/talvex";
    if (!std::filesystem::exists(program)) GTEST_SKIP() << "talvex program not built";
    const std::string example = std::string(TALVEX_TEST_DATA_DIR) + "/../../examples/face.stream.txt";
    const std::string made = std::string(TALVEX_BINARY_DIR) + "/face-modes-test.stream";
    int status = -1;
    const std::string wrote = run(program + " stream-make " + example + " " + made, status);
    ASSERT_EQ(status, 0) << wrote;
    EXPECT_NE(wrote.find("wrote 7 units"), std::string::npos) << wrote;

    const auto bytes = readFile(made);
    const auto units = decodeChunked(bytes, false, [] { return size_t(5); });
    ASSERT_EQ(units.size(), 7u);
    EXPECT_EQ(units[0].rfind("type 0 ts 1/0", 0), 0u) << units[0];
    EXPECT_NE(units[3].find("blendshape set 0 conf 1"), std::string::npos) << units[3];
    EXPECT_NE(units[4].find("silent 30 15"), std::string::npos) << units[4];

    const std::string dump = run(program + " stream-dump " + made, status);
    EXPECT_EQ(status, 0) << dump;
    EXPECT_NE(dump.find("#1 blendshape length 29 timestamp 0 set 0 count 4: 0=0, 1=0.1, 2=0, 3=0.5"),
              std::string::npos)
        << dump;
    EXPECT_NE(dump.find("7 units, end of input"), std::string::npos) << dump;

    // A description error names its line and fails.
    const std::string broken = std::string(TALVEX_BINARY_DIR) + "/broken-modes-test.txt";
    FILE* f = fopen(broken.c_str(), "w");
    ASSERT_NE(f, nullptr);
    fputs("# comment\nwobble t=1\n", f);
    fclose(f);
    const std::string error = run(program + " stream-make " + broken + " " + made + ".2", status);
    EXPECT_NE(status, 0);
    EXPECT_NE(error.find("line 2: unknown unit kind \"wobble\""), std::string::npos) << error;
}
