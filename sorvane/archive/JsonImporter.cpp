#include "sorvane/archive/JsonImporter.h"

#include <algorithm>
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

// A double holds every integer up to 2^53 exactly.
constexpr uint64_t kExactMantissa = uint64_t(1) << 53;

// Blank-free runs of digits, counted in 64 bits: more than 19 digits no
// longer fit and leave the value to the slow conversion.
struct Mantissa {
    uint64_t value = 0;
    int digits = 0;      // significant digits taken
    bool exact = true;   // all significant digits taken
    bool any = false;    // at least one digit seen
    void add(char c) {
        any = true;
        if (value == 0 && c == '0') return;
        if (digits == 19) {
            exact = false;
            return;
        }
        ++digits;
        value = value * 10 + static_cast<uint64_t>(c - '0');
    }
};

} // namespace

JsonImporter::JsonImporter(std::istream& stream) : stream_(stream) {
    const char* point = std::localeconv()->decimal_point;
    dotDecimal_ = point != nullptr && point[0] == '.' && point[1] == 0;
}

int32_t JsonImporter::getLine() const {
    countLines();
    return line_;
}

void JsonImporter::countLines() const {
    if (counted_ >= begin_) return;
    const char* p = data_.get() + counted_;
    const char* e = data_.get() + begin_;
    size_t lines = 0;
    // Eight bytes at a time: a byte of x is zero where a line feed was, and
    // the high bit of each byte of y is set exactly for those bytes.
    constexpr uint64_t kOnes = 0x0101010101010101ull;
    constexpr uint64_t kLow = 0x7f7f7f7f7f7f7f7full;
    for (; e - p >= 8; p += 8) {
        uint64_t word;
        std::memcpy(&word, p, 8);
        uint64_t x = word ^ (kOnes * '\n');
        uint64_t y = ~(((x & kLow) + kLow) | x | kLow);
        lines += static_cast<size_t>(__builtin_popcountll(y));
    }
    for (; p < e; ++p) lines += *p == '\n';
    // Wraps rather than overflows on an absurd number of lines.
    line_ = static_cast<int32_t>(static_cast<uint32_t>(line_) + static_cast<uint32_t>(lines));
    counted_ = begin_;
}

inline bool JsonImporter::take(char c) {
    if (!avail() || data_[pos_] != c) return false;
    ++pos_;
    return true;
}

