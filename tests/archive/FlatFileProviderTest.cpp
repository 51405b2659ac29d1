#include <gtest/gtest.h>

#include <string>

#include "ProviderTestUtil.h"
#include "sorvane/sorvane.h"

namespace fs = std::filesystem;
using providertest::scratch;

namespace {

std::string slot() {
    int64_t size = 0;
    sorvane_getErrorMessage(nullptr, &size);
    std::string text(static_cast<size_t>(size), '\0');
    sorvane_getErrorMessage(&text[0], &size);
    text.resize(static_cast<size_t>(size) - 1);
    return text;
}

// The slot without the location prefix.
std::string slotText() {
    const std::string text = slot();
    const size_t at = text.find("(): ");
    return at == std::string::npos ? text : text.substr(at + 4);
}

} // namespace

TEST(FlatFileProvider, NullTexts) {
    sorvane_archive_FileProviderRef* handle = nullptr;
    char text[32];
    int64_t size = 32;
    bool flag = false;
    int64_t value = 0;
    const char byte = 'x';

    EXPECT_EQ(sorvane_archive_FileProvider_createMemory(nullptr), -1);
    EXPECT_EQ(slot(), "out is NULL");
    EXPECT_EQ(sorvane_archive_FileProvider_createDisk(nullptr, "d"), -1);
    EXPECT_EQ(slot(), "out is NULL");
    EXPECT_EQ(sorvane_archive_FileProvider_createZip(nullptr, "z.zip"), -1);
    EXPECT_EQ(slot(), "out is NULL");
    EXPECT_EQ(sorvane_archive_FileProvider_createDisk(&handle, nullptr), -1);
    EXPECT_EQ(slot(), "basic_string::_S_construct null not valid");
    EXPECT_EQ(handle, nullptr);
    EXPECT_EQ(sorvane_archive_FileProvider_createZip(&handle, nullptr), -1);
    EXPECT_EQ(slot(), "basic_string::_S_construct null not valid");

    const auto nullHandle = [&](int32_t status) {
        EXPECT_EQ(status, -1);
        EXPECT_EQ(slot(), "instancePtr_ is NULL");
    };
    nullHandle(sorvane_archive_FileProvider_createRelative(&handle, nullptr, "d"));
    nullHandle(sorvane_archive_FileProvider_createRelative(nullptr, nullptr, "d"));
    nullHandle(sorvane_archive_FileProvider_delete(nullptr));
    nullHandle(sorvane_archive_FileProvider_className(text, &size, nullptr));
    nullHandle(sorvane_archive_FileProvider_getMainDir(text, &size, nullptr));
    nullHandle(sorvane_archive_FileProvider_close(nullptr));
    nullHandle(sorvane_archive_FileProvider_exists(&flag, nullptr, "a"));
    nullHandle(sorvane_archive_FileProvider_getDataSize(&value, nullptr, "a"));
    nullHandle(sorvane_archive_FileProvider_getData(text, &size, nullptr, "a", 0));
    nullHandle(sorvane_archive_FileProvider_getString(text, &size, nullptr, "a", 0));
    nullHandle(sorvane_archive_FileProvider_create(nullptr, "a", &byte, 1));
    nullHandle(sorvane_archive_FileProvider_createFromFile(nullptr, "a", "b", true));

    ASSERT_EQ(sorvane_archive_FileProvider_createMemory(&handle), 0);
    EXPECT_EQ(sorvane_archive_FileProvider_createRelative(nullptr, handle, "d"), -1);
    EXPECT_EQ(slot(), "out is NULL");
    EXPECT_EQ(sorvane_archive_FileProvider_exists(nullptr, handle, "a"), -1);
    EXPECT_EQ(slot(), "out is NULL");
    EXPECT_EQ(sorvane_archive_FileProvider_getDataSize(nullptr, handle, "a"), -1);
    EXPECT_EQ(slot(), "out is NULL");
    EXPECT_EQ(sorvane_archive_FileProvider_getData(text, nullptr, handle, "a", 0), -1);
    EXPECT_EQ(slot(), "poutSize is NULL");
    EXPECT_EQ(sorvane_archive_FileProvider_create(handle, "a", nullptr, 1), -1);
    EXPECT_EQ(slot(), "buffer is NULL");
    EXPECT_EQ(sorvane_archive_FileProvider_className(text, nullptr, handle), -1);
    EXPECT_EQ(slot(), "outSize is NULL");
    size = 32;
    EXPECT_EQ(sorvane_archive_FileProvider_className(nullptr, &size, handle), -1);
    EXPECT_EQ(slot(), "out is NULL");
    const auto nullName = [&](int32_t status) {
        EXPECT_EQ(status, -1);
        EXPECT_EQ(slot(), "basic_string::_S_construct null not valid");
    };
    nullName(sorvane_archive_FileProvider_exists(&flag, handle, nullptr));
    nullName(sorvane_archive_FileProvider_getDataSize(&value, handle, nullptr));
    size = 32;
    nullName(sorvane_archive_FileProvider_getData(text, &size, handle, nullptr, 0));
    nullName(sorvane_archive_FileProvider_getString(text, &size, handle, nullptr, 0));
    nullName(sorvane_archive_FileProvider_create(handle, nullptr, &byte, 1));
    nullName(sorvane_archive_FileProvider_createFromFile(handle, nullptr, "b", true));
    nullName(sorvane_archive_FileProvider_createFromFile(handle, "a", nullptr, true));
    nullName(sorvane_archive_FileProvider_createRelative(&handle, handle, nullptr));
    EXPECT_EQ(sorvane_archive_FileProvider_delete(handle), 0);
}

