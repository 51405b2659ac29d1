#include <gtest/gtest.h>

#include <cstring>
#include <limits>
#include <vector>

#include "sorvane/arf/format/dense.h"
#include "sorvane/arf/node/data/DataCType.h"
#include "sorvane/arf/node/data/DataContent.h"
#include "sorvane/arf/node/data/DataDType.h"
#include "sorvane/arf/node/data/DataNodes.h"
#include "tests/arf/node/NodeTestSupport.h"

using namespace sorvane;
using namespace sorvane::arf;
using talvex_test::messageOf;

namespace {

// Little-endian header words, as a payload file holds them.
void put32(std::vector<uint8_t>& out, uint32_t v) {
    for (int i = 0; i < 4; ++i) out.push_back(static_cast<uint8_t>(v >> (8 * i)));
}
void put64(std::vector<uint8_t>& out, uint64_t v) {
    for (int i = 0; i < 8; ++i) out.push_back(static_cast<uint8_t>(v >> (8 * i)));
}

BitBuffer bufferOf(const std::vector<uint8_t>& bytes) {
    BitBuffer b;
    b.feed(bytes.data(), static_cast<long>(bytes.size()));
    return b;
}

bool endsWith(const std::string& text, const std::string& tail) {
    return text.size() >= tail.size() && text.compare(text.size() - tail.size(), tail.size(), tail) == 0;
}

} // namespace

TEST(DataTypes, TablesAndConversions) {
    EXPECT_EQ(int2DataDType(5126), DATA_DTYPE_FLOAT);
    EXPECT_EQ(getDataDTypeSize(DATA_DTYPE_UNSIGNED_SHORT), 2);
    EXPECT_EQ(std::string(dataDType2name(DATA_DTYPE_UNSIGNED_INT)), "UNSIGNED_INT");
    EXPECT_EQ(scalarType2DataDType(ScalarType::Integer8), DATA_DTYPE_BYTE);
    EXPECT_EQ(dataDType2ScalarType(DATA_DTYPE_UNSIGNED_BYTE), ScalarType::UInteger8);
    // 5124 (signed 32-bit) has no entry; FLOAT is no index type.
    EXPECT_THROW(int2DataDType(5124), RuntimeException);
    EXPECT_THROW(int2DataIType(5126), RuntimeException);
    EXPECT_THROW(getDataDTypeSize(DATA_DTYPE_NONE), RuntimeException);
    EXPECT_THROW(dataDType2ScalarType(DATA_DTYPE_NONE), RuntimeException);
    EXPECT_THROW(scalarType2DataDType(ScalarType::Integer32), RuntimeException);
    EXPECT_THROW(scalarType2dataIType(ScalarType::Float), RuntimeException);
    EXPECT_EQ(scalarType2dataIType(ScalarType::UInteger16), DATA_ITYPE_UNSIGNED_SHORT);
    std::ostringstream names;
    names << DATA_DTYPE_SHORT << " " << static_cast<DataDType>(7) << " " << DATA_ITYPE_NONE << " "
          << static_cast<DataIType>(5126) << " " << DATA_CTYPE_RGBA << " " << static_cast<DataCType>(9);
    EXPECT_EQ(names.str(), "SHORT Invalid NONE Invalid RGBA Invalid");
    EXPECT_EQ(getDataCTypeSize(DATA_CTYPE_RGB), 3);
    EXPECT_THROW(getDataCTypeSize(DATA_CTYPE_NONE), RuntimeException);
    EXPECT_EQ(pixelFormat2DataCType(2), DATA_CTYPE_RGBA);
    EXPECT_THROW(pixelFormat2DataCType(3), RuntimeException);
    EXPECT_THROW(int2DataCType(3), RuntimeException);
}

