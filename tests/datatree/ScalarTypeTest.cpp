#include "sorvane/datatree/ScalarType.h"

#include <cmath>
#include <cstring>
#include <limits>
#include <sstream>
#include <stdexcept>
#include <vector>

#include <gtest/gtest.h>

#include "sorvane/core/RuntimeException.h"
#include "tests/datatree/Expect.h"

using namespace sorvane;

namespace {

const ScalarType kAll[] = {ScalarType::Boolean,   ScalarType::UInteger8,  ScalarType::Integer8,
                           ScalarType::UInteger16, ScalarType::Integer16, ScalarType::UInteger32,
                           ScalarType::Integer32, ScalarType::UInteger64, ScalarType::Integer64,
                           ScalarType::Float,     ScalarType::Double};

} // namespace

TEST(ScalarTypeTest, NumbersNamesSizesAndFamilies) {
    const long sizes[] = {1, 1, 1, 2, 2, 4, 4, 8, 8, 4, 8};
    const char* names[] = {"Boolean",   "UInteger8",  "Integer8",  "UInteger16", "Integer16", "UInteger32",
                           "Integer32", "UInteger64", "Integer64", "Float",      "Double"};
    for (int i = 0; i < 11; ++i) {
        EXPECT_EQ(static_cast<int>(kAll[i]), i + 1);
        EXPECT_EQ(getScalarSize(kAll[i]), sizes[i]);
        EXPECT_STREQ(scalarType2string(kAll[i]), names[i]);
        EXPECT_NE(isScalarTypeInteger(kAll[i]), isScalarTypeFloat(kAll[i]));
        EXPECT_EQ(string2scalarType(names[i]), kAll[i]);
        std::ostringstream out;
        out << kAll[i];
        EXPECT_EQ(out.str(), names[i]);
    }
    EXPECT_TRUE(isScalarTypeInteger(ScalarType::Boolean));
    EXPECT_TRUE(isScalarTypeFloat(ScalarType::Float));
    EXPECT_EQ(string2scalarType("uInTeGeR16"), ScalarType::UInteger16);
    EXPECT_EQ(string2scalarType(""), ScalarType::Invalid);
    EXPECT_EQ(string2scalarType("int"), ScalarType::Invalid);
    EXPECT_EQ(string2scalarType("invalid"), ScalarType::Invalid);
    EXPECT_STREQ(scalarType2string(ScalarType::Invalid), "Invalid");
    EXPECT_STREQ(scalarType2string(static_cast<ScalarType>(12)), "Invalid");
    EXPECT_THROW_TEXT(getScalarSize(ScalarType::Invalid), RuntimeException, "(): Invalid scalar type");
    EXPECT_THROW_TEXT(isScalarTypeInteger(static_cast<ScalarType>(12)), RuntimeException, "Invalid scalar type");
    EXPECT_THROW_TEXT(isScalarTypeFloat(static_cast<ScalarType>(-1)), RuntimeException, "Invalid scalar type");
}

TEST(ScalarTypeTest, DataTypeNames) {
    const char* names[] = {"Null", "String", "Integer", "Float", "Boolean", "Array", "Tensor", "Object", "List"};
    for (int i = 0; i < 9; ++i) {
        EXPECT_STREQ(dataType2string(static_cast<DataTreeType>(i)), names[i]);
        std::ostringstream out;
        out << static_cast<DataTreeType>(i);
        EXPECT_EQ(out.str(), names[i]);
    }
    std::ostringstream out;
    out << static_cast<DataTreeType>(9);
    EXPECT_EQ(out.str(), "<Invalid data type>");
    EXPECT_STREQ(dataType2string(static_cast<DataTreeType>(-1)), "<Invalid data type>");
}

