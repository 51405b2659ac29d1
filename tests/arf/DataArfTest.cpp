#include <gtest/gtest.h>

#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

#include "sorvane/archive/DiskFileProvider.h"
#include "sorvane/archive/MemoryFileProvider.h"
#include "sorvane/archive/Zip.h"
#include "sorvane/arf/Arf.h"
#include "sorvane/core/file.h"
#include "tests/arf/node/NodeTestSupport.h"

using namespace sorvane;
using namespace sorvane::arf;
using talvex_test::messageOf;
namespace fs = std::filesystem;

namespace {

// A scratch folder per test that is also the working directory meanwhile:
// shared raw data files are written relative to it.
struct ScratchDir {
    fs::path dir;
    fs::path previous;
    ScratchDir() {
        dir = fs::temp_directory_path() /
              ("talvex-data-" + std::to_string(::getpid()) + "-" +
               ::testing::UnitTest::GetInstance()->current_test_info()->name());
        fs::remove_all(dir);
        fs::create_directories(dir);
        previous = fs::current_path();
        fs::current_path(dir);
    }
    ~ScratchDir() {
        fs::current_path(previous);
        fs::remove_all(dir);
    }
};

std::vector<uint8_t> fixture(const std::string& name) {
    std::ifstream in(std::string(TALVEX_TEST_DATA_DIR) + "/data/" + name, std::ios::binary);
    return std::vector<uint8_t>(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

std::vector<uint8_t> bytesOf(const Data& item) {
    std::vector<uint8_t> bytes(static_cast<size_t>(item.getDataSize()));
    EXPECT_EQ(item.getData(bytes.data(), static_cast<int64_t>(bytes.size())), static_cast<int64_t>(bytes.size()));
    return bytes;
}

template <class T>
std::vector<T> valuesOf(const DataTree& t) {
    const T* p = static_cast<const T*>(t.getBuffer());
    return std::vector<T>(p, p + t.getValueCount());
}

// The example payloads of every test: a dense float matrix and a mostly-zero
// one, kept dense and as sparse.
const std::vector<float> kDense = {1.5f, -2.0f, 0.25f, 4.0f, 8.0f, -16.0f};
std::vector<float> sparseSource() {
    std::vector<float> v(300, 0.0f);
    v[3] = 1.0f;
    v[299] = -5.5f;
    v[150] = 2.0f;
    return v;
}

// Adds the same five items to any document and returns nothing; checkItems
// reads them back.
void addItems(Arf& arf, bool shared) {
    arf.data.addDense(kDense.data(), 24, DATA_DTYPE_FLOAT, {2, 3}, false, nullptr, "left arm!");
    arf.data.addDense(kDense.data(), 24, DATA_DTYPE_FLOAT, {6}, true, nullptr, "embedded");
    auto src = sparseSource();
    if (shared) arf.getRoot()->beginSharedRawData(false, "pack");
    arf.data.addSparseFromDense(src.data(), 300, DATA_DTYPE_FLOAT, {3, 100}, DATA_ITYPE_NONE, false, nullptr, "sparse");
    arf.data.addDense(kDense.data(), 24, DATA_DTYPE_FLOAT, {3, 2}, false, nullptr, nullptr);
    const char text[] = "plain bytes";
    arf.data.addContent(text, 11, false, "application/octet-stream", nullptr, "text");
    if (shared) arf.getRoot()->endSharedRawData();
}

void checkItems(const Arf& arf) {
    auto list = arf.data.get();
    ASSERT_EQ(list.size(), 5);
    EXPECT_EQ(valuesOf<float>(list[1].getTensor()), kDense);
    EXPECT_EQ(list[1].getTensor().getTensorSizes(), (std::vector<long>{2, 3}));
    EXPECT_EQ(valuesOf<float>(list[2].getTensor()), kDense);
    // Sparse reads back as its dense source.
    EXPECT_EQ(valuesOf<float>(list[3].getTensor()), sparseSource());
    EXPECT_EQ(list[3].getTensor().getTensorSizes(), (std::vector<long>{3, 100}));
    EXPECT_EQ(valuesOf<float>(list[4].getTensor()), kDense);
    EXPECT_EQ(list[5].getString(), "plain bytes");
    // Two-pass read into the caller's buffer.
    std::vector<long> sizes;
    DataDType dtype = DATA_DTYPE_NONE;
    EXPECT_EQ(list[4].getTensorData(sizes, dtype, nullptr, 0), 24);
    EXPECT_EQ(sizes, (std::vector<long>{3, 2}));
    std::vector<float> out(6);
    list[4].getTensorData(sizes, dtype, out.data(), 24);
    EXPECT_EQ(out, kDense);
}

} // namespace

TEST(DataItems, FrozenPayloadsOfEveryElementType) {
    struct Case {
        const char* name;
        DataDType dtype;
        std::vector<double> values;
    };
    const std::vector<Case> cases = {
        {"byte", DATA_DTYPE_BYTE, {1, -2, 3, 0, 5, -6}},
        {"ubyte", DATA_DTYPE_UNSIGNED_BYTE, {1, 2, 3, 0, 5, 250}},
        {"short", DATA_DTYPE_SHORT, {1, -2, 300, 0, 5, -600}},
        {"ushort", DATA_DTYPE_UNSIGNED_SHORT, {1, 2, 300, 0, 5, 60000}},
        {"uint", DATA_DTYPE_UNSIGNED_INT, {1, 2, 70000, 0, 5, 4000000000.0}},
        {"float", DATA_DTYPE_FLOAT, {1.5, -2.25, 3.0, 0.0, 5.0, -6.5}},
    };
    Arf arf = Arf::create("memory:");
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const ScalarType st = dataDType2ScalarType(c.dtype);
        const size_t size = static_cast<size_t>(getDataDTypeSize(c.dtype));
        std::vector<uint8_t> raw(6 * size);
        for (size_t i = 0; i < 6; ++i) {
            const double v = c.values[i];
            int8_t b = static_cast<int8_t>(v);
            uint8_t ub = static_cast<uint8_t>(v);
            int16_t s = static_cast<int16_t>(v);
            uint16_t us = static_cast<uint16_t>(v);
            uint32_t ui = static_cast<uint32_t>(v);
            float f = static_cast<float>(v);
            const void* p = c.dtype == DATA_DTYPE_BYTE ? static_cast<const void*>(&b)
                            : c.dtype == DATA_DTYPE_UNSIGNED_BYTE ? static_cast<const void*>(&ub)
                            : c.dtype == DATA_DTYPE_SHORT ? static_cast<const void*>(&s)
                            : c.dtype == DATA_DTYPE_UNSIGNED_SHORT ? static_cast<const void*>(&us)
                            : c.dtype == DATA_DTYPE_UNSIGNED_INT ? static_cast<const void*>(&ui)
                                                                 : static_cast<const void*>(&f);
            std::memcpy(raw.data() + i * size, p, size);
        }
        Data dense = arf.data.addDense(raw.data(), static_cast<int64_t>(raw.size()), c.dtype, {2, 3});
        EXPECT_EQ(bytesOf(dense), fixture(std::string("dense_") + c.name + ".bin"));
        Data sparse = arf.data.addSparseFromDense(raw.data(), 6, c.dtype, {2, 3});
        EXPECT_EQ(bytesOf(sparse), fixture(std::string("sparse_") + c.name + ".bin"));
        // And the frozen files decode to the values.
        for (const char* kind : {"dense_", "sparse_"}) {
            auto bytes = fixture(std::string(kind) + c.name + ".bin");
            BitBuffer b;
            b.feed(bytes);
            DataTree t = DataContent::decodeTensor(kind[0] == 'd' ? kDenseMimeType : kSparseMimeType, b);
            EXPECT_EQ(t.getScalarType(), st);
            EXPECT_EQ(std::memcmp(t.getBuffer(), raw.data(), raw.size()), 0);
        }
    }
}

TEST(DataItems, EmbeddedUriIsBase64OfThePayload) {
    Arf arf = Arf::create("memory:");
    const uint8_t values[6] = {1, 2, 3, 0, 5, 250};
    Data item = arf.data.addDense(values, 6, DATA_DTYPE_UNSIGNED_BYTE, {2, 3}, true, nullptr, "e", 7);
    // The 22 bytes 02000000 02000000 03000000 01140000 010203 0005fa, by
    // groups of three: 020000 "AgAA", 000200 "AAIA", 000003 "AAAD",
    // 000000 "AAAA", 011400 "ARQA", 000102 "AAEC", 030005 "AwAF", fa "+g==".
    EXPECT_EQ(item.uri.get(), "data:application/mpeg.arf.dense;base64,AgAAAAIAAAADAAAAARQAAAECAwAF+g==");
    EXPECT_EQ(item.offset.get(), 0);
    EXPECT_EQ(item.byteLength.get(), 22);
    EXPECT_EQ(item.id.get(), 7);
    EXPECT_EQ(bytesOf(item), fixture("dense_ubyte.bin"));

    // A truncated text and a uri without the base64 marker are refused.
    auto root = talvex_test::readRoot(R"({"data": [
        {"type": "application/mpeg.arf.dense", "uri": "data:application/mpeg.arf.dense;base64,AgAAAAIAAAADAAAAARQAAAECAwAF+", "name": "", "id": 1},
        {"type": "application/mpeg.arf.dense", "uri": "data:application/mpeg.arf.dense,AgAA", "name": "", "id": 2}]})");
    EXPECT_NE(messageOf([&] { DataContent::getTensor(*root->getData()->get(1)); }).find("Invalid base64 message"),
              std::string::npos);
    EXPECT_EQ(messageOf([&] { DataContent::getData(*root->getData()->get(2), nullptr, 0); }),
              "Invalid URI; expect a string starting with \"data:<mimeType>;base64,\"");
}

