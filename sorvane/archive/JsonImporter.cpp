#include "sorvane/archive/JsonImporter.h"

#include <algorithm>
#include <cerrno>
#include <clocale>
#include <cstdlib>
#include <cstring>

#ifdef __SSE2__
#include <immintrin.h>
#endif

namespace sorvane::archive {

namespace {

// Blocks handed over by the stream; the buffer grows beyond this only while
// one look-ahead is longer than what fits.
constexpr size_t kBlock = 64 * 1024;
constexpr size_t kMinRead = 16 * 1024;

inline bool isBlank(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }
inline bool isDigit(char c) { return static_cast<unsigned char>(c - '0') < 10; }

// ---- scanning kernels ----
// Each finds the end of a run in [p, e) and returns a pointer to the first
// byte that does not belong to it (e if all do). The wide forms look at 16
// or 32 bytes at once while that many are left, then finish byte by byte, so
// none reads past e.

// A byte that ends a run of plain string characters: the quote, the
// backslash, and every byte that is below 32 as a signed value (control
// characters and all bytes from 0x80 up).
inline bool isStringStop(char c) { return static_cast<signed char>(c) < 32 || c == '"' || c == '\\'; }

inline const char* blankEndScalar(const char* p, const char* e) {
    while (p < e && isBlank(*p)) ++p;
    return p;
}

inline const char* stringStopScalar(const char* p, const char* e) {
    while (p < e && !isStringStop(*p)) ++p;
    return p;
}

inline const char* digitEndScalar(const char* p, const char* e) {
    while (p < e && isDigit(*p)) ++p;
    return p;
}

#ifdef __SSE2__
inline unsigned firstBit(unsigned mask) { return static_cast<unsigned>(__builtin_ctz(mask)); }

// Bit i set where byte i of v is a blank.
inline unsigned blankMask16(__m128i v) {
    const __m128i blanks = _mm_or_si128(_mm_or_si128(_mm_cmpeq_epi8(v, _mm_set1_epi8(' ')), _mm_cmpeq_epi8(v, _mm_set1_epi8('\n'))),
                                        _mm_or_si128(_mm_cmpeq_epi8(v, _mm_set1_epi8('\t')), _mm_cmpeq_epi8(v, _mm_set1_epi8('\r'))));
    return static_cast<unsigned>(_mm_movemask_epi8(blanks));
}

// Bit i set where byte i of v ends a plain string run; the signed compare
// takes every byte from 0x80 up as negative, as the rule wants.
inline unsigned stringStopMask16(__m128i v) {
    const __m128i stops = _mm_or_si128(_mm_or_si128(_mm_cmpeq_epi8(v, _mm_set1_epi8('"')), _mm_cmpeq_epi8(v, _mm_set1_epi8('\\'))),
                                       _mm_cmplt_epi8(v, _mm_set1_epi8(32)));
    return static_cast<unsigned>(_mm_movemask_epi8(stops));
}

// Bit i set where byte i of v is a digit.
inline unsigned digitMask16(__m128i v) {
    const __m128i shifted = _mm_sub_epi8(v, _mm_set1_epi8('0'));
    return static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi8(_mm_min_epu8(shifted, _mm_set1_epi8(9)), shifted)));
}

inline const char* blankEndSse2(const char* p, const char* e) {
    for (; e - p >= 16; p += 16) {
        const unsigned other = ~blankMask16(_mm_loadu_si128(reinterpret_cast<const __m128i*>(p))) & 0xFFFFu;
        if (other) return p + firstBit(other);
    }
    return blankEndScalar(p, e);
}

inline const char* stringStopSse2(const char* p, const char* e) {
    for (; e - p >= 16; p += 16) {
        const unsigned stops = stringStopMask16(_mm_loadu_si128(reinterpret_cast<const __m128i*>(p)));
        if (stops) return p + firstBit(stops);
    }
    return stringStopScalar(p, e);
}

