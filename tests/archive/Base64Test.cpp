#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "sorvane/archive/base64.h"
#include "sorvane/core/RuntimeException.h"

using namespace sorvane;

namespace {

std::string encode(const std::string& in, Base64Encoding e = BASE64_ENCODING_STANDARD, char pad = '=') {
    const long n = base64encode(nullptr, 0, in.data(), static_cast<long>(in.size()), e, pad);
    std::string out(static_cast<size_t>(n), '?');
    EXPECT_EQ(base64encode(&out[0], n, in.data(), static_cast<long>(in.size()), e, pad), n);
    return out;
}

std::string decode(const std::string& in) {
    const long n = base64decode(nullptr, 0, in.data(), static_cast<long>(in.size()));
    std::string out(static_cast<size_t>(n), '?');
    EXPECT_EQ(base64decode(n ? &out[0] : nullptr, n, in.data(), static_cast<long>(in.size())), n);
    return out;
}

std::string failure(const std::function<void()>& f) {
    try {
        f();
    } catch (const RuntimeException& e) {
        std::string text = e.what();
        return text.substr(text.find("(): ") + 4);
    }
    return "no failure";
}

} // namespace

TEST(Base64, CodesOfBothAlphabets) {
    EXPECT_EQ(char2code('A'), 0);
    EXPECT_EQ(char2code('z'), 51);
    EXPECT_EQ(char2code('9'), 61);
    EXPECT_EQ(char2code('+'), 62);
    EXPECT_EQ(char2code('-'), 62);
    EXPECT_EQ(char2code('/'), 63);
    EXPECT_EQ(char2code('_'), 63);
    EXPECT_EQ(failure([] { char2code('*'); }), "Invalid base64-encoded character '*'");
    EXPECT_EQ(failure([] { char2code('='); }), "Invalid base64-encoded character '='");
}

TEST(Base64, EncodeSizesPaddingAndErrors) {
    EXPECT_EQ(base64encode(nullptr, 0, "x", 1, BASE64_ENCODING_STANDARD, '='), 4);
    EXPECT_EQ(base64encode(nullptr, -5, "xxxx", 4, BASE64_ENCODING_STANDARD, '='), 8);
    EXPECT_EQ(base64encode(nullptr, 0, "x", 0, BASE64_ENCODING_STANDARD, '='), 0);
    EXPECT_EQ(failure([] { base64encode(nullptr, 0, "x", 1, static_cast<Base64Encoding>(3), '='); }),
              "Invalid base64 encoding");
    EXPECT_EQ(encode("Man"), "TWFu");
    EXPECT_EQ(encode("Ma"), "TWE=");
    EXPECT_EQ(encode("M"), "TQ==");
    EXPECT_EQ(encode("M", BASE64_ENCODING_STANDARD, '.'), "TQ..");
    const std::string raw("\xfb\xff\xbf", 3);
    EXPECT_EQ(encode(raw), "+/+/");
    EXPECT_EQ(encode(raw, BASE64_ENCODING_URL), "-_-_");
    char out[8];
    EXPECT_EQ(failure([&] { base64encode(out, 7, "abcdef", 6, BASE64_ENCODING_STANDARD, '='); }),
              "Out buffer is too small 8 >= 7");
    EXPECT_EQ(failure([&] { base64encode(out, 3, "a", 1, BASE64_ENCODING_STANDARD, '='); }),
              "Out buffer is too small 4 >= 3");
}

TEST(Base64, DecodeTailRulesAndTerminators) {
    EXPECT_EQ(decode("TWFu"), "Man");
    EXPECT_EQ(decode("TWE="), "Ma");
    EXPECT_EQ(decode("TQ=="), "M");
    EXPECT_EQ(decode("TWE"), "M"); // an unpadded tail of three gives one byte
    EXPECT_EQ(failure([] { decode("TQ"); }), "Invalid base64 message");
    EXPECT_EQ(failure([] { decode("TWFuT"); }), "Invalid base64 message");
    EXPECT_EQ(failure([] { decode("T=xx"); }), "Invalid base64 message");
    EXPECT_EQ(decode(std::string("TWFu\0garbage!", 13)), "Man");
    EXPECT_EQ(decode("TWE.TWFu"), "Ma");
    EXPECT_EQ(decode(""), "");
    EXPECT_EQ(decode("-_-_"), decode("+/+/"));
    // A bad character passes the size pass and fails in the decoding pass.
    EXPECT_EQ(base64decode(nullptr, 0, "TW*u", 4), 3);
    char out[8];
    EXPECT_EQ(failure([&] { base64decode(out, 8, "TW*u", 4); }), "Invalid base64-encoded character '*'");
    EXPECT_EQ(failure([&] { base64decode(out, 8, "TWFu=AAA", 8); }), "Invalid base64-encoded character '='");
    EXPECT_EQ(failure([&] { base64decode(out, 2, "TWFu", 4); }), "Out buffer is too small");
    EXPECT_EQ(failure([&] { base64decode(out, 0, "TQ==", 4); }), "Out buffer is too small");
    EXPECT_EQ(base64decode(out, 1, "TQ==", 4), 1);
}