TEST(DataItems, RoundTripOnDiskWithSharedRawData) {
    ScratchDir scratch;
    {
        Arf arf = Arf::create("avatar.arf.json");
        addItems(arf, true);
        auto list = arf.data.get();
        EXPECT_EQ(list[1].uri.get(), "avatar_leftarm_1.bin");
        EXPECT_EQ(list[2].uri.get().rfind("data:application/mpeg.arf.dense;base64,", 0), 0u);
        EXPECT_EQ(list[4].uri.get(), "avatar_pack.bin");
        EXPECT_EQ(list[3].uri.get(), "avatar_pack.bin");
        EXPECT_EQ(list[5].uri.get(), "avatar_pack.bin");
        EXPECT_EQ(list[3].offset.get(), 0);
        EXPECT_EQ(list[4].offset.get(), list[3].byteLength.get());
        EXPECT_GT(list[5].offset.get(), list[4].offset.get());
        checkItems(arf);
        arf.save();
    }
    EXPECT_TRUE(fs::exists("avatar_leftarm_1.bin"));
    EXPECT_TRUE(fs::exists("avatar_pack.bin"));
    EXPECT_FALSE(fs::exists("avatar_4.bin"));
    Arf loaded = Arf::load("avatar.arf.json", true);
    checkItems(loaded);
    // A second shared block cannot open while one is; embedded shared data is refused.
    Arf again = Arf::create("b.arf");
    again.getRoot()->beginSharedRawData(false, nullptr);
    EXPECT_EQ(messageOf([&] { again.getRoot()->beginSharedRawData(false, nullptr); }), "There is already a shared rawData");
    EXPECT_EQ(messageOf([&] { again.getRoot()->endSharedRawData(); }), "Shared rawData is empty");
    EXPECT_EQ(messageOf([&] { again.data.addDense(kDense.data(), 24, DATA_DTYPE_FLOAT, {6}, true); }),
              "Embedded shared raw data is not supported");
}