#if defined(__x86_64__) && (defined(__GNUC__) || defined(__clang__))
#define SORVANE_JSON_AVX2 1
__attribute__((target("avx2"))) const char* stringStopAvx2(const char* p, const char* e) {
    for (; e - p >= 32; p += 32) {
        const __m256i v = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(p));
        const __m256i stops = _mm256_or_si256(
            _mm256_or_si256(_mm256_cmpeq_epi8(v, _mm256_set1_epi8('"')), _mm256_cmpeq_epi8(v, _mm256_set1_epi8('\\'))),
            _mm256_cmpgt_epi8(_mm256_set1_epi8(32), v));
        const unsigned mask = static_cast<unsigned>(_mm256_movemask_epi8(stops));
        if (mask) return p + firstBit(mask);
    }
    return stringStopSse2(p, e);
}
#endif
#endif

// Up to 8 digits at p as a number, p holding at least 8 readable bytes of
// which the first n (1 to 8) are digits: the digits are moved to the top of
// one word and combined in pairs, fours and eights.
inline uint64_t eightDigits(const char* p, unsigned n) {
    uint64_t v;
    std::memcpy(&v, p, 8);
    // Borrows run towards the high bytes only, which the shift drops.
    v -= 0x3030303030303030ull;
    v <<= 8 * (8 - n);
    v = v * 10 + (v >> 8);
    v = (((v & 0x000000FF000000FFull) * (100 + (1000000ull << 32))) +
         (((v >> 16) & 0x000000FF000000FFull) * (1 + (10000ull << 32)))) >>
        32;
    return v;
}

constexpr uint64_t kPow10Integer[] = {1ull,         10ull,         100ull,         1000ull,         10000ull,
                                      100000ull,    1000000ull,    10000000ull,    100000000ull,    1000000000ull,
                                      10000000000ull, 100000000000ull, 1000000000000ull, 10000000000000ull,
                                      100000000000000ull, 1000000000000000ull, 10000000000000000ull};

// Blank runs are short (an indentation at most), so 16 bytes at a time is
// as wide as pays; a plain string run may be a long "data:" uri.
inline const char* blankEnd(JsonScan scan, const char* p, const char* e) {
#ifdef __SSE2__
    if (scan != JsonScan::Scalar) return blankEndSse2(p, e);
#else
    (void)scan;
#endif
    return blankEndScalar(p, e);
}

inline const char* stringStop(JsonScan scan, const char* p, const char* e) {
#ifdef __SSE2__
    if (scan != JsonScan::Scalar) {
        if (e - p >= 16) {
            const unsigned stops = stringStopMask16(_mm_loadu_si128(reinterpret_cast<const __m128i*>(p)));
            if (stops) return p + firstBit(stops);
            p += 16;
        }
#ifdef SORVANE_JSON_AVX2
        if (scan == JsonScan::Avx2) return stringStopAvx2(p, e);
#endif
        return stringStopSse2(p, e);
    }
#else
    (void)scan;
#endif
    return stringStopScalar(p, e);
}

// Adds the digits at p to value as value * 10 + digit does, wrapping the
// same way, and returns the end of the digits.
inline const char* takeDigits(JsonScan scan, const char* p, const char* e, uint64_t& value) {
#ifdef __SSE2__
    if (scan != JsonScan::Scalar) {
        while (e - p >= 16) {
            const unsigned other = ~digitMask16(_mm_loadu_si128(reinterpret_cast<const __m128i*>(p))) & 0xFFFFu;
            const unsigned n = other ? firstBit(other) : 16;
            if (n == 0) return p;
            const uint64_t chunk =
                n <= 8 ? eightDigits(p, n) : eightDigits(p, 8) * kPow10Integer[n - 8] + eightDigits(p + 8, n - 8);
            value = value * kPow10Integer[n] + chunk;
            p += n;
            if (n < 16) return p;
        }
    }
#else
    (void)scan;
#endif
    while (p < e && isDigit(*p)) value = value * 10 + static_cast<uint64_t>(*p++ - '0');
    return p;
}

