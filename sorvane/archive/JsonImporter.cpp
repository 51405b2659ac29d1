#include "sorvane/archive/JsonImporter.h"

#include <cerrno>
#include <clocale>
#include <cstdlib>
#include <cstring>

namespace sorvane::archive {

namespace {

// Blocks handed over by the stream; the buffer grows beyond this only while
// one look-ahead is longer than what fits.
constexpr size_t kBlock = 64 * 1024;
constexpr size_t kMinRead = 16 * 1024;

inline bool isBlank(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }
inline bool isDigit(char c) { return static_cast<unsigned char>(c - '0') < 10; }

// Exact powers of ten: every one up to 1e22 is a double without rounding.
constexpr double kPow10[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
                             1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};

// Converts a scanned number when the result is certain to match the correctly
// rounded conversion: at most 2^53 as mantissa and a power of ten that is
// exact, so one multiplication or division rounds once. Returns false when
// the slow conversion has to decide.
bool fastNumber(const char* p, const char* e, double& out) {
    bool negative = false;
    if (p < e && *p == '-') {
        negative = true;
        ++p;
    }
    uint64_t mantissa = 0;
    int digits = 0;  // significant digits taken into the mantissa
    int scale = 0;   // power of ten applied to the mantissa
    bool any = false;
    for (; p < e && isDigit(*p); ++p) {
        any = true;
        if (mantissa == 0 && *p == '0') continue;
        if (++digits > 19) return false;
        mantissa = mantissa * 10 + static_cast<uint64_t>(*p - '0');
    }
    if (p < e && *p == '.') {
        for (++p; p < e && isDigit(*p); ++p) {
            any = true;
            --scale;
            if (mantissa == 0 && *p == '0') continue;
            if (++digits > 19) return false;
            mantissa = mantissa * 10 + static_cast<uint64_t>(*p - '0');
        }
    }
    if (!any) return false;
    if (p < e) {  // exponent: the scanner guarantees 'e' or 'E' here
        ++p;
        bool negativeExponent = false;
        if (p < e && (*p == '+' || *p == '-')) negativeExponent = *p++ == '-';
        if (p == e) return false;
        int exponent = 0;
        for (; p < e; ++p) {
            if (exponent > 10000) return false;
            exponent = exponent * 10 + (*p - '0');
        }
        scale += negativeExponent ? -exponent : exponent;
    }
    if (mantissa > (uint64_t(1) << 53)) return false;
    double value = static_cast<double>(mantissa);
    if (mantissa != 0) {
        if (scale < -22 || scale > 22) return false;
        value = scale < 0 ? value / kPow10[-scale] : value * kPow10[scale];
    }
    out = negative ? -value : value;
    return true;
}

} // namespace

JsonImporter::JsonImporter(std::istream& stream) : stream_(stream) {
    const char* point = std::localeconv()->decimal_point;
    dotDecimal_ = point != nullptr && point[0] == '.' && point[1] == 0;
}

int32_t JsonImporter::getLine() const { return line_; }

bool JsonImporter::fill() {
    if (eof_) return false;
    if (begin_ == end_) {
        begin_ = pos_ = end_ = 0;
    } else if (begin_ > 0 && capacity_ - end_ < kMinRead) {
        // Move the uncommitted characters to the front; relative positions hold.
        std::memmove(data_.get(), data_.get() + begin_, end_ - begin_);
        pos_ -= begin_;
        end_ -= begin_;
        begin_ = 0;
    }
    if (capacity_ - end_ < kMinRead) {
        size_t capacity = capacity_ == 0 ? kBlock : capacity_ * 2;
        std::unique_ptr<char[]> data(new char[capacity]);
        if (end_ > 0) std::memcpy(data.get(), data_.get(), end_);
        data_ = std::move(data);
        capacity_ = capacity;
    }
    std::streambuf* buffer = stream_.rdbuf();
    std::streamsize got = 0;
    if (buffer != nullptr) got = buffer->sgetn(data_.get() + end_, static_cast<std::streamsize>(capacity_ - end_));
    if (got <= 0) {
        eof_ = true;
        return false;
    }
    end_ += static_cast<size_t>(got);
    return true;
}

// ---- low layer ----

char JsonImporter::next() {
    if (begin_ == end_ && !fill()) return 0;
    char c = data_[begin_];
    if (c == 0) return 0;
    ++begin_;
    if (pos_ < begin_) pos_ = begin_;
    if (c == '\n') ++line_;
    return c;
}

char JsonImporter::peek() {
    if (!avail()) return 0;
    char c = data_[pos_];
    if (c != 0) ++pos_;
    return c;
}

void JsonImporter::rollback() { pos_ = begin_; }

void JsonImporter::flush() {
    if (pos_ == begin_) return;
    const char* p = data_.get() + begin_;
    const char* e = data_.get() + pos_;
    int32_t lines = 0;
    for (; p < e; ++p) lines += *p == '\n';
    line_ += lines;
    begin_ = pos_;
}

void JsonImporter::skipBlanks() {
    while (avail()) {
        const char* p = data_.get() + pos_;
        const char* e = data_.get() + end_;
        while (p < e && isBlank(*p)) ++p;
        pos_ = static_cast<size_t>(p - data_.get());
        if (p < e) return;
    }
}

void JsonImporter::peekSpaces() { skipBlanks(); }

void JsonImporter::skipSpaces() {
    skipBlanks();
    flush();
}

bool JsonImporter::peekChar(char c) {
    size_t save = pos_ - begin_;
    if (peek() == c) return true;
    pos_ = begin_ + save;
    return false;
}

bool JsonImporter::nextChar(char c) {
    if (!peekChar(c)) return false;
    flush();
    return true;
}

// ---- value layer ----

bool JsonImporter::scanString(std::string& out) {
    size_t save = pos_ - begin_;
    skipBlanks();
    if (!avail() || data_[pos_] != '"') {
        pos_ = begin_ + save;
        return false;
    }
    ++pos_;
    out.clear();
    for (;;) {
        // Runs of plain characters go over in one piece.
        const char* start = data_.get() + pos_;
        const char* e = data_.get() + end_;
        const char* p = start;
        while (p < e && static_cast<signed char>(*p) >= 32 && *p != '"' && *p != '\\') ++p;
        out.append(start, static_cast<size_t>(p - start));
        pos_ = static_cast<size_t>(p - data_.get());
        if (p == e) {
            if (fill()) continue;
            break;  // end of the input inside the string
        }
        char c = *p;
        if (c == '"') {
            ++pos_;
            return true;
        }
        if (c != '\\') break;  // control character or a byte from 0x80 up
        ++pos_;
        if (!avail()) break;
        char escaped = data_[pos_++];
        switch (escaped) {
        case '\\':
        case '"':
        case '\'':
            out.push_back(escaped);
            break;
        case 'b':
            out.push_back('\b');
            break;
        case 'f':
            out.push_back('\f');
            break;
        case 'n':
            out.push_back('\n');
            break;
        case 'r':
            out.push_back('\r');
            break;
        case 't':
            out.push_back('\t');
            break;
        default:
            pos_ = begin_ + save;
            return false;
        }
    }
    pos_ = begin_ + save;
    return false;
}

bool JsonImporter::scanInteger(int64_t& out) {
    size_t save = pos_ - begin_;
    skipBlanks();
    if (!avail()) {
        pos_ = begin_ + save;
        return false;
    }
    bool negative = false;
    char c = data_[pos_];
    if (c == '-') {
        negative = true;
        ++pos_;
    } else if (!isDigit(c)) {
        pos_ = begin_ + save;
        return false;
    }
    // Wraps silently on overflow, as unsigned arithmetic does.
    uint64_t value = 0;
    for (;;) {
        const char* p = data_.get() + pos_;
        const char* e = data_.get() + end_;
        while (p < e && isDigit(*p)) value = value * 10 + static_cast<uint64_t>(*p++ - '0');
        pos_ = static_cast<size_t>(p - data_.get());
        if (p < e || !fill()) break;
    }
    out = static_cast<int64_t>(negative ? uint64_t(0) - value : value);
    return true;
}

bool JsonImporter::scanNumber(double& out) {
    size_t save = pos_ - begin_;
    skipBlanks();
    size_t start = pos_ - begin_;
    auto digits = [this] {
        for (;;) {
            const char* p = data_.get() + pos_;
            const char* e = data_.get() + end_;
            while (p < e && isDigit(*p)) ++p;
            pos_ = static_cast<size_t>(p - data_.get());
            if (p < e || !fill()) return;
        }
    };
    if (!avail() || !(isDigit(data_[pos_]) || data_[pos_] == '-')) {
        pos_ = begin_ + save;
        return false;
    }
    ++pos_;
    digits();
    if (avail() && data_[pos_] == '.') {
        ++pos_;
        digits();
    }
    if (avail() && (data_[pos_] == 'e' || data_[pos_] == 'E')) {
        ++pos_;
        if (!avail() || !(isDigit(data_[pos_]) || data_[pos_] == '+' || data_[pos_] == '-')) {
            pos_ = begin_ + save;
            return false;
        }
        ++pos_;
        digits();
    }
    const char* text = data_.get() + begin_ + start;
    const char* textEnd = data_.get() + pos_;
    if (dotDecimal_ && fastNumber(text, textEnd, out)) return true;
    // The converter needs a terminated copy: it must not read beyond the
    // scanned text (it would take hexadecimal or "inf" forms there).
    digits_.assign(text, textEnd);
    char* stop = nullptr;
    errno = 0;
    double value = std::strtod(digits_.c_str(), &stop);
    if (stop != digits_.c_str() + digits_.size() || errno == ERANGE) {
        pos_ = begin_ + save;
        return false;
    }
    out = value;
    return true;
}

bool JsonImporter::scanNull() {
    size_t save = pos_ - begin_;
    skipBlanks();
    for (const char* p = "null"; *p; ++p) {
        if (!avail() || data_[pos_] != *p) {
            pos_ = begin_ + save;
            return false;
        }
        ++pos_;
    }
    return true;
}

bool JsonImporter::scanBoolean(bool& out) {
    size_t save = pos_ - begin_;
    skipBlanks();
    if (!avail()) {
        pos_ = begin_ + save;
        return false;
    }
    const char* word = data_[pos_] == 't' ? "true" : "false";
    for (const char* p = word; *p; ++p) {
        if (!avail() || data_[pos_] != *p) {
            pos_ = begin_ + save;
            return false;
        }
        ++pos_;
    }
    out = word[0] == 't';
    return true;
}

bool JsonImporter::scanOpen(char c) {
    size_t save = pos_ - begin_;
    skipBlanks();
    if (avail() && data_[pos_] == c) {
        ++pos_;
        return true;
    }
    pos_ = begin_ + save;
    return false;
}

template <class T, class Scan>
bool JsonImporter::scanList(std::vector<T>& out, Scan scan) {
    size_t save = pos_ - begin_;
    out.clear();
    if (!scanOpen('[')) return false;
    skipBlanks();
    if (avail() && data_[pos_] == ']') {
        ++pos_;
        return true;
    }
    T value;
    for (;;) {
        skipBlanks();
        if (!scan(value)) break;
        out.push_back(std::move(value));
        skipBlanks();
        if (!avail()) break;
        char c = data_[pos_];
        if (c == ',') {
            ++pos_;
            continue;
        }
        if (c == ']') {
            ++pos_;
            return true;
        }
        break;
    }
    pos_ = begin_ + save;
    return false;
}

bool JsonImporter::scanIntegerMap(IntegerMap& out) {
    size_t save = pos_ - begin_;
    out.clear();
    if (!scanOpen('{')) return false;
    skipBlanks();
    if (avail() && data_[pos_] == '}') {
        ++pos_;
        return true;
    }
    for (;;) {
        skipBlanks();
        if (!scanString(key_)) break;
        skipBlanks();
        if (!avail() || data_[pos_] != ':') break;
        ++pos_;
        skipBlanks();
        int64_t value = 0;
        if (!scanInteger(value)) break;
        out[key_] = value;
        skipBlanks();
        if (!avail()) break;
        char c = data_[pos_];
        if (c == ',') {
            ++pos_;
            continue;
        }
        if (c == '}') {
            ++pos_;
            return true;
        }
        break;
    }
    pos_ = begin_ + save;
    return false;
}

std::optional<std::string> JsonImporter::peekString() {
    std::string value;
    if (!scanString(value)) return std::nullopt;
    return value;
}

std::optional<std::string> JsonImporter::nextString() {
    std::string value;
    if (!scanString(value)) return std::nullopt;
    flush();
    return value;
}

bool JsonImporter::nextString(std::string& out) {
    if (!scanString(out)) return false;
    flush();
    return true;
}

bool JsonImporter::peekNull() { return scanNull(); }

bool JsonImporter::nextNull() {
    if (!scanNull()) return false;
    flush();
    return true;
}

std::optional<bool> JsonImporter::peekBoolean() {
    bool value = false;
    if (!scanBoolean(value)) return std::nullopt;
    return value;
}

std::optional<bool> JsonImporter::nextBoolean() {
    bool value = false;
    if (!scanBoolean(value)) return std::nullopt;
    flush();
    return value;
}

std::optional<int64_t> JsonImporter::peekInteger() {
    int64_t value = 0;
    if (!scanInteger(value)) return std::nullopt;
    return value;
}

std::optional<int64_t> JsonImporter::nextInteger() {
    int64_t value = 0;
    if (!scanInteger(value)) return std::nullopt;
    flush();
    return value;
}

std::optional<double> JsonImporter::peekNumber() {
    double value = 0;
    if (!scanNumber(value)) return std::nullopt;
    return value;
}

std::optional<double> JsonImporter::nextNumber() {
    double value = 0;
    if (!scanNumber(value)) return std::nullopt;
    flush();
    return value;
}

std::optional<std::vector<std::string>> JsonImporter::peekStringList() {
    std::vector<std::string> values;
    if (!scanList(values, [this](std::string& v) { return scanString(v); })) return std::nullopt;
    return values;
}

std::optional<std::vector<std::string>> JsonImporter::nextStringList() {
    std::vector<std::string> values;
    if (!nextStringList(values)) return std::nullopt;
    return values;
}

bool JsonImporter::nextStringList(std::vector<std::string>& out) {
    if (!scanList(out, [this](std::string& v) { return scanString(v); })) return false;
    flush();
    return true;
}

std::optional<std::vector<int64_t>> JsonImporter::peekIntegerList() {
    std::vector<int64_t> values;
    if (!scanList(values, [this](int64_t& v) { return scanInteger(v); })) return std::nullopt;
    return values;
}

std::optional<std::vector<int64_t>> JsonImporter::nextIntegerList() {
    std::vector<int64_t> values;
    if (!nextIntegerList(values)) return std::nullopt;
    return values;
}

bool JsonImporter::nextIntegerList(std::vector<int64_t>& out) {
    if (!scanList(out, [this](int64_t& v) { return scanInteger(v); })) return false;
    flush();
    return true;
}

std::optional<std::vector<double>> JsonImporter::peekNumberList() {
    std::vector<double> values;
    if (!scanList(values, [this](double& v) { return scanNumber(v); })) return std::nullopt;
    return values;
}

std::optional<std::vector<double>> JsonImporter::nextNumberList() {
    std::vector<double> values;
    if (!nextNumberList(values)) return std::nullopt;
    return values;
}

bool JsonImporter::nextNumberList(std::vector<double>& out) {
    if (!scanList(out, [this](double& v) { return scanNumber(v); })) return false;
    flush();
    return true;
}

std::optional<JsonImporter::IntegerMap> JsonImporter::peekIntegerMap() {
    IntegerMap map;
    if (!scanIntegerMap(map)) return std::nullopt;
    return map;
}

std::optional<JsonImporter::IntegerMap> JsonImporter::nextIntegerMap() {
    IntegerMap map;
    if (!scanIntegerMap(map)) return std::nullopt;
    flush();
    return map;
}

std::optional<std::vector<JsonImporter::IntegerMap>> JsonImporter::peekIntegerMapList() {
    // Unlike the other lists, a failure goes back only to after the leading
    // blanks.
    skipBlanks();
    std::vector<IntegerMap> maps;
    if (!scanList(maps, [this](IntegerMap& m) { return scanIntegerMap(m); })) return std::nullopt;
    return maps;
}

std::optional<std::vector<JsonImporter::IntegerMap>> JsonImporter::nextIntegerMapList() {
    auto maps = peekIntegerMapList();
    if (maps) flush();
    return maps;
}

// ---- structure layer ----

bool JsonImporter::peekBeginObject() { return scanOpen('{'); }

bool JsonImporter::peekBeginArray() { return scanOpen('['); }

bool JsonImporter::nextBeginObject() {
    if (!scanOpen('{')) return false;
    flush();
    stack_.push_back(Item{0, true});
    return true;
}

bool JsonImporter::nextBeginArray() {
    if (!scanOpen('[')) return false;
    flush();
    stack_.push_back(Item{1, true});
    return true;
}

bool JsonImporter::nextObjectItem(std::string& key) {
    if (stack_.empty() || stack_.back().type != 0) return false;
    Item& item = stack_.back();
    if (item.first) {
        item.first = false;
    } else {
        skipSpaces();
        if (!nextChar(',')) return false;
    }
    skipSpaces();
    if (!nextString(key)) return false;
    skipSpaces();
    return nextChar(':');
}

std::optional<std::string> JsonImporter::nextObjectItem() {
    std::string key;
    if (!nextObjectItem(key)) return std::nullopt;
    return key;
}

bool JsonImporter::nextArrayItem() {
    if (stack_.empty() || stack_.back().type != 1) return false;
    Item& item = stack_.back();
    skipSpaces();
    char c = avail() ? data_[pos_] : 0;
    if (c == ']') return false;
    if (item.first) {
        item.first = false;
        return true;
    }
    if (c != ',') return false;
    ++pos_;
    flush();
    return true;
}

bool JsonImporter::nextEndObject() {
    if (stack_.empty() || stack_.back().type != 0) return false;
    stack_.pop_back();
    skipSpaces();
    return nextChar('}');
}

bool JsonImporter::nextEndArray() {
    if (stack_.empty() || stack_.back().type != 1) return false;
    stack_.pop_back();
    skipSpaces();
    return nextChar(']');
}

bool JsonImporter::skipContent(int64_t objects, int64_t arrays) {
    // Unsigned counters: hostile start values wrap instead of overflowing.
    uint64_t openObjects = static_cast<uint64_t>(objects);
    uint64_t openArrays = static_cast<uint64_t>(arrays);
    for (;;) {
        char c = avail() ? data_[pos_] : 0;
        switch (c) {
        case 0:
            return openObjects == 0 && openArrays == 0;
        case '[':
            ++openArrays;
            ++pos_;
            flush();
            break;
        case '{':
            ++openObjects;
            ++pos_;
            flush();
            break;
        case ']':
            if (openArrays == 0) {
                rollback();
                return true;
            }
            --openArrays;
            ++pos_;
            flush();
            if (openObjects == 0 && openArrays == 0) return true;
            break;
        case '}':
            if (openObjects == 0) {
                rollback();
                return true;
            }
            --openObjects;
            ++pos_;
            flush();
            if (openObjects == 0 && openArrays == 0) return true;
            break;
        case '"':
            rollback();
            if (!nextString(key_)) return false;
            break;
        case ',':
            if (openObjects == 0 && openArrays == 0) {
                rollback();
                return true;
            }
            ++pos_;
            flush();
            break;
        default:
            ++pos_;
            flush();
            break;
        }
    }
}

} // namespace sorvane::archive