TEST(DataItems, RoundTripInAnArchive) {
    ScratchDir scratch;
    {
        Arf arf = Arf::create("a.arfz");
        addItems(arf, true);  // no shared file in an archive: items go one by one
        EXPECT_EQ(arf.data.get()[1].uri.get(), "leftarm_1.bin");
        EXPECT_EQ(arf.data.get()[4].uri.get(), "4.bin");
        checkItems(arf);
        arf.save();
    }
    auto zip = archive::Zip::openShared("a.arfz");
    auto names = zip->getAllNames();
    std::sort(names.begin(), names.end());
    EXPECT_EQ(names, (std::vector<std::string>{"4.bin", "arf.json", "leftarm_1.bin", "sparse_3.bin", "text_5.bin"}));
    zip.reset();
    Arf loaded = Arf::load("a.arfz", true);
    checkItems(loaded);
}

TEST(DataItems, RoundTripInMemoryAndRawDataCache) {
    Arf arf = Arf::create("memory:");
    addItems(arf, true);
    checkItems(arf);
    EXPECT_EQ(arf.data.get()[3].uri.get(), "sparse_3.bin");
    EXPECT_TRUE(arf.getRoot()->getRawDataCache().empty());  // memory never caches
    arf.save();
    Arf loaded = Arf::load(arf.getFileProvider(), "x.json", AUTO, true);
    checkItems(loaded);

    // On disk with the cache on, reads come from the cache.
    ScratchDir scratch;
    Arf cached = Arf::create("c.arf");
    cached.getRoot()->setKeepRawData(true);
    Data item = cached.data.addDense(kDense.data(), 24, DATA_DTYPE_FLOAT, {6});
    fs::remove(item.uri.get());
    EXPECT_EQ(valuesOf<float>(item.getTensor()), kDense);
}