// The digits at p as takeDigits adds them to zero; most integers are short
// and end within the next 16 bytes, which one look finds.
inline const char* integerDigits(JsonScan scan, const char* p, const char* e, uint64_t& value) {
    value = 0;
#ifdef __SSE2__
    if (scan != JsonScan::Scalar && e - p >= 16) {
        const unsigned other = ~digitMask16(_mm_loadu_si128(reinterpret_cast<const __m128i*>(p))) & 0xFFFFu;
        if (other) {
            const unsigned n = firstBit(other);
            if (n > 0)
                value = n <= 8 ? eightDigits(p, n) : eightDigits(p, 8) * kPow10Integer[n - 8] + eightDigits(p + 8, n - 8);
            return p + n;
        }
    }
#endif
    return takeDigits(scan, p, e, value);
}

// The end of the blanks at p; most tokens follow none or a single one.
inline const char* blanksAt(JsonScan scan, const char* p, const char* e) {
    if (p < e && !isBlank(*p)) return p;
    if (e - p >= 2 && !isBlank(p[1])) return p + 1;
    return blankEnd(scan, p, e);
}

// Exact powers of ten: every one up to 1e22 is a double without rounding.
constexpr double kPow10[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
                             1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};

// A double holds every integer up to 2^53 exactly.
constexpr uint64_t kExactMantissa = uint64_t(1) << 53;

// 5^q for every q a decimal exponent of a normal double can need, truncated
// to 128 bits: high * 2^64 + low has its top bit set, and
// (high * 2^64 + low) * 2^exponent <= 5^q < (high * 2^64 + low + 1) * 2^exponent.
struct Power5 {
    uint64_t high;
    uint64_t low;
    int32_t exponent;
};
constexpr int kPower5Low = -342;
constexpr int kPower5High = 308;
constexpr Power5 kPower5[] = {
#include "sorvane/archive/JsonPowers.inc"
};
static_assert(sizeof(kPower5) / sizeof(kPower5[0]) == kPower5High - kPower5Low + 1, "one power per exponent");

// w * 10^q rounded to the nearest double, ties to even, when that is a
// normal double and the rounding is certain; false otherwise (zero, results
// that are subnormal or infinite, exponents out of the table, and products too
// close to a rounding boundary), and the caller asks the C library.
// w * 10^q = w * 5^q * 2^q; with W = w shifted to a top bit, X = W * T is
// a 192-bit product of which the top 54 bits give the mantissa and the round
// bit. T is exact for 0 <= q <= 55; otherwise the true product lies in
// (X, X + W), which decides the rounding unless adding less than W could
// carry into the round bit.
inline bool nearestDouble(uint64_t w, int64_t q, double& out) {
    if (w == 0 || q < kPower5Low || q > kPower5High) return false;
    const Power5& t = kPower5[q - kPower5Low];
    const int shift = __builtin_clzll(w);
    const uint64_t W = w << shift;
    const unsigned __int128 upper = static_cast<unsigned __int128>(W) * t.high;
    const unsigned __int128 lower = static_cast<unsigned __int128>(W) * t.low;
    const unsigned __int128 top = upper + (lower >> 64);  // below 2^128: no overflow
    const uint64_t hi = static_cast<uint64_t>(top >> 64);
    const uint64_t mid = static_cast<uint64_t>(top);
    const uint64_t lo = static_cast<uint64_t>(lower);
    // X lies in [2^190, 2^192): hi has its top bit at 63 or 62.
    const int cut = 10 + static_cast<int>(hi >> 63);  // bits of hi below the 53 kept
    const uint64_t restMask = (uint64_t(1) << (cut - 1)) - 1;
    const uint64_t rest = hi & restMask;
    const bool roundBit = (hi >> (cut - 1)) & 1;
    uint64_t mantissa = hi >> cut;  // 53 bits
    const bool exact = q >= 0 && q <= 55;
    if (!exact && rest == restMask && mid == ~uint64_t(0) && lo + W < lo) return false;
    // The lowest bit of mantissa weighs 2^e2.
    int64_t e2 = 128 + cut + t.exponent + q - shift;
    int64_t biased = e2 + 52 + 1023;
    // Below the normal range before rounding: the C library's underflow rules
    // (and its errno) apply.
    if (biased < 1) return false;
    bool up = false;
    if (roundBit) up = !exact || rest != 0 || mid != 0 || lo != 0 || (mantissa & 1) != 0;
    mantissa += up ? 1 : 0;
    if (mantissa == uint64_t(1) << 53) {
        mantissa >>= 1;
        ++biased;
    }
    if (biased > 2046) return false;
    const uint64_t bits = (static_cast<uint64_t>(biased) << 52) | (mantissa & ((uint64_t(1) << 52) - 1));
    std::memcpy(&out, &bits, sizeof out);
    return true;
}

