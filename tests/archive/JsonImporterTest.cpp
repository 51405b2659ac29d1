#include <gtest/gtest.h>

#include <clocale>
#include <cmath>
#include <cstring>
#include <random>
#include <sstream>
#include <streambuf>
#include <string>

#include "sorvane/archive/JsonImporter.h"

using sorvane::archive::JsonImporter;

namespace {

// Hands the text over in pieces of 1 to 3 bytes, as a slow pipe would.
// With `shortReads`, a block read also stops at the end of a piece, so the
// reader refills at every few bytes.
class PieceBuffer : public std::streambuf {
public:
    explicit PieceBuffer(std::string text, bool shortReads = false)
        : text_(std::move(text)), shortReads_(shortReads) {}

protected:
    std::streamsize xsgetn(char* s, std::streamsize n) override {
        if (!shortReads_) return std::streambuf::xsgetn(s, n);
        if (gptr() == egptr() && traits_type::eq_int_type(underflow(), traits_type::eof())) return 0;
        std::streamsize size = std::min<std::streamsize>(n, egptr() - gptr());
        std::memcpy(s, gptr(), static_cast<size_t>(size));
        gbump(static_cast<int>(size));
        return size;
    }

    int_type underflow() override {
        if (at_ >= text_.size()) return traits_type::eof();
        size_t size = std::min<size_t>(1 + (count_++ % 3), text_.size() - at_);
        std::memcpy(piece_, text_.data() + at_, size);
        at_ += size;
        setg(piece_, piece_, piece_ + size);
        return traits_type::to_int_type(piece_[0]);
    }

private:
    std::string text_;
    bool shortReads_;
    size_t at_ = 0;
    size_t count_ = 0;
    char piece_[3];
};

// Walks any document the way a generic reader would and writes down what it
// saw, with the line of each step, so two readings can be compared.
void walk(JsonImporter& in, std::string& trace, int depth) {
    if (depth > 64) {
        trace += "deep;";
        return;
    }
    if (auto numbers = in.nextNumberList()) {
        trace += "n" + std::to_string(numbers->size());
        for (double v : *numbers) trace += "," + std::to_string(v);
    } else if (in.nextBeginObject()) {
        trace += "{";
        std::string key;
        while (in.nextObjectItem(key)) {
            trace += key + ":";
            walk(in, trace, depth + 1);
        }
        trace += in.nextEndObject() ? "}" : "!}";
    } else if (in.nextBeginArray()) {
        trace += "[";
        while (in.nextArrayItem()) walk(in, trace, depth + 1);
        trace += in.nextEndArray() ? "]" : "!]";
    } else if (auto s = in.nextString()) {
        trace += "s" + *s;
    } else if (auto d = in.nextNumber()) {
        trace += "d" + std::to_string(*d);
    } else if (auto i = in.nextInteger()) {
        trace += "i" + std::to_string(*i);
    } else if (in.nextNull()) {
        trace += "null";
    } else if (auto b = in.nextBoolean()) {
        trace += *b ? "true" : "false";
    } else {
        trace += in.skipContent(0, 0) ? "skip" : "fail";
    }
    trace += "@" + std::to_string(in.getLine()) + ";";
}

std::string walkText(std::istream& stream) {
    JsonImporter in(stream);
    std::string trace;
    walk(in, trace, 0);
    trace += "end:" + std::to_string(static_cast<int>(in.next()));
    return trace;
}

} // namespace

TEST(JsonImporter, StringsKeepTheDialect) {
    std::istringstream text(R"( "plain" "a\"b\\c\'d\b\f\n\r\t" "" "é")");
    JsonImporter in(text);
    EXPECT_EQ(in.nextString(), "plain");
    EXPECT_EQ(in.nextString(), std::string("a\"b\\c'd\b\f\n\r\t"));
    std::string out = "kept";
    EXPECT_TRUE(in.nextString(out));
    EXPECT_EQ(out, "");
    EXPECT_FALSE(in.nextString(out));  // bytes from 0x80 up are outside the dialect
    EXPECT_EQ(in.next(), ' ');
}

