// The cursor's scans (byte by byte, 16 and 32 bytes at a time) must read
// every text alike: same tokens, values, lines and failures. Random texts are
// read in place with each scan and through a stream in small pieces, and the
// traces compared; then random documents are loaded as nodes with each scan
// and their failure texts or written results compared.
#include <gtest/gtest.h>

#include <cstring>
#include <iostream>
#include <memory>
#include <random>
#include <sstream>
#include <streambuf>
#include <string>
#include <vector>

#include "sorvane/archive/JsonImporter.h"
#include "sorvane/arf/node/RootNode.h"

using sorvane::archive::JsonImporter;
using sorvane::archive::JsonScan;

namespace {

std::vector<JsonScan> scans() {
    std::vector<JsonScan> all{JsonScan::Scalar};
    for (JsonScan s : {JsonScan::Sse2, JsonScan::Avx2})
        if (static_cast<int>(s) <= static_cast<int>(JsonImporter::getBestScan())) all.push_back(s);
    return all;
}

const char* name(JsonScan scan) {
    return scan == JsonScan::Scalar ? "scalar" : scan == JsonScan::Sse2 ? "sse2" : "avx2";
}

// Hands the text over 1 to 5 bytes per block read, so every run meets the
// end of the buffer somewhere.
class Trickle : public std::streambuf {
public:
    explicit Trickle(const std::string& text) : text_(text) {}

protected:
    std::streamsize xsgetn(char* s, std::streamsize n) override {
        if (at_ >= text_.size()) return 0;
        const size_t size = std::min<size_t>({static_cast<size_t>(n), 1 + (count_++ % 5), text_.size() - at_});
        std::memcpy(s, text_.data() + at_, size);
        at_ += size;
        return static_cast<std::streamsize>(size);
    }

private:
    const std::string& text_;
    size_t at_ = 0;
    size_t count_ = 0;
};

// Every kind of call a reader makes, with its result and the line after it.
void walk(JsonImporter& in, std::string& trace, int depth) {
    if (depth > 40) {
        trace += in.skipContent(0, 0) ? "deep" : "deepfail";
        return;
    }
    std::string text;
    std::vector<int64_t> integers;
    if (in.nextBeginObject()) {
        trace += "{";
        while (in.nextObjectItem(text)) {
            trace += "k" + text + ":";
            walk(in, trace, depth + 1);
        }
        trace += in.nextEndObject() ? "}" : "!}";
    } else if (auto maps = in.peekIntegerMapList()) {
        in.flush();
        trace += "M" + std::to_string(maps->size());
        for (const auto& map : *maps)
            for (const auto& item : map) trace += "," + item.first + "=" + std::to_string(item.second);
    } else if (in.nextIntegerList(integers)) {
        trace += "I";
        for (int64_t v : integers) trace += "," + std::to_string(v);
    } else if (auto numbers = in.nextNumberList()) {
        trace += "N";
        char buffer[40];
        for (double v : *numbers) {
            std::snprintf(buffer, sizeof buffer, ",%.17g", v);
            trace += buffer;
        }
    } else if (auto strings = in.nextStringList()) {
        trace += "S";
        for (const auto& s : *strings) trace += "," + s;
    } else if (in.nextBeginArray()) {
        trace += "[";
        while (in.nextArrayItem()) walk(in, trace, depth + 1);
        trace += in.nextEndArray() ? "]" : "!]";
    } else if (in.nextString(text)) {
        trace += "s" + text;
    } else if (auto i = in.peekInteger()) {
        // Both readings of a number, then the integer's end.
        in.rollback();
        auto d = in.peekNumber();
        in.rollback();
        char buffer[48];
        std::snprintf(buffer, sizeof buffer, "i%lld/%.17g", static_cast<long long>(*i), d ? *d : -0.5);
        trace += buffer;
        in.nextInteger();
        trace += "+";
        trace += in.peek();
        in.rollback();
    } else if (in.nextNull()) {
        trace += "null";
    } else if (auto b = in.nextBoolean()) {
        trace += *b ? "true" : "false";
    } else {
        trace += in.skipContent(0, 0) ? "skip" : "fail";
        trace += static_cast<char>(in.next());
    }
    trace += "@" + std::to_string(in.getLine()) + ";";
}

std::string traceOf(JsonImporter& in) {
    std::string trace;
    for (int i = 0; i < 32; ++i) {
        in.skipSpaces();
        if (in.peek() == 0) break;
        in.rollback();
        walk(in, trace, 0);
    }
    trace += "end@" + std::to_string(in.getLine());
    return trace;
}

// Pieces of text that sit at the edges of every run the scans look for.
class TextMaker {
public:
    explicit TextMaker(uint32_t seed) : rng_(seed) {}

