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

TEST(MemoryFileProvider, FirstWriteWinsAndEmptying) {
    MemoryFileProvider memory;
    EXPECT_STREQ(memory.className(), "Memory");
    EXPECT_EQ(memory.getMainDir(), "memory:");
    memory.create("x", "hello", 5);
    memory.create("x", "world", 5);  // first content stays
    EXPECT_EQ(memory.getString("x", 0), "hello");
    memory.create("./x", std::string("other"));
    EXPECT_EQ(memory.getString("x", 0), "hello");

    memory.create("x", "ignored", 0);  // size 0 empties
    EXPECT_TRUE(memory.exists("x"));
    EXPECT_EQ(memory.getDataSize("x"), 0);
    char buffer[8];
    EXPECT_EQ(failure([&] { memory.getData(buffer, 8, "x", 0); }), "No data for 'x'");
    EXPECT_EQ(failure([&] { memory.getString("x", 0); }), "No data for 'x'");
    EXPECT_EQ(memory.getData(nullptr, 0, "x", 0), 0);
    memory.create("x", "again", 5);  // an emptied item still counts as taken
    EXPECT_EQ(memory.getDataSize("x"), 0);

    memory.create("fresh", "new", 0);  // size 0 creates too
    EXPECT_TRUE(memory.exists("fresh"));
}

TEST(MemoryFileProvider, CanonicalNamesOffsetsAndFailures) {
    MemoryFileProvider memory;
    memory.create("b", "0123456789", 10);
    EXPECT_TRUE(memory.exists("a/../b"));
    EXPECT_TRUE(memory.exists("./b"));
    EXPECT_FALSE(memory.exists("c"));
    // The offset is ignored: sizes and reads cover the whole item.
    EXPECT_EQ(memory.getData(nullptr, 0, "b", 7), 10);
    char buffer[10];
    EXPECT_EQ(memory.getData(buffer, 10, "a/c/../../b", 3), 10);
    EXPECT_EQ(std::string(buffer, 10), "0123456789");
    EXPECT_EQ(memory.getString("b", 4), "0123456789");
    EXPECT_EQ(failure([&] { memory.getData(buffer, 9, "b", 0); }), "Buffer too small for 'b'");
    EXPECT_EQ(failure([&] { memory.getDataSize("x/../c"); }), "No item 'c'");
    EXPECT_EQ(failure([&] { memory.getString("c", 0); }), "No item 'c'");
    EXPECT_EQ(failure([&] { memory.getAllNames(); }), "Not implemented");
    EXPECT_EQ(memory.getBytes("b", 0).size(), 10u);
    EXPECT_EQ(memory.getBytes("b", 5).size(), 10u);

    auto stream = memory.getInputStream("b", 0);
    std::string text;
    *stream >> text;
    EXPECT_EQ(text, "0123456789");
    stream->clear();
    stream->seekg(3);
    EXPECT_EQ(stream->get(), '3');
}

TEST(MemoryFileProvider, CreateFromFile) {
    const fs::path dir = scratch("memory-from-file");
    writeText(dir / "a.txt", "file content");
    writeText(dir / "b.txt", "other");
    MemoryFileProvider memory;
    memory.createFromFile("a", (dir / "a.txt").string(), false);
    memory.createFromFile("a", (dir / "b.txt").string(), true);  // first write wins, overwrite ignored
    EXPECT_EQ(memory.getString("a", 0), "file content");
    const std::string missing = (dir / "none").string();
    EXPECT_EQ(failure([&] { memory.createFromFile("m", missing, true); }), "Error when opening '" + missing + "'");
    EXPECT_FALSE(memory.exists("m"));
}

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

TEST(RelativeFileProvider, OverDiskAndMemory) {
    const fs::path dir = scratch("relative");
    auto disk = std::make_shared<DiskFileProvider>(dir.string());
    RelativeFileProvider relative(disk, "models/a");
    EXPECT_STREQ(relative.className(), "Relative");
    EXPECT_EQ(relative.getMainDir(), "models/a");
    relative.create("mesh.bin", "abcdef", 6);
    EXPECT_TRUE(fs::is_regular_file(dir / "models/a/mesh.bin"));
    EXPECT_TRUE(disk->exists("models/a/mesh.bin"));
    EXPECT_EQ(relative.getDataSize("mesh.bin"), 6);
    char buffer[4];
    EXPECT_EQ(relative.getData(buffer, 4, "mesh.bin", 2), 4);
    EXPECT_EQ(std::string(buffer, 4), "cdef");
    EXPECT_EQ(relative.getString("mesh.bin", 0), "abcdef");
    EXPECT_EQ(relative.resolve("/abs/x"), "/abs/x");
    EXPECT_EQ(failure([&] { relative.getAllNames(); }), "Not implemented");

    auto memory = std::make_shared<MemoryFileProvider>();
    RelativeFileProvider inMemory(memory, "dir");
    inMemory.create("x/../y", std::string("value"));
    EXPECT_TRUE(memory->exists("dir/y"));
    EXPECT_EQ(RelativeFileProvider(memory, "other/../dir").getString("y", 0), "value");
    EXPECT_EQ(failure([&] { inMemory.getDataSize("z"); }), "No item 'dir/z'");
}
