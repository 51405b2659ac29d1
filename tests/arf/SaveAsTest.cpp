#include <gtest/gtest.h>

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

#include "sorvane/arf/Arf.h"
#include "sorvane/arf/ArfCopy.h"

using namespace sorvane::arf;
namespace fs = std::filesystem;

namespace {

struct Scratch {
    fs::path dir;
    Scratch() {
        dir = fs::temp_directory_path() / ("talvex-saveas-" + std::to_string(::getpid()) + "-" +
                                           ::testing::UnitTest::GetInstance()->current_test_info()->name());
        fs::remove_all(dir);
        fs::create_directories(dir);
    }
    ~Scratch() {
        std::error_code ignored;
        fs::remove_all(dir, ignored);
    }
};

std::vector<std::string> payloads(const Arf& document) {
    std::vector<std::string> bytes;
    auto items = document.data.get();
    for (int64_t i = 0; i < items.size(); ++i) bytes.push_back(items.getByIndex(i).getString());
    return bytes;
}

// Payloads of every placement: a file of its own, two parts of one shared
// file, embedded, and one with compression and protection set; plus enough
// records that the text is written in several pieces.
fs::path makeSource(const fs::path& dir) {
    const fs::path path = dir / "src" / "doc.arf";
    fs::create_directories(path.parent_path());
    // A shared file is written beside the working folder's files.
    const fs::path previous = fs::current_path();
    fs::current_path(path.parent_path());
    Arf arf = Arf::create(fs::path("doc.arf"));
    arf.identity->name.set(std::string(1500000, 'n'));  // a text of several pieces
    arf.data.addContent("own file", 8, false, "application/octet-stream", "own.bin", "own");
    arf.getRoot()->beginSharedRawData(false, "pack");
    arf.data.addContent("first part", 10, false, "application/octet-stream", nullptr, "part 1");
    arf.data.addContent("second part", 11, false, "application/octet-stream", nullptr, "part 2");
    arf.getRoot()->endSharedRawData();
    arf.data.addContent("embedded", 8, true, "text/plain", nullptr, "inline", 40);
    Data flagged = arf.data.addContent("flagged", 7, false, "application/octet-stream", nullptr, "flagged");
    flagged.compression.set("none");
    flagged.protection.set(3);
    std::vector<float> values(3000);
    for (size_t i = 0; i < values.size(); ++i) values[i] = static_cast<float>(i) * 0.5f;
    for (int i = 0; i < 30; ++i)
        arf.data.addDense(values.data(), static_cast<int64_t>(values.size() * 4), DATA_DTYPE_FLOAT, {1000, 3}, false,
                          nullptr, ("tensor " + std::to_string(i)).c_str());
    arf.save();
    fs::current_path(previous);
    return path;
}

} // namespace

// Taking the source's tree must give the same document as copying it, in
// every storage mode, and the saved form must read back the same.
TEST(SaveAs, MovedTreeGivesTheCopysDocument) {
    Scratch s;
    const fs::path source = makeSource(s.dir);
    const Arf original = Arf::load(source, true);
    const std::vector<std::string> bytes = payloads(original);
    ASSERT_GT(original.toJsonString().size(), size_t(1) << 20);

    for (const char* name : {"out.arf", "out.arfz", "memory:"}) {
        SCOPED_TRACE(name);
        const bool memory = std::string(name) == "memory:";
        const fs::path copied = memory ? fs::path(name) : s.dir / "copied" / name;
        const fs::path moved = memory ? fs::path(name) : s.dir / "moved" / name;
        const Arf copy = saveArfAs(original, copied);
        Arf loaded = Arf::load(source, true);
        const Arf other = loaded;  // a second handle of the same tree
        const Arf target = saveArfAs(std::move(loaded), moved);

        EXPECT_EQ(target.toJsonString(), copy.toJsonString());
        EXPECT_FALSE(target.isReadOnly());
        EXPECT_EQ(other.getStorageMode(), target.getStorageMode());
        EXPECT_EQ(other.toJsonString(), target.toJsonString());
        if (memory) {
            EXPECT_EQ(payloads(target), bytes);
            continue;
        }
        // A saved archive is closed: its payloads are read from the file again.
        const Arf again = Arf::load(moved, true);
        EXPECT_EQ(again.toJsonString(), copy.toJsonString());
        EXPECT_EQ(payloads(again), bytes);
    }
    // The source's files are untouched.
    EXPECT_EQ(Arf::load(source, true).toJsonString(), original.toJsonString());
    EXPECT_EQ(payloads(Arf::load(source, true)), bytes);
}

// From an archive and from memory, back to files: the payloads come from the
// old storage while the new items go to the new one.
TEST(SaveAs, MovedTreeFromEveryStorageMode) {
    Scratch s;
    const fs::path source = makeSource(s.dir);
    const Arf original = Arf::load(source, true);
    const std::vector<std::string> bytes = payloads(original);
    const Arf archive = saveArfAs(Arf::load(source, true), s.dir / "a" / "doc.arfz");
    EXPECT_EQ(archive.getStorageMode(), SINGLE_FILE);
    Arf memory = saveArfAs(Arf::load(s.dir / "a" / "doc.arfz", true), "memory:");
    EXPECT_EQ(payloads(memory), bytes);
    const Arf copied = saveArfAs(memory, s.dir / "c" / "doc.arf");
    const Arf files = saveArfAs(std::move(memory), s.dir / "b" / "doc.arf");
    EXPECT_EQ(payloads(files), bytes);
    EXPECT_EQ(files.toJsonString(), copied.toJsonString());
    EXPECT_EQ(payloads(Arf::load(s.dir / "b" / "doc.arf", true)), bytes);
}

// Items that share an id cannot be added back one by one (the twin still
// holds the id): both forms refuse the document, and the moving form leaves
// the source whole, every payload readable where it was.
TEST(SaveAs, SharedIdsLeaveTheSourceWhole) {
    Scratch s;
    const fs::path path = s.dir / "dup" / "doc.arf";
    fs::create_directories(path.parent_path());
    {
        Arf arf = Arf::create(path);
        arf.data.addContent("first", 5, true, "text/plain", nullptr, "one", 40);
        arf.data.addContent("second", 6, true, "text/plain", nullptr, "two", 41);
        arf.save();
    }
    std::string text;
    {
        std::ifstream in(path, std::ios::binary);
        text.assign(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
    }
    const size_t at = text.find("41");
    ASSERT_NE(at, std::string::npos);
    text.replace(at, 2, "40");
    {
        std::ofstream out(path, std::ios::binary | std::ios::trunc);
        out << text;
    }
    EXPECT_ANY_THROW(saveArfAs(Arf::load(path, true), s.dir / "c" / "doc.arf"));
    Arf source = Arf::load(path, false);
    const std::string before = source.toJsonString();
    EXPECT_ANY_THROW(saveArfAs(std::move(source), s.dir / "m" / "doc.arf"));
    EXPECT_EQ(source.toJsonString(), before);
    EXPECT_EQ(payloads(source), (std::vector<std::string>{"first", "second"}));
}