TEST(ScalarTypeTest, RefusedPairsNameBothTypesEvenForNoElements) {
    std::vector<std::pair<ScalarType, ScalarType>> allowed = {
        {ScalarType::UInteger8, ScalarType::Float},    {ScalarType::UInteger8, ScalarType::Double},
        {ScalarType::UInteger16, ScalarType::UInteger64}, {ScalarType::UInteger16, ScalarType::Integer64},
        {ScalarType::UInteger16, ScalarType::Float},   {ScalarType::UInteger16, ScalarType::Double},
        {ScalarType::UInteger32, ScalarType::UInteger64}, {ScalarType::UInteger32, ScalarType::Integer64},
        {ScalarType::UInteger32, ScalarType::Float},   {ScalarType::UInteger32, ScalarType::Double},
        {ScalarType::Integer64, ScalarType::UInteger8}, {ScalarType::Integer64, ScalarType::UInteger16},
        {ScalarType::Integer64, ScalarType::UInteger32}, {ScalarType::Integer64, ScalarType::UInteger64},
        {ScalarType::Integer64, ScalarType::Float},    {ScalarType::Integer64, ScalarType::Double},
        {ScalarType::Float, ScalarType::UInteger8},    {ScalarType::Double, ScalarType::UInteger8},
        {ScalarType::Double, ScalarType::Float}};
    int refused = 0;
    for (ScalarType source : kAll) {
        for (ScalarType destination : kAll) {
            if (source == destination) continue;
            bool ok = false;
            for (auto& p : allowed) ok = ok || (p.first == source && p.second == destination);
            if (ok) {
                EXPECT_NO_THROW(convertBufferScalarType(nullptr, destination, nullptr, source, 0));
                continue;
            }
            ++refused;
            const std::string text = std::string("Invalid or unsupported scalar type conversion ") +
                                     scalarType2string(source) + " => " + scalarType2string(destination);
            EXPECT_THROW_TEXT(convertBufferScalarType(nullptr, destination, nullptr, source, 0), RuntimeException,
                              text);
            EXPECT_THROW_TEXT(convertBufferScalarType(nullptr, destination, nullptr, source, 5), RuntimeException,
                              text);
        }
    }
    EXPECT_EQ(refused, 110 - 19);
    EXPECT_THROW_TEXT(convertBufferScalarType(nullptr, ScalarType::Invalid, nullptr, ScalarType::Invalid, 1),
                      RuntimeException, "Invalid scalar type");
}

TEST(ScalarTypeTest, FloatingToUInteger8KeepsTheLowByte) {
    const double doubles[] = {300.0, -1.0, 0.9, 4294967340.0, 1e20, 255.9, -0.5, -2147483648.0,
                              std::numeric_limits<double>::quiet_NaN(), 2147483647.0, 1.7976931348623157e308};
    const uint8_t expected[] = {44, 255, 0, 0, 0, 255, 0, 0, 0, 255, 0};
    uint8_t out[11];
    convertBufferScalarType(out, ScalarType::UInteger8, doubles, ScalarType::Double, 11);
    for (int i = 0; i < 11; ++i) EXPECT_EQ(out[i], expected[i]) << "element " << i;

    // Long enough to pass the vector path and its tail, for both sources.
    std::vector<float> floats(37);
    std::vector<double> wide(37);
    for (int i = 0; i < 37; ++i) {
        floats[i] = static_cast<float>(i * 97 - 600) + 0.75f;
        wide[i] = floats[i];
    }
    floats[20] = 1e20f;
    wide[21] = std::nan("");
    std::vector<uint8_t> a(37), b(37);
    convertBufferScalarType(a.data(), ScalarType::UInteger8, floats.data(), ScalarType::Float, 37);
    convertBufferScalarType(b.data(), ScalarType::UInteger8, wide.data(), ScalarType::Double, 37);
    for (int i = 0; i < 37; ++i) {
        if (i == 20 || i == 21) continue;
        EXPECT_EQ(a[i], b[i]) << i;
        EXPECT_EQ(a[i], static_cast<uint8_t>(static_cast<int>(floats[i]))) << i;
    }
    EXPECT_EQ(a[20], 0);
    EXPECT_EQ(b[21], 0);
}

TEST(ScalarTypeTest, InfinityRaisesOverflowAfterTheElementsBeforeIt) {
    for (long at : {2L, 19L}) {
        std::vector<float> floats(40, 7.0f);
        floats[at] = -std::numeric_limits<float>::infinity();
        std::vector<uint8_t> out(40, 99);
        EXPECT_THROW_TEXT(
            convertBufferScalarType(out.data(), ScalarType::UInteger8, floats.data(), ScalarType::Float, 40),
            std::overflow_error, "Overflow in scalar conversion");
        for (long i = 0; i < at; ++i) EXPECT_EQ(out[i], 7);
        EXPECT_EQ(out[at], 99);
    }
    const double infinity = std::numeric_limits<double>::infinity();
    uint8_t one = 0;
    EXPECT_THROW(convertBufferScalarType(&one, ScalarType::UInteger8, &infinity, ScalarType::Double, 1),
                 std::overflow_error);
    // The overflow is the standard one, not the library's exception.
    try {
        convertBufferScalarType(&one, ScalarType::UInteger8, &infinity, ScalarType::Double, 1);
    } catch (const RuntimeException&) {
        ADD_FAILURE() << "RuntimeException instead of std::overflow_error";
    } catch (const std::overflow_error&) {
    }
}

