#include "sorvane/archive/JsonExporter.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <iostream>
#include <locale>

#include "sorvane/core/RuntimeException.h"

namespace sorvane::archive {

namespace {

constexpr int32_t kObject = 0;
constexpr int32_t kArray = 1;

// Bytes that a string can't hold as they are; all others are written raw.
inline bool needsEscape(unsigned char c) {
    return c == '\\' || c == '"' || c == 0 || c == 8 || c == 9 || c == 10 || c == 12 || c == 13;
}

// "00" to "99": integers are written two digits at a time.
struct DigitPairs {
    char text[200];
    constexpr DigitPairs() : text() {
        for (int i = 0; i < 100; ++i) {
            text[2 * i] = static_cast<char>('0' + i / 10);
            text[2 * i + 1] = static_cast<char>('0' + i % 10);
        }
    }
};
constexpr DigitPairs kDigitPairs;

constexpr uint64_t kPowers10[] = {1ull,
                                  10ull,
                                  100ull,
                                  1000ull,
                                  10000ull,
                                  100000ull,
                                  1000000ull,
                                  10000000ull,
                                  100000000ull,
                                  1000000000ull,
                                  10000000000ull,
                                  100000000000ull,
                                  1000000000000ull,
                                  10000000000000ull,
                                  100000000000000ull,
                                  1000000000000000ull,
                                  10000000000000000ull,
                                  100000000000000000ull,
                                  1000000000000000000ull,
                                  10000000000000000000ull};

// The decimal digits of v at out (at most 20); returns their end. The count
// comes first (from the bit length), so the pairs go in from the end with
// no reversal.
inline char* writeDecimal(char* out, uint64_t v) {
    if (v < 10) {
        *out = static_cast<char>('0' + v);
        return out + 1;
    }
    const unsigned guess = static_cast<unsigned>((64 - __builtin_clzll(v)) * 1233) >> 12;
    char* end = out + guess + (v >= kPowers10[guess] ? 1 : 0);
    char* p = end;
    while (v >= 100) {
        const uint64_t pair = v % 100;
        v /= 100;
        p -= 2;
        std::memcpy(p, kDigitPairs.text + 2 * pair, 2);
    }
    if (v >= 10) std::memcpy(p - 2, kDigitPairs.text + 2 * v, 2);
    else p[-1] = static_cast<char>('0' + v);
    return end;
}

// True when none of the eight bytes at p needs an escape: no byte below 14
// (the escaped controls and NUL are among them), no quote, no backslash.
// Bytes from 0x80 up are plain. Exact zero-byte tests, without false hits.
inline bool plainWord(const char* p) {
    uint64_t w;
    std::memcpy(&w, p, 8);
    constexpr uint64_t kOnes = 0x0101010101010101ull;
    constexpr uint64_t kHigh = 0x8080808080808080ull;
    constexpr uint64_t kLow = 0x7f7f7f7f7f7f7f7full;
    // A byte of `zero(x)` has its high bit set exactly where x's byte is 0.
    auto zero = [](uint64_t x) { return ~(((x & kLow) + kLow) | x | kLow); };
    // Bytes below 14 (high bit clear): adding 0x72 to the low seven bits
    // carries into bit 7 only from 14 up.
    const uint64_t small = ~(((w & kLow) + kOnes * 0x72) | w) & kHigh;
    return (small | zero(w ^ (kOnes * '"')) | zero(w ^ (kOnes * '\\'))) == 0;
}

} // namespace

JsonExporter::JsonExporter(std::ostream& stream) : JsonExporter(stream, Options()) {}

JsonExporter::JsonExporter(std::ostream& stream, const Options& options) : stream_(stream), options_(options) {
    // Numbers are formatted here as the stream would: that is the C locale's
    // form unless the stream carries a locale of its own.
    plainNumbers_ = stream_.getloc() == std::locale::classic();
}

JsonExporter::~JsonExporter() {
    try {
        flush();
    } catch (...) {
        // A stream that throws on failure must not end the program here.
    }
}

void JsonExporter::flush() {
    if (size_ == 0) return;
    size_t size = size_;
    size_ = 0;
    stream_.write(buffer_.get(), static_cast<std::streamsize>(size));
}

void JsonExporter::makeRoom(size_t n) {
    flush();
    if (capacity_ >= n) return;
    // Twice the flush size, so that flushing by size happens before the
    // buffer is full; more only for a single longer piece.
    capacity_ = std::max(n, 2 * kFlushSize);
    buffer_.reset(new char[capacity_]);
}

void JsonExporter::put(const char* text, size_t n) {
    std::memcpy(room(n), text, n);
    size_ += n;
}

void JsonExporter::indent() {
    size_t n = static_cast<size_t>(indent_) * 2;
    std::memset(room(n), ' ', n);
    size_ += n;
}

void JsonExporter::debugLine(const char* name, size_t level, bool withFirst, bool first) {
    // Keeps the order of both outputs when the JSON goes to the same stream.
    flush();
    std::cout << name << "(level=" << level << ", indent=" << indent_;
    if (withFirst) std::cout << ", first=" << (first ? 1 : 0);
    std::cout << ")" << std::endl;
}

void JsonExporter::beginObject() {
    put('{');
    stack_.push_back(Item{kObject, true});
    ++indent_;
    if (options_.debug) debugLine("beginObject", stack_.size(), false, false);
}

void JsonExporter::beginArray() {
    put('[');
    stack_.push_back(Item{kArray, true});
    ++indent_;
    if (options_.debug) debugLine("beginArray", stack_.size(), false, false);
}

void JsonExporter::close(int32_t type, char c, const char* name) {
    if (stack_.empty() || stack_.back().type != type) SORVANE_THROW("Not in an object");
    bool first = stack_.back().first;
    if (options_.debug) debugLine(name, stack_.size(), true, first);
    stack_.pop_back();
    --indent_;
    if (!first && !options_.compact) {
        put('\n');
        indent();
    }
    put(c);
    done();
}

void JsonExporter::endObject() { close(kObject, '}', "endObject"); }

void JsonExporter::endArray() { close(kArray, ']', "endArray"); }

void JsonExporter::separator(int32_t type) {
    if (stack_.empty() || stack_.back().type != type) {
        if (type == kObject) SORVANE_THROW("Not in an object");
        SORVANE_THROW("Not in an array");
    }
    Item& item = stack_.back();
    if (item.first) {
        item.first = false;
        if (!options_.compact) put('\n');
    } else if (options_.compact) {
        put(',');
    } else {
        put(",\n", 2);
    }
    if (!options_.compact) indent();
}

void JsonExporter::addObjectItem(const std::string& key) { addObjectItem(key.c_str()); }

void JsonExporter::addObjectItem(const char* key) {
    separator(kObject);
    appendString(key, std::strlen(key));
    if (options_.compact) {
        put(':');
    } else {
        put(": ", 2);
    }
}

void JsonExporter::addArrayItem() { separator(kArray); }

void JsonExporter::appendString(const char* value, size_t size) {
    put('"');
    const char* e = value + size;
    while (value < e) {
        // Pieces of bounded size, each with room for every byte escaped.
        size_t piece = std::min<size_t>(static_cast<size_t>(e - value), kFlushSize / 2);
        const char* pieceEnd = value + piece;
        char* out = room(2 * piece);
        char* start = out;
        for (; value < pieceEnd; ++value) {
            // Eight plain bytes at a time while there are eight.
            while (pieceEnd - value >= 8 && plainWord(value)) {
                std::memcpy(out, value, 8);
                out += 8;
                value += 8;
            }
            if (value == pieceEnd) break;
            unsigned char c = static_cast<unsigned char>(*value);
            if (!needsEscape(c)) {
                *out++ = static_cast<char>(c);
                continue;
            }
            if (c == 0) {  // a NUL ends the text
                e = value;
                break;
            }
            *out++ = '\\';
            switch (c) {
            case '\\':
                *out++ = '\\';
                break;
            case '"':
                *out++ = '"';
                break;
            case 8:
                *out++ = 'b';
                break;
            case 9:
                *out++ = 't';
                break;
            case 10:
                *out++ = 'n';
                break;
            case 12:
                *out++ = 'f';
                break;
            default:
                *out++ = 'r';
                break;
            }
        }
        size_ += static_cast<size_t>(out - start);
    }
    put('"');
}

void JsonExporter::addString(const std::string& value) {
    appendString(value.data(), value.size());
    done();
}

void JsonExporter::addString(const char* value) {
    appendString(value, std::strlen(value));
    done();
}

void JsonExporter::addBoolean(bool value) {
    if (value) {
        put("true", 4);
    } else {
        put("false", 5);
    }
    done();
}

void JsonExporter::addNull() {
    put("null", 4);
    done();
}

void JsonExporter::appendInteger(int64_t value) {
    char* out = room(24);
    char* p = out;
    uint64_t magnitude = static_cast<uint64_t>(value);
    if (value < 0) {
        *p++ = '-';
        magnitude = uint64_t(0) - magnitude;
    }
    size_ += static_cast<size_t>(writeDecimal(p, magnitude) - out);
}

void JsonExporter::appendNumber(double value) {
    if (!plainNumbers_) {
        // A stream with its own locale formats the number itself.
        flush();
        stream_ << value;
        return;
    }
    constexpr size_t kRoom = 40;
    char* out = room(kRoom);
    if (std::isfinite(value)) {
        // Same text as "%.16g" (up to 16 significant digits without trailing
        // zeros, exponent form below 1e-4 or from 1e16), without printf's cost.
        auto result = std::to_chars(out, out + kRoom, value, std::chars_format::general, 16);
        size_ += static_cast<size_t>(result.ptr - out);
    } else {
        int written = std::snprintf(out, kRoom, "%.16g", value);
        size_ += written > 0 ? static_cast<size_t>(written) : 0;
    }
}

void JsonExporter::addInteger(int64_t value) {
    appendInteger(value);
    done();
}

void JsonExporter::addNumber(double value) {
    stream_.precision(16);
    appendNumber(value);
    done();
}

void JsonExporter::addIntegerList(const std::vector<int64_t>& values) { addIntegerList(values.data(), values.size()); }

void JsonExporter::addIntegerList(const int64_t* values, size_t count) {
    put('[');
    for (size_t i = 0; i < count; ++i) {
        if (i > 0) put(", ", 2);
        appendInteger(values[i]);
    }
    put(']');
    done();
}

void JsonExporter::addNumberList(const std::vector<double>& values) {
    stream_.precision(16);
    put('[');
    for (size_t i = 0; i < values.size(); ++i) {
        if (i > 0) put(", ", 2);
        appendNumber(values[i]);
    }
    put(']');
    done();
}

void JsonExporter::addStringList(const std::vector<std::string>& values) {
    put('[');
    for (size_t i = 0; i < values.size(); ++i) {
        if (i > 0) put(", ", 2);
        appendString(values[i].data(), values[i].size());
    }
    put(']');
    done();
}

void JsonExporter::addIntegerMap(const IntegerMap& map) {
    beginObject();
    for (const auto& [key, value] : map) {
        addObjectItem(key);
        addInteger(value);
    }
    endObject();
}

void JsonExporter::addIntegerMapList(const std::vector<IntegerMap>& maps) {
    beginArray();
    for (const auto& map : maps) {
        addArrayItem();
        addIntegerMap(map);
    }
    endArray();
}

} // namespace sorvane::archive