TEST(DataItems, SparseChoicesAndAddErrors) {
    Arf arf = Arf::create("memory:");
    std::vector<uint8_t> zeros(300, 0);
    zeros[7] = 3;
    auto itypeOf = [](const Data& d) {
        auto bytes = d.getString();
        uint32_t v = 0;
        std::memcpy(&v, bytes.data() + 4 + 4 + 8, 4);  // after dimCount, one dim, count
        return v;
    };
    EXPECT_EQ(itypeOf(arf.data.addSparseFromDense(zeros.data(), 300, DATA_DTYPE_UNSIGNED_BYTE, {300})), 5123u);
    EXPECT_EQ(itypeOf(arf.data.addSparseFromDense(zeros.data(), 200, DATA_DTYPE_UNSIGNED_BYTE, {200})), 5121u);
    // Negative zero is dropped, NaN kept.
    const float odd[3] = {-0.0f, std::numeric_limits<float>::quiet_NaN(), 1.0f};
    Data d = arf.data.addSparseFromDense(odd, 3, DATA_DTYPE_FLOAT, {3});
    int64_t count = 0;
    std::memcpy(&count, d.getString().data() + 8, 8);
    EXPECT_EQ(count, 2);
    EXPECT_EQ(messageOf([&] { arf.data.addSparseFromDense(zeros.data(), 300, DATA_DTYPE_UNSIGNED_BYTE, {299}); }),
              "Inconsistent valueCount / dims");
    EXPECT_EQ(messageOf([&] { arf.data.addSparseFromDense(zeros.data(), 3, static_cast<DataDType>(5124), {3}); }),
              "Invalid or unsupported dtype 5124");
    EXPECT_EQ(messageOf([&] { arf.data.addSparseFromDense(zeros.data(), 3, DATA_DTYPE_UNSIGNED_BYTE, {3},
                                                          static_cast<DataIType>(5126)); }),
              "Invalid itype 5126");
    EXPECT_EQ(messageOf([&] { arf.data.addSparseTensor(DataTree::createTensor({2}, ScalarType::Double)); }),
              "Invalid scalar type 11");
    EXPECT_EQ(messageOf([&] { arf.data.addDense(zeros.data(), 8, DATA_DTYPE_FLOAT, {2}, false, nullptr, nullptr, 1); }),
              "Adding item to data: id 1 is already used");
    EXPECT_EQ(messageOf([&] { arf.data.add(nullptr, "u", nullptr, std::nullopt); }),
              "Initialization of data[4]: type must be defined");  // the id is taken first
    // Tensors go in and come out with their element type.
    DataTree t = DataTree::createTensor({2, 2}, ScalarType::Integer16);
    static_cast<int16_t*>(t.getBuffer())[3] = -9;
    EXPECT_TRUE(arf.data.addDenseTensor(t).getTensor() == t);
    EXPECT_TRUE(arf.data.addSparseTensor(t).getTensor() == t);
    // Other media types are opaque.
    Data opaque = arf.data.addContent("xyz", 3, false, "text/plain");
    EXPECT_NE(messageOf([&] { opaque.getTensor(); }).find("Invalid or unsupported mime type text/plain"),
              std::string::npos);
    // Removing the last item frees its id again.
    const int64_t last = opaque.id.get();
    arf.data.get().remove(last);
    EXPECT_EQ(arf.data.addContent("x", 1, true, "text/plain").id.get(), last);
}