TEST(ScalarTypeTest, WideningNarrowingAndRounding) {
    const int64_t big[] = {257, -1, 65536 + 5, (1LL << 40) + 3, -2};
    uint8_t u8[5];
    uint16_t u16[5];
    uint32_t u32[5];
    uint64_t u64[5];
    convertBufferScalarType(u8, ScalarType::UInteger8, big, ScalarType::Integer64, 5);
    convertBufferScalarType(u16, ScalarType::UInteger16, big, ScalarType::Integer64, 5);
    convertBufferScalarType(u32, ScalarType::UInteger32, big, ScalarType::Integer64, 5);
    convertBufferScalarType(u64, ScalarType::UInteger64, big, ScalarType::Integer64, 5);
    EXPECT_EQ(u8[0], 1);
    EXPECT_EQ(u8[1], 255);
    EXPECT_EQ(u16[2], 5);
    EXPECT_EQ(u32[3], 3u);
    EXPECT_EQ(u64[1], 0xFFFFFFFFFFFFFFFFull);
    EXPECT_EQ(u64[4], 0xFFFFFFFFFFFFFFFEull);

    const uint32_t u[] = {0xFFFFFFFFu, 16777217u};
    float f[2];
    int64_t i64[2];
    convertBufferScalarType(f, ScalarType::Float, u, ScalarType::UInteger32, 2);
    convertBufferScalarType(i64, ScalarType::Integer64, u, ScalarType::UInteger32, 2);
    EXPECT_EQ(f[0], 4294967296.0f);
    EXPECT_EQ(f[1], 16777216.0f);
    EXPECT_EQ(i64[0], 4294967295LL);

    const double d[] = {1e39, -1e39, 3.4028235677973366e+38, 3.4028235e38, 0.1};
    float g[5];
    convertBufferScalarType(g, ScalarType::Float, d, ScalarType::Double, 5);
    EXPECT_TRUE(std::isinf(g[0]) && g[0] > 0);
    EXPECT_TRUE(std::isinf(g[1]) && g[1] < 0);
    EXPECT_TRUE(std::isinf(g[2]));
    EXPECT_EQ(g[3], std::numeric_limits<float>::max());
    EXPECT_EQ(g[4], 0.1f);
    // The same through the four-wide path.
    const double many[] = {0.1, 1e39, -1e39, 3.4028235677973366e+38, 3.4028235e38, 3.4028235677973362e+38,
                           -0.0, 1e-50, 2.5};
    float h[9];
    convertBufferScalarType(h, ScalarType::Float, many, ScalarType::Double, 9);
    for (int i = 0; i < 9; ++i) {
        float one;
        convertBufferScalarType(&one, ScalarType::Float, many + i, ScalarType::Double, 1);
        EXPECT_EQ(std::memcmp(&one, h + i, 4), 0) << i;
    }
    EXPECT_TRUE(std::isinf(h[3]));
    EXPECT_EQ(h[5], std::numeric_limits<float>::max());

    const uint8_t bytes[] = {0, 128, 255};
    double widened[3];
    convertBufferScalarType(widened, ScalarType::Double, bytes, ScalarType::UInteger8, 3);
    EXPECT_EQ(widened[2], 255.0);
}

TEST(ScalarTypeTest, EqualTypesCopyBitForBitAndOverlapRunsFirstToLast) {
    const uint8_t flags[] = {0, 1, 2, 255};
    uint8_t copy[4] = {};
    convertBufferScalarType(copy, ScalarType::Boolean, flags, ScalarType::Boolean, 4);
    EXPECT_EQ(std::memcmp(copy, flags, 4), 0);
    convertBufferScalarType(copy, ScalarType::Boolean, flags, ScalarType::Boolean, -3);

    // A later, overlapping destination repeats elements as a forward loop does.
    int32_t run[5] = {1, 2, 3, 4, 5};
    convertBufferScalarType(run + 1, ScalarType::Integer32, run, ScalarType::Integer32, 4);
    EXPECT_EQ(run[1], 1);
    EXPECT_EQ(run[4], 1);
    int32_t back[5] = {1, 2, 3, 4, 5};
    convertBufferScalarType(back, ScalarType::Integer32, back + 1, ScalarType::Integer32, 4);
    EXPECT_EQ(back[0], 2);
    EXPECT_EQ(back[3], 5);

    // In-place widening from the start of the block: each wider store
    // overwrites source bytes not read yet, as the element loop would.
    alignas(8) unsigned char block[32] = {};
    const uint16_t start[4] = {1, 2, 3, 4};
    std::memcpy(block, start, sizeof(start));
    unsigned char expected[32];
    std::memcpy(expected, block, sizeof(block));
    for (int i = 0; i < 4; ++i) {
        uint16_t v;
        std::memcpy(&v, expected + 2 * i, 2);
        const double w = v;
        std::memcpy(expected + 8 * i, &w, 8);
    }
    convertBufferScalarType(block, ScalarType::Double, block, ScalarType::UInteger16, 4);
    EXPECT_EQ(std::memcmp(block, expected, 32), 0);

    // In-place narrowing of doubles to bytes, long enough for the vector path.
    std::vector<double> values(64);
    for (int i = 0; i < 64; ++i) values[i] = i * 3.0;
    auto* bytes = reinterpret_cast<uint8_t*>(values.data());
    convertBufferScalarType(bytes, ScalarType::UInteger8, values.data(), ScalarType::Double, 64);
    for (int i = 0; i < 64; ++i) EXPECT_EQ(bytes[i], i * 3) << i;
}
