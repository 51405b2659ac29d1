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
