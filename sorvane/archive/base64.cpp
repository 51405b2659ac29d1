#include "sorvane/archive/base64.h"

#include <array>
#include <cstdint>
#include <cstring>

#if defined(__x86_64__)
#include <immintrin.h>
#endif

#include "sorvane/core/RuntimeException.h"

namespace sorvane {
namespace {

const char* const kAlphabetStandard = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
const char* const kAlphabetUrl = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-_";
constexpr uint8_t kInvalid = 0xFF;
// Marks a group that the fast path leaves to the exact one.
constexpr uint32_t kBadGroup = 0x01FFFFFF;

struct Tables {
    std::array<uint8_t, 256> code{};
    std::array<uint8_t, 256> terminator{};
    // Per position of a group, the code already moved to where its bits land
    // in the three output bytes (first output byte lowest), so that a group
    // decodes with four lookups and three ors.
    std::array<uint32_t, 256> d0{}, d1{}, d2{}, d3{};
    // Two output characters per 12 input bits, for each alphabet.
    std::array<uint16_t, 4096> pairs[2];

    Tables() {
        code.fill(kInvalid);
        for (int i = 0; i < 64; ++i) {
            code[static_cast<uint8_t>(kAlphabetStandard[i])] = static_cast<uint8_t>(i);
            code[static_cast<uint8_t>(kAlphabetUrl[i])] = static_cast<uint8_t>(i);
        }
        terminator['\0'] = terminator['.'] = terminator['='] = 1;
        for (int c = 0; c < 256; ++c) {
            const uint32_t v = code[c];
            if (v == kInvalid) {
                d0[c] = d1[c] = d2[c] = d3[c] = kBadGroup;
                continue;
            }
            d0[c] = v << 2;
            d1[c] = (v >> 4) | ((v & 0x0F) << 12);
            d2[c] = ((v >> 2) << 8) | ((v & 0x03) << 22);
            d3[c] = v << 16;
        }
        for (int a = 0; a < 2; ++a) {
            const char* alphabet = a == 0 ? kAlphabetStandard : kAlphabetUrl;
            for (int v = 0; v < 4096; ++v) {
                const uint8_t pair[2] = {static_cast<uint8_t>(alphabet[v >> 6]), static_cast<uint8_t>(alphabet[v & 63])};
                std::memcpy(&pairs[a][static_cast<size_t>(v)], pair, 2);
            }
        }
    }
};

const Tables& tables() {
    static const Tables t;
    return t;
}

// 24 input bytes to 32 characters, and 32 characters to 24 bytes, at once
// where the processor has 256-bit integer operations. Both only take whole
// blocks that the byte-wise paths would take without a failure, and leave
// the rest to them.
#if defined(__x86_64__) && (defined(__GNUC__) || defined(__clang__))
#define SORVANE_BASE64_AVX2 1

bool haveAvx2() {
    static const bool have = __builtin_cpu_supports("avx2");
    return have;
}

// Encodes while 28 input bytes (the second load reaches 4 bytes beyond the
// 24 taken) and 32 output characters are left; returns the input bytes taken.
__attribute__((target("avx2"))) long encodeBlocksAvx2(char* out, long outSize, const uint8_t* in, long inSize,
                                                      bool url) {
    // Each 32-bit lane gets the bytes b1 b0 b2 b1 of its group, so that two
    // multiplications move the four 6-bit fields into four bytes.
    const __m256i spread = _mm256_setr_epi8(1, 0, 2, 1, 4, 3, 5, 4, 7, 6, 8, 7, 10, 9, 11, 10, 1, 0, 2, 1, 4, 3, 5, 4,
                                            7, 6, 8, 7, 10, 9, 11, 10);
    // What to add to a 6-bit code to get its character, by range of codes.
    const char plus = url ? '-' : '+';
    const char slash = url ? '_' : '/';
    const __m256i offsets = _mm256_setr_epi8(
        'a' - 26, '0' - 52, '0' - 52, '0' - 52, '0' - 52, '0' - 52, '0' - 52, '0' - 52, '0' - 52, '0' - 52, '0' - 52,
        static_cast<char>(plus - 62), static_cast<char>(slash - 63), 'A', 0, 0, 'a' - 26, '0' - 52, '0' - 52,
        '0' - 52, '0' - 52, '0' - 52, '0' - 52, '0' - 52, '0' - 52, '0' - 52, '0' - 52, static_cast<char>(plus - 62),
        static_cast<char>(slash - 63), 'A', 0, 0);
    long taken = 0;
    for (long i = 0; inSize - taken >= 28 && outSize - i >= 32; taken += 24, i += 32) {
        const __m128i low = _mm_loadu_si128(reinterpret_cast<const __m128i*>(in + taken));
        const __m128i high = _mm_loadu_si128(reinterpret_cast<const __m128i*>(in + taken + 12));
        const __m256i bytes = _mm256_shuffle_epi8(_mm256_inserti128_si256(_mm256_castsi128_si256(low), high, 1), spread);
        const __m256i ac = _mm256_mulhi_epu16(_mm256_and_si256(bytes, _mm256_set1_epi32(0x0fc0fc00)),
                                              _mm256_set1_epi32(0x04000040));
        const __m256i bd = _mm256_mullo_epi16(_mm256_and_si256(bytes, _mm256_set1_epi32(0x003f03f0)),
                                              _mm256_set1_epi32(0x01000010));
        const __m256i codes = _mm256_or_si256(ac, bd);
        __m256i range = _mm256_subs_epu8(codes, _mm256_set1_epi8(51));
        range = _mm256_or_si256(range, _mm256_and_si256(_mm256_cmpgt_epi8(_mm256_set1_epi8(26), codes),
                                                        _mm256_set1_epi8(13)));
        const __m256i text = _mm256_add_epi8(_mm256_shuffle_epi8(offsets, range), codes);
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(out + i), text);
    }
    return taken;
}

// Decodes blocks of 32 characters of either alphabet into 24 bytes while
// they are all plain characters and the output has room; stops at the first
// block that holds anything else. Returns the characters taken.
//
// A character is looked up by its two nibbles. Its high nibble gives a class
// bit: 0x01 for 2x ("+", "-", "/"), 0x02 for 3x (digits), 0x04 for 4x and 6x
// (letters from "A" and "a"), 0x08 for 5x ("P" to "Z", "_"), 0x10 for 7x
// ("p" to "z"), 0x20 for any other; its low nibble the classes in which it
// is no base64 character. The code is the character plus an offset by high
// nibble, by low nibble for 2x, and its own for "_".
__attribute__((target("avx2"))) long decodeBlocksAvx2(uint8_t* out, long outSize, const uint8_t* in, long inSize) {
    const __m256i classOfHigh = _mm256_setr_epi8(0x20, 0x20, 0x01, 0x02, 0x04, 0x08, 0x04, 0x10, 0x20, 0x20, 0x20,
                                                 0x20, 0x20, 0x20, 0x20, 0x20, 0x20, 0x20, 0x01, 0x02, 0x04, 0x08,
                                                 0x04, 0x10, 0x20, 0x20, 0x20, 0x20, 0x20, 0x20, 0x20, 0x20);
    const __m256i badInClass = _mm256_setr_epi8(0x25, 0x21, 0x21, 0x21, 0x21, 0x21, 0x21, 0x21, 0x21, 0x21, 0x23,
                                                0x3A, 0x3B, 0x3A, 0x3B, 0x32, 0x25, 0x21, 0x21, 0x21, 0x21, 0x21,
                                                0x21, 0x21, 0x21, 0x21, 0x23, 0x3A, 0x3B, 0x3A, 0x3B, 0x32);
    const __m256i offsetOfHigh = _mm256_setr_epi8(0, 0, 0, 4, -65, -65, -71, -71, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 4,
                                                  -65, -65, -71, -71, 0, 0, 0, 0, 0, 0, 0, 0);
    // "+" 43 -> 62, "-" 45 -> 62, "/" 47 -> 63.
    const __m256i offsetOf2x = _mm256_setr_epi8(0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 19, 0, 17, 0, 16, 0, 0, 0, 0, 0, 0,
                                                0, 0, 0, 0, 0, 19, 0, 17, 0, 16);
    const __m256i nibble = _mm256_set1_epi8(0x0F);
    const __m256i pack = _mm256_setr_epi8(2, 1, 0, 6, 5, 4, 10, 9, 8, 14, 13, 12, -1, -1, -1, -1, 2, 1, 0, 6, 5, 4,
                                          10, 9, 8, 14, 13, 12, -1, -1, -1, -1);
    const __m256i together = _mm256_setr_epi32(0, 1, 2, 4, 5, 6, 3, 7);
    long taken = 0;
    long written = 0;
    while (inSize - taken >= 32 && outSize - written >= 24) {
        const __m256i c = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(in + taken));
        const __m256i high = _mm256_and_si256(_mm256_srli_epi32(c, 4), nibble);
        const __m256i low = _mm256_and_si256(c, nibble);
        if (!_mm256_testz_si256(_mm256_shuffle_epi8(badInClass, low), _mm256_shuffle_epi8(classOfHigh, high))) break;
        __m256i offset = _mm256_shuffle_epi8(offsetOfHigh, high);
        offset = _mm256_blendv_epi8(offset, _mm256_shuffle_epi8(offsetOf2x, low),
                                    _mm256_cmpeq_epi8(high, _mm256_set1_epi8(2)));
        offset = _mm256_blendv_epi8(offset, _mm256_set1_epi8(63 - '_'), _mm256_cmpeq_epi8(c, _mm256_set1_epi8('_')));
        const __m256i codes = _mm256_add_epi8(c, offset);
        // Pairs of 6 bits into 12, pairs of 12 into 24, then the three bytes
        // of each 24 in order, the twelve of each half next to each other.
        const __m256i twelve = _mm256_maddubs_epi16(codes, _mm256_set1_epi32(0x01400140));
        const __m256i twentyFour = _mm256_madd_epi16(twelve, _mm256_set1_epi32(0x00011000));
        const __m256i bytes = _mm256_permutevar8x32_epi32(_mm256_shuffle_epi8(twentyFour, pack), together);
        _mm_storeu_si128(reinterpret_cast<__m128i*>(out + written), _mm256_castsi256_si128(bytes));
        _mm_storel_epi64(reinterpret_cast<__m128i*>(out + written + 16), _mm256_extracti128_si256(bytes, 1));
        taken += 32;
        written += 24;
    }
    return taken;
}
#endif

