#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "sorvane/core/RuntimeException.h"
#include "sorvane/core/file.h"
#include "sorvane/core/stringio.h"

namespace fs = std::filesystem;
using namespace sorvane;
using Strings = std::vector<std::string>;

namespace {

// A fresh folder per test under the build tree.
fs::path scratch(const std::string& name) {
    fs::path dir = fs::path(TALVEX_BINARY_DIR) / "test-scratch" / "core" / name;
    fs::remove_all(dir);
    fs::create_directories(dir);
    return dir;
}

void writeText(const fs::path& path, const std::string& text) {
    std::ofstream(path, std::ios::binary) << text;
}

// The message without the location prefix.
template <class F>
std::string failure(F&& f) {
    try {
        f();
    } catch (const RuntimeException& e) {
        const std::string text = e.what();
        const size_t at = text.find("(): ");
        return at == std::string::npos ? text : text.substr(at + 4);
    }
    return "no exception";
}

} // namespace

TEST(File, Extensions) {
    EXPECT_EQ(getFileExtension("a.tar.gz"), ".gz");
    EXPECT_EQ(getFileExtension("a.b/c"), "");
    EXPECT_EQ(getFileExtension("a.b\\c"), "");
    EXPECT_EQ(getFileExtension(".hidden"), "");
    EXPECT_EQ(getFileExtension("dir/.hidden"), ".hidden");
    EXPECT_EQ(getFileExtension("dir\\.hidden"), ".hidden");
    EXPECT_EQ(getFileExtension("C:\\data\\x.JSON"), ".JSON");
    EXPECT_EQ(getFileExtension("name."), ".");
    EXPECT_EQ(getFileExtension(""), "");

    EXPECT_EQ(removeFileExtension("d.x/a.tar.gz"), "d.x/a.tar");
    EXPECT_EQ(removeFileExtension("d.x\\a"), "d.x\\a");
    EXPECT_EQ(removeFileExtension(".hidden"), ".hidden");
    EXPECT_EQ(removeFileExtension("d/.hidden"), "d/");
    EXPECT_EQ(replaceFileExtension("C:\\m\\a.arf", ".arfz"), "C:\\m\\a.arfz");
    EXPECT_EQ(replaceFileExtension("a", ".json"), "a.json");
}

TEST(File, DirectoriesAndNames) {
    EXPECT_EQ(getDirectoryName("a/b/c.txt"), "a/b");
    EXPECT_EQ(getDirectoryName("a\\b\\c.txt"), "a\\b");
    EXPECT_EQ(getDirectoryName("a/b\\c"), "a/b");
    EXPECT_EQ(getDirectoryName("c.txt"), "");
    EXPECT_EQ(getDirectoryName("/c.txt"), "");
    EXPECT_EQ(getDirectoryName("C:\\c.txt"), "C:");

    EXPECT_EQ(getFileName("a/b\\c.txt"), "c.txt");
    EXPECT_EQ(getFileName("a\\b/c.txt"), "c.txt");
    EXPECT_EQ(getFileName("c.txt"), "c.txt");
    EXPECT_EQ(getFileName("a/"), "");
    EXPECT_EQ(getFileName("C:x"), "C:x");

    EXPECT_EQ(splitFilePath("x/y\\z"), std::make_pair(std::string("z"), std::string("x/y")));
    EXPECT_EQ(splitFilePath("z"), std::make_pair(std::string("z"), std::string()));

    EXPECT_EQ(replaceFileName("a\\b\\c.txt", "d.bin"), "a\\b/d.bin");
    EXPECT_EQ(replaceFileName("c.txt", "d.bin"), "d.bin");
    EXPECT_EQ(replaceFileName("/c.txt", "d.bin"), "d.bin");
}

TEST(File, JoinFilePaths) {
    EXPECT_EQ(joinFilePaths("", "b"), "b");
    EXPECT_EQ(joinFilePaths("a", "b"), "a/b");
    EXPECT_EQ(joinFilePaths("a/", "b"), "a/b");
    EXPECT_EQ(joinFilePaths("a\\", "b"), "a\\b");
    EXPECT_EQ(joinFilePaths("a", "/b"), "/b");
    EXPECT_EQ(joinFilePaths("a", "C:\\b"), "C:\\b");
    EXPECT_EQ(joinFilePaths("a", "d:b"), "d:b");
    EXPECT_EQ(joinFilePaths("a", "\\b"), "a/\\b");  // a leading backslash is not absolute
    EXPECT_EQ(joinFilePaths("a", ""), "a/");
    EXPECT_EQ(joinFilePaths("a/", ""), "a/");
}

