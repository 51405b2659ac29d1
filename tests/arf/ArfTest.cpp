#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>

#include "sorvane/archive/DiskFileProvider.h"
#include "sorvane/archive/MemoryFileProvider.h"
#include "sorvane/archive/Zip.h"
#include "sorvane/arf/Arf.h"
#include "tests/arf/node/NodeTestSupport.h"

using namespace sorvane::arf;
using talvex_test::messageOf;
namespace fs = std::filesystem;

namespace {

// A scratch folder per test, removed afterwards.
struct Scratch {
    fs::path dir;
    Scratch() {
        dir = fs::temp_directory_path() /
              ("talvex-arf-" + std::to_string(::getpid()) + "-" +
               ::testing::UnitTest::GetInstance()->current_test_info()->name());
        fs::remove_all(dir);
        fs::create_directories(dir);
    }
    ~Scratch() { fs::remove_all(dir); }
};

void fill(Arf& arf) {
    arf.identity->name.set("Round Trip");
    arf.identity->age.set(0.1);
    auto asset = arf.structure->assets.add("body", std::nullopt);
    asset.lods.add("high", 5);
    arf.preamble->supportedAnimations->faceAnimations.set(std::vector<std::string>{"urn:a"});
}

} // namespace

TEST(Arf, DetectStorageMode) {
    EXPECT_EQ(Arf::detectStorageMode("a/b.arf"), MULTIPLE_FILES);
    EXPECT_EQ(Arf::detectStorageMode("b.json"), MULTIPLE_FILES);
    EXPECT_EQ(Arf::detectStorageMode("c:\\x\\b.arfz"), SINGLE_FILE);
    EXPECT_EQ(Arf::detectStorageMode("b.zip"), SINGLE_FILE);
    EXPECT_EQ(Arf::detectStorageMode("memory:"), MEMORY_ONLY);
    EXPECT_EQ(Arf::detectStorageMode("memory:{}"), MEMORY_ONLY);
    EXPECT_EQ(Arf::detectStorageMode("b.txt", SINGLE_FILE), SINGLE_FILE);
    EXPECT_EQ(messageOf([] { Arf::detectStorageMode("b.JSON"); }), "Unable to guess storage mode from extension");
    EXPECT_EQ(messageOf([] { Arf::detectStorageMode("memory"); }), "Unable to guess storage mode from extension");
    EXPECT_EQ(int2StorageMode(2), SINGLE_FILE);
    EXPECT_EQ(messageOf([] { int2StorageMode(4); }), "Invalid or unsupported storageMode type 4");
    EXPECT_STREQ(storageMode2name(MEMORY_ONLY), "MEMORY_ONLY");
}