// The position of the first byte of s[0, n) that ends a message (NUL, "."
// or "="), or n: the sizing pass counts every whole group before it.
long firstTerminator(const uint8_t* s, long n, const Tables& t) {
    long i = 0;
#if defined(__x86_64__) && defined(__SSE2__)
    const __m128i dot = _mm_set1_epi8('.'), equals = _mm_set1_epi8('=');
    for (; i + 16 <= n; i += 16) {
        const __m128i v = _mm_loadu_si128(reinterpret_cast<const __m128i*>(s + i));
        const __m128i stops = _mm_or_si128(_mm_cmpeq_epi8(v, _mm_setzero_si128()),
                                           _mm_or_si128(_mm_cmpeq_epi8(v, dot), _mm_cmpeq_epi8(v, equals)));
        if (const int mask = _mm_movemask_epi8(stops)) return i + __builtin_ctz(static_cast<unsigned>(mask));
    }
#endif
    for (; i < n; ++i)
        if (t.terminator[s[i]]) return i;
    return n;
}

} // namespace

unsigned char char2code(unsigned char c) {
    const uint8_t v = tables().code[c];
    if (v == kInvalid) SORVANE_THROW("Invalid base64-encoded character '%c'", c);
    return v;
}

long base64encode(char* out, long outSize, const void* in, long inSize, Base64Encoding encoding, char pad) {
    if (encoding != BASE64_ENCODING_STANDARD && encoding != BASE64_ENCODING_URL)
        SORVANE_THROW("Invalid base64 encoding");
    if (inSize <= 0) return 0;
    const long groups = inSize / 3 + (inSize % 3 != 0 ? 1 : 0);
    if (!out) return 4 * groups;
    const Tables& t = tables();
    const uint16_t* pairs = t.pairs[encoding == BASE64_ENCODING_URL ? 1 : 0].data();
    const char* alphabet = encoding == BASE64_ENCODING_URL ? kAlphabetUrl : kAlphabetStandard;
    const uint8_t* src = static_cast<const uint8_t*>(in);
    const long whole = inSize / 3;
    long i = 0;
    long g = 0;
#ifdef SORVANE_BASE64_AVX2
    if (haveAvx2()) {
        g = encodeBlocksAvx2(out, outSize, src, inSize, encoding == BASE64_ENCODING_URL) / 3;
        i = 4 * g;
    }
#endif
    for (; g < whole; ++g, i += 4) {
        if (outSize <= i + 3) SORVANE_THROW("Out buffer is too small %ld >= %ld", i + 4, outSize);
        const uint8_t* s = src + 3 * g;
        const uint32_t v = (static_cast<uint32_t>(s[0]) << 16) | (static_cast<uint32_t>(s[1]) << 8) | s[2];
        std::memcpy(out + i, &pairs[v >> 12], 2);
        std::memcpy(out + i + 2, &pairs[v & 0xFFF], 2);
    }
    const long rest = inSize - 3 * whole;
    if (rest > 0) {
        if (outSize <= i + 3) SORVANE_THROW("Out buffer is too small %ld >= %ld", i + 4, outSize);
        const uint8_t* s = src + 3 * whole;
        const uint32_t b0 = s[0];
        const uint32_t b1 = rest > 1 ? s[1] : 0;
        out[i] = alphabet[b0 >> 2];
        out[i + 1] = alphabet[((b0 & 3) << 4) | (b1 >> 4)];
        out[i + 2] = rest > 1 ? alphabet[(b1 & 0x0F) << 2] : pad;
        out[i + 3] = pad;
        i += 4;
    }
    return i;
}