TEST(FlatFileProvider, MemoryThroughHandles) {
    sorvane_archive_FileProviderRef* memory = nullptr;
    sorvane_archive_FileProviderRef* sub = nullptr;
    ASSERT_EQ(sorvane_archive_FileProvider_createMemory(&memory), 0);
    ASSERT_EQ(sorvane_archive_FileProvider_createRelative(&sub, memory, "dir"), 0);
    EXPECT_EQ(sorvane_archive_FileProvider_delete(memory), 0);  // the relative handle keeps it alive

    char text[16];
    int64_t size = 0;
    EXPECT_EQ(sorvane_archive_FileProvider_className(text, &size, sub), -1);  // sizing call
    EXPECT_EQ(size, 9);
    EXPECT_EQ(sorvane_archive_FileProvider_className(text, &size, sub), 0);
    EXPECT_STREQ(text, "Relative");
    size = 16;
    EXPECT_EQ(sorvane_archive_FileProvider_getMainDir(text, &size, sub), 0);
    EXPECT_STREQ(text, "dir");

    EXPECT_EQ(sorvane_archive_FileProvider_create(sub, "a.bin", "abcdef", 6), 0);
    bool found = false;
    EXPECT_EQ(sorvane_archive_FileProvider_exists(&found, sub, "x/../a.bin"), 0);
    EXPECT_TRUE(found);
    int64_t value = 0;
    EXPECT_EQ(sorvane_archive_FileProvider_getDataSize(&value, sub, "a.bin"), 0);
    EXPECT_EQ(value, 6);

    size = 0;
    EXPECT_EQ(sorvane_archive_FileProvider_getData(nullptr, &size, sub, "a.bin", 0), 0);
    EXPECT_EQ(size, 6);
    size = 5;
    EXPECT_EQ(sorvane_archive_FileProvider_getData(text, &size, sub, "a.bin", 0), -1);
    EXPECT_EQ(slotText(), "Buffer too small for 'dir/a.bin'");
    EXPECT_EQ(size, 5);
    size = 16;
    EXPECT_EQ(sorvane_archive_FileProvider_getData(text, &size, sub, "a.bin", 0), 0);
    EXPECT_EQ(size, 6);
    EXPECT_EQ(std::string(text, 6), "abcdef");

    size = 0;
    EXPECT_EQ(sorvane_archive_FileProvider_getString(nullptr, &size, sub, "a.bin", 0), -1);
    EXPECT_EQ(size, 7);
    EXPECT_EQ(sorvane_archive_FileProvider_getString(text, &size, sub, "a.bin", 0), 0);
    EXPECT_STREQ(text, "abcdef");
    EXPECT_EQ(sorvane_archive_FileProvider_getDataSize(&value, sub, "none"), -1);
    EXPECT_EQ(slotText(), "No item 'dir/none'");
    EXPECT_EQ(sorvane_archive_FileProvider_close(sub), 0);
    EXPECT_EQ(sorvane_archive_FileProvider_delete(sub), 0);
}

TEST(FlatFileProvider, ZipAndDiskThroughHandles) {
    const fs::path dir = scratch("flat");
    const std::string zipPath = (dir / "f.zip").string();
    providertest::writeText(dir / "payload.bin", "payload");

    sorvane_archive_FileProviderRef* zip = nullptr;
    ASSERT_EQ(sorvane_archive_FileProvider_createZip(&zip, zipPath.c_str()), 0);
    EXPECT_EQ(sorvane_archive_FileProvider_create(zip, "arf.json", "{}", 2), 0);
    EXPECT_EQ(sorvane_archive_FileProvider_createFromFile(zip, "p.bin", (dir / "payload.bin").c_str(), false), 0);
    char text[16];
    int64_t size = 16;
    EXPECT_EQ(sorvane_archive_FileProvider_getData(text, &size, zip, "p.bin", 3), 0);
    EXPECT_EQ(size, 4);
    EXPECT_EQ(std::string(text, 4), "load");
    EXPECT_EQ(sorvane_archive_FileProvider_close(zip), 0);
    bool found = true;
    EXPECT_EQ(sorvane_archive_FileProvider_exists(&found, zip, "arf.json"), -1);
    EXPECT_EQ(slotText(), "Zip file " + zipPath + " is not opened");
    EXPECT_EQ(sorvane_archive_FileProvider_delete(zip), 0);

    // Reopened for changes, the entries are there.
    ASSERT_EQ(sorvane_archive_FileProvider_createZip(&zip, zipPath.c_str()), 0);
    size = 16;
    EXPECT_EQ(sorvane_archive_FileProvider_getString(text, &size, zip, "arf.json", 0), 0);
    EXPECT_STREQ(text, "{}");
    EXPECT_EQ(sorvane_archive_FileProvider_delete(zip), 0);

    sorvane_archive_FileProviderRef* disk = nullptr;
    ASSERT_EQ(sorvane_archive_FileProvider_createDisk(&disk, dir.c_str()), 0);
    EXPECT_EQ(sorvane_archive_FileProvider_createFromFile(disk, "copy/p.bin", (dir / "payload.bin").c_str(), true), 0);
    size = 16;
    EXPECT_EQ(sorvane_archive_FileProvider_getString(text, &size, disk, "copy/p.bin", 0), 0);
    EXPECT_STREQ(text, "payload");
    EXPECT_EQ(sorvane_archive_FileProvider_createFromFile(disk, "x", (dir / "none").c_str(), true), -1);
    EXPECT_EQ(slotText(), "File not found: " + (dir / "none").string());
    EXPECT_EQ(sorvane_archive_FileProvider_delete(disk), 0);
}
