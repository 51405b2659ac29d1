#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "sorvane/archive/JsonExporter.h"
#include "sorvane/archive/StringSink.h"

using sorvane::archive::JsonExporter;
using sorvane::archive::StringSink;

// Pieces of odd sizes, single characters and formatted values across the
// 1 MiB piece boundaries come out whole and in order, in a string of the
// exact size.
TEST(StringSink, GathersAcrossPieces) {
    StringSink empty;
    EXPECT_EQ(empty.take(), "");

    StringSink shortText;
    shortText << "abc" << 12 << ' ';
    EXPECT_EQ(shortText.take(), "abc12 ");

    StringSink sink;
    std::ostringstream expected;
    std::string piece;
    for (int i = 0; i < 100003; ++i) piece.push_back(static_cast<char>('a' + i % 26));
    for (int round = 0; round < 40; ++round) {
        sink.write(piece.data(), static_cast<std::streamsize>(piece.size() - static_cast<size_t>(round)));
        expected.write(piece.data(), static_cast<std::streamsize>(piece.size() - static_cast<size_t>(round)));
        sink.put('#');
        expected.put('#');
        sink << round;
        expected << round;
    }
    const std::string text = sink.take();
    EXPECT_GT(text.size(), size_t(3) << 20);
    EXPECT_EQ(text.size(), expected.str().size());
    EXPECT_TRUE(text == expected.str());
}

// The writer gives the same bytes into the sink as into a string stream,
// for a text longer than one piece.
TEST(StringSink, SameTextAsAStringStream) {
    auto write = [](std::ostream& stream) {
        JsonExporter out(stream);
        out.beginArray();
        std::vector<int64_t> values(50, -1234567);
        for (int i = 0; i < 5000; ++i) {
            out.addArrayItem();
            out.beginObject();
            out.addObjectItem("name");
            out.addString("item \"" + std::to_string(i) + "\"\n");
            out.addObjectItem("values");
            out.addIntegerList(values);
            out.addObjectItem("weight");
            out.addNumber(i * 0.125);
            out.endObject();
        }
        out.endArray();
    };
    StringSink sink;
    std::ostringstream stream;
    write(sink);
    write(stream);
    const std::string text = sink.take();
    EXPECT_GT(text.size(), size_t(1) << 20);
    EXPECT_TRUE(text == stream.str());
}