// The value of a scanned number (an optional '-', digits with an optional
// fraction, an optional exponent), correctly rounded, without the C library
// where that can be done for sure; false leaves the text to strtod, which
// also judges every malformed text.
inline bool decimalToDouble(const char* p, const char* end, double& out) {
    const bool negative = p < end && *p == '-';
    if (negative) ++p;
    // Up to 19 significant digits go into w; the scale counts the places of
    // the digits dropped after them or taken after the point.
    uint64_t w = 0;
    int significant = 0;
    int64_t scale = 0;
    bool dropped = false;  // a non-zero digit beyond the 19th
    bool any = false;
    for (; p < end && isDigit(*p); ++p) {
        any = true;
        if (significant < 19) {
            if (w == 0 && *p == '0') continue;
            w = w * 10 + static_cast<uint64_t>(*p - '0');
            ++significant;
        } else {
            dropped |= *p != '0';
            ++scale;
        }
    }
    if (p < end && *p == '.') {
        for (++p; p < end && isDigit(*p); ++p) {
            any = true;
            if (significant < 19) {
                --scale;
                if (w == 0 && *p == '0') continue;
                w = w * 10 + static_cast<uint64_t>(*p - '0');
                ++significant;
            } else {
                dropped |= *p != '0';
            }
        }
    }
    if (!any) return false;
    if (p < end && (*p == 'e' || *p == 'E')) {
        ++p;
        bool negativeExponent = false;
        if (p < end && (*p == '+' || *p == '-')) negativeExponent = *p++ == '-';
        if (p == end) return false;
        int64_t exponent = 0;
        for (; p < end && isDigit(*p); ++p) {
            exponent = exponent * 10 + (*p - '0');
            if (exponent >= 100000) return false;  // far out of range either way
        }
        scale += negativeExponent ? -exponent : exponent;
    }
    if (p != end) return false;
    if (w == 0) {
        out = negative ? -0.0 : 0.0;
        return true;
    }
    double value = 0;
    if (!dropped && w <= kExactMantissa && scale >= -22 && scale <= 22) {
        // One exact operand and one rounding: the correct result.
        value = static_cast<double>(w);
        value = scale < 0 ? value / kPow10[-scale] : value * kPow10[scale];
    } else if (!nearestDouble(w, scale, value)) {
        return false;
    } else if (dropped) {
        // The true value lies between w and w + 1 units: sure only when both
        // round alike.
        double above = 0;
        if (!nearestDouble(w + 1, scale, above) || above != value) return false;
    }
    out = negative ? -value : value;
    return true;
}

// Converts the scanned text, without the C library when the result is sure.
// The C library needs a terminated copy (scratch): it must not read beyond
// the scanned text (it would take hexadecimal or "inf" forms there).
bool convertText(bool dotDecimal, std::string& scratch, const char* text, const char* end, double& out) {
    if (dotDecimal && decimalToDouble(text, end, out)) return true;
    scratch.assign(text, end);
    char* stop = nullptr;
    errno = 0;
    double value = std::strtod(scratch.c_str(), &stop);
    if (stop != scratch.c_str() + scratch.size() || errno == ERANGE) return false;
    out = value;
    return true;
}

