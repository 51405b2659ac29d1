#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstring>
#include <limits>
#include <random>
#include <sstream>
#include <string>

#include "sorvane/archive/JsonExporter.h"
#include "sorvane/archive/JsonImporter.h"
#include "sorvane/core/RuntimeException.h"

using sorvane::archive::JsonExporter;
using sorvane::archive::JsonImporter;

namespace {

// The document of the layout description, written through every kind of call.
void writeSample(JsonExporter& out) {
    out.beginObject();
    out.addObjectItem("preamble");
    out.beginObject();
    out.addObjectItem("signature");
    out.addString("MPEG-ARF-2025");
    out.addObjectItem(std::string("data"));
    out.addIntegerList({1, 2});
    out.endObject();
    out.addObjectItem("list");
    out.beginArray();
    for (int64_t id : {1, 2}) {
        out.addArrayItem();
        out.beginObject();
        out.addObjectItem("id");
        out.addInteger(id);
        out.endObject();
    }
    out.endArray();
    out.addObjectItem("empty");
    out.addNumberList({});
    out.addObjectItem("none");
    out.beginObject();
    out.endObject();
    out.addObjectItem("values");
    out.addNumberList({0.5, -2, 1e-07});
    out.addObjectItem("names");
    out.addStringList({"a", "b\"c"});
    out.addObjectItem("flags");
    out.beginArray();
    out.addArrayItem();
    out.addBoolean(true);
    out.addArrayItem();
    out.addBoolean(false);
    out.addArrayItem();
    out.addNull();
    out.endArray();
    out.endObject();
}

const char* kSample =
    "{\n"
    "  \"preamble\": {\n"
    "    \"signature\": \"MPEG-ARF-2025\",\n"
    "    \"data\": [1, 2]\n"
    "  },\n"
    "  \"list\": [\n"
    "    {\n"
    "      \"id\": 1\n"
    "    },\n"
    "    {\n"
    "      \"id\": 2\n"
    "    }\n"
    "  ],\n"
    "  \"empty\": [],\n"
    "  \"none\": {},\n"
    "  \"values\": [0.5, -2, 1e-07],\n"
    "  \"names\": [\"a\", \"b\\\"c\"],\n"
    "  \"flags\": [\n"
    "    true,\n"
    "    false,\n"
    "    null\n"
    "  ]\n"
    "}";

std::string numberText(double value) {
    std::ostringstream stream;
    JsonExporter out(stream);
    out.addNumber(value);
    return stream.str();
}

// Reads a document of the sample's shape back and writes it again.
void copy(JsonImporter& in, JsonExporter& out, int depth = 0) {
    ASSERT_LT(depth, 16);
    if (in.nextBeginObject()) {
        out.beginObject();
        while (auto key = in.nextObjectItem()) {
            out.addObjectItem(*key);
            copy(in, out, depth + 1);
        }
        ASSERT_TRUE(in.nextEndObject());
        out.endObject();
    } else if (auto integers = in.peekIntegerList()) {
        in.flush();
        out.addIntegerList(*integers);
    } else if (auto numbers = in.nextNumberList()) {
        out.addNumberList(*numbers);
    } else if (auto strings = in.nextStringList()) {
        out.addStringList(*strings);
    } else if (in.nextBeginArray()) {
        out.beginArray();
        while (in.nextArrayItem()) {
            out.addArrayItem();
            copy(in, out, depth + 1);
        }
        ASSERT_TRUE(in.nextEndArray());
        out.endArray();
    } else if (auto s = in.nextString()) {
        out.addString(*s);
    } else if (auto b = in.nextBoolean()) {
        out.addBoolean(*b);
    } else if (in.nextNull()) {
        out.addNull();
    } else if (auto i = in.nextInteger()) {
        out.addInteger(*i);
    } else {
        FAIL() << "unexpected value at line " << in.getLine();
    }
}

} // namespace

TEST(JsonExporter, LayoutAndRoundTrip) {
    std::ostringstream stream;
    {
        JsonExporter out(stream);
        writeSample(out);
        // The finished document reaches the stream without waiting for the end.
        EXPECT_EQ(stream.str(), kSample);
    }
    EXPECT_EQ(stream.str(), kSample);

    std::istringstream text(stream.str());
    JsonImporter in(text);
    std::ostringstream again;
    {
        JsonExporter out(again);
        copy(in, out);
    }
    EXPECT_EQ(again.str(), kSample);
    EXPECT_EQ(in.next(), 0);
    EXPECT_EQ(in.getLine(), 23);
}

