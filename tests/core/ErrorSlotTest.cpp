#include <gtest/gtest.h>

#include <string>

#include "sorvane/sorvane.h"

namespace {

std::string slot() {
    int64_t size = 0;
    sorvane_getErrorMessage(nullptr, &size);
    std::string text(static_cast<size_t>(size), '\0');
    EXPECT_EQ(sorvane_getErrorMessage(&text[0], &size), 0);
    text.resize(static_cast<size_t>(size) - 1);
    return text;
}

TEST(ErrorSlot, SizingCallOnEmptySlot) {
    sorvane_clearErrorMessage();
    int64_t size = 0;
    EXPECT_EQ(sorvane_getErrorMessage(nullptr, &size), -1);
    EXPECT_EQ(size, 1);
    EXPECT_EQ(slot(), "");
}

TEST(ErrorSlot, CapacityEqualToLengthIsTooSmall) {
    sorvane_setErrorMessage("abc");
    char buffer[8] = "zzzzzzz";
    int64_t size = 3;
    EXPECT_EQ(sorvane_getErrorMessage(buffer, &size), -1);
    EXPECT_EQ(size, 4);
    EXPECT_EQ(buffer[0], 'z');
    EXPECT_EQ(sorvane_getErrorMessage(buffer, &size), 0);
    EXPECT_STREQ(buffer, "abc");
    EXPECT_EQ(size, 4);
    // Reading does not empty the slot.
    EXPECT_EQ(slot(), "abc");
}

TEST(ErrorSlot, NegativeCapacityCountsAsLargeHere) {
    sorvane_setErrorMessage("abc");
    char buffer[8];
    int64_t size = -1;
    EXPECT_EQ(sorvane_getErrorMessage(buffer, &size), 0);
    EXPECT_STREQ(buffer, "abc");
}

TEST(ErrorSlot, NullArgumentsReplaceTheSlot) {
    sorvane_setErrorMessage("earlier");
    EXPECT_EQ(sorvane_getErrorMessage(nullptr, nullptr), -1);
    EXPECT_EQ(slot(), "outSize is NULL");
    sorvane_setErrorMessage("earlier");
    int64_t size = 100;
    EXPECT_EQ(sorvane_getErrorMessage(nullptr, &size), -1);
    EXPECT_EQ(slot(), "out is NULL");
    sorvane_clearErrorMessage();
    EXPECT_EQ(slot(), "");
}

} // namespace
