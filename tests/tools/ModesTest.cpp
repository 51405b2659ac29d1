#include <gtest/gtest.h>

#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "sorvane/tools/Modes.h"

namespace {

class EchoMode : public sorvane::Mode {
public:
    explicit EchoMode(args::ArgumentParser& p) : Mode(p), value(p, "value", "a value") {}
    void execute() override {
        if (args::get(value) == "fail") throw std::runtime_error("failed on purpose");
        if (args::get(value) == "different") setStatus(STATUS_DIFFERENT);
        last = args::get(value);
    }
    static std::string last;

private:
    args::Positional<std::string> value;
};
std::string EchoMode::last;

struct Captured {
    std::stringstream out, err;
    std::streambuf* oldOut;
    std::streambuf* oldErr;
    Captured() : oldOut(std::cout.rdbuf(out.rdbuf())), oldErr(std::cerr.rdbuf(err.rdbuf())) {}
    ~Captured() {
        std::cout.rdbuf(oldOut);
        std::cerr.rdbuf(oldErr);
    }
};

sorvane::Modes makeModes() {
    sorvane::Modes modes;
    modes.addCategory("Things");
    modes.addMode("echo", [](args::ArgumentParser& p) { return new EchoMode(p); });
    modes.addMode("nothing", [](args::ArgumentParser&) -> sorvane::Mode* { return nullptr; });
    return modes;
}

} // namespace

TEST(Modes, UsageAndDispatch) {
    auto modes = makeModes();
    {
        Captured c;
        EXPECT_EQ(modes.run(std::vector<std::string>{"prog"}), 2);
        EXPECT_EQ(c.out.str(),
                  "No mode\nUsage:\n    prog <mode> [mode options...]\n    prog <mode> -h\n\nThings:\n    echo\n    nothing\n");
    }
    {
        Captured c;
        EXPECT_EQ(modes.run(std::vector<std::string>{"prog", "bogus"}), 2);
        EXPECT_EQ(c.out.str().rfind("Invalid mode bogus\nUsage:\n", 0), 0u);
    }
    {
        Captured c;
        EXPECT_EQ(modes.run(std::vector<std::string>{"prog", "nothing"}), 2);
        EXPECT_EQ(c.out.str(), "Error: No creator for mode nothing\n");
    }
    Captured c;
    EXPECT_EQ(modes.run(std::vector<std::string>{"prog", "echo", "hello"}), 0);
    EXPECT_EQ(EchoMode::last, "hello");
}

TEST(Modes, ExitCodesOfAMode) {
    auto modes = makeModes();
    {
        Captured c;
        EXPECT_EQ(modes.run(std::vector<std::string>{"prog", "echo", "-h"}), 1);
        EXPECT_NE(c.out.str().find("a value"), std::string::npos);
    }
    {
        Captured c;
        EXPECT_EQ(modes.run(std::vector<std::string>{"prog", "echo", "--nope"}), 2);
        EXPECT_NE(c.err.str().find("nope"), std::string::npos);
    }
    Captured c;
    EXPECT_EQ(modes.run(std::vector<std::string>{"prog", "echo", "fail"}), 2);
    EXPECT_EQ(c.err.str(), "Error: failed on purpose\n");
}

TEST(Modes, StatusSetByExecuteIsTheExitCode) {
    args::ArgumentParser parser("echo");
    EchoMode mode(parser);
    EXPECT_EQ(mode.run({"different"}), 3);
    EXPECT_EQ(mode.getStatus(), 3);
    // A second run starts from "done" again.
    EXPECT_EQ(mode.run({"same"}), 0);
    auto modes = makeModes();
    Captured c;
    EXPECT_EQ(modes.run(std::vector<std::string>{"prog", "echo", "different"}), 3);
}