TEST(DataItems, PayloadUrisStayInsideTheDocument) {
    ScratchDir scratch;
    fs::create_directories("doc");
    std::ofstream("secret.bin") << "hidden";
    std::ofstream("doc/a.arf") << R"({"data": [
        {"type": "application/octet-stream", "uri": "../secret.bin", "name": "", "id": 1},
        {"type": "application/octet-stream", "uri": "/etc/passwd", "name": "", "id": 2},
        {"type": "application/octet-stream", "uri": "sub/../../secret.bin", "name": "", "id": 3},
        {"type": "application/octet-stream", "uri": "C:\\x.bin", "name": "", "id": 4},
        {"type": "application/octet-stream", "uri": "ok..bin", "name": "", "id": 5},
        {"type": "application/mpeg.arf.dense", "uri": "ok..bin", "byteLength": 1000000000000000, "name": "", "id": 6},
        {"type": "application/octet-stream", "uri": "ok..bin", "offset": 9, "name": "", "id": 7}]})";
    std::ofstream("doc/ok..bin") << "fine";
    Arf arf = Arf::load("doc/a.arf", true);  // loading checks only the JSON
    auto list = arf.data.get();
    EXPECT_EQ(messageOf([&] { list[1].getString(); }), "Getting data from data[1]:\nuri '../secret.bin' leaves the document's folder");
    EXPECT_EQ(messageOf([&] { list[2].getString(); }), "Getting data from data[2]:\nuri '/etc/passwd' is absolute");
    EXPECT_NE(messageOf([&] { list[3].getString(); }).find("leaves the document's folder"), std::string::npos);
    EXPECT_NE(messageOf([&] { list[4].getString(); }).find("is absolute"), std::string::npos);
    EXPECT_EQ(list[5].getString(), "fine");
    // Stored lengths and offsets are checked against the file before anything is allocated.
    EXPECT_EQ(list[6].getDataSize(), 1000000000000000);
    EXPECT_EQ(messageOf([&] { list[6].getString(); }),
              "Getting data from data[6]:\nbyteLength 1000000000000000 does not fit the 4 bytes of 'ok..bin' at offset 0");
    EXPECT_NE(messageOf([&] { list[6].getTensor(); }).find("does not fit"), std::string::npos);
    EXPECT_EQ(messageOf([&] { list[7].getString(); }), "Getting data from data[7]:\nInvalid offset 9");
    Arf writable = Arf::create("doc/b.arf");
    EXPECT_EQ(messageOf([&] { writable.data.addContent("x", 1, false, "text/plain", "../y.bin"); }),
              "Adding item to data:\nuri '../y.bin' leaves the document's folder");
    EXPECT_EQ(messageOf([&] { writable.data.addContent("x", 1, false, "text/plain", "/y.bin"); }), "uri '/y.bin' is absolute");
    EXPECT_EQ(writable.data.addContent("x", 1, false, "text/plain", "sub/y.bin").getString(), "x");
}

