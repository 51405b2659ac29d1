#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "ProviderTestUtil.h"
#include "sorvane/archive/DiskFileProvider.h"
#include "sorvane/archive/MemoryFileProvider.h"
#include "sorvane/archive/RelativeFileProvider.h"

namespace fs = std::filesystem;
using namespace sorvane::archive;
using providertest::failure;
using providertest::scratch;
using providertest::writeText;

TEST(DiskFileProvider, ReadsSlicesAndFails) {
    const fs::path dir = scratch("disk");
    DiskFileProvider disk(dir.string());
    EXPECT_STREQ(disk.className(), "Disk");
    EXPECT_EQ(disk.getMainDir(), dir.string());
    disk.create("sub/deeper/data.bin", "0123456789", 10);  // parent folders are made
    EXPECT_TRUE(fs::is_regular_file(dir / "sub" / "deeper" / "data.bin"));
    EXPECT_TRUE(disk.exists("sub/deeper/data.bin"));
    EXPECT_TRUE(disk.exists("sub"));
    EXPECT_FALSE(disk.exists("none"));
    EXPECT_EQ(disk.getDataSize("sub/deeper/data.bin"), 10);

    char buffer[16] = {};
    EXPECT_EQ(disk.getData(nullptr, 0, "sub/deeper/data.bin", 4), 6);
    EXPECT_EQ(disk.getData(buffer, 6, "sub/deeper/data.bin", 4), 6);
    EXPECT_EQ(std::string(buffer, 6), "456789");
    EXPECT_EQ(disk.getData(buffer, 16, "sub/deeper/data.bin", 10), 0);
    EXPECT_EQ(disk.getString("sub/deeper/data.bin", 7), "789");
    EXPECT_EQ(disk.getString("sub/deeper/data.bin", 0), "0123456789");

    const std::string path = (dir / "sub/deeper/data.bin").string();
    EXPECT_EQ(failure([&] { disk.getData(buffer, 5, "sub/deeper/data.bin", 4); }),
              "Buffer too small for '" + path + "'");
    EXPECT_EQ(failure([&] { disk.getData(buffer, 16, "sub/deeper/data.bin", -1); }), "Invalid offset for '" + path + "'");
    EXPECT_EQ(failure([&] { disk.getData(buffer, 16, "sub/deeper/data.bin", 11); }), "Invalid offset for '" + path + "'");
    EXPECT_EQ(failure([&] { disk.getString("sub/deeper/data.bin", -2); }), "Invalid offset for '" + path + "'");
    const std::string missing = (dir / "missing").string();
    EXPECT_EQ(failure([&] { disk.getData(nullptr, 0, "missing", 0); }), "Error when opening '" + missing + "'");
    EXPECT_EQ(failure([&] { disk.getString("missing", 0); }), "Error when opening '" + missing + "'");
    EXPECT_NE(failure([&] { disk.getDataSize("missing"); }), "no exception");
    EXPECT_EQ(failure([&] { disk.getAllNames(); }), "Not implemented");

    // Whole-item helpers read from 0: a positive offset no longer fits.
    EXPECT_EQ(disk.getBytes("sub/deeper/data.bin", 0).size(), 10u);
    EXPECT_EQ(failure([&] { disk.getBytes("sub/deeper/data.bin", 2); }), "Buffer too small for '" + path + "'");
    EXPECT_NE(failure([&] { disk.getInputStream("sub/deeper/data.bin", 2); }).find("Buffer too small for '"),
              std::string::npos);
    std::string line;
    std::getline(*disk.getInputStream("sub/deeper/data.bin", 0), line);
    EXPECT_EQ(line, "0123456789");

    // Empty items read as empty, and an absolute name ignores the main folder.
    disk.create("empty", "", 0);
    EXPECT_EQ(disk.getString("empty", 0), "");
    DiskFileProvider elsewhere((dir / "nowhere").string());
    EXPECT_EQ(elsewhere.getString(path, 0), "0123456789");
    EXPECT_EQ(elsewhere.resolve(path), fs::path(path));
    EXPECT_EQ(DiskFileProvider().resolve("a/b"), fs::path("a/b"));
}

TEST(DiskFileProvider, CreateFromFileRules) {
    const fs::path dir = scratch("disk-from-file");
    DiskFileProvider disk((dir / "store").string());
    writeText(dir / "source.txt", "new");
    const std::string source = (dir / "source.txt").string();
    EXPECT_EQ(failure([&] { disk.createFromFile("t.txt", (dir / "none").string(), true); }),
              "File not found: " + (dir / "none").string());
    disk.createFromFile("in/t.txt", source, false);
    EXPECT_EQ(disk.getString("in/t.txt", 0), "new");

    disk.create("in/t.txt", std::string("kept"));
    disk.createFromFile("in/t.txt", source, false);  // exists and no overwrite
    EXPECT_EQ(disk.getString("in/t.txt", 0), "kept");
    // The target is newer than the source: update-existing keeps it.
    disk.createFromFile("in/t.txt", source, true);
    EXPECT_EQ(disk.getString("in/t.txt", 0), "kept");
    fs::last_write_time(dir / "source.txt", fs::last_write_time(dir / "store/in/t.txt") + std::chrono::hours(1));
    disk.createFromFile("in/t.txt", source, true);
    EXPECT_EQ(disk.getString("in/t.txt", 0), "new");
    // Same file as target: nothing happens.
    DiskFileProvider here(dir.string());
    here.createFromFile("source.txt", source, true);
    EXPECT_EQ(here.getString("source.txt", 0), "new");
}
