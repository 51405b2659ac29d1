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
    EXPECT_EQ(failure([&] { relative.getData(buffer, 3, "mesh.bin", 2); }),
              "Buffer too small for '" + (dir / "models/a/mesh.bin").string() + "'");
    EXPECT_EQ(relative.resolve("/abs/x"), "/abs/x");
    EXPECT_EQ(failure([&] { relative.getAllNames(); }), "Not implemented");

    auto memory = std::make_shared<MemoryFileProvider>();
    RelativeFileProvider inMemory(memory, "dir");
    inMemory.create("x/../y", std::string("value"));
    EXPECT_TRUE(memory->exists("dir/y"));
    EXPECT_EQ(RelativeFileProvider(memory, "other/../dir").getString("y", 0), "value");
    EXPECT_EQ(failure([&] { inMemory.getDataSize("z"); }), "No item 'dir/z'");
}
