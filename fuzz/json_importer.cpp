// Arbitrary bytes through a generic walk driven by the JSON cursor, written
// again through the exporter. Checks on the way:
// - the same bytes handed over in small pieces read exactly as in one block,
//   and exactly as read in place, byte by byte or 16/32 bytes at a time;
// - what the walk writes, read and written once more, is stable.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <sstream>
#include <streambuf>
#include <string>

#include "sorvane/archive/JsonExporter.h"
#include "sorvane/archive/JsonImporter.h"
#include "sorvane/core/RuntimeException.h"

using sorvane::archive::JsonExporter;
using sorvane::archive::JsonImporter;

namespace {

class PieceBuffer : public std::streambuf {
public:
    PieceBuffer(const char* data, size_t size, size_t step) : data_(data), size_(size), step_(step) {}

protected:
    // A block read stops at the end of a piece too, so the reader refills
    // every few bytes and meets a boundary inside every kind of token.
    std::streamsize xsgetn(char* s, std::streamsize n) override {
        if (gptr() == egptr() && traits_type::eq_int_type(underflow(), traits_type::eof())) return 0;
        std::streamsize size = std::min<std::streamsize>(n, egptr() - gptr());
        std::memcpy(s, gptr(), static_cast<size_t>(size));
        gbump(static_cast<int>(size));
        return size;
    }