// What reading a number needs of the importer.
struct NumberText {
    JsonScan scan;
    bool eof;
    bool dotDecimal;
    std::string& scratch;

    // The number at p: the grammar is checked and the digits gathered in one
    // pass. Returns its end, null when the text there is no number, or e when
    // the number reaches e and more text may follow (nothing converted then).
    const char* read(const char* p, const char* e, double& out) const {
        const char* text = p;
        bool negative = false;
        if (p < e && *p == '-') {
            negative = true;
            ++p;
        } else if (p == e || !isDigit(*p)) {
            return nullptr;
        }
        uint64_t mantissa = 0;
        const char* first = p;
        if (e - p >= 2 && p[1] == '.' && isDigit(*p)) {
            // Most fractions have a one-digit whole part.
            mantissa = static_cast<uint64_t>(*p++ - '0');
        } else {
            p = integerDigits(scan, p, e, mantissa);
        }
        size_t digits = static_cast<size_t>(p - first);
        int scale = 0;
        if (p < e && *p == '.') {
            const char* fraction = ++p;
            p = takeDigits(scan, p, e, mantissa);
            digits += static_cast<size_t>(p - fraction);
            scale = -static_cast<int>(std::min<size_t>(static_cast<size_t>(p - fraction), 1000));
        }
        bool simple = true;  // no exponent
        if (p < e && (*p == 'e' || *p == 'E')) {
            simple = false;
            ++p;
            if (p < e && !(isDigit(*p) || *p == '+' || *p == '-')) return nullptr;
            if (p < e) ++p;
            while (p < e && isDigit(*p)) ++p;
        }
        if (p == e && !eof) return e;
        if (digits > 19 && simple) {
            // Leading zeros ("0.000123...") add nothing to the mantissa.
            for (const char* z = first; z < p && (*z == '0' || *z == '.') && digits > 0; ++z) digits -= *z == '0';
        }
        // Up to 19 digits the mantissa is exact, and one exact operand and one
        // rounding give the correct result; the rest goes to convertText.
        if (simple && dotDecimal && digits > 0 && digits <= 19 && mantissa <= kExactMantissa && scale >= -22) {
            double value = static_cast<double>(mantissa);
            if (scale < 0) value /= kPow10[-scale];
            out = negative ? -value : value;
        } else if (!convertText(dotDecimal, scratch, text, p, out)) {
            return nullptr;
        }
        return p;
    }
};

// A list of integers or numbers that lies whole in [p, e), read with local
// pointers. Returns the end of the list, or null as soon as anything is
// unusual (the end of the buffer, a malformed item): the general reading then
// takes the list from its start and decides.
template <class T, class Value>
inline const char* listAt(JsonScan scan, const char* p, const char* e, std::vector<T>& out, Value value) {
    p = blanksAt(scan, p, e);
    if (p == e || *p != '[') return nullptr;
    p = blanksAt(scan, p + 1, e);
    if (p == e) return nullptr;
    out.clear();
    if (*p != ']') {
        for (;;) {
            T item;
            p = value(p, e, item);
            if (p == nullptr || p == e) return nullptr;
            out.push_back(item);
            char c = *p;
            if (c != ',' && c != ']') {
                p = blanksAt(scan, p, e);
                if (p == e) return nullptr;
                c = *p;
            }
            if (c != ',') break;
            p = blanksAt(scan, p + 1, e);
            if (p == e) return nullptr;
        }
        if (*p != ']') return nullptr;
    }
    return p + 1;
}

inline const char* integerListAt(JsonScan scan, const char* p, const char* e, std::vector<int64_t>& out) {
    return listAt(scan, p, e, out, [scan](const char* q, const char* end, int64_t& item) -> const char* {
        bool negative = *q == '-';
        if (negative) {
            ++q;
        } else if (!isDigit(*q)) {
            return nullptr;
        }
        uint64_t value = 0;
        q = integerDigits(scan, q, end, value);
        item = static_cast<int64_t>(negative ? uint64_t(0) - value : value);
        return q;
    });
}