    std::string document() {
        std::string out;
        value(out, 0);
        // Now and then a broken end or a stray byte.
        switch (pick(8)) {
        case 0: out.resize(out.size() * pick(100) / 100); break;
        case 1: out.insert(pick(static_cast<uint32_t>(out.size()) + 1), 1, static_cast<char>(pick(256))); break;
        default: break;
        }
        return out;
    }

private:
    uint32_t pick(uint32_t n) { return n == 0 ? 0 : static_cast<uint32_t>(rng_() % n); }

    void blanks(std::string& out) {
        static const char kBlanks[] = {' ', ' ', ' ', '\n', '\t', '\r'};
        uint32_t n = pick(4) == 0 ? pick(40) : pick(3);
        for (uint32_t i = 0; i < n; ++i) out += kBlanks[pick(sizeof kBlanks)];
    }

    void string(std::string& out) {
        out += '"';
        const uint32_t length = pick(3) == 0 ? pick(80) : pick(20);
        for (uint32_t i = 0; i < length; ++i) {
            const uint32_t kind = pick(60);
            if (kind == 0) out += "\\n";
            else if (kind == 1) out += "\\\"";
            else if (kind == 2) out += "\\'";
            else if (kind == 3) out += pick(4) == 0 ? "\\u0041" : "\\t";
            else if (kind == 4 && pick(6) == 0) out += static_cast<char>(pick(32));          // control byte
            else if (kind == 5 && pick(6) == 0) out += static_cast<char>(0x80 + pick(128));  // high byte
            else out += static_cast<char>('a' + pick(26));
        }
        if (pick(30) != 0) out += '"';
    }

    void number(std::string& out) {
        if (pick(4) == 0) out += '-';
        const uint32_t digits = pick(5) == 0 ? pick(26) : 1 + pick(6);
        for (uint32_t i = 0; i < digits; ++i) out += static_cast<char>('0' + pick(10));
        if (pick(3) == 0) {
            out += '.';
            for (uint32_t i = pick(12); i > 0; --i) out += static_cast<char>('0' + pick(10));
        }
        if (pick(6) == 0) {
            out += pick(2) ? 'e' : 'E';
            if (pick(2)) out += pick(2) ? '+' : '-';
            for (uint32_t i = pick(4); i > 0; --i) out += static_cast<char>('0' + pick(10));
        }
    }

    void value(std::string& out, int depth) {
        blanks(out);
        const uint32_t kind = depth > 5 ? 3 + pick(5) : pick(8);
        if (kind == 0 || kind == 1) {
            out += '{';
            for (uint32_t n = pick(6), i = 0; i < n; ++i) {
                if (i) out += ',';
                blanks(out);
                string(out);
                blanks(out);
                out += ':';
                value(out, depth + 1);
            }
            blanks(out);
            if (pick(20) == 0) out += ',';
            out += '}';
        } else if (kind == 2) {
            out += '[';
            for (uint32_t n = pick(12), i = 0; i < n; ++i) {
                if (i) out += pick(2) ? ", " : ",\n    ";
                const uint32_t element = pick(4);
                if (element == 0) value(out, depth + 1);
                else if (element == 1) string(out);
                else number(out);
            }
            blanks(out);
            out += ']';
        } else if (kind == 3 || kind == 4) {
            number(out);
        } else if (kind == 5) {
            string(out);
        } else if (kind == 6) {
            out += pick(2) ? "true" : "nul";
        } else {
            out += pick(2) ? "false" : "null";
        }
        blanks(out);
    }

    std::mt19937 rng_;
};

} // namespace