TEST(Base64, RandomRoundTrip) {
    std::mt19937 rng(42);
    for (int len = 0; len < 200; ++len) {
        std::string raw(static_cast<size_t>(len), '\0');
        for (char& ch : raw) ch = static_cast<char>(rng());
        const auto e = len % 2 ? BASE64_ENCODING_URL : BASE64_ENCODING_STANDARD;
        EXPECT_EQ(decode(encode(raw, e)), raw) << len;
    }
}

namespace {

// The coding rules one character at a time, as a reference for the block
// paths: the decoded bytes, or the failure text.
std::string referenceDecode(const std::string& in, long outSize) {
    auto code = [](unsigned char c) -> int {
        if (c >= 'A' && c <= 'Z') return c - 'A';
        if (c >= 'a' && c <= 'z') return c - 'a' + 26;
        if (c >= '0' && c <= '9') return c - '0' + 52;
        if (c == '+' || c == '-') return 62;
        if (c == '/' || c == '_') return 63;
        return -1;
    };
    auto terminator = [](char c) { return c == '\0' || c == '.' || c == '='; };
    const long n = static_cast<long>(in.size());
    std::string out;
    for (long i = 0; i < n; i += 4) {
        auto at = [&](long k) { return k < n ? in[static_cast<size_t>(k)] : '\0'; };
        if (at(i) == '\0') return out;
        if (i == ((n + 2) & ~3L) || terminator(at(i + 1)) || i == ((n + 1) & ~3L)) return "!Invalid base64 message";
        const int c0 = code(static_cast<unsigned char>(at(i))), c1 = code(static_cast<unsigned char>(at(i + 1)));
        if (static_cast<long>(out.size()) >= outSize) return "!Out buffer is too small";
        if (c0 < 0) return std::string("!Invalid base64-encoded character '") + at(i) + "'";
        if (c1 < 0) return std::string("!Invalid base64-encoded character '") + at(i + 1) + "'";
        out += static_cast<char>((c0 << 2) + (c1 >> 4));
        if (terminator(at(i + 2)) || i == (n & ~3L)) return out;
        if (static_cast<long>(out.size()) >= outSize) return "!Out buffer is too small";
        const int c2 = code(static_cast<unsigned char>(at(i + 2)));
        if (c2 < 0) return std::string("!Invalid base64-encoded character '") + at(i + 2) + "'";
        out += static_cast<char>((c1 << 4) + (c2 >> 2));
        if (terminator(at(i + 3))) return out;
        if (static_cast<long>(out.size()) >= outSize) return "!Out buffer is too small";
        const int c3 = code(static_cast<unsigned char>(at(i + 3)));
        if (c3 < 0) return std::string("!Invalid base64-encoded character '") + at(i + 3) + "'";
        out += static_cast<char>((c2 << 6) + c3);
    }
    return out;
}

// The sizing pass (no output) by the same rules: no character is checked,
// the groups are counted up to the message's end; -1 for a failure.
long referenceSize(const std::string& in) {
    auto terminator = [](char c) { return c == '\0' || c == '.' || c == '='; };
    const long n = static_cast<long>(in.size());
    long c = 0;
    for (long i = 0; i < n; i += 4) {
        auto at = [&](long k) { return k < n ? in[static_cast<size_t>(k)] : '\0'; };
        if (at(i) == '\0') return c;
        if (i == ((n + 2) & ~3L) || terminator(at(i + 1)) || i == ((n + 1) & ~3L)) return -1;
        if (terminator(at(i + 2)) || i == (n & ~3L)) return c + 1;
        if (terminator(at(i + 3))) return c + 2;
        c += 3;
    }
    return c;
}

long sizeOf(const std::string& in) {
    try {
        return base64decode(nullptr, 0, in.data(), static_cast<long>(in.size()));
    } catch (const std::exception&) {
        return -1;
    }
}

std::string decodeInto(const std::string& in, long outSize) {
    std::string out(static_cast<size_t>(outSize), '\x7f');
    try {
        const long n = base64decode(&out[0], outSize, in.data(), static_cast<long>(in.size()));
        out.resize(static_cast<size_t>(n));
        return out;
    } catch (const std::exception& e) {
        const std::string text = e.what();
        return "!" + text.substr(text.find("(): ") + 4);
    }
}

} // namespace