bool JsonImporter::fill() {
    if (eof_) return false;
    if (begin_ == end_) {
        countLines();
        begin_ = pos_ = end_ = counted_ = 0;
    } else if (begin_ > 0 && capacity_ - end_ < kMinRead) {
        // Move the uncommitted characters to the front; relative positions hold.
        countLines();
        counted_ = 0;
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
    return c;
}

char JsonImporter::peek() {
    if (!avail()) return 0;
    char c = data_[pos_];
    if (c != 0) ++pos_;
    return c;
}

void JsonImporter::rollback() { pos_ = begin_; }

void JsonImporter::flush() { commit(); }

inline void JsonImporter::skipBlanks() {
    const char* base = data_.get();
    size_t at = pos_;
    while (at < end_ && isBlank(base[at])) ++at;
    pos_ = at;
    if (at == end_) skipBlanksSlow();
}

void JsonImporter::skipBlanksSlow() {
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
    commit();
}

bool JsonImporter::peekChar(char c) {
    size_t save = pos_ - begin_;
    if (peek() == c) return true;
    pos_ = begin_ + save;
    return false;
}

bool JsonImporter::nextChar(char c) {
    if (!peekChar(c)) return false;
    commit();
    return true;
}

// ---- value layer ----

inline bool JsonImporter::scanString(std::string& out) {
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

inline bool JsonImporter::scanInteger(int64_t& out) {
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

// Converts the scanned text: exactly, without the C library, when the
// mantissa fits in 53 bits and the power of ten is exact, since one
// multiplication or division then rounds once, as a correct conversion does.
inline bool JsonImporter::convertNumber(const char* text, const char* end, double& out) {
    if (dotDecimal_) {
        const char* p = text;
        bool negative = *p == '-';
        if (negative) ++p;
        Mantissa m;
        int scale = 0;
        for (; p < end && isDigit(*p); ++p) {
            m.add(*p);
            if (!m.exact) break;
        }
        if (m.exact && p < end && *p == '.') {
            for (++p; p < end && isDigit(*p); ++p) {
                m.add(*p);
                --scale;
                if (!m.exact) break;
            }
        }
        if (m.exact && m.any) {
            bool ok = true;
            if (p < end) {  // the exponent; the scanner left only e, a sign and digits
                ++p;
                bool negativeExponent = false;
                if (p < end && (*p == '+' || *p == '-')) negativeExponent = *p++ == '-';
                ok = p < end;
                int exponent = 0;
                for (; ok && p < end; ++p) {
                    exponent = exponent * 10 + (*p - '0');
                    ok = exponent < 100000;
                }
                scale += negativeExponent ? -exponent : exponent;
            }
            if (ok && m.value == 0) {
                out = negative ? -0.0 : 0.0;
                return true;
            }
            if (ok && m.value <= kExactMantissa && scale >= -22 && scale <= 22) {
                double value = static_cast<double>(m.value);
                value = scale < 0 ? value / kPow10[-scale] : value * kPow10[scale];
                out = negative ? -value : value;
                return true;
            }
        }
    }
    // The converter needs a terminated copy: it must not read beyond the
    // scanned text (it would take hexadecimal or "inf" forms there).
    digits_.assign(text, end);
    char* stop = nullptr;
    errno = 0;
    double value = std::strtod(digits_.c_str(), &stop);
    if (stop != digits_.c_str() + digits_.size() || errno == ERANGE) return false;
    out = value;
    return true;
}

inline bool JsonImporter::scanNumber(double& out) {
    // Fast path: the number and the character after it are in the buffer;
    // the grammar is checked and the digits gathered in one pass.
    size_t save = pos_ - begin_;
    skipBlanks();
    const char* base = data_.get();
    const char* p = base + pos_;
    const char* e = base + end_;
    const char* text = p;
    bool negative = false;
    if (p < e && *p == '-') {
        negative = true;
        ++p;
    } else if (p == e || !isDigit(*p)) {
        pos_ = begin_ + save;
        return false;
    }
    uint64_t mantissa = 0;
    const char* first = p;
    while (p < e && isDigit(*p)) mantissa = mantissa * 10 + static_cast<uint64_t>(*p++ - '0');
    size_t digits = static_cast<size_t>(p - first);
    int scale = 0;
    if (p < e && *p == '.') {
        const char* fraction = ++p;
        while (p < e && isDigit(*p)) mantissa = mantissa * 10 + static_cast<uint64_t>(*p++ - '0');
        digits += static_cast<size_t>(p - fraction);
        scale = -static_cast<int>(std::min<size_t>(static_cast<size_t>(p - fraction), 1000));
    }
    bool simple = true;  // no exponent
    if (p < e && (*p == 'e' || *p == 'E')) {
        simple = false;
        ++p;
        if (p < e && !(isDigit(*p) || *p == '+' || *p == '-')) {
            pos_ = begin_ + save;
            return false;
        }
        if (p < e) ++p;
        while (p < e && isDigit(*p)) ++p;
    }
    if (p == e && !eof_) {
        // The number may go on past the buffer.
        pos_ = begin_ + save;
        return scanNumberSlow(out);
    }
    // Up to 19 digits the mantissa is exact; see convertNumber.
    if (simple && dotDecimal_ && digits > 0 && digits <= 19 && mantissa <= kExactMantissa && scale >= -22) {
        double value = static_cast<double>(mantissa);
        if (scale < 0) value /= kPow10[-scale];
        out = negative ? -value : value;
    } else if (!convertNumber(text, p, out)) {
        pos_ = begin_ + save;
        return false;
    }
    pos_ = static_cast<size_t>(p - base);
    return true;
}

bool JsonImporter::scanNumberSlow(double& out) {
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
    if (!convertNumber(data_.get() + begin_ + start, data_.get() + pos_, out)) {
        pos_ = begin_ + save;
        return false;
    }
    return true;
}

inline bool JsonImporter::scanNull() {
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

inline bool JsonImporter::scanBoolean(bool& out) {
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

inline bool JsonImporter::scanOpen(char c) {
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
inline bool JsonImporter::scanList(std::vector<T>& out, Scan scan) {
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

inline bool JsonImporter::scanIntegerMap(IntegerMap& out) {
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
    commit();
    return value;
}

bool JsonImporter::nextString(std::string& out) {
    if (!scanString(out)) return false;
    commit();
    return true;
}

bool JsonImporter::peekNull() { return scanNull(); }

bool JsonImporter::nextNull() {
    if (!scanNull()) return false;
    commit();
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
    commit();
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
    commit();
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
    commit();
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
    commit();
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
    if (!scanList(integers_, [this](int64_t& v) { return scanInteger(v); })) return false;
    commit();
    out.assign(integers_.begin(), integers_.end());
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
    if (!scanList(numbers_, [this](double& v) { return scanNumber(v); })) return false;
    commit();
    out.assign(numbers_.begin(), numbers_.end());
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
    commit();
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
    if (maps) commit();
    return maps;
}

// ---- structure layer ----

bool JsonImporter::peekBeginObject() { return scanOpen('{'); }

bool JsonImporter::peekBeginArray() { return scanOpen('['); }

bool JsonImporter::nextBeginObject() {
    if (!scanOpen('{')) return false;
    commit();
    stack_.push_back(Item{0, true});
    return true;
}

bool JsonImporter::nextBeginArray() {
    if (!scanOpen('[')) return false;
    commit();
    stack_.push_back(Item{1, true});
    return true;
}

bool JsonImporter::nextObjectItem(std::string& key) {
    if (stack_.empty() || stack_.back().type != 0) return false;
    Item& item = stack_.back();
    if (item.first) {
        item.first = false;
    } else {
        skipBlanks();
        commit();
        if (!take(',')) return false;
        commit();
    }
    skipBlanks();
    commit();
    if (!scanString(key)) return false;
    commit();
    skipBlanks();
    commit();
    if (!take(':')) return false;
    commit();
    return true;
}

std::optional<std::string> JsonImporter::nextObjectItem() {
    std::string key;
    if (!nextObjectItem(key)) return std::nullopt;
    return key;
}

bool JsonImporter::nextArrayItem() {
    if (stack_.empty() || stack_.back().type != 1) return false;
    Item& item = stack_.back();
    skipBlanks();
    commit();
    char c = avail() ? data_[pos_] : 0;
    if (c == ']') return false;
    if (item.first) {
        item.first = false;
        return true;
    }
    if (c != ',') return false;
    ++pos_;
    commit();
    return true;
}

bool JsonImporter::nextEndObject() {
    if (stack_.empty() || stack_.back().type != 0) return false;
    stack_.pop_back();
    skipBlanks();
    commit();
    if (!take('}')) return false;
    commit();
    return true;
}

bool JsonImporter::nextEndArray() {
    if (stack_.empty() || stack_.back().type != 1) return false;
    stack_.pop_back();
    skipBlanks();
    commit();
    if (!take(']')) return false;
    commit();
    return true;
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
            commit();
            break;
        case '{':
            ++openObjects;
            ++pos_;
            commit();
            break;
        case ']':
            if (openArrays == 0) {
                pos_ = begin_;
                return true;
            }
            --openArrays;
            ++pos_;
            commit();
            if (openObjects == 0 && openArrays == 0) return true;
            break;
        case '}':
            if (openObjects == 0) {
                pos_ = begin_;
                return true;
            }
            --openObjects;
            ++pos_;
            commit();
            if (openObjects == 0 && openArrays == 0) return true;
            break;
        case '"':
            pos_ = begin_;
            if (!scanString(key_)) return false;
            commit();
            break;
        case ',':
            if (openObjects == 0 && openArrays == 0) {
                pos_ = begin_;
                return true;
            }
            ++pos_;
            commit();
            break;
        default:
            ++pos_;
            commit();
            break;
        }
    }
}

} // namespace sorvane::archive