TEST(DenseFormat, LayoutOfAFloatMatrix) {
    const float values[6] = {1, 2, 3, 4, 5, 6};
    BitBuffer b;
    dense_encode(b, values, sizeof values, DATA_DTYPE_FLOAT, {2, 3});
    std::vector<uint8_t> expected;
    put32(expected, 2);
    put32(expected, 2);
    put32(expected, 3);
    put32(expected, 5126);
    const auto* raw = reinterpret_cast<const uint8_t*>(values);
    expected.insert(expected.end(), raw, raw + sizeof values);
    EXPECT_EQ(b.getBytes(), expected);
    ASSERT_EQ(expected[12], 0x06);
    ASSERT_EQ(expected[13], 0x14);

    std::vector<long> sizes;
    DataDType dtype = DATA_DTYPE_NONE;
    EXPECT_EQ(dense_decodeHeader(sizes, dtype, b), 24);
    EXPECT_EQ(sizes, (std::vector<long>{2, 3}));
    EXPECT_EQ(dtype, DATA_DTYPE_FLOAT);
    float out[6] = {};
    EXPECT_EQ(dense_decodeContent(nullptr, 0, sizes, dtype, b), 24);
    EXPECT_EQ(messageOf([&] { dense_decodeContent(out, 20, sizes, dtype, b); }), "Output buffer is too small");
    EXPECT_EQ(dense_decodeContent(out, sizeof out, sizes, dtype, b), 24);
    EXPECT_EQ(std::memcmp(out, values, sizeof out), 0);

    EXPECT_EQ(messageOf([&] { dense_encode(b, nullptr, 24, DATA_DTYPE_FLOAT, {2, 3}); }), "buffer if NULL");
    EXPECT_EQ(messageOf([&] { dense_encode(b, values, 20, DATA_DTYPE_FLOAT, {2, 3}); }), "buffer is too small");
}

TEST(DenseFormat, HostileHeadersAreRefusedBeforeAnyAllocation) {
    std::vector<long> sizes;
    DataDType dtype = DATA_DTYPE_NONE;
    auto header = [](std::vector<uint32_t> words) {
        std::vector<uint8_t> bytes;
        for (uint32_t w : words) put32(bytes, w);
        return bytes;
    };
    {  // A count of 0 dimensions holds one value.
        auto bytes = header({0, 5121});
        bytes.push_back(42);
        BitBuffer b = bufferOf(bytes);
        DataTree t = DataContent::decodeTensor(kDenseMimeType, b);
        EXPECT_EQ(t.getTensorSizes(), std::vector<long>{1});
        EXPECT_EQ(static_cast<const uint8_t*>(t.getBuffer())[0], 42);
    }
    auto fails = [&](const std::vector<uint8_t>& bytes) {
        return messageOf([&] {
            BitBuffer b = bufferOf(bytes);
            DataContent::decodeTensor(kDenseMimeType, b);
        });
    };
    EXPECT_EQ(fails(header({6, 1, 1, 1, 1, 1, 1, 5121})), "Invalid dim count 6");
    EXPECT_EQ(fails(header({0xffffffffu})), "Invalid dim count -1");
    EXPECT_EQ(fails(header({1, 0xfffffffeu, 5121})), "Invalid dim -2");
    EXPECT_EQ(fails(header({1, 3, 5124})), "Invalid or unsupported dtype 5124");
    EXPECT_EQ(fails(header({1})), "Unable to read dim");
    EXPECT_EQ(fails(header({1, 3})), "Unable to read dtype");
    EXPECT_EQ(fails({1, 0}), "Unable to read dim count");
    // More elements declared than bytes hold, up to a huge dimension that
    // would be gigabytes: refused before a tensor is made.
    auto shortPayload = header({2, 2, 3, 5126});
    shortPayload.resize(shortPayload.size() + 20);
    EXPECT_EQ(fails(shortPayload), "Error reading values");
    EXPECT_EQ(fails(header({2, 0x7fffffff, 3, 5126})), "Error reading values");
    EXPECT_EQ(fails(header({5, 0x7fffffff, 0x7fffffff, 0x7fffffff, 0x7fffffff, 0x7fffffff, 5126})),
              "Tensor is too large");
    // The caller's own buffer is not written past the payload either.
    BitBuffer b = bufferOf(shortPayload);
    ASSERT_EQ(dense_decodeHeader(sizes, dtype, b), 24);
    float out[6];
    EXPECT_EQ(messageOf([&] { dense_decodeContent(out, sizeof out, sizes, dtype, b); }), "Error reading values");
}