TEST(JsonImporter, StringFailuresPutTheOffsetBack) {
    for (const char* bad : {"\"\\u0041\"", "\"\\/\"", "\"\xC3\xA9\"", "\"tab\tin\"", "\"open", "x", ""}) {
        std::istringstream text(bad);
        JsonImporter in(text);
        EXPECT_FALSE(in.peekString()) << bad;
        EXPECT_FALSE(in.nextString()) << bad;
        // Nothing was consumed: the first character is still there.
        EXPECT_EQ(in.next(), bad[0]) << bad;
    }
    std::istringstream text(R"(  "\'"  )");
    JsonImporter in(text);
    EXPECT_EQ(in.peekString(), "'");
    in.rollback();
    EXPECT_EQ(in.nextString(), "'");
}

TEST(JsonImporter, IntegersStopAtTheFirstNonDigit) {
    std::istringstream text("12.5 - -7 1e3 18446744073709551617 -9223372036854775808 +1");
    JsonImporter in(text);
    EXPECT_EQ(in.nextInteger(), 12);
    EXPECT_EQ(in.next(), '.');
    EXPECT_EQ(in.nextInteger(), 5);
    EXPECT_EQ(in.nextInteger(), 0);  // a lone minus
    EXPECT_EQ(in.nextInteger(), -7);
    EXPECT_EQ(in.nextInteger(), 1);
    EXPECT_EQ(in.next(), 'e');
    EXPECT_EQ(in.nextInteger(), 3);
    EXPECT_EQ(in.nextInteger(), 1);  // wraps modulo 2^64
    EXPECT_EQ(in.nextInteger(), INT64_MIN);
    EXPECT_FALSE(in.nextInteger());
    EXPECT_EQ(in.next(), ' ');
    EXPECT_EQ(in.next(), '+');
}

TEST(JsonImporter, NumbersFollowTheGrammarThenConvert) {
    std::istringstream text(
        "0.1 -0 1.5e3 2E+2 -.5 1. 0.3333333333333333 123456789012345678901234567890 "
        "4.9406564584124654e-324 1e22 1e23 9007199254740993 0x10");
    JsonImporter in(text);
    EXPECT_EQ(in.nextNumber(), 0.1);
    auto zero = in.nextNumber();
    ASSERT_TRUE(zero);
    EXPECT_TRUE(*zero == 0 && std::signbit(*zero));
    EXPECT_EQ(in.nextNumber(), 1500.0);
    EXPECT_EQ(in.nextNumber(), 200.0);
    EXPECT_EQ(in.nextNumber(), -0.5);
    EXPECT_EQ(in.nextNumber(), 1.0);
    EXPECT_EQ(in.nextNumber(), 1.0 / 3.0);
    EXPECT_EQ(in.nextNumber(), 123456789012345678901234567890.0);
    EXPECT_FALSE(in.nextNumber());  // below the normal range: an underflow
    in.skipSpaces();
    for (int i = 0; i < 24; ++i) in.next();
    EXPECT_EQ(in.nextNumber(), 1e22);
    EXPECT_EQ(in.nextNumber(), 1e23);
    EXPECT_EQ(in.nextNumber(), 9007199254740992.0);  // rounds to even as strtod does
    EXPECT_EQ(in.nextNumber(), 0.0);  // no hexadecimal form
    EXPECT_EQ(in.next(), 'x');

    for (const char* bad : {"1e400", "-1e400", "1e-400", "-", "1e+", "1ex", ".5", "+1", "Infinity", "-inf"}) {
        std::istringstream one(bad);
        JsonImporter reader(one);
        EXPECT_FALSE(reader.peekNumber()) << bad;
        EXPECT_FALSE(reader.nextNumber()) << bad;
        EXPECT_EQ(reader.next(), bad[0]) << bad;
    }
}

TEST(JsonImporter, LiteralsAndLowLayer) {
    std::istringstream text(" null true  false nul tru\r\n\tx");
    JsonImporter in(text);
    EXPECT_TRUE(in.peekNull());
    EXPECT_EQ(in.peekBoolean(), true);  // the look-ahead goes on after null
    in.rollback();
    EXPECT_TRUE(in.nextNull());
    EXPECT_EQ(in.nextBoolean(), true);
    EXPECT_EQ(in.nextBoolean(), false);
    EXPECT_FALSE(in.nextNull());
    EXPECT_EQ(in.next(), ' ');
    EXPECT_EQ(in.next(), 'n');
    EXPECT_EQ(in.next(), 'u');
    EXPECT_EQ(in.next(), 'l');
    EXPECT_FALSE(in.nextBoolean());
    in.skipSpaces();
    EXPECT_EQ(in.peek(), 't');
    EXPECT_EQ(in.peek(), 'r');
    in.rollback();
    EXPECT_FALSE(in.peekChar('r'));
    EXPECT_TRUE(in.nextChar('t'));
    EXPECT_EQ(in.next(), 'r');
    EXPECT_EQ(in.next(), 'u');
    in.skipSpaces();
    EXPECT_EQ(in.getLine(), 2);
    EXPECT_EQ(in.peek(), 'x');
    EXPECT_EQ(in.peek(), 0);
    EXPECT_EQ(in.peek(), 0);
    in.flush();
    EXPECT_EQ(in.next(), 0);

    // A NUL byte ends the input for the cursor.
    std::istringstream nul(std::string("a\0b", 3));
    JsonImporter z(nul);
    EXPECT_EQ(z.next(), 'a');
    EXPECT_EQ(z.peek(), 0);
    EXPECT_EQ(z.next(), 0);
    EXPECT_EQ(z.next(), 0);
}

TEST(JsonImporter, ListsAndMaps) {
    std::istringstream text(
        R"([1, 2,] [ ] [ 1 , -2 ,3 ] [1.5] [1, 2.5e1] ["a", "b"] ["a", 1])"
        R"( {"a": 1, "b" : -2, "a": 3} {} {"a": 1.5} [{"x": 1}, {}] [{"x": 1}, 3])");
    JsonImporter in(text);
    EXPECT_FALSE(in.nextIntegerList());
    EXPECT_EQ(in.next(), '[');  // the offset went back to before the list
    EXPECT_TRUE(in.skipContent(0, 1));
    EXPECT_EQ(in.nextIntegerList(), std::vector<int64_t>{});
    std::vector<int64_t> integers{9, 9, 9, 9};
    EXPECT_TRUE(in.nextIntegerList(integers));
    EXPECT_EQ(integers, (std::vector<int64_t>{1, -2, 3}));
    EXPECT_FALSE(in.peekIntegerList());
    EXPECT_EQ(in.nextNumberList(), std::vector<double>{1.5});
    EXPECT_EQ(in.nextNumberList(), (std::vector<double>{1, 25}));
    EXPECT_EQ(in.nextStringList(), (std::vector<std::string>{"a", "b"}));
    EXPECT_FALSE(in.nextStringList());
    in.skipSpaces();
    EXPECT_TRUE(in.skipContent(0, 0));

    auto map = in.nextIntegerMap();
    ASSERT_TRUE(map);
    EXPECT_EQ(map->size(), 2u);
    EXPECT_EQ(map->at("a"), 3);  // the last of a repeated key wins
    EXPECT_EQ(map->at("b"), -2);
    EXPECT_EQ(in.nextIntegerMap(), JsonImporter::IntegerMap{});
    EXPECT_FALSE(in.nextIntegerMap());
    EXPECT_EQ(in.next(), ' ');
    EXPECT_EQ(in.next(), '{');
    EXPECT_TRUE(in.skipContent(1, 0));

    auto maps = in.nextIntegerMapList();
    ASSERT_TRUE(maps);
    ASSERT_EQ(maps->size(), 2u);
    EXPECT_EQ(maps->at(0).at("x"), 1);
    EXPECT_TRUE(maps->at(1).empty());
    // The map list goes back only to after its leading blanks.
    int32_t before = in.getLine();
    EXPECT_FALSE(in.peekIntegerMapList());
    in.flush();
    EXPECT_EQ(in.next(), '[');
    EXPECT_EQ(in.getLine(), before);
}

TEST(JsonImporter, StructureWalk) {
    std::istringstream text(R"({"a": 1, "list": [1, "x", [ ]], "b": {},} [1,] [{ ])");
    JsonImporter in(text);
    EXPECT_FALSE(in.nextObjectItem());  // no open object
    EXPECT_FALSE(in.nextArrayItem());
    EXPECT_FALSE(in.nextEndObject());
    ASSERT_TRUE(in.peekBeginObject());
    in.rollback();
    ASSERT_TRUE(in.nextBeginObject());
    EXPECT_FALSE(in.nextArrayItem());  // an object is on top
    EXPECT_EQ(in.nextObjectItem(), "a");
    EXPECT_EQ(in.nextInteger(), 1);
    std::string key;
    ASSERT_TRUE(in.nextObjectItem(key));
    EXPECT_EQ(key, "list");
    ASSERT_TRUE(in.nextBeginArray());
    EXPECT_FALSE(in.nextEndObject());  // an array is on top: nothing popped
    EXPECT_TRUE(in.nextArrayItem());
    EXPECT_EQ(in.nextInteger(), 1);
    EXPECT_TRUE(in.nextArrayItem());
    EXPECT_EQ(in.nextString(), "x");
    EXPECT_TRUE(in.nextArrayItem());
    ASSERT_TRUE(in.nextBeginArray());
    EXPECT_FALSE(in.nextArrayItem());
    EXPECT_TRUE(in.nextEndArray());
    EXPECT_FALSE(in.nextArrayItem());
    EXPECT_TRUE(in.nextEndArray());
    EXPECT_EQ(in.nextObjectItem(), "b");
    ASSERT_TRUE(in.nextBeginObject());
    EXPECT_FALSE(in.nextObjectItem());
    EXPECT_TRUE(in.nextEndObject());
    // A comma before the closing brace is tolerated.
    EXPECT_FALSE(in.nextObjectItem());
    EXPECT_TRUE(in.nextEndObject());

    ASSERT_TRUE(in.nextBeginArray());
    EXPECT_TRUE(in.nextArrayItem());
    EXPECT_EQ(in.nextInteger(), 1);
    EXPECT_TRUE(in.nextArrayItem());  // the comma, then no value
    EXPECT_FALSE(in.nextInteger());
    EXPECT_FALSE(in.nextArrayItem());
    EXPECT_TRUE(in.nextEndArray());

    // The end pops even when its bracket is missing.
    ASSERT_TRUE(in.nextBeginArray());
    ASSERT_TRUE(in.nextBeginObject());
    EXPECT_FALSE(in.nextEndObject());
    EXPECT_TRUE(in.nextEndArray());
    EXPECT_FALSE(in.nextEndArray());
}

TEST(JsonImporter, LineCountsOnlyCommittedCharacters) {
    std::istringstream text("{\n\"a\":\n  1,\n\n\"b\": 2\n}\n");
    JsonImporter in(text);
    EXPECT_EQ(in.getLine(), 1);
    ASSERT_TRUE(in.nextBeginObject());
    EXPECT_EQ(in.getLine(), 1);
    EXPECT_TRUE(in.peekString());  // look-ahead over a line feed
    EXPECT_EQ(in.getLine(), 1);
    in.rollback();
    EXPECT_EQ(in.nextObjectItem(), "a");
    EXPECT_EQ(in.getLine(), 2);
    EXPECT_TRUE(in.peekInteger());
    EXPECT_EQ(in.getLine(), 2);
    in.flush();
    EXPECT_EQ(in.getLine(), 3);
    EXPECT_EQ(in.nextObjectItem(), "b");
    EXPECT_EQ(in.getLine(), 5);
    EXPECT_EQ(in.nextInteger(), 2);
    EXPECT_FALSE(in.nextObjectItem());
    EXPECT_EQ(in.getLine(), 6);  // the blanks before the failed comma were committed
    EXPECT_TRUE(in.nextEndObject());
    EXPECT_EQ(in.next(), '\n');
    EXPECT_EQ(in.getLine(), 7);
}

TEST(JsonImporter, SkipContent) {
    std::istringstream text(R"({"x": [1, {"y": 2}]}, 5 "s,]" , 7] {"u": "\u0041"})");
    JsonImporter in(text);
    EXPECT_TRUE(in.skipContent(0, 0));
    EXPECT_EQ(in.next(), ',');  // stopped right after the final brace
    EXPECT_TRUE(in.skipContent(0, 0));  // a scalar ends at the comma
    EXPECT_EQ(in.next(), ',');
    EXPECT_TRUE(in.skipContent(0, 0));  // stops before the closing bracket
    EXPECT_EQ(in.next(), ']');
    EXPECT_FALSE(in.skipContent(0, 0));  // a string it can't read

    std::istringstream open(R"({"a": [1, 2)");
    JsonImporter unfinished(open);
    EXPECT_FALSE(unfinished.skipContent(0, 0));
    std::istringstream inner(R"("k": 1}, {"k": 2}] tail)");
    JsonImporter rest(inner);
    EXPECT_TRUE(rest.skipContent(1, 1));
    EXPECT_EQ(rest.nextChar(' '), true);
    EXPECT_EQ(rest.next(), 't');
    std::istringstream hostile("{[{");
    JsonImporter wrap(hostile);
    EXPECT_FALSE(wrap.skipContent(INT64_MAX, INT64_MAX));
}