    int_type underflow() override {
        if (at_ >= size_) return traits_type::eof();
        size_t size = std::min(1 + (count_++ * step_) % 3, size_ - at_);
        std::memcpy(piece_, data_ + at_, size);
        at_ += size;
        setg(piece_, piece_, piece_ + size);
        return traits_type::to_int_type(piece_[0]);
    }

private:
    const char* data_;
    size_t size_;
    size_t step_;
    size_t at_ = 0;
    size_t count_ = 0;
    char piece_[3];
};

constexpr int kMaxDepth = 48;

void walk(JsonImporter& in, JsonExporter& out, int depth) {
    if (depth > kMaxDepth) {
        in.skipContent(0, 0);
        out.addNull();
        return;
    }
    std::string text;
    if (in.peekBeginObject()) {
        in.rollback();
        // An object of integers only is a map; anything else is walked. Maps
        // of several keys are walked too: their hash order isn't stable.
        if (auto map = in.peekIntegerMap(); map && map->size() <= 1) {
            in.rollback();
            if (in.nextIntegerMap()) {
                out.addIntegerMap(*map);
                return;
            }
            std::abort();  // a peek that succeeded must succeed again
        }
        in.rollback();
        if (!in.nextBeginObject()) std::abort();
        out.beginObject();
        while (in.nextObjectItem(text)) {
            out.addObjectItem(text);
            walk(in, out, depth + 1);
        }
        in.nextEndObject();
        out.endObject();
        return;
    }
    if (auto maps = in.peekIntegerMapList()) {
        bool small = std::all_of(maps->begin(), maps->end(), [](const auto& m) { return m.size() <= 1; });
        if (small) {
            in.flush();
            out.addIntegerMapList(*maps);
            return;
        }
    }
    in.rollback();
    std::vector<int64_t> integers;
    if (in.nextIntegerList(integers)) {
        out.addIntegerList(integers);
        return;
    }
    std::vector<double> numbers;
    if (in.nextNumberList(numbers)) {
        out.addNumberList(numbers);
        return;
    }
    std::vector<std::string> strings;
    if (in.nextStringList(strings)) {
        out.addStringList(strings);
        return;
    }
    if (in.nextBeginArray()) {
        out.beginArray();
        while (in.nextArrayItem()) {
            out.addArrayItem();
            walk(in, out, depth + 1);
        }
        in.nextEndArray();
        out.endArray();
        return;
    }
    if (in.nextString(text)) {
        out.addString(text);
        return;
    }
    if (auto integer = in.peekInteger()) {
        char c = in.peek();
        in.rollback();
        if (c == '.' || c == 'e' || c == 'E') {
            if (auto number = in.nextNumber()) {
                out.addNumber(*number);
                return;
            }
        } else {
            in.nextInteger();
            out.addInteger(*integer);
            return;
        }
    }
    if (in.nextNull()) {
        out.addNull();
        return;
    }
    if (auto flag = in.nextBoolean()) {
        out.addBoolean(*flag);
        return;
    }
    // Something the dialect doesn't take: skip it as an unknown key would.
    if (!in.skipContent(0, 0)) in.next();
    out.addNull();
}

// Walks the whole input as a sequence of values and returns what was written,
// with the line counter at the end.
// With `unwrap`, the text is one array written by an earlier round, whose
// items are walked at depth 0 as they were then.
std::string rewrite(JsonImporter& in, bool compact, bool unwrap);

std::string rewrite(std::istream& stream, bool compact, bool unwrap) {
    JsonImporter in(stream);
    return rewrite(in, compact, unwrap);
}

std::string rewrite(JsonImporter& in, bool compact, bool unwrap) {
    std::ostringstream written;
    {
        JsonExporter::Options options;
        options.compact = compact;
        JsonExporter out(written, options);
        out.beginArray();
        if (unwrap) {
            if (!in.nextBeginArray()) std::abort();
            while (in.nextArrayItem()) {
                out.addArrayItem();
                walk(in, out, 0);
            }
            if (!in.nextEndArray()) std::abort();
        }
        for (int i = 0; i < 64 && !unwrap; ++i) {
            in.skipSpaces();
            if (in.peek() == 0) break;
            in.rollback();
            out.addArrayItem();
            walk(in, out, 0);
            // Whatever stopped the value (a stray bracket or comma) goes.
            if (in.peekChar(',') || in.peekChar(']') || in.peekChar('}') || in.peekChar(':')) in.flush();
        }
        out.endArray();
    }
    std::string result = written.str();
    result += "\nline " + std::to_string(in.getLine());
    return result;
}

std::string rewriteText(const std::string& text, bool compact, bool unwrap) {
    std::istringstream stream(text);
    return rewrite(stream, compact, unwrap);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    try {
        const char* bytes = reinterpret_cast<const char*>(data);
        std::string whole = rewriteText(std::string(bytes, size), false, false);
        PieceBuffer pieces(bytes, size, 1 + size % 5);
        std::istream slow(&pieces);
        if (std::string again = rewrite(slow, false, false); again != whole) {
            std::fprintf(stderr, "pieces differ:\n%s\n----\n%s\n", whole.c_str(), again.c_str());
            std::abort();
        }

        // Read in place, byte by byte and with the widest scan: the same.
        for (sorvane::archive::JsonScan scan : {sorvane::archive::JsonScan::Scalar, JsonImporter::getBestScan()}) {
            JsonImporter inPlace(bytes, size);
            inPlace.setScan(scan);
            if (std::string again = rewrite(inPlace, false, false); again != whole) {
                std::fprintf(stderr, "in place (scan %d) differs:\n%s\n----\n%s\n", static_cast<int>(scan),
                             whole.c_str(), again.c_str());
                std::abort();
            }
        }

        // The rewritten text reads back to itself after one more round.
        std::string first = whole.substr(0, whole.rfind('\n'));
        std::string second = rewriteText(first, size % 2 == 0, true);
        second = second.substr(0, second.rfind('\n'));
        std::string third = rewriteText(second, size % 2 == 0, true);
        third = third.substr(0, third.rfind('\n'));
        if (second != third) {
            std::fprintf(stderr, "unstable rewrite:\n%s\n----\n%s\n----\n%s\n", first.c_str(), second.c_str(),
                         third.c_str());
            std::abort();
        }
    } catch (const sorvane::RuntimeException&) {
        // The exporter's own misuse texts; the walk keeps its calls in order.
        std::abort();
    }
    return 0;
}