TEST(JsonExporter, CompactMode) {
    std::ostringstream stream;
    JsonExporter::Options options;
    options.compact = true;
    {
        JsonExporter out(stream, options);
        writeSample(out);
    }
    EXPECT_EQ(stream.str(),
              "{\"preamble\":{\"signature\":\"MPEG-ARF-2025\",\"data\":[1, 2]},\"list\":[{\"id\":1},{\"id\":2}],"
              "\"empty\":[],\"none\":{},\"values\":[0.5, -2, 1e-07],\"names\":[\"a\", \"b\\\"c\"],"
              "\"flags\":[true,false,null]}");
}

TEST(JsonExporter, NumbersAsTheStreamWritesThem) {
    EXPECT_EQ(numberText(1e-07), "1e-07");
    EXPECT_EQ(numberText(1e+21), "1e+21");
    EXPECT_EQ(numberText(0.1), "0.1");
    EXPECT_EQ(numberText(-0.0), "-0");
    EXPECT_EQ(numberText(1.0 / 3.0), "0.3333333333333333");
    EXPECT_EQ(numberText(1.0), "1");
    EXPECT_EQ(numberText(1e15), "1000000000000000");
    EXPECT_EQ(numberText(1e16), "1e+16");
    EXPECT_EQ(numberText(1234567890123456.0), "1234567890123456");
    EXPECT_EQ(numberText(12345678901234567.0), "1.234567890123457e+16");
    EXPECT_EQ(numberText(0.0001), "0.0001");
    EXPECT_EQ(numberText(std::numeric_limits<double>::infinity()), "inf");
    EXPECT_EQ(numberText(-std::numeric_limits<double>::infinity()), "-inf");
    EXPECT_EQ(numberText(std::numeric_limits<double>::quiet_NaN()), "nan");

    // The stream itself, at precision 16, is the reference; it keeps that precision.
    std::mt19937_64 random(7);
    std::ostringstream reference;
    reference.precision(16);
    std::ostringstream ours;
    std::vector<double> values;
    {
        JsonExporter out(ours);
        out.beginArray();
        for (int i = 0; i < 20000; ++i) {
            uint64_t bits = random();
            double value = 0;
            std::memcpy(&value, &bits, sizeof(value));
            if (i % 2) value = std::ldexp(static_cast<double>(bits >> 11), static_cast<int>(bits % 80) - 100);
            if (i % 3 == 0) value = static_cast<double>(static_cast<int64_t>(bits % 2000000) - 1000000) / 1000;
            values.push_back(value);
            out.addArrayItem();
            out.addNumber(value);
            reference << (i ? ",\n  " : "[\n  ") << value;
        }
        out.endArray();
        EXPECT_EQ(ours.precision(), 16);
    }
    reference << "\n]";
    EXPECT_EQ(ours.str(), reference.str());
}

TEST(JsonExporter, StringsAndIntegers) {
    std::ostringstream stream;
    {
        JsonExporter out(stream, JsonExporter::Options{false, true, false});
        out.beginArray();
        out.addArrayItem();
        out.addString("q\" b\\ \b\t\n\f\r \x01 / ' \xC3\xA9");
        out.addArrayItem();
        out.addString(std::string("cut\0here", 8));
        out.addArrayItem();
        out.addInteger(INT64_MIN);
        out.addArrayItem();
        out.addIntegerList({INT64_MAX, -1, 0});
        out.endArray();
    }
    EXPECT_EQ(stream.str(),
              "[\"q\\\" b\\\\ \\b\\t\\n\\f\\r \x01 / ' \xC3\xA9\",\"cut\",-9223372036854775808,"
              "[9223372036854775807, -1, 0]]");

    // What the reader refuses is still written unchanged.
    std::istringstream text("\"\xC3\xA9\"");
    JsonImporter in(text);
    EXPECT_FALSE(in.nextString());
}

TEST(JsonExporter, IntegerMaps) {
    std::ostringstream stream;
    {
        JsonExporter out(stream);
        out.addIntegerMapList({{{"a", 1}}, {}});
    }
    EXPECT_EQ(stream.str(), "[\n  {\n    \"a\": 1\n  },\n  {}\n]");
    std::istringstream text(stream.str());
    JsonImporter in(text);
    auto maps = in.nextIntegerMapList();
    ASSERT_TRUE(maps);
    ASSERT_EQ(maps->size(), 2u);
    EXPECT_EQ(maps->at(0).at("a"), 1);
}

