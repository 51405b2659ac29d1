#include "sorvane/archive/base64.h"

#include <array>
#include <cstdint>
#include <cstring>

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
    for (long g = 0; g < whole; ++g, i += 4) {
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
    for (long i = 0; i < n; i += 4) {
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