TEST(SparseFormat, LayoutScatterAndHostileInput) {
    const uint16_t indices[3] = {5, 0, 5};
    const float values[3] = {1.5f, -2.0f, 7.0f};
    BitBuffer b;
    sparse_encode(b, indices, sizeof indices, DATA_ITYPE_UNSIGNED_SHORT, values, sizeof values, DATA_DTYPE_FLOAT,
                  {2, 3}, 3);
    std::vector<uint8_t> expected;
    put32(expected, 2);
    put32(expected, 2);
    put32(expected, 3);
    put64(expected, 3);
    put32(expected, 5123);
    put32(expected, 5126);
    const auto* ri = reinterpret_cast<const uint8_t*>(indices);
    const auto* rv = reinterpret_cast<const uint8_t*>(values);
    expected.insert(expected.end(), ri, ri + sizeof indices);
    expected.insert(expected.end(), rv, rv + sizeof values);
    EXPECT_EQ(b.getBytes(), expected);

    // Unsorted indices are fine; a later pair for a position wins.
    DataTree t = DataContent::decodeTensor(kSparseMimeType, b);
    EXPECT_EQ(t.getTensorSizes(), (std::vector<long>{2, 3}));
    const float* f = static_cast<const float*>(t.getBuffer());
    EXPECT_EQ(std::vector<float>(f, f + 6), (std::vector<float>{-2.0f, 0, 0, 0, 0, 7.0f}));

    EXPECT_EQ(messageOf([&] { sparse_encode(b, indices, 6, DATA_ITYPE_UNSIGNED_SHORT, nullptr, 12, DATA_DTYPE_FLOAT, {6}, 3); }),
              "No values");
    EXPECT_EQ(messageOf([&] { sparse_encode(b, nullptr, 6, DATA_ITYPE_UNSIGNED_SHORT, values, 12, DATA_DTYPE_FLOAT, {6}, 3); }),
              "No indices");
    EXPECT_EQ(messageOf([&] { sparse_encode(b, indices, 6, DATA_ITYPE_UNSIGNED_SHORT, values, 12, DATA_DTYPE_FLOAT, {6}, -1); }),
              "Invalid count");
    EXPECT_EQ(messageOf([&] { sparse_encode(b, indices, 6, DATA_ITYPE_UNSIGNED_SHORT, values, 8, DATA_DTYPE_FLOAT, {6}, 3); }),
              "Invalid values size 8 < 12");
    EXPECT_EQ(messageOf([&] { sparse_encode(b, indices, 4, DATA_ITYPE_UNSIGNED_SHORT, values, 12, DATA_DTYPE_FLOAT, {6}, 3); }),
              "Invalid indices size 4 < 6");

    auto fails = [](const std::vector<uint8_t>& bytes) {
        return messageOf([&] {
            BitBuffer in = bufferOf(bytes);
            DataContent::decodeTensor(kSparseMimeType, in);
        });
    };
    auto header = [](uint32_t dims, std::vector<uint32_t> sizes, uint64_t count, uint32_t itype, uint32_t dtype) {
        std::vector<uint8_t> bytes;
        put32(bytes, dims);
        for (uint32_t s : sizes) put32(bytes, s);
        put64(bytes, count);
        put32(bytes, itype);
        put32(bytes, dtype);
        return bytes;
    };
    {  // count 0: all zeros
        BitBuffer in = bufferOf(header(1, {4}, 0, 5121, 5121));
        DataTree zero = DataContent::decodeTensor(kSparseMimeType, in);
        const auto* z = static_cast<const uint8_t*>(zero.getBuffer());
        EXPECT_EQ(std::vector<uint8_t>(z, z + 4), std::vector<uint8_t>(4, 0));
    }
    EXPECT_EQ(fails(header(1, {4}, 1ull << 62, 5121, 5121)), "Error reading values");
    EXPECT_EQ(fails(header(1, {4}, ~0ull, 5121, 5121)), "Invalid count");
    EXPECT_EQ(fails(header(1, {4}, 0, 5126, 5121)), "Invalid or unsupported itype 5126");
    EXPECT_EQ(fails(header(1, {4}, 0, 5121, 9)), "Invalid or unsupported dtype 9");
    EXPECT_EQ(fails(header(7, {}, 0, 5121, 5121)), "Invalid dim count 7");
    // A tiny payload that claims a gigantic full tensor.
    EXPECT_TRUE(endsWith(fails(header(2, {0x7fffffff, 4}, 0, 5121, 5126)), "is too large for a payload of 28 bytes"));
    auto bad = header(1, {4}, 1, 5121, 5121);
    bad.push_back(4);  // position 4 of 4
    bad.push_back(9);
    EXPECT_EQ(fails(bad), "Invalid index 4");
    auto negative = header(1, {4}, 1, 5120, 5121);
    negative.push_back(0xff);  // -1 as BYTE
    negative.push_back(9);
    EXPECT_EQ(fails(negative), "Invalid index -1");
}