TEST(DataItems, CompactColumnsOfAMatrix) {
    Arf arf = Arf::create("memory:");
    const float m[6] = {0, 2, 1, 3, 0, 0};
    for (bool sparse : {false, true}) {
        SCOPED_TRACE(sparse ? "sparse" : "dense");
        Data item = sparse ? arf.data.addSparseFromDense(m, 6, DATA_DTYPE_FLOAT, {2, 3})
                           : arf.data.addDense(m, 24, DATA_DTYPE_FLOAT, {2, 3});
        auto [values, columns] = item.getColSparseTensor(0, 8, false);
        EXPECT_EQ(values.getTensorSizes(), (std::vector<long>{2, 2}));
        EXPECT_EQ(valuesOf<float>(values), (std::vector<float>{2, 1, 3, 0}));
        EXPECT_EQ(valuesOf<int64_t>(columns), (std::vector<int64_t>{1, 2, 0, 0}));
        // Clamped to one column, normalized.
        auto one = item.getColSparseTensor(0, 1, true);
        EXPECT_EQ(valuesOf<float>(one.first), (std::vector<float>{1, 1}));
        EXPECT_EQ(valuesOf<int64_t>(one.second), (std::vector<int64_t>{1, 0}));
    }
    const float quarter[2] = {0.25f, 0.25f};
    auto half = arf.data.addDense(quarter, 8, DATA_DTYPE_FLOAT, {1, 2}).getColSparseTensor(0, 4, true);
    EXPECT_EQ(valuesOf<float>(half.first), (std::vector<float>{0.5f, 0.5f}));
    const uint8_t ints[2] = {3, 1};
    auto truncated = arf.data.addDense(ints, 2, DATA_DTYPE_UNSIGNED_BYTE, {1, 2}).getColSparseTensor(0, 4, true);
    EXPECT_EQ(valuesOf<uint8_t>(truncated.first), (std::vector<uint8_t>{0, 0}));
    // Equal values keep the first column first.
    const float ties[4] = {1, 5, 5, 2};
    auto tied = arf.data.addDense(ties, 16, DATA_DTYPE_FLOAT, {1, 4}).getColSparseTensor(0, 2, false);
    EXPECT_EQ(valuesOf<int64_t>(tied.second), (std::vector<int64_t>{1, 2}));

    Data vector = arf.data.addDense(m, 24, DATA_DTYPE_FLOAT, {6});
    std::vector<long> sizes;
    DataDType dtype = DATA_DTYPE_NONE;
    long k = 0;
    EXPECT_NE(messageOf([&] { vector.getColSparseTensorData(sizes, dtype, nullptr, 0, nullptr, 0, &k, false); })
                  .find("Only works for matrices"),
              std::string::npos);
    EXPECT_NE(messageOf([&] { vector.getColSparseTensorData(sizes, dtype, nullptr, 0, nullptr, 0, nullptr, false); })
                  .find("pColSize is NULL"),
              std::string::npos);
    Data matrix = arf.data.addDense(m, 24, DATA_DTYPE_FLOAT, {2, 3});
    k = 2;
    long idx[4];
    float val[4];
    EXPECT_NE(messageOf([&] { matrix.getColSparseTensorData(sizes, dtype, idx, 16, val, 16, &k, false); })
                  .find("indices buffer is too small"),
              std::string::npos);
    EXPECT_NE(messageOf([&] { matrix.getColSparseTensorData(sizes, dtype, idx, 32, val, 8, &k, false); })
                  .find("values buffer is too small"),
              std::string::npos);
    Data text = arf.data.addContent("x", 1, false, "text/plain");
    EXPECT_EQ(messageOf([&] { text.getColSparseTensor(0, 4, false); }),
              "Getting tensor from data[" + std::to_string(text.id.get()) + "]:\nUnsupported type 'text/plain'");
}

TEST(DataItems, RangesOfEveryStore) {
    ScratchDir scratch;
    const std::string text = "0123456789";
    auto check = [&](archive::FileProvider& p) {
        char out[4] = {};
        p.getRange(out, 3, "r.bin", 4);
        EXPECT_EQ(std::string(out, 3), "456");
        p.getRange(out, 0, "r.bin", 10);
        EXPECT_EQ(messageOf([&] { p.getRange(out, 3, "r.bin", 8); }).rfind("Invalid range for '", 0), 0u);
        EXPECT_EQ(messageOf([&] { p.getRange(out, 1, "r.bin", -1); }).rfind("Invalid range for '", 0), 0u);
    };
    archive::MemoryFileProvider memory;
    memory.create("r.bin", text.data(), 10);
    check(memory);
    archive::DiskFileProvider disk(".");
    disk.create("r.bin", text.data(), 10);
    check(disk);
    {
        auto zip = archive::Zip::createShared("r.zip");
        zip->create("r.bin", text.data(), 10);
        check(*zip);  // not written yet
    }
    check(*archive::Zip::openShared("r.zip"));
}