TEST(Arf, EachStorageModeRoundTrips) {
    Scratch scratch;
    for (const std::string& path : {(scratch.dir / "avatar.arf.json").string(), (scratch.dir / "avatar.arfz").string()}) {
        std::string written;
        {
            Arf arf = Arf::create(path);
            fill(arf);
            written = arf.toJsonString();
            arf.save();
        }
        Arf again = Arf::load(path, true);
        EXPECT_EQ(again.toJsonString(), written) << path;
        EXPECT_EQ(again.identity->name.get(), "Round Trip");
    }
    // The main file on disk is exactly the JSON text, with no final line feed.
    std::ifstream in(scratch.dir / "avatar.arf.json", std::ios::binary);
    std::string onDisk((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    EXPECT_EQ(onDisk.back(), '}');
    // The archive holds arf.json.
    auto zip = sorvane::archive::Zip::openShared(scratch.dir / "avatar.arfz");
    EXPECT_TRUE(zip->exists("arf.json"));
}

TEST(Arf, MemoryDocuments) {
    Arf created = Arf::create("memory:");
    fill(created);
    created.save();
    const std::string first = created.toJsonString();
    EXPECT_EQ(created.getFileProvider()->getString("arf.json", 0), first);
    // A second save in memory leaves the first text: the memory store keeps
    // what was written first.
    created.identity->name.set("changed");
    created.save();
    EXPECT_EQ(created.getFileProvider()->getString("arf.json", 0), first);

    Arf loaded = Arf::load("memory:" + first);
    EXPECT_EQ(loaded.toJsonString(), first);
    EXPECT_EQ(messageOf([] { Arf::load("memory:"); }), "No initial JSON");
    EXPECT_EQ(messageOf([] { Arf::load("memory:abc"); }), "Expect an object at line 1");

    // Through a provider: AUTO reads arf.json whatever name is given.
    auto memory = std::make_shared<sorvane::archive::MemoryFileProvider>();
    memory->create("arf.json", first);
    EXPECT_EQ(Arf::load(memory, "x.json", AUTO).toJsonString(), first);
    EXPECT_EQ(messageOf([&] { Arf(memory, "x.json", MEMORY_ONLY, false); }), "Invalid main file name");
    EXPECT_EQ(messageOf([&] { Arf(memory, "", MULTIPLE_FILES, false); }), "Empty file name");
    EXPECT_EQ(messageOf([&] { Arf(memory, "a", AUTO, false); }), "Invalid storage mode");
}

// A path given as text reads "memory:" documents where they lie; slashes in
// the text (uris, types) must not matter, as they would to a path object.
TEST(Arf, PathGivenAsText) {
    Arf source = Arf::create("memory:");
    fill(source);
    source.identity->name.set("a//b/c/ d/e/");
    const std::string text = source.toJsonString();
    ASSERT_NE(text.find("a//b/c/"), std::string::npos);
    const std::string memory = "memory:" + text;
    EXPECT_EQ(Arf::load(memory).toJsonString(), text);
    EXPECT_EQ(Arf::load(memory.c_str(), true).toJsonString(), text);
    EXPECT_EQ(Arf::load(std::filesystem::path(memory)).toJsonString(), text);
    std::unique_ptr<Arf> held(Arf::loadPtr(memory, true));
    EXPECT_TRUE(held->isReadOnly());
    EXPECT_EQ(held->getStorageMode(), MEMORY_ONLY);
    EXPECT_EQ(std::unique_ptr<Arf>(Arf::createPtr(std::string("memory:")))->toJsonString(),
              Arf::create(std::filesystem::path("memory:")).toJsonString());

    // Anything else still goes the way of a path.
    Scratch scratch;
    const std::string file = (scratch.dir / "text.arf").string();
    Arf::create(file).save();
    EXPECT_EQ(Arf::load(file).getStorageMode(), MULTIPLE_FILES);
    EXPECT_EQ(Arf::load(file.c_str()).getMainFileName(), "text.arf");
    EXPECT_EQ(messageOf([] { Arf::load(std::string("memory:")); }), "No initial JSON");
    EXPECT_EQ(messageOf([] { Arf::load(std::string("x.txt")); }), "Unable to guess storage mode from extension");
}

TEST(Arf, ReadOnlyDocument) {
    const std::string text = Arf::create("memory:").toJsonString();
    Arf arf = Arf::load("memory:" + text, true);
    EXPECT_EQ(messageOf([&] { arf.identity->name.set("x"); }), "Setting identity.name: Forbidden, read-only accessor");
    EXPECT_EQ(messageOf([&] { arf.structure->assets.add("a", std::nullopt); }),
              "Adding an item to structure.assets: Forbidden, read-only accessor");
    EXPECT_TRUE(arf.identity.has("gender"));
    EXPECT_FALSE(arf.identity.has("x"));

    // A removed section is made again on demand only in a writable document.
    arf.getRoot()->setIdentity(nullptr);
    EXPECT_FALSE(arf.identity.has("name"));
    EXPECT_EQ(messageOf([&] { arf.identity.get(); }), "Getting identity: Property does not exist");
    Arf writable = Arf::load("memory:" + text);
    writable.getRoot()->setIdentity(nullptr);
    EXPECT_EQ(writable.identity->name.get(), "<undefined>");
}

TEST(Arf, AccessorsKeepTheDocumentAlive) {
    sorvane::arf::Identity identity;
    {
        Arf arf = Arf::create("memory:");
        identity = arf.identity.get();
    }
    identity.name.set("alive");
    EXPECT_EQ(identity.name.get(), "alive");
}

TEST(Arf, FreeFileNames) {
    auto disk = std::make_shared<sorvane::archive::DiskFileProvider>("");
    RootNode onDisk(disk, "avatar.arf.json", MULTIPLE_FILES);
    EXPECT_EQ(onDisk.findFreeFileName(nullptr, "left arm!", 7, ".bin"), "avatar_leftarm_7.bin");
    EXPECT_EQ(onDisk.findFreeFileName(nullptr, nullptr, -1, ".bin"), "avatar.bin");
    EXPECT_EQ(onDisk.findFreeFileName("given/name.bin", "x", 1, ".bin"), "given/name.bin");
    EXPECT_EQ(messageOf([&] { onDisk.findFreeFileName("/etc/passwd", nullptr, 1, ".bin"); }),
              "uri '/etc/passwd' is absolute");
    RootNode inMemory(std::make_shared<sorvane::archive::MemoryFileProvider>(), "arf.json", MEMORY_ONLY);
    EXPECT_EQ(inMemory.findFreeFileName(nullptr, nullptr, -1, ".bin"), ".bin");
    EXPECT_EQ(inMemory.findFreeFileName(nullptr, "mesh", 3, ".bin"), "mesh_3.bin");
    EXPECT_EQ(inMemory.findFreeFileName(nullptr, "!!", 3, ".bin"), "3.bin");
}

TEST(Arf, SharedRawData) {
    Scratch scratch;
    const fs::path old = fs::current_path();
    fs::current_path(scratch.dir);
    {
        Arf arf = Arf::create("doc.arf");
        RootNode& root = *arf.getRoot();
        EXPECT_EQ(messageOf([&] { root.endSharedRawData(); }), "There is no shared rawData");
        root.beginSharedRawData(false, "pack");
        EXPECT_EQ(messageOf([&] { root.beginSharedRawData(false, "again"); }), "There is already a shared rawData");
        EXPECT_EQ(messageOf([&] { root.endSharedRawData(); }), "Shared rawData is empty");
        EXPECT_EQ(messageOf([&] { root.appendSharedRawData("x", 1, true); }),
                  "Embedded shared raw data is not supported");
        EXPECT_EQ(root.appendSharedRawData("abc", 3, false), 0);
        EXPECT_EQ(root.appendSharedRawData("", 0, false), 3);
        EXPECT_EQ(root.appendSharedRawData("de", 2, false), 3);
        root.endSharedRawData();
        EXPECT_EQ(root.getSharedRawData(), nullptr);
    }
    std::ifstream in(scratch.dir / "doc_pack.bin", std::ios::binary);
    std::string bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    fs::current_path(old);
    EXPECT_EQ(bytes, "abcde");

    // Only the main-file mode gathers payloads.
    Arf memory = Arf::create("memory:");
    memory.getRoot()->beginSharedRawData(false, "pack");
    EXPECT_EQ(memory.getRoot()->getSharedRawData(), nullptr);
    memory.getRoot()->endSharedRawData();
}
