#ifndef TALVEX_TESTS_DATATREE_EXPECT_H
#define TALVEX_TESTS_DATATREE_EXPECT_H

#include <string>

#include <gtest/gtest.h>

// Expects `statement` to throw `type` whose message ends with `text` (the
// location prefix in front of it is not compared).
#define EXPECT_THROW_TEXT(statement, type, text)                                                  \
    do {                                                                                         \
        bool thrown_ = false;                                                                    \
        try {                                                                                    \
            statement;                                                                           \
        } catch (const type& e_) {                                                               \
            thrown_ = true;                                                                      \
            const std::string what_ = e_.what();                                                 \
            const std::string want_ = (text);                                                    \
            EXPECT_TRUE(what_.size() >= want_.size() &&                                          \
                        what_.compare(what_.size() - want_.size(), want_.size(), want_) == 0)    \
                << "message: " << what_ << "\nexpected end: " << want_;                          \
        }                                                                                        \
        EXPECT_TRUE(thrown_) << #statement " did not throw " #type;                             \
    } while (0)

#endif