TEST(DataItems, LargePayloadsReadInPartsInEveryStore) {
    // A matrix larger than the slices the compact form reads, kept dense and
    // sparse, read back from every store twice (an archive keeps the entry it
    // inflated) and compared with the compact form worked out here.
    ScratchDir scratch;
    const long rows = 3000, cols = 120;
    std::vector<float> matrix(static_cast<size_t>(rows * cols), 0.0f);
    for (long r = 0; r < rows; ++r)
        for (long j = 0; j < 1 + r % 6; ++j) matrix[static_cast<size_t>(r * cols + (r * 7 + j * 13) % cols)] = 1.0f + float((r + j * 5) % 9);
    std::vector<float> expectedValues(static_cast<size_t>(rows * 6), 0.0f);
    std::vector<long> expectedColumns(static_cast<size_t>(rows * 6), 0);
    for (long r = 0; r < rows; ++r) {
        std::vector<std::pair<float, long>> row;
        for (long c = 0; c < cols; ++c)
            if (matrix[static_cast<size_t>(r * cols + c)] != 0.0f) row.emplace_back(matrix[static_cast<size_t>(r * cols + c)], c);
        std::stable_sort(row.begin(), row.end(), [](const auto& a, const auto& b) { return a.first > b.first; });
        for (size_t j = 0; j < row.size(); ++j) {
            expectedValues[static_cast<size_t>(r * 6) + j] = row[j].first;
            expectedColumns[static_cast<size_t>(r * 6) + j] = row[j].second;
        }
    }
    for (const char* path : {"big.arf", "big.arfz", "memory:"}) {
        Arf arf = Arf::create(path);
        arf.data.addDense(matrix.data(), rows * cols * 4, DATA_DTYPE_FLOAT, {rows, cols});
        arf.data.addSparseFromDense(matrix.data(), rows * cols, DATA_DTYPE_FLOAT, {rows, cols});
        const bool memory = std::string(path) == "memory:";
        if (!memory) arf.save();
        const Arf loaded = memory ? arf : Arf::load(path, true);
        for (int round = 0; round < 2; ++round) {
            for (int64_t index : {0, 1}) {
                Data item = loaded.data.get().getByIndex(index);
                auto [values, columns] = item.getColSparseTensor(0, 100, false);
                EXPECT_EQ(values.getTensorSizes(), (std::vector<long>{rows, 6})) << path;
                EXPECT_EQ(valuesOf<float>(values), expectedValues) << path << " item " << index;
                EXPECT_EQ(valuesOf<int64_t>(columns), std::vector<int64_t>(expectedColumns.begin(), expectedColumns.end()))
                    << path << " item " << index;
                EXPECT_EQ(valuesOf<float>(item.getTensor()), matrix) << path << " item " << index;
            }
        }
    }
}

TEST(DataItems, StoresTakePiecesAsOneItem) {
    // An item given in pieces is the same item as its concatenation, in every
    // store; the memory store keeps its first content.
    ScratchDir scratch;
    const char head[] = "head-";
    const std::vector<uint8_t> tail(70000, 0x5a);
    const archive::FileProvider::Block blocks[] = {{head, 5}, {nullptr, 0}, {tail.data(), 70000}};
    std::vector<uint8_t> whole(head, head + 5);
    whole.insert(whole.end(), tail.begin(), tail.end());
    auto memory = std::make_shared<archive::MemoryFileProvider>();
    auto disk = std::make_shared<archive::DiskFileProvider>(scratch.dir.string());
    auto zip = archive::Zip::createShared("pieces.zip");
    for (archive::FileProvider* store : std::initializer_list<archive::FileProvider*>{memory.get(), disk.get(), zip.get()}) {
        store->createBlocks("p.bin", blocks, 3);
        std::vector<uint8_t> read(whole.size());
        store->getRange(read.data(), static_cast<int64_t>(read.size()), "p.bin", 0);
        EXPECT_EQ(read, whole) << store->className();
        const archive::FileProvider::Block bad[] = {{nullptr, 4}};
        EXPECT_THROW(store->createBlocks("q.bin", bad, 1), std::exception) << store->className();
    }
    memory->createBlocks("p.bin", blocks, 1);
    EXPECT_EQ(memory->getDataSize("p.bin"), 70005);
    zip->close();
    auto reopened = archive::Zip::openShared("pieces.zip");
    // Parts of one deflated entry, in any order and again.
    for (int64_t at : {int64_t(69000), int64_t(0), int64_t(5), int64_t(69000)}) {
        uint8_t part[1000];
        reopened->getRange(part, sizeof part, "p.bin", at);
        EXPECT_EQ(std::vector<uint8_t>(part, part + sizeof part),
                  std::vector<uint8_t>(whole.begin() + at, whole.begin() + at + 1000));
    }
    EXPECT_EQ(reopened->getString("p.bin", 0), std::string(whole.begin(), whole.end()));
}