long base64decode(void* out, long outSize, const char* in, long inSize) {
    const long n = inSize;
    if (n < 1) return 0;
    const Tables& t = tables();
    const uint8_t* s = reinterpret_cast<const uint8_t*>(in);
    uint8_t* target = static_cast<uint8_t*>(out);
    long c = 0;
    long i = 0;
#ifdef SORVANE_BASE64_AVX2
    if (target && haveAvx2()) {
        i = decodeBlocksAvx2(target, outSize, s, n);
        c = i / 4 * 3;
    }
#endif
    if (!target) {
        // Every group before the one holding the first terminator is whole
        // and counts three bytes; the loop goes on from that group.
        i = firstTerminator(s, n, t) / 4 * 4;
        c = i / 4 * 3;
    }
    for (; i < n; i += 4) {
        const uint8_t* g = s + i;
        if (i + 4 <= n) {
            // A whole group of four plain characters: the fast path. Anything
            // else (a terminator, a bad character, a full buffer) takes the
            // exact path below, which gives the precise result or failure.
            if (target) {
                if (c + 3 <= outSize) {
                    const uint32_t x = t.d0[g[0]] | t.d1[g[1]] | t.d2[g[2]] | t.d3[g[3]];
                    if (x < 0x01000000) {
                        std::memcpy(target + c, &x, 3);
                        c += 3;
                        continue;
                    }
                }
            } else if (!(t.terminator[g[0]] | t.terminator[g[1]] | t.terminator[g[2]] | t.terminator[g[3]])) {
                c += 3;
                continue;
            }
        }
        if (g[0] == '\0') return c;
        if (i == ((n + 2) & ~3L)) SORVANE_THROW("Invalid base64 message");
        if (t.terminator[g[1]] || i == ((n + 1) & ~3L)) SORVANE_THROW("Invalid base64 message");
        unsigned c0 = 0, c1 = 0, c2 = 0, c3 = 0;
        if (target) {
            if (c >= outSize) SORVANE_THROW("Out buffer is too small");
            c0 = char2code(g[0]);
            c1 = char2code(g[1]);
            target[c] = static_cast<uint8_t>((c0 << 2) + (c1 >> 4));
        }
        if (t.terminator[g[2]] || i == (n & ~3L)) return c + 1;
        if (target) {
            if (c + 1 >= outSize) SORVANE_THROW("Out buffer is too small");
            c2 = char2code(g[2]);
            target[c + 1] = static_cast<uint8_t>((c1 << 4) + (c2 >> 2));
        }
        if (t.terminator[g[3]]) return c + 2;
        if (target) {
            if (c + 2 >= outSize) SORVANE_THROW("Out buffer is too small");
            c3 = char2code(g[3]);
            target[c + 2] = static_cast<uint8_t>((c2 << 6) + c3);
        }
        c += 3;
    }
    return c;
}

} // namespace sorvane
