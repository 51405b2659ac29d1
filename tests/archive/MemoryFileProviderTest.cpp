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

// Blocks on both sides of the size from which the store maps its own blocks:
// every byte up to the last is kept, and emptying or dropping them frees them
// (the sanitizer build checks the mapping is released the way it was made).
TEST(MemoryFileProvider, LargeBlocksKeepEveryByte) {
    for (const size_t size : {size_t(32) << 20, (size_t(32) << 20) + 4097, (size_t(16) << 20) + 3}) {
        SCOPED_TRACE(size);
        std::vector<uint8_t> bytes(size);
        for (size_t i = 0; i < size; ++i) bytes[i] = static_cast<uint8_t>(i * 131 + (i >> 12));
        MemoryFileProvider memory;
        const FileProvider::Block blocks[] = {{bytes.data(), 5}, {bytes.data() + 5, static_cast<int64_t>(size - 5)}};
        memory.createBlocks("big.bin", blocks, 2);
        int64_t stored = 0;
        const uint8_t* view = memory.view("big.bin", stored);
        ASSERT_EQ(stored, static_cast<int64_t>(size));
        EXPECT_EQ(std::memcmp(view, bytes.data(), size), 0);
        uint8_t tail[7] = {};
        memory.getRange(tail, 7, "big.bin", static_cast<int64_t>(size) - 7);
        EXPECT_EQ(std::memcmp(tail, bytes.data() + size - 7, 7), 0);
        memory.create("copy.bin", bytes.data(), static_cast<int64_t>(size));
        memory.create("copy.bin", nullptr, 0);
        EXPECT_EQ(memory.getDataSize("copy.bin"), 0);
    }
}