inline const char* numberListAt(const NumberText& numbers, const char* p, const char* e, std::vector<double>& out) {
    return listAt(numbers.scan, p, e, out,
                  [&numbers](const char* q, const char* end, double& item) { return numbers.read(q, end, item); });
}

} // namespace

JsonImporter::JsonImporter(std::istream& stream) : stream_(&stream), scan_(getBestScan()) {
    const char* point = std::localeconv()->decimal_point;
    dotDecimal_ = point != nullptr && point[0] == '.' && point[1] == 0;
}

JsonImporter::JsonImporter(const char* text, size_t size) : scan_(getBestScan()) {
    const char* point = std::localeconv()->decimal_point;
    dotDecimal_ = point != nullptr && point[0] == '.' && point[1] == 0;
    // Only read through this pointer: fill() writes into storage_ alone.
    data_ = const_cast<char*>(text);
    end_ = text ? size : 0;
    capacity_ = end_;
    eof_ = true;
}

JsonScan JsonImporter::getBestScan() {
#if defined(__x86_64__) && (defined(__GNUC__) || defined(__clang__))
    static const JsonScan best = __builtin_cpu_supports("avx2") ? JsonScan::Avx2 : JsonScan::Sse2;
    return best;
#elif defined(__SSE2__)
    return JsonScan::Sse2;
#else
    return JsonScan::Scalar;
#endif
}

void JsonImporter::setScan(JsonScan scan) {
    scan_ = static_cast<int32_t>(scan) <= static_cast<int32_t>(getBestScan()) && static_cast<int32_t>(scan) >= 0
                ? scan
                : getBestScan();
}

int32_t JsonImporter::getLine() const {
    countLines();
    return line_;
}

void JsonImporter::countLines() const {
    if (counted_ >= begin_) return;
    const char* p = data_ + counted_;
    const char* e = data_ + begin_;
    size_t lines = 0;
#ifdef __SSE2__
    // Sixteen bytes at a time: compare, keep 1 per line feed, add up bytewise
    // for at most 255 rounds, then sum the bytes.
    const __m128i feed = _mm_set1_epi8('\n');
    const __m128i one = _mm_set1_epi8(1);
    while (e - p >= 16) {
        __m128i counts = _mm_setzero_si128();
        for (int round = 0; round < 255 && e - p >= 16; ++round, p += 16) {
            __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
            counts = _mm_add_epi8(counts, _mm_and_si128(_mm_cmpeq_epi8(bytes, feed), one));
        }
        __m128i sums = _mm_sad_epu8(counts, _mm_setzero_si128());
        lines += static_cast<size_t>(_mm_cvtsi128_si64(sums)) +
                 static_cast<size_t>(_mm_cvtsi128_si64(_mm_unpackhi_epi64(sums, sums)));
    }
#endif
    // Eight bytes at a time: a byte of x is zero where a line feed was, and
    // the high bit of each byte of y is set exactly for those bytes.
    constexpr uint64_t kOnes = 0x0101010101010101ull;
    constexpr uint64_t kLow = 0x7f7f7f7f7f7f7f7full;
    for (; e - p >= 8; p += 8) {
        uint64_t word;
        std::memcpy(&word, p, 8);
        uint64_t x = word ^ (kOnes * '\n');
        uint64_t y = ~(((x & kLow) + kLow) | x | kLow) >> 7;
        lines += static_cast<size_t>((y * kOnes) >> 56);  // sums the eight 0/1 bytes
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
        std::memmove(data_, data_ + begin_, end_ - begin_);
        pos_ -= begin_;
        end_ -= begin_;
        begin_ = 0;
    }
    if (capacity_ - end_ < kMinRead) {
        size_t capacity = capacity_ == 0 ? kBlock : capacity_ * 2;
        std::unique_ptr<char[]> data(new char[capacity]);
        if (end_ > 0) std::memcpy(data.get(), data_, end_);
        storage_ = std::move(data);
        data_ = storage_.get();
        capacity_ = capacity;
    }
    std::streambuf* buffer = stream_ ? stream_->rdbuf() : nullptr;
    std::streamsize got = 0;
    if (buffer != nullptr) got = buffer->sgetn(data_ + end_, static_cast<std::streamsize>(capacity_ - end_));
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
    const char* p = data_ + pos_;
    const char* e = data_ + end_;
    // Most tokens follow no blank or a single one.
    if (p < e && !isBlank(*p)) return;
    if (e - p >= 2 && !isBlank(p[1])) {
        ++pos_;
        return;
    }
    p = blankEnd(scan_, p, e);
    pos_ = static_cast<size_t>(p - data_);
    if (p == e) skipBlanksSlow();
}