TEST(Base64, BlocksAndSingleGroupsAgree) {
    // Lengths around the 24- and 32-byte blocks, both alphabets, every byte
    // value: encoded as three bytes at a time would, and decoded back.
    std::mt19937 rng(5);
    for (size_t length = 0; length < 300; ++length) {
        std::string bytes(length, '\0');
        for (auto& b : bytes) b = static_cast<char>(rng());
        for (Base64Encoding e : {BASE64_ENCODING_STANDARD, BASE64_ENCODING_URL}) {
            const std::string text = encode(bytes, e);
            const char* alphabet = e == BASE64_ENCODING_URL
                                       ? "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-_"
                                       : "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
            std::string expected;
            for (size_t i = 0; i < length; i += 3) {
                const unsigned b0 = static_cast<unsigned char>(bytes[i]);
                const unsigned b1 = i + 1 < length ? static_cast<unsigned char>(bytes[i + 1]) : 0;
                const unsigned b2 = i + 2 < length ? static_cast<unsigned char>(bytes[i + 2]) : 0;
                expected += alphabet[b0 >> 2];
                expected += alphabet[((b0 & 3) << 4) | (b1 >> 4)];
                expected += i + 1 < length ? alphabet[((b1 & 15) << 2) | (b2 >> 6)] : '=';
                expected += i + 2 < length ? alphabet[b2 & 63] : '=';
            }
            ASSERT_EQ(text, expected) << length;
            ASSERT_EQ(decode(text), bytes) << length;
            // Too small an output fails at the first group that does not fit.
            if (length > 30) {
                const long size = static_cast<long>(expected.size()) - 5;
                std::string small(static_cast<size_t>(size), '?');
                EXPECT_EQ(failure([&] {
                              base64encode(&small[0], size, bytes.data(), static_cast<long>(length), e, '=');
                          }),
                          "Out buffer is too small " + std::to_string(size + 1) + " >= " + std::to_string(size));
            }
        }
    }
}

TEST(Base64, OddCharactersAnywhereFailAsOneGroupAtATime) {
    // A terminator, a bad character or a NUL at each position of long texts,
    // into outputs of several sizes: same bytes or same failure as the rule,
    // and the same size from the sizing pass.
    std::mt19937 rng(9);
    const std::string alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/-_";
    for (int round = 0; round < 3; ++round) {
        std::string text(96 + round, 'A');
        for (auto& c : text) c = alphabet[rng() % alphabet.size()];
        for (const char odd : {'=', '.', '\0', '*', '\x80', ' '}) {
            for (size_t at = 0; at < text.size(); ++at) {
                std::string broken = text;
                broken[at] = odd;
                ASSERT_EQ(sizeOf(broken), referenceSize(broken)) << "round " << round << " at " << at << " odd " << int(odd);
                for (long outSize : {72L, 60L, 200L}) {
                    ASSERT_EQ(decodeInto(broken, outSize), referenceDecode(broken, outSize))
                        << "round " << round << " at " << at << " odd " << int(odd) << " out " << outSize;
                }
            }
        }
        // Every byte value at places of the first, second and third block.
        for (int value = 0; value < 256; ++value) {
            for (size_t at : {size_t(0), size_t(5), size_t(31), size_t(32), size_t(47), size_t(63), size_t(64)}) {
                std::string changed = text;
                changed[at] = static_cast<char>(value);
                ASSERT_EQ(decodeInto(changed, 200), referenceDecode(changed, 200)) << "byte " << value << " at " << at;
            }
        }
        for (long outSize : {0L, 23L, 24L, 48L, 71L, 72L}) ASSERT_EQ(decodeInto(text, outSize), referenceDecode(text, outSize));
        // Every length, so that the first terminator and the text's end fall
        // at each place of a 16-byte step and of a group.
        for (size_t length = 0; length <= text.size(); ++length)
            ASSERT_EQ(sizeOf(text.substr(0, length)), referenceSize(text.substr(0, length))) << length;
    }
}
