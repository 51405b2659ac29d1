#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "sorvane/arf/Arf.h"
#include "tests/arf/node/NodeTestSupport.h"

using namespace sorvane::arf;
using talvex_test::messageOf;
namespace fs = std::filesystem;

namespace {

struct Scratch {
    fs::path dir;
    Scratch() {
        dir = fs::temp_directory_path() /
              ("talvex-zipsave-" + std::to_string(::getpid()) + "-" +
               ::testing::UnitTest::GetInstance()->current_test_info()->name());
        fs::remove_all(dir);
        fs::create_directories(dir);
    }
    ~Scratch() { fs::remove_all(dir); }
};

std::string bytesOf(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

std::string payload(Arf& arf, int64_t index) { return arf.data->getByIndex(index).getString(); }

// An archive with one file payload and one embedded payload.
fs::path makeArchive(const fs::path& dir) {
    const fs::path path = dir / "a.arfz";
    Arf arf = Arf::create(path);
    arf.identity->name.set("first");
    const float values[3] = {1, 2, 3};
    arf.data->addDense(values, sizeof values, DATA_DTYPE_FLOAT, {3}, false, nullptr, "file");
    arf.data->addDense(values, sizeof values, DATA_DTYPE_FLOAT, {3}, true, nullptr, "inline");
    arf.save();
    return path;
}

} // namespace

TEST(ArchiveSave, LoadedForChangesSavesIntoItsArchiveAndKeepsEveryEntry) {
    Scratch s;
    const fs::path path = makeArchive(s.dir);
    std::string before;
    {
        Arf arf = Arf::load(path, true);
        before = payload(arf, 0);
    }
    {
        Arf arf = Arf::load(path, false);
        arf.identity->name.set("second");
        const uint16_t more[2] = {7, 9};
        arf.data->addDense(more, sizeof more, DATA_DTYPE_UNSIGNED_SHORT, {2}, false, nullptr, "added");
        arf.save();
    }
    Arf again = Arf::load(path, true);
    EXPECT_EQ(again.identity->name.get(), "second");
    ASSERT_EQ(again.data->size(), 3);
    EXPECT_EQ(payload(again, 0), before);
    uint16_t read[2] = {0, 0};
    std::vector<long> sizes;
    DataDType dtype = DATA_DTYPE_NONE;
    again.data->getByIndex(2).getTensorData(sizes, dtype, read, sizeof read);
    EXPECT_EQ(read[0], 7);
    EXPECT_EQ(read[1], 9);
    // No temporary file of the rewrite is left beside the archive.
    EXPECT_EQ(std::distance(fs::directory_iterator(s.dir), fs::directory_iterator()), 1);
}

TEST(ArchiveSave, ReadOnlyLoadRefusesAndAnUnchangedLoadLeavesTheFileAlone) {
    Scratch s;
    const fs::path path = makeArchive(s.dir);
    const std::string original = bytesOf(path);
    {
        Arf arf = Arf::load(path, true);
        EXPECT_NE(messageOf([&] { arf.save(); }).find("Read-only archive"), std::string::npos);
    }
    EXPECT_EQ(bytesOf(path), original);
    {
        Arf arf = Arf::load(path, false);
        EXPECT_EQ(arf.identity->name.get(), "first");
    }
    EXPECT_EQ(bytesOf(path), original);
    EXPECT_NE(messageOf([&] { Arf::load(s.dir / "missing.arfz", false); }).find("Error opening file"),
              std::string::npos);
}

TEST(ArchiveSave, AWriteThatFailsIsReportedBySave) {
    Scratch s;
    const fs::path path = makeArchive(s.dir);
    Arf arf = Arf::load(path, false);
    arf.identity->name.set("lost");
    // libzip cannot write its temporary file once the folder is gone.
    fs::remove_all(s.dir);
    EXPECT_NE(messageOf([&] { arf.save(); }).find("Error writing zip"), std::string::npos);
}