TEST(JsonImporter, PiecesAndBlocksReadTheSame) {
    // Larger than one read block, with a string and a list that cross blocks.
    std::string doc = "{\n  \"records\": [";
    for (int i = 0; i < 3000; ++i) {
        if (i) doc += ",";
        doc += "\n    {\"name\": \"record " + std::to_string(i) + "\", \"id\": " + std::to_string(i * 7) +
               ", \"data\": [0.5, -1e-3, " + std::to_string(i) + "], \"flag\": " + (i % 2 ? "true" : "null") +
               ", \"bad\": nope, \"skip\": [\"a\", {\"b\": [1,2]}]}";
    }
    doc += "\n  ],\n  \"long\": \"" + std::string(100000, 'x') + "\",\n  \"tail\": [1, 2,]\n}\n";
    std::istringstream whole(doc);
    PieceBuffer pieces(doc);
    std::istream slow(&pieces);
    PieceBuffer shortPieces(doc, true);
    std::istream shortSlow(&shortPieces);
    std::string a = walkText(whole);
    std::string b = walkText(slow);
    EXPECT_GT(a.size(), 100000u) << a.substr(0, 300);
    EXPECT_EQ(a, b);
    EXPECT_EQ(a, walkText(shortSlow));
    EXPECT_NE(a.find("id:d20993.000000@"), std::string::npos);
    EXPECT_NE(a.find("@3004;"), std::string::npos);  // lines reach the last record
}

