#include <gtest/gtest.h>

#include <memory>

#include "ProviderTestUtil.h"
#include "sorvane/archive/FileProviderRef.h"
#include "sorvane/archive/MemoryFileProvider.h"

using namespace sorvane::archive;
using providertest::failure;

TEST(FileProviderRef, ForwardsAndRefusesEmpty) {
    FileProviderRef empty;
    char byte = 0;
    const std::string text = "fileProvider is NULL";
    EXPECT_EQ(failure([&] { empty.className(); }), text);
    EXPECT_EQ(failure([&] { empty.getMainDir(); }), text);
    EXPECT_EQ(failure([&] { empty.close(); }), text);
    EXPECT_EQ(failure([&] { empty.exists("a"); }), text);
    EXPECT_EQ(failure([&] { empty.getDataSize("a"); }), text);
    EXPECT_EQ(failure([&] { empty.getData(&byte, 1, "a", 0); }), text);
    EXPECT_EQ(failure([&] { empty.getString("a", 0); }), text);
    EXPECT_EQ(failure([&] { empty.create("a", &byte, 1); }), text);
    EXPECT_EQ(failure([&] { empty.createFromFile("a", "b", true); }), text);

    auto memory = std::make_shared<MemoryFileProvider>();
    FileProviderRef ref(memory);
    ref.create("a", "xy", 2);
    EXPECT_EQ(ref.className(), "Memory");
    EXPECT_EQ(ref.getMainDir(), "memory:");
    EXPECT_TRUE(ref.exists("a"));
    EXPECT_EQ(ref.getDataSize("a"), 2);
    EXPECT_EQ(ref.getString("a", 0), "xy");
    EXPECT_EQ(ref.get().use_count(), 2);
}