TEST(File, PathComponents) {
    EXPECT_EQ(getPathComponents("/a/b"), (Strings{"", "a", "b"}));
    EXPECT_EQ(getPathComponents("\\a\\b"), (Strings{"", "a", "b"}));
    EXPECT_EQ(getPathComponents("a//b"), (Strings{"a", "b"}));
    EXPECT_EQ(getPathComponents("a\\/b"), (Strings{"a", "b"}));
    EXPECT_EQ(getPathComponents("a/b/"), (Strings{"a", "b", ""}));
    EXPECT_EQ(getPathComponents("a\\b\\"), (Strings{"a", "b", ""}));
    EXPECT_EQ(getPathComponents("C:\\x/y"), (Strings{"C:", "x", "y"}));
    EXPECT_EQ(getPathComponents("ab"), (Strings{"ab"}));
    EXPECT_TRUE(getPathComponents("a").empty());
    EXPECT_TRUE(getPathComponents("/").empty());
    EXPECT_TRUE(getPathComponents("").empty());
}

TEST(File, RelativizePath) {
    EXPECT_EQ(relativizePath("a/b/c", "a/d"), "../b/c");
    EXPECT_EQ(relativizePath("a\\b\\c", "a/d"), "../b/c");
    EXPECT_EQ(relativizePath("a/b", "a/b"), "");
    EXPECT_EQ(relativizePath("a/b/c/d", "a/b"), "c/d");
    EXPECT_EQ(relativizePath("a/x", "a/b/c"), "../../x");
    EXPECT_EQ(relativizePath("/r/s/t", "/r/u"), "../s/t");
    EXPECT_EQ(relativizePath("/r/s", "\\r\\s\\t"), "..");
    EXPECT_EQ(relativizePath("C:\\m\\a.bin", "C:/m"), "a.bin");
    EXPECT_EQ(relativizePath("x", "a/b"), "../../x");
    EXPECT_EQ(relativizePath("", "a"), "");
    EXPECT_EQ(relativizePath("a/b", ""), "a/b");
    EXPECT_EQ(failure([] { relativizePath("/a/b", "a"); }), "Both paths must be absolute or relative");
    EXPECT_EQ(failure([] { relativizePath("a", "\\a"); }), "Both paths must be absolute or relative");
}

TEST(File, WholeFiles) {
    const fs::path dir = scratch("whole");
    const fs::path file = dir / "data.bin";
    const std::vector<unsigned char> bytes{0, 1, 2, 255, 13, 10, 0};
    saveFile(file, bytes);
    EXPECT_EQ(loadFile(file), bytes);
    EXPECT_EQ(loadFile(file.string()), bytes);
    EXPECT_EQ(loadFile(file.c_str()), bytes);
    EXPECT_EQ(loadStringFile(file), std::string(reinterpret_cast<const char*>(bytes.data()), bytes.size()));
    EXPECT_TRUE(fileExists(file));
    EXPECT_TRUE(fileExists(dir.string()));
    EXPECT_FALSE(fileExists((dir / "none").string()));

    // Sizing mode reads nothing; exact fit reads; one short fails.
    EXPECT_EQ(loadDataFile(nullptr, 0, file), 7);
    std::vector<unsigned char> out(7, 0xaa);
    EXPECT_EQ(loadDataFile(out.data(), 7, file.string()), 7);
    EXPECT_EQ(out, bytes);
    const std::string name = file.string();
    EXPECT_EQ(failure([&] { loadDataFile(out.data(), 6, name); }), "Reading '" + name + "': buffer is too small");

    const std::string missing = (dir / "missing.bin").string();
    EXPECT_EQ(failure([&] { loadFile(missing); }), "Error when opening '" + missing + "'");
    EXPECT_EQ(failure([&] { loadStringFile(dir.string()); }), "Error when opening '" + dir.string() + "'");
    const std::string noDir = (dir / "no" / "x.bin").string();
    EXPECT_EQ(failure([&] { saveFile(noDir, bytes); }), "Error when creating '" + noDir + "'");

    // Replacing and empty files.
    saveFile(name, bytes.data(), 2);
    EXPECT_EQ(loadFile(name).size(), 2u);
    saveFile(name.c_str(), nullptr, 0);
    EXPECT_TRUE(loadFile(name).empty());
    EXPECT_EQ(loadStringFile(name), "");
}

TEST(File, StringLines) {
    const fs::path dir = scratch("lines");
    const std::string path = (dir / "lines.txt").string();
    writeText(path, "one\r\n\r\ntwo\r\n# comment\n\n  # kept\rthree");
    EXPECT_EQ(loadStringLines(path, false), (Strings{"one", "two", "# comment", "  # kept", "three"}));
    EXPECT_EQ(loadStringLines(path, true), (Strings{"one", "two", "  # kept", "three"}));
    writeText(path, "");
    EXPECT_TRUE(loadStringLines(path, false).empty());
    const std::string missing = (dir / "missing.txt").string();
    EXPECT_EQ(failure([&] { loadStringLines(missing, true); }), "Error opening " + missing);
}