void JsonImporter::skipBlanksSlow() {
    while (avail()) {
        const char* p = data_ + pos_;
        const char* e = data_ + end_;
        p = blankEnd(scan_, p, e);
        pos_ = static_cast<size_t>(p - data_);
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
        const char* start = data_ + pos_;
        const char* e = data_ + end_;
        const char* p = stringStop(scan_, start, e);
        out.append(start, static_cast<size_t>(p - start));
        pos_ = static_cast<size_t>(p - data_);
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
    const char* base = data_;
    const char* p = base + pos_;
    const char* e = base + end_;
    bool negative = false;
    if (*p == '-') {
        negative = true;
        ++p;
    } else if (!isDigit(*p)) {
        pos_ = begin_ + save;
        return false;
    }
    // Wraps silently on overflow, as unsigned arithmetic does.
    uint64_t value = 0;
    p = integerDigits(scan_, p, e, value);
    pos_ = static_cast<size_t>(p - base);
    while (p == e && fill()) {
        // The refill may have moved the buffer.
        base = data_;
        p = takeDigits(scan_, base + pos_, base + end_, value);
        e = base + end_;
        pos_ = static_cast<size_t>(p - base);
    }
    out = static_cast<int64_t>(negative ? uint64_t(0) - value : value);
    return true;
}

inline bool JsonImporter::convertNumber(const char* text, const char* end, double& out) {
    return convertText(dotDecimal_, digits_, text, end, out);
}

inline bool JsonImporter::scanNumber(double& out) {
    size_t save = pos_ - begin_;
    skipBlanks();
    const char* e = data_ + end_;
    const char* p = NumberText{scan_, eof_, dotDecimal_, digits_}.read(data_ + pos_, e, out);
    if (p == e && !eof_) {
        // The number may go on past the buffer.
        pos_ = begin_ + save;
        return scanNumberSlow(out);
    }
    if (p == nullptr) {
        pos_ = begin_ + save;
        return false;
    }
    pos_ = static_cast<size_t>(p - data_);
    return true;
}

bool JsonImporter::scanNumberSlow(double& out) {
    size_t save = pos_ - begin_;
    skipBlanks();
    size_t start = pos_ - begin_;
    auto digits = [this] {
        for (;;) {
            const char* p = data_ + pos_;
            const char* e = data_ + end_;
            p = digitEndScalar(p, e);
            pos_ = static_cast<size_t>(p - data_);
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
    if (!convertNumber(data_ + begin_ + start, data_ + pos_, out)) {
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
    if (const char* end = integerListAt(scan_, data_ + pos_, data_ + end_, values)) {
        pos_ = static_cast<size_t>(end - data_);
    } else if (!scanList(values, [this](int64_t& v) { return scanInteger(v); })) {
        return std::nullopt;
    }
    return values;
}

std::optional<std::vector<int64_t>> JsonImporter::nextIntegerList() {
    std::vector<int64_t> values;
    if (!nextIntegerList(values)) return std::nullopt;
    return values;
}

bool JsonImporter::nextIntegerList(std::vector<int64_t>& out) {
    if (!nextIntegers()) return false;
    out.assign(integers_.begin(), integers_.end());
    return true;
}

bool JsonImporter::nextIntegerList(IdList& out) {
    if (!nextIntegers()) return false;
    out.assign(integers_.data(), integers_.size());
    return true;
}

bool JsonImporter::nextIntegers() {
    if (const char* end = integerListAt(scan_, data_ + pos_, data_ + end_, integers_)) {
        pos_ = static_cast<size_t>(end - data_);
    } else if (!scanList(integers_, [this](int64_t& v) { return scanInteger(v); })) {
        return false;
    }
    commit();
    return true;
}

std::optional<std::vector<double>> JsonImporter::peekNumberList() {
    std::vector<double> values;
    if (const char* end = numberListAt(NumberText{scan_, eof_, dotDecimal_, digits_}, data_ + pos_, data_ + end_, values)) {
        pos_ = static_cast<size_t>(end - data_);
    } else if (!scanList(values, [this](double& v) { return scanNumber(v); })) {
        return std::nullopt;
    }
    return values;
}

std::optional<std::vector<double>> JsonImporter::nextNumberList() {
    std::vector<double> values;
    if (!nextNumberList(values)) return std::nullopt;
    return values;
}

bool JsonImporter::nextNumberList(std::vector<double>& out) {
    if (const char* end = numberListAt(NumberText{scan_, eof_, dotDecimal_, digits_}, data_ + pos_, data_ + end_, numbers_)) {
        pos_ = static_cast<size_t>(end - data_);
    } else if (!scanList(numbers_, [this](double& v) { return scanNumber(v); })) {
        return false;
    }
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

// The part of an object item before its key: the stack check and the comma.
inline bool JsonImporter::beginObjectItem() {
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
    return true;
}

bool JsonImporter::nextObjectItem(std::string& key) {
    if (!beginObjectItem()) return false;
    if (!scanString(key)) return false;
    commit();
    skipBlanks();
    commit();
    if (!take(':')) return false;
    commit();
    return true;
}

// A key without escapes that ends in the buffer is shown where it lies when
// the text is read in place; anything else goes through scanString.
inline bool JsonImporter::scanKey(const char*& key, size_t& length) {
    if (!stream_ && pos_ < end_ && data_[pos_] == '"') {
        const char* start = data_ + pos_ + 1;
        const char* e = data_ + end_;
        const char* p = stringStop(scan_, start, e);
        if (p < e && *p == '"') {
            key = start;
            length = static_cast<size_t>(p - start);
            pos_ = static_cast<size_t>(p + 1 - data_);
            return true;
        }
    }
    if (!scanString(objectKey_)) return false;
    key = objectKey_.data();
    length = objectKey_.size();
    return true;
}

bool JsonImporter::nextObjectKey(const char*& key, size_t& length) {
    if (!stream_ && !stack_.empty() && stack_.back().type == 0) {
        // In place, the comma, a key without escapes and the colon are found
        // with local pointers; anything else goes the general way below,
        // which starts from the same state.
        Item& item = stack_.back();
        const char* const e = data_ + end_;
        const char* p = data_ + pos_;
        if (!item.first) {
            p = blanksAt(scan_, p, e);
            if (p == e || *p != ',') goto general;
            ++p;
        }
        p = blanksAt(scan_, p, e);
        if (p == e || *p != '"') goto general;
        const char* start = p + 1;
        const char* stop = stringStop(scan_, start, e);
        if (stop == e || *stop != '"') goto general;
        p = blanksAt(scan_, stop + 1, e);
        if (p == e || *p != ':') goto general;
        item.first = false;
        key = start;
        length = static_cast<size_t>(stop - start);
        pos_ = static_cast<size_t>(p + 1 - data_);
        commit();
        return true;
    }
general:
    if (!beginObjectItem()) return false;
    if (!scanKey(key, length)) return false;
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
