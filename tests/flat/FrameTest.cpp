#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

#include "sorvane/core/RuntimeException.h"
#include "sorvane/flat/Frame.h"
#include "sorvane/sorvane.h"

namespace flat = sorvane::flat;

namespace {

struct Thing {
    int value = 3;
    std::string name = "abc";
};

struct NotStd {};

std::string slot() { return sorvane_errorMessage; }

} // namespace

TEST(FlatFrame, ObjectAndOutChecksComeFirst) {
    sorvane_clearErrorMessage();
    int out = -7;
    bool ran = false;
    Thing* none = nullptr;
    EXPECT_EQ(flat::get(&out, "thing is NULL", none, [&](Thing& t) { ran = true; return t.value; }), -1);
    EXPECT_EQ(slot(), "thing is NULL");
    Thing thing;
    EXPECT_EQ(flat::get(static_cast<int*>(nullptr), "thing is NULL", &thing, [&](Thing& t) { ran = true; return t.value; }), -1);
    EXPECT_EQ(slot(), "out is NULL");
    EXPECT_FALSE(ran);
    EXPECT_EQ(flat::get(&out, "thing is NULL", &thing, [](Thing& t) { return t.value; }), 0);
    EXPECT_EQ(out, 3);
    // Success leaves an older message in place.
    EXPECT_EQ(slot(), "out is NULL");
}

TEST(FlatFrame, StandardExceptionsBecomeStatusAndText) {
    Thing thing;
    int out = 11;
    EXPECT_EQ(flat::get(&out, "thing is NULL", &thing, [](Thing&) -> int { SORVANE_THROW("Broken %d", 4); }), -1);
    EXPECT_NE(slot().find("(): Broken 4"), std::string::npos);
    EXPECT_EQ(out, 11);  // untouched on failure
    EXPECT_EQ(flat::call("thing is NULL", &thing, [](Thing&) { throw std::out_of_range("range"); }), -1);
    EXPECT_EQ(slot(), "range");
    // Only standard exceptions are caught.
    EXPECT_THROW(flat::call("thing is NULL", &thing, [](Thing&) { throw NotStd(); }), NotStd);
}

TEST(FlatFrame, NullTextArgument) {
    Thing thing;
    EXPECT_EQ(flat::call("thing is NULL", &thing, [](Thing& t) { t.name = flat::str(nullptr); }), -1);
    EXPECT_EQ(slot(), "basic_string::_S_construct null not valid");
    EXPECT_EQ(thing.name, "abc");
}

TEST(FlatFrame, TextSizeProtocol) {
    Thing thing;
    int works = 0;
    auto work = [&](Thing& t) { ++works; return t.name; };
    sorvane_setErrorMessage("kept");
    int64_t size = 0;
    EXPECT_EQ(flat::text(nullptr, &size, "thing is NULL", &thing, work), -1);
    EXPECT_EQ(size, 4);
    EXPECT_EQ(slot(), "kept");
    char buffer[8] = {};
    size = 3;  // equal to the length: too small
    EXPECT_EQ(flat::text(buffer, &size, "thing is NULL", &thing, work), -1);
    EXPECT_EQ(size, 4);
    EXPECT_EQ(flat::text(buffer, &size, "thing is NULL", &thing, work), 0);
    EXPECT_STREQ(buffer, "abc");
    EXPECT_EQ(size, 4);
    EXPECT_EQ(flat::text(buffer, nullptr, "thing is NULL", &thing, work), -1);
    EXPECT_EQ(slot(), "outSize is NULL");
    size = 10;
    EXPECT_EQ(flat::text(nullptr, &size, "thing is NULL", &thing, work), -1);
    EXPECT_EQ(slot(), "out is NULL");
    // The work ran each time the object was there: a bad out costs the work.
    EXPECT_EQ(works, 5);
    size = -1;  // signed here: a negative capacity is too small
    EXPECT_EQ(flat::text(buffer, &size, "thing is NULL", &thing, work), -1);
    EXPECT_EQ(size, 4);
}

TEST(FlatFrame, DeleteFrame) {
    Thing* none = nullptr;
    EXPECT_EQ(flat::destroy("thing is NULL", none), -1);
    EXPECT_EQ(slot(), "thing is NULL");
    EXPECT_EQ(flat::destroy("thing is NULL", new Thing()), 0);
}
