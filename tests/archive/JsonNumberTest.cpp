// Numbers read by the cursor must be the doubles strtod gives in the C
// locale, bit for bit, and be refused where strtod stops early or reports a
// range error. The texts sit where conversions go wrong: halfway between two
// doubles, at the edges of the normal range, with mantissas of 19 and more
// digits, and at every decimal exponent.
#include <gtest/gtest.h>

#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <optional>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "sorvane/archive/JsonImporter.h"

using sorvane::archive::JsonImporter;

namespace {

std::optional<double> reference(const std::string& text) {
    char* stop = nullptr;
    errno = 0;
    const double value = std::strtod(text.c_str(), &stop);
    if (stop != text.c_str() + text.size() || errno == ERANGE) return std::nullopt;
    return value;
}

std::string bitsOf(std::optional<double> value) {
    if (!value) return "refused";
    char buffer[64];
    std::snprintf(buffer, sizeof buffer, "%a", *value);
    return buffer;
}

// Texts near every kind of boundary, from doubles picked at random.
std::vector<std::string> edgeTexts() {
    std::vector<std::string> texts = {
        "0", "-0", "0.0", "-0.0e10", "0e999999", "1", "9007199254740991", "9007199254740992", "9007199254740993",
        "9007199254740994", "9007199254740995", "-9007199254740995", "18446744073709551615", "18446744073709551616",
        "9999999999999999999", "99999999999999999999", "1234567890123456789", "12345678901234567890",
        "0.1", "0.3", "0.30000000000000004", "1e22", "1e23", "8.98846567431158e307", "1.7976931348623157e308",
        "1.7976931348623158e308", "1.7976931348623159e308", "1e308", "1e309", "-1e309",
        "2.2250738585072014e-308", "2.2250738585072011e-308", "2.2250738585072012e-308", "4.9e-324",
        "4.9406564584124654e-324", "2.4703282292062327e-324", "1e-400", "1e-307", "1e-308", "1e-309",
        "0.000000000000000000000000000000000000000000000000001", "1.00000000000000011102230246251565404236316680908203125",
        "1.00000000000000011102230246251565404236316680908203124", "1.00000000000000011102230246251565404236316680908203126",
        "7.2057594037927933e16", "123456789012345678901234567890e-10", "1e-22", "1e-23", "3e-22", "3e22",
        "2.5e-5", "100000000000000000000000", "0.0000000000000000000000000000001e31", "0.0006872200000000001",
        "-0.00000000000000000000123", "00000000000000000000.5", "0.00000000000000000009007199254740993",
    };
    std::mt19937_64 random(2026);
    char buffer[128];
    for (int i = 0; i < 4000; ++i) {
        // A double of any exponent, and the point halfway to the next one,
        // which a long double holds exactly.
        uint64_t bits = random() & 0x7fefffffffffffffull;
        if (i % 4 == 0) bits = (bits & 0x000fffffffffffffull) | (uint64_t(1 + random() % 2045) << 52);
        double d;
        std::memcpy(&d, &bits, sizeof d);
        if (!std::isfinite(d)) continue;
        const long double mid = (static_cast<long double>(d) + std::nextafter(d, INFINITY)) / 2;
        for (int digits : {15, 16, 17, 18, 19, 20, 25, 40}) {
            std::snprintf(buffer, sizeof buffer, "%.*Le", digits - 1, mid);
            texts.push_back(buffer);
        }
        std::snprintf(buffer, sizeof buffer, "%.17g", d);
        texts.push_back(buffer);
        std::snprintf(buffer, sizeof buffer, "%.19e", d);
        texts.push_back(buffer);
    }
    // Every decimal exponent with short and long mantissas, and plain
    // decimals with leading zeros.
    for (int exponent = -360; exponent <= 330; ++exponent) {
        const int digits = 1 + static_cast<int>(random() % 22);
        std::string m;
        for (int d = 0; d < digits; ++d) m += static_cast<char>('0' + (d == 0 ? 1 + random() % 9 : random() % 10));
        std::string t = (random() % 4 == 0 ? "-" : "") + m;
        if (random() % 2) t.insert(t.size() - static_cast<size_t>(random() % digits), ".");
        texts.push_back(t + "e" + std::to_string(exponent));
        texts.push_back("0.000" + m + "E+" + std::to_string(exponent + 400));
        // Leading zeros that push the digit count past 19 without adding to
        // the mantissa.
        texts.push_back(std::string(random() % 3, '0') + "0." + std::string(random() % 9, '0') + m);
    }
    return texts;
}

TEST(JsonNumber, SameDoubleAsTheCLibrary) {
    const std::vector<std::string> texts = edgeTexts();
    for (const std::string& text : texts) {
        const std::string expected = bitsOf(reference(text));
        // In place, through a stream, and from a stream that cuts it short.
        JsonImporter inPlace(text.data(), text.size());
        std::istringstream stream(text);
        JsonImporter streamed(stream);
        EXPECT_EQ(bitsOf(inPlace.nextNumber()), expected) << text;
        EXPECT_EQ(bitsOf(streamed.nextNumber()), expected) << text;
        const std::string followed = text + ",";
        JsonImporter before(followed.data(), followed.size());
        EXPECT_EQ(bitsOf(before.nextNumber()), expected) << text;
    }
}

TEST(JsonNumber, ListsReadInPlaceMatchItemByItem) {
    // A list is read with local pointers when it lies whole in the text; its
    // values, its failures and the position after it must be those of the
    // item by item reading of a stream.
    const std::vector<std::string> texts = edgeTexts();
    std::mt19937 random(7);
    for (size_t at = 0; at + 6 < texts.size(); at += 1 + random() % 6) {
        const size_t count = random() % 6;
        std::string list = "[";
        std::vector<std::optional<double>> expected;
        for (size_t i = 0; i < count; ++i) {
            list += (i ? (random() % 2 ? "," : " ,\n ") : "") + texts[at + i];
            expected.push_back(reference(texts[at + i]));
        }
        list += random() % 8 == 0 ? " ]" : "]";
        const std::string doc = list + " 7";
        bool ok = true;
        for (const auto& value : expected) ok = ok && value.has_value();

        JsonImporter inPlace(doc.data(), doc.size());
        std::istringstream stream(doc);
        JsonImporter streamed(stream);
        std::vector<double> fast;
        std::vector<double> slow;
        ASSERT_EQ(inPlace.nextNumberList(fast), ok) << list;
        ASSERT_EQ(streamed.nextNumberList(slow), ok) << list;
        if (ok) {
            ASSERT_EQ(fast.size(), expected.size());
            for (size_t i = 0; i < fast.size(); ++i) {
                EXPECT_EQ(bitsOf(fast[i]), bitsOf(expected[i])) << list;
                EXPECT_EQ(bitsOf(slow[i]), bitsOf(expected[i])) << list;
            }
        }
        // After the list, or back at its start after a failure.
        EXPECT_EQ(inPlace.nextInteger(), ok ? std::optional<int64_t>(7) : std::nullopt) << list;
        EXPECT_EQ(streamed.nextInteger(), ok ? std::optional<int64_t>(7) : std::nullopt) << list;
    }
}

TEST(JsonNumber, IntegerListsInPlaceWrapAndStopAlike) {
    // Digit runs of every length (longer ones wrap as unsigned arithmetic
    // does), signs alone, and items a list cannot take.
    std::mt19937_64 random(5);
    const char* tails[] = {"]", " ]", ",1]", ", -]", ",]", ",x]", ".5]", ", 2 3]", "", ",", "\n,\n4\n]"};
    for (int round = 0; round < 3000; ++round) {
        std::string doc = "[";
        for (int items = static_cast<int>(random() % 5); items > 0; --items) {
            if (random() % 3 == 0) doc += '-';
            for (int d = static_cast<int>(random() % 30); d >= 0; --d) doc += static_cast<char>('0' + random() % 10);
            doc += random() % 4 == 0 ? " , " : ",";
        }
        doc += random() % 2 ? "0" : "-12";
        doc += tails[random() % (sizeof tails / sizeof tails[0])];
        if (random() % 2) doc += " true";
        JsonImporter inPlace(doc.data(), doc.size());
        std::istringstream stream(doc);
        JsonImporter streamed(stream);
        std::vector<int64_t> fast;
        std::vector<int64_t> slow;
        const bool a = inPlace.nextIntegerList(fast);
        ASSERT_EQ(a, streamed.nextIntegerList(slow)) << doc;
        if (a) {
            EXPECT_EQ(fast, slow) << doc;
        }
        EXPECT_EQ(inPlace.nextBoolean(), streamed.nextBoolean()) << doc;
        EXPECT_EQ(inPlace.getLine(), streamed.getLine()) << doc;
    }
}

} // namespace