TEST(JsonExporter, MisplacedCallsFail) {
    std::ostringstream stream;
    JsonExporter out(stream);
    auto message = [](auto call) -> std::string {
        try {
            call();
        } catch (const sorvane::RuntimeException& e) {
            return e.what();
        }
        return "no failure";
    };
    auto endsWith = [](const std::string& text, const std::string& tail) {
        return text.size() >= tail.size() && text.compare(text.size() - tail.size(), tail.size(), tail) == 0;
    };
    std::string text = message([&] { out.addObjectItem("k"); });
    EXPECT_TRUE(endsWith(text, "(): Not in an object")) << text;
    EXPECT_NE(text.find("JsonExporter.cpp:"), std::string::npos) << text;
    EXPECT_TRUE(endsWith(message([&] { out.addArrayItem(); }), "(): Not in an array"));
    EXPECT_TRUE(endsWith(message([&] { out.endObject(); }), "(): Not in an object"));
    EXPECT_TRUE(endsWith(message([&] { out.endArray(); }), "(): Not in an object"));
    out.beginArray();
    EXPECT_TRUE(endsWith(message([&] { out.addObjectItem(std::string("k")); }), "Not in an object"));
    EXPECT_TRUE(endsWith(message([&] { out.endObject(); }), "Not in an object"));
    out.beginObject();
    EXPECT_TRUE(endsWith(message([&] { out.addArrayItem(); }), "Not in an array"));
    EXPECT_TRUE(endsWith(message([&] { out.endArray(); }), "Not in an object"));
    out.endObject();
    out.endArray();
    out.flush();
    EXPECT_EQ(stream.str(), "[{}]");
}

TEST(JsonExporter, DebugLinesGoToStandardOutput) {
    std::ostringstream stream;
    JsonExporter::Options options;
    options.debug = true;
    testing::internal::CaptureStdout();
    {
        JsonExporter out(stream, options);
        out.beginObject();
        out.addObjectItem("a");
        out.beginArray();
        out.endArray();
        out.endObject();
    }
    std::string lines = testing::internal::GetCapturedStdout();
    EXPECT_EQ(lines,
              "beginObject(level=1, indent=1)\n"
              "beginArray(level=2, indent=2)\n"
              "endArray(level=2, indent=2, first=1)\n"
              "endObject(level=1, indent=1, first=0)\n");
    EXPECT_EQ(stream.str(), "{\n  \"a\": []\n}");
}

TEST(JsonExporter, LongStringsAndSmallStreams) {
    // A string longer than the output buffer, escapes on both sides of the
    // buffer's pieces, read back whole.
    std::string value;
    for (int i = 0; i < 100000; ++i) value += (i % 1000 == 999) ? "\"\n" : "ab";
    std::ostringstream stream;
    {
        JsonExporter out(stream);
        out.beginArray();
        for (int i = 0; i < 3; ++i) {
            out.addArrayItem();
            out.addString(value);
        }
        out.endArray();
    }
    std::istringstream text(stream.str());
    JsonImporter in(text);
    auto strings = in.nextStringList();  // blanks and line feeds between items are fine
    ASSERT_TRUE(strings);
    EXPECT_EQ(*strings, std::vector<std::string>(3, value));
    EXPECT_EQ(in.getLine(), 5);
}

// Integers at every digit-count boundary and at random, against the
// standard library; strings with each byte value at each position of an
// eight-byte word, against a byte-by-byte escape.
TEST(JsonExporter, IntegerDigitsAndStringWords) {
    std::vector<int64_t> values{0, INT64_MIN, INT64_MAX, INT64_MIN + 1};
    for (uint64_t power = 1; power <= uint64_t(INT64_MAX) / 10; power *= 10)
        for (int64_t v : {int64_t(power) - 1, int64_t(power), int64_t(power) + 1, int64_t(power * 10) - 1})
            values.insert(values.end(), {v, -v});
    std::mt19937_64 random(7);
    for (int i = 0; i < 2000; ++i) values.push_back(static_cast<int64_t>(random() >> (random() % 64)));
    std::ostringstream stream;
    {
        JsonExporter out(stream, JsonExporter::Options{false, true, false});
        out.addIntegerList(values);
    }
    std::string expected = "[";
    for (size_t i = 0; i < values.size(); ++i) expected += (i ? ", " : "") + std::to_string(values[i]);
    EXPECT_EQ(stream.str(), expected + "]");

    auto escaped = [](const std::string& text) {
        std::string out = "\"";
        for (char c : text) {
            switch (c) {
            case '"': out += "\\\""; break;
            case '\\': out += "\\\\"; break;
            case '\b': out += "\\b"; break;
            case '\t': out += "\\t"; break;
            case '\n': out += "\\n"; break;
            case '\f': out += "\\f"; break;
            case '\r': out += "\\r"; break;
            default: out += c;
            }
        }
        return out + "\"";
    };
    for (int byte = 1; byte < 256; ++byte) {
        for (size_t at = 0; at < 19; ++at) {
            std::string text(19, 'x');
            text[at] = static_cast<char>(byte);
            std::ostringstream one;
            {
                JsonExporter out(one);
                out.addString(text);
            }
            ASSERT_EQ(one.str(), escaped(text)) << "byte " << byte << " at " << at;
        }
    }
}