TEST(JsonScan, KernelsFindEveryStopAtEveryPosition) {
    // A stop at each position up to 70, past the 16- and 32-byte steps.
    for (JsonScan scan : scans()) {
        for (const char stop : {'"', '\\', '\x1f', '\x80', '\xff', '\0'}) {
            for (size_t at = 0; at < 70; ++at) {
                std::string text = "\"" + std::string(at, 'x') + stop + "tail\"";
                JsonImporter in(text.data(), text.size());
                in.setScan(scan);
                std::string out;
                const bool ok = in.nextString(out);
                if (stop == '"') {
                    EXPECT_TRUE(ok && out == std::string(at, 'x')) << name(scan) << " at " << at;
                } else {
                    // A backslash before 't' is a tab; the other bytes end the string unread.
                    EXPECT_EQ(ok, stop == '\\') << name(scan) << " at " << at << " " << int(stop);
                    if (ok) {
                        EXPECT_EQ(out, std::string(at, 'x') + "\tail");
                    } else {
                        EXPECT_EQ(in.next(), '"');
                    }
                }
            }
        }
        // Blanks of any length before a value, numbers of any length after.
        for (size_t blanks = 0; blanks < 70; ++blanks) {
            for (size_t digits = 1; digits < 24; ++digits) {
                std::string number(digits, '7');
                std::string text = std::string(blanks, blanks % 3 == 0 ? '\n' : ' ') + number + ",";
                JsonImporter in(text.data(), text.size());
                in.setScan(scan);
                uint64_t expected = 0;
                for (size_t i = 0; i < digits; ++i) expected = expected * 10 + 7;  // wraps like the reader
                EXPECT_EQ(in.nextInteger(), static_cast<int64_t>(expected)) << name(scan) << " " << blanks << "/" << digits;
                EXPECT_EQ(in.next(), ',');
                EXPECT_EQ(in.getLine(), 1 + static_cast<int>(blanks % 3 == 0 ? blanks : 0));
            }
        }
    }
}

TEST(JsonScan, RandomTextsReadAlikeByEveryScan) {
    // Read in place with each scan, and through a trickling stream; the
    // scalar reading in place is the reference.
    for (uint32_t seed = 1; seed <= 400; ++seed) {
        TextMaker maker(seed);
        const std::string text = maker.document();
        std::string reference;
        for (JsonScan scan : scans()) {
            JsonImporter inPlace(text.data(), text.size());
            inPlace.setScan(scan);
            const std::string trace = traceOf(inPlace);
            if (reference.empty()) reference = trace;
            ASSERT_EQ(trace, reference) << "seed " << seed << ", " << name(scan) << " in place:\n" << text;
            Trickle pieces(text);
            std::istream stream(&pieces);
            JsonImporter streamed(stream);
            streamed.setScan(scan);
            ASSERT_EQ(traceOf(streamed), reference) << "seed " << seed << ", " << name(scan) << " streamed:\n" << text;
        }
    }
}

TEST(JsonScan, RandomDocumentsLoadAlikeByEveryScan) {
    // Records with known keys, unknown keys and broken values: the load
    // either fails with the same text or writes the same document.
    const char* const pieces[] = {
        R"("signature": "MPEG-ARF-2025")", R"("version": "1.0")", R"("name": "n\tm")", R"("id": 12345678901)",
        R"("age": 33.25)", R"("unknown": {"a": [1, 2, {"b": "c"}]})", R"("supportedAnimations": {"faceAnimations": ["urn:a", "urn:b"]})",
        R"("meshes": [1, 2, 3])", R"("name": "caf\u00e9")", R"("id": -)", R"("age": 1e400)", R"("gender": 7)",
        R"("lods": [{"meshes": [4, 5], "name": "lod", "id": 1}])", R"("x": "é")"};
    std::mt19937 rng(99);
    for (int round = 0; round < 300; ++round) {
        std::string text = "{\n  \"preamble\": {";
        for (int i = 0, n = static_cast<int>(rng() % 4); i < n; ++i)
            text += std::string(i ? ",\n    " : "\n    ") + pieces[rng() % 8];
        text += "\n  },\n  \"identity\": {";
        for (int i = 0, n = static_cast<int>(rng() % 4); i < n; ++i)
            text += std::string(i ? ", " : "") + pieces[2 + rng() % 12];
        text += "},\n  \"structure\": {\"assets\": [{";
        for (int i = 0, n = static_cast<int>(rng() % 3); i < n; ++i)
            text += std::string(i ? ", " : "") + pieces[rng() % 14];
        text += "}]}\n}";
        if (rng() % 4 == 0) text.resize(rng() % text.size());
        std::string reference;
        for (JsonScan scan : scans()) {
            std::string result;
            try {
                auto root = std::make_shared<sorvane::arf::RootNode>();
                JsonImporter in(text.data(), text.size());
                in.setScan(scan);
                std::stringstream quiet;
                std::streambuf* old = std::cerr.rdbuf(quiet.rdbuf());
                try {
                    root->fromJson(in);
                } catch (...) {
                    std::cerr.rdbuf(old);
                    throw;
                }
                std::cerr.rdbuf(old);
                result = "ok " + root->toJsonString() + "\n" + quiet.str();
            } catch (const std::exception& e) {
                result = std::string("error ") + e.what();
            }
            if (reference.empty()) reference = result;
            EXPECT_EQ(result, reference) << name(scan) << ":\n" << text;
        }
    }
}
