#include <gtest/gtest.h>

#include <string>

#include "sorvane/core/RuntimeException.h"

using sorvane::RuntimeException;

TEST(RuntimeException, LocationPrefixPieces) {
    RuntimeException full("a/b.cpp", 12, "load", "Bad %s %d", "thing", 7);
    EXPECT_STREQ(full.what(), "a/b.cpp:12 load(): Bad thing 7");
    EXPECT_STREQ(full.file, "a/b.cpp");
    EXPECT_EQ(full.line, 12);
    EXPECT_STREQ(full.function, "load");

    // No line: no colon and no number. No function: no "(): ", the text
    // follows the file directly.
    RuntimeException noLine("f.cpp", 0, "g", "x");
    EXPECT_STREQ(noLine.what(), "f.cpp g(): x");
    RuntimeException noFunction("f.cpp", 3, nullptr, "x");
    EXPECT_STREQ(noFunction.what(), "f.cpp:3x");
    RuntimeException nothing(nullptr, -5, nullptr, "only %d", 1);
    EXPECT_STREQ(nothing.what(), "only 1");
}

TEST(RuntimeException, StackBufferBoundary) {
    // 255 characters stay in the stack buffer, 256 take the allocating path;
    // both must give the whole text.
    for (size_t n : {254u, 255u, 256u, 257u, 5000u}) {
        std::string text(n, 'x');
        text.back() = 'E';
        RuntimeException e("f", 1, "g", "%s", text.c_str());
        EXPECT_EQ(std::string(e.what()), "f:1 g(): " + text) << n;
    }
}

TEST(RuntimeException, FormsWithoutLocation) {
    RuntimeException ready(std::string("ready text"));
    EXPECT_STREQ(ready.what(), "ready text");
    EXPECT_EQ(ready.file, nullptr);
    EXPECT_EQ(ready.line, 0);

    std::string longText(1000, 'y');
    RuntimeException formatted("%s-%d", longText.c_str(), 42);
    EXPECT_EQ(std::string(formatted.what()), longText + "-42");
    EXPECT_EQ(formatted.function, nullptr);
}

TEST(RuntimeException, ThrowMacroCarriesThisSite) {
    try {
        SORVANE_THROW("Invalid id %ld", 5L);
        FAIL();
    } catch (const std::exception& e) {
        const std::string text = e.what();
        EXPECT_NE(text.find("RuntimeExceptionTest.cpp:"), std::string::npos);
        EXPECT_NE(text.find(" TestBody(): Invalid id 5"), std::string::npos) << text;
    }
}