TEST(JsonImporter, LongLookAheadAndRollback) {
    std::string doc = "[";
    for (int i = 0; i < 200000; ++i) doc += (i ? ", " : "") + std::to_string(i);
    doc += "] 5";
    PieceBuffer pieces(doc, true);
    std::istream stream(&pieces);
    JsonImporter in(stream);
    auto peeked = in.peekNumberList();
    ASSERT_TRUE(peeked);
    EXPECT_EQ(peeked->size(), 200000u);
    in.rollback();
    std::vector<int64_t> values;
    ASSERT_TRUE(in.nextIntegerList(values));
    ASSERT_EQ(values.size(), 200000u);
    EXPECT_EQ(values.back(), 199999);
    EXPECT_EQ(in.nextInteger(), 5);
}

TEST(JsonImporter, NumbersUseTheNumericLocale) {
    // Only meaningful where a comma locale is installed.
    const char* old = std::setlocale(LC_NUMERIC, nullptr);
    std::string saved = old ? old : "C";
    if (!std::setlocale(LC_NUMERIC, "de_DE.UTF-8")) GTEST_SKIP() << "no de_DE locale";
    std::istringstream text("2 1.5");
    JsonImporter in(text);
    EXPECT_EQ(in.nextNumber(), 2.0);
    EXPECT_FALSE(in.nextNumber());
    std::setlocale(LC_NUMERIC, saved.c_str());
}

