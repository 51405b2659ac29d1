#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "ProviderTestUtil.h"
#include "sorvane/archive/MemoryFileProvider.h"
#include "sorvane/archive/RelativeFileProvider.h"
#include "sorvane/archive/Zip.h"

namespace fs = std::filesystem;
using namespace sorvane::archive;
using providertest::failure;
using providertest::scratch;
using providertest::writeText;

namespace {

// Compressible text of a given size, different at every position.
std::string pattern(size_t size) {
    std::string text;
    text.reserve(size);
    for (size_t i = 0; text.size() < size; ++i) text += "line " + std::to_string(i) + "\n";
    text.resize(size);
    return text;
}

// Writes an archive with the entries under the names given (a backslash is
// kept as it is), stored or deflated.
void writeRaw(const fs::path& path, const std::vector<std::pair<std::string, std::string>>& entries, bool store) {
    Zip zip = Zip::create(path);
    if (store) zip.setCompression(0, 0);
    for (const auto& entry : entries) zip.create(entry.first, entry.second);
}

std::vector<unsigned char> fileBytes(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    return std::vector<unsigned char>((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
}

} // namespace

TEST(Zip, WriteCloseReopenRead) {
    const fs::path dir = scratch("zip-roundtrip");
    const fs::path path = dir / "doc.arfz";
    const std::string big = pattern(200000);
    {
        Zip zip = Zip::create(path);
        EXPECT_STREQ(zip.className(), "Zip");
        EXPECT_EQ(zip.getMainDir(), path.string());
        EXPECT_EQ(zip.getCompressionMethod(), 8);
        EXPECT_EQ(zip.getCompressionLevel(), 6u);
        zip.create("arf.json", std::string("{\"a\":1}"));
        zip.create("data/./big.bin", big);
        zip.create("data/empty.bin", "", 0);
        zip.create("replaced", std::string("first"));
        zip.create("replaced", std::string("second"));  // unlike memory, a second create replaces
        EXPECT_FALSE(fs::exists(path));  // nothing is written before close
        zip.close();
        EXPECT_FALSE(zip.isOpen());
        zip.close();  // twice is harmless
    }
    ASSERT_TRUE(fs::exists(path));

    auto zip = Zip::openShared(path);
    std::vector<std::string> names = zip->getAllNames();
    std::sort(names.begin(), names.end());
    EXPECT_EQ(names, (std::vector<std::string>{"arf.json", "data/big.bin", "data/empty.bin", "replaced"}));
    EXPECT_EQ(zip->getString("arf.json", 0), "{\"a\":1}");
    EXPECT_EQ(zip->getString("replaced", 0), "second");
    EXPECT_EQ(zip->getString("data/empty.bin", 0), "");
    EXPECT_EQ(zip->getDataSize("data/big.bin"), 200000);
    EXPECT_TRUE(zip->exists("data/x/../big.bin"));
    EXPECT_FALSE(zip->exists("data/none"));

    // Exact fit reads, one byte less is too small.
    std::vector<char> buffer(200000);
    EXPECT_EQ(zip->getData(buffer.data(), 200000, "data/big.bin", 0), 200000);
    EXPECT_EQ(std::string(buffer.begin(), buffer.end()), big);
    EXPECT_EQ(failure([&] { zip->getData(buffer.data(), 199999, "data/big.bin", 0); }),
              "Error reading data/big.bin from zip " + path.string() + ": buffer too small");

    // Offsets inside a deflated entry, also far into it.
    for (int64_t offset : {1, 65535, 65536, 150001, 199999, 200000}) {
        const int64_t count = 200000 - offset;
        EXPECT_EQ(zip->getData(nullptr, 0, "data/big.bin", offset), count);
        std::vector<char> slice(static_cast<size_t>(count) + 1, '#');
        EXPECT_EQ(zip->getData(slice.data(), count, "data/big.bin", offset), count) << offset;
        EXPECT_EQ(std::string(slice.data(), static_cast<size_t>(count)), big.substr(static_cast<size_t>(offset)))
            << offset;
        EXPECT_EQ(slice.back(), '#');
    }
    EXPECT_EQ(failure([&] { zip->getData(nullptr, 0, "data/big.bin", 200001); }),
              "Error reading data/big.bin from zip " + path.string() + ": invalid offset 200001 > 200000");
    EXPECT_EQ(failure([&] { zip->getData(nullptr, 0, "data/big.bin", -1); }), "Invalid offset for 'data/big.bin'");
    EXPECT_EQ(zip->getBytes("arf.json", 0).size(), 7u);
    std::string json;
    std::getline(*zip->getInputStream("arf.json", 0), json);
    EXPECT_EQ(json, "{\"a\":1}");

    // Read-only: adding fails through libzip.
    EXPECT_EQ(failure([&] { zip->create("new", std::string("x")); }),
              "Error adding buffer to zip " + path.string() + ": Read-only archive");
}

TEST(Zip, StoredEntriesSeekAndBackslashNames) {
    const fs::path dir = scratch("zip-stored");
    const fs::path path = dir / "raw.zip";
    const std::string text = pattern(5000);
    writeRaw(path, {{"dir\\file.txt", text}, {"plain.txt", "0123456789"}}, true);
    Zip zip = Zip::open(path);
    // Found by reads under "/", not by exists.
    EXPECT_FALSE(zip.exists("dir/file.txt"));
    EXPECT_EQ(zip.getDataSize("dir/file.txt"), 5000);
    EXPECT_EQ(zip.getString("dir/file.txt", 0), text);
    char buffer[8];
    EXPECT_EQ(zip.getData(buffer, 8, "dir/file.txt", 4992), 8);
    EXPECT_EQ(std::string(buffer, 8), text.substr(4992));
    EXPECT_EQ(zip.getData(buffer, 8, "plain.txt", 2), 8);
    EXPECT_EQ(std::string(buffer, 8), "23456789");
    // getString asks for the full size, so only offset 0 is of use.
    EXPECT_EQ(zip.getString("plain.txt", 0), "0123456789");
    EXPECT_NE(failure([&] { zip.getString("plain.txt", 3); }).find("Error reading plain.txt from zip "),
              std::string::npos);
    const std::string missing = "Error reading none from zip " + path.string() + ": ";
    EXPECT_EQ(failure([&] { zip.getDataSize("none"); }).substr(0, missing.size()), missing);
}

TEST(Zip, PendingItemsReadBeforeClose) {
    const fs::path dir = scratch("zip-pending");
    const fs::path path = dir / "pending.zip";
    writeText(dir / "source.bin", "from a file");
    const std::string big = pattern(70000);
    Zip zip = Zip::create(path);
    zip.create("a/b.bin", big);
    zip.createFromFile("c.txt", (dir / "source.bin").string(), false);
    EXPECT_TRUE(zip.exists("a/./b.bin"));
    EXPECT_EQ(zip.getDataSize("a/b.bin"), 70000);
    EXPECT_EQ(zip.getString("a/b.bin", 0), big);
    char buffer[16] = {};
    EXPECT_EQ(zip.getData(buffer, 16, "a/b.bin", 69990), 10);
    EXPECT_EQ(std::string(buffer, 10), big.substr(69990));
    EXPECT_EQ(zip.getString("c.txt", 0), "from a file");
    EXPECT_EQ(zip.getData(buffer, 16, "c.txt", 5), 6);
    EXPECT_EQ(std::string(buffer, 6), "a file");
    EXPECT_EQ(failure([&] { zip.getData(buffer, 5, "c.txt", 5); }),
              "Error reading c.txt from zip " + path.string() + ": buffer too small");
    EXPECT_EQ(zip.getAllNames().size(), 2u);

    // Adding a name twice without overwrite fails; with overwrite it replaces.
    EXPECT_NE(failure([&] { zip.createFromFile("c.txt", (dir / "source.bin").string(), false); })
                  .find("Error adding file to zip "),
              std::string::npos);
    zip.createFromFile("a/b.bin", (dir / "source.bin").string(), true);
    EXPECT_EQ(zip.getString("a/b.bin", 0), "from a file");
    zip.create("c.txt", std::string("replaced"));
    EXPECT_EQ(zip.getString("c.txt", 0), "replaced");
    zip.close();

    Zip reopened = Zip::open(path);
    EXPECT_EQ(reopened.getString("a/b.bin", 0), "from a file");
    EXPECT_EQ(reopened.getString("c.txt", 0), "replaced");
}

// Large entries wait for the close in one file beside the archive: readable
// before the close from where they lie in it, and the file gone after a close
// and after a close that never came (the destructor's).
TEST(Zip, LargeEntriesWaitInFiles) {
    const fs::path dir = scratch("zip-spill");
    const fs::path path = dir / "large.zip";
    const std::string big = pattern(9u << 20);
    auto filesBeside = [&] {
        size_t count = 0;
        for (const auto& entry : fs::directory_iterator(dir)) count += entry.path() != path;
        return count;
    };
    {
        Zip zip = Zip::create(path);
        const size_t half = big.size() / 2;
        const FileProvider::Block blocks[] = {{big.data(), static_cast<int64_t>(half)},
                                              {big.data() + half, static_cast<int64_t>(big.size() - half)}};
        zip.createBlocks("big.bin", blocks, 2);
        zip.createBlocks("other.bin", blocks, 2);
        EXPECT_EQ(filesBeside(), 1u);
        EXPECT_EQ(zip.getDataSize("big.bin"), static_cast<int64_t>(big.size()));
        EXPECT_EQ(zip.getString("big.bin", 0), big);
        char buffer[16] = {};
        zip.getRange(buffer, 16, "big.bin", static_cast<int64_t>(half) - 8);
        EXPECT_EQ(std::string(buffer, 16), big.substr(half - 8, 16));
        EXPECT_EQ(zip.getData(buffer, 16, "big.bin", static_cast<int64_t>(big.size()) - 16), 16);
        EXPECT_EQ(std::string(buffer, 16), big.substr(big.size() - 16));
        zip.create("other.bin", std::string("small now"));
        EXPECT_EQ(zip.getString("other.bin", 0), "small now");
        EXPECT_EQ(zip.getString("big.bin", 0), big);
        zip.close();
        EXPECT_EQ(filesBeside(), 0u);
    }
    {
        Zip reopened = Zip::open(path);
        EXPECT_EQ(reopened.getString("big.bin", 0), big);
        EXPECT_EQ(reopened.getString("other.bin", 0), "small now");
    }
    {
        Zip unclosed = Zip::create(dir / "unclosed.zip");
        unclosed.create("big.bin", big);
    }
    EXPECT_EQ(Zip::open(dir / "unclosed.zip").getString("big.bin", 0), big);
    fs::remove(dir / "unclosed.zip");
    EXPECT_EQ(filesBeside(), 0u);
}

TEST(Zip, ReopenForChangesKeepsEntries) {
    const fs::path dir = scratch("zip-reopen");
    const fs::path path = dir / "keep.zip";
    {
        auto zip = Zip::createShared(path);
        zip->create("one", std::string("1"));
    }
    {
        std::unique_ptr<Zip> zip(Zip::createPtr(path));
        EXPECT_EQ(zip->getString("one", 0), "1");
        zip->create("two", std::string("2"));
        zip->create("one", std::string("uno"));
        EXPECT_EQ(zip->getString("one", 0), "uno");
    }
    std::unique_ptr<Zip> zip(Zip::openPtr(path));
    EXPECT_EQ(zip->getString("one", 0), "uno");
    EXPECT_EQ(zip->getString("two", 0), "2");

    // Stored entries through the compression setting.
    const fs::path stored = dir / "stored.zip";
    {
        Zip out = Zip::create(stored);
        out.setCompression(0, 0);
        out.create("s", pattern(3000));
    }
    // The method field of the first local header: 0 is stored.
    const std::vector<unsigned char> bytes = fileBytes(stored);
    ASSERT_GT(bytes.size(), 10u);
    EXPECT_EQ(bytes[8] | bytes[9] << 8, 0);
    EXPECT_EQ(Zip::open(stored).getDataSize("s"), 3000);
}

TEST(Zip, ClosedArchiveAndBadFiles) {
    const fs::path dir = scratch("zip-bad");
    const fs::path path = dir / "c.zip";
    Zip zip = Zip::create(path);
    zip.create("x", std::string("x"));
    zip.close();
    const std::string closed = "Zip file " + path.string() + " is not opened";
    EXPECT_EQ(failure([&] { zip.exists("x"); }), closed);
    EXPECT_EQ(failure([&] { zip.getAllNames(); }), closed);
    EXPECT_EQ(failure([&] { zip.getDataSize("x"); }), closed);
    EXPECT_EQ(failure([&] { zip.getData(nullptr, 0, "x", 0); }), closed);
    EXPECT_EQ(failure([&] { zip.getString("x", 0); }), closed);
    EXPECT_EQ(failure([&] { zip.create("y", std::string("y")); }), closed);
    EXPECT_EQ(failure([&] { zip.createFromFile("y", path.string(), true); }), closed);
    EXPECT_EQ(zip.getMainDir(), path.string());

    // Created and left empty: libzip writes nothing.
    { Zip empty = Zip::create(dir / "empty.zip"); }
    EXPECT_FALSE(fs::exists(dir / "empty.zip"));

    const fs::path missing = dir / "missing.zip";
    EXPECT_EQ(failure([&] { Zip::open(missing); }), "Error opening file " + missing.string() + ": No such file");
    writeText(dir / "garbage.zip", "this is not a zip archive at all, just text");
    EXPECT_EQ(failure([&] { Zip::open(dir / "garbage.zip"); }),
              "Error opening file " + (dir / "garbage.zip").string() + ": Not a zip archive");
    EXPECT_EQ(failure([&] { Zip::create(dir / "garbage.zip"); }),
              "Error creating file " + (dir / "garbage.zip").string() + ": Not a zip archive");
    // A folder that does not exist only shows when writing: a warning, no exception.
    EXPECT_EQ(failure([&] { Zip::create(dir / "no" / "such" / "dir.zip").create("a", std::string("a")); }),
              "no exception");
    EXPECT_FALSE(fs::exists(dir / "no"));

    // A truncated archive fails to open or to read, never crashes.
    const std::vector<unsigned char> good = [&] {
        Zip out = Zip::create(dir / "good.zip");
        out.create("entry", pattern(4000));
        out.close();
        return fileBytes(dir / "good.zip");
    }();
    for (size_t cut : {good.size() - 1, good.size() - 30, good.size() / 2, size_t(10)}) {
        const fs::path truncated = dir / "truncated.zip";
        std::ofstream(truncated, std::ios::binary).write(reinterpret_cast<const char*>(good.data()), cut);
        const std::string text = failure([&] {
            Zip cutZip = Zip::open(truncated);
            cutZip.getString("entry", 0);
        });
        EXPECT_EQ(text.rfind("Error ", 0), 0u) << cut << ": " << text;
    }
}

TEST(Zip, RelativeProviderInsideArchive) {
    const fs::path dir = scratch("zip-relative");
    const fs::path path = dir / "r.zip";
    auto zip = Zip::createShared(path);
    RelativeFileProvider sub(zip, "models/head");
    sub.create("mesh.bin", std::string("vertices"));
    EXPECT_TRUE(zip->exists("models/head/mesh.bin"));
    EXPECT_EQ(sub.getString("../head/mesh.bin", 0), "vertices");
    char buffer[4];
    EXPECT_EQ(sub.getData(buffer, 4, "mesh.bin", 4), 4);
    EXPECT_EQ(std::string(buffer, 4), "ices");
    zip->close();
    auto reopened = Zip::openShared(path);
    RelativeFileProvider again(reopened, "models");
    EXPECT_EQ(again.getString("head/mesh.bin", 0), "vertices");
    EXPECT_EQ(again.getDataSize("head/mesh.bin"), 8);
    EXPECT_EQ(reopened->getAllNames(), std::vector<std::string>{"models/head/mesh.bin"});
}

TEST(Zip, FailedCompressionSettingDropsTheEntry) {
    const fs::path dir = scratch("zip-delete");
    const fs::path path = dir / "d.zip";
    {
        Zip zip = Zip::create(path);
        zip.create("kept", std::string("kept"));
        zip.create("dropped", std::string("old"));
        zip.setCompression(99, 0);  // no such method
        EXPECT_EQ(failure([&] { zip.create("fresh", std::string("x")); }),
                  "Error adding file to zip " + path.string() + ": Compression method not supported");
        EXPECT_EQ(failure([&] { zip.create("dropped", std::string("new")); }),
                  "Error adding file to zip " + path.string() + ": Compression method not supported");
        EXPECT_FALSE(zip.exists("fresh"));
        EXPECT_FALSE(zip.exists("dropped"));
        EXPECT_EQ(zip.getAllNames(), std::vector<std::string>{"kept"});
        zip.setCompression(8, 6);
        zip.create("after", std::string("after"));
    }
    Zip zip = Zip::open(path);
    std::vector<std::string> names = zip.getAllNames();
    std::sort(names.begin(), names.end());
    EXPECT_EQ(names, (std::vector<std::string>{"after", "kept"}));
    EXPECT_EQ(zip.getString("kept", 0), "kept");
}

TEST(Zip, HostileSizesAreRefusedBeforeAllocating) {
    const fs::path dir = scratch("zip-hostile");
    const fs::path path = dir / "h.zip";
    {
        Zip zip = Zip::create(path);
        zip.create("entry", pattern(3000));
    }
    const std::vector<unsigned char> good = fileBytes(path);
    // The central directory record: method at +10, uncompressed size at +24.
    const unsigned char signature[] = {'P', 'K', 1, 2};
    const auto central = std::search(good.begin(), good.end(), signature, signature + 4) - good.begin();
    ASSERT_LT(static_cast<size_t>(central) + 28, good.size());
    const auto patched = [&](uint16_t method, uint32_t size) {
        std::vector<unsigned char> bytes = good;
        bytes[central + 10] = method & 0xff;
        bytes[central + 11] = method >> 8;
        for (int i = 0; i < 4; ++i) bytes[central + 24 + i] = (size >> (8 * i)) & 0xff;
        std::ofstream(path, std::ios::binary).write(reinterpret_cast<const char*>(bytes.data()), bytes.size());
        return path;
    };
    const std::string prefix = "Error reading entry from zip " + path.string() + ": ";
    const uint32_t huge = 3600000000u;
    EXPECT_EQ(failure([&] { Zip::open(patched(8, huge)).getDataSize("entry"); }), prefix + "Zip archive inconsistent");
    EXPECT_EQ(failure([&] { Zip::open(patched(0, huge)).getBytes("entry", 0); }), prefix + "Zip archive inconsistent");
    EXPECT_EQ(failure([&] { Zip::open(patched(72, huge)).getString("entry", 0); }),
              prefix + "Compression method not supported");
    // bzip2 has no useful ratio bound: the claim is checked by reading once.
    EXPECT_EQ(failure([&] { Zip::open(patched(12, huge)).getString("entry", 0); }), prefix + "Zip archive inconsistent");
    // A wrong but small size gets as far as reading, and fails there.
    EXPECT_NE(failure([&] { Zip::open(patched(8, 3001)).getString("entry", 0); }).find(prefix), std::string::npos);
    EXPECT_EQ(Zip::open(patched(8, 3000)).getString("entry", 0), pattern(3000));
}