TEST(JsonImporter, NumbersMatchTheCLibrary) {
    // Texts of every shape the fast conversion takes or declines, read whole
    // and in pieces (which splits numbers across refills), against strtod.
    std::mt19937_64 random(11);
    std::string doc;
    std::vector<std::string> texts;
    for (int i = 0; i < 20000; ++i) {
        std::string t = (random() % 3 == 0) ? "-" : "";
        int digits = 1 + static_cast<int>(random() % 22);
        for (int d = 0; d < digits; ++d) t += static_cast<char>('0' + random() % 10);
        if (random() % 2) {
            t += '.';
            for (int d = 0, n = static_cast<int>(random() % 24); d < n; ++d) t += static_cast<char>('0' + random() % 10);
        }
        if (random() % 4 == 0) t += "e" + std::to_string(static_cast<int>(random() % 80) - 40);
        texts.push_back(t);
        doc += t + (i % 7 ? " " : "\n");
    }
    std::istringstream whole(doc);
    PieceBuffer pieces(doc, true);
    std::istream slow(&pieces);
    JsonImporter a(whole);
    JsonImporter b(slow);
    for (const auto& t : texts) {
        double expected = std::strtod(t.c_str(), nullptr);
        auto x = a.nextNumber();
        auto y = b.nextNumber();
        ASSERT_TRUE(x && y) << t;
        EXPECT_EQ(std::memcmp(&*x, &expected, sizeof(double)), 0) << t;
        EXPECT_EQ(std::memcmp(&*y, &expected, sizeof(double)), 0) << t;
    }
    EXPECT_EQ(a.getLine(), b.getLine());
    EXPECT_EQ(a.getLine(), 1 + 19999 / 7);
}
