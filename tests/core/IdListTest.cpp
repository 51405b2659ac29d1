#include <gtest/gtest.h>

#include <cstdint>
#include <numeric>
#include <utility>
#include <vector>

#include "sorvane/core/IdList.h"

using sorvane::IdList;
using Ids = std::vector<int64_t>;

namespace {

Ids count(int64_t n, int64_t from = 1) {
    Ids ids(static_cast<size_t>(n));
    std::iota(ids.begin(), ids.end(), from);
    return ids;
}

} // namespace

// Lists held inside and past the inline room behave alike through growth,
// copies, moves and reassignment, and keep their ids.
TEST(IdListTest, InlineAndHeldApartAlike) {
    for (int64_t n : {0, 1, 7, 8, 100}) {
        SCOPED_TRACE(n);
        const Ids expected = count(n);
        IdList grown;
        for (int64_t id : expected) grown.push_back(id);
        EXPECT_EQ(grown, expected);
        EXPECT_EQ(grown.size(), expected.size());
        EXPECT_EQ(grown.toVector(), expected);

        IdList copy(grown);
        EXPECT_EQ(copy, grown);
        IdList moved(std::move(copy));
        EXPECT_EQ(moved, expected);
        EXPECT_TRUE(copy.empty());  // a moved-from list is empty and usable
        copy.push_back(42);
        EXPECT_EQ(copy, (Ids{42}));

        // Assignments in both directions across the inline room.
        IdList small{9};
        small = grown;
        EXPECT_EQ(small, expected);
        IdList large(count(50, 1000));
        large = grown;
        EXPECT_EQ(large, expected);
        large = std::move(small);
        EXPECT_EQ(large, expected);
        const IdList& same = large;
        large = same;  // self-assignment keeps the ids
        EXPECT_EQ(large, expected);
        large = count(3, 7);
        EXPECT_EQ(large, (Ids{7, 8, 9}));
        const std::vector<int64_t> back = large;
        EXPECT_EQ(back, (Ids{7, 8, 9}));
    }
}

// Inserts and removals at the ends and in the middle, with the list
// crossing from inline to its own block on the way.
TEST(IdListTest, EditsAcrossTheInlineRoom) {
    IdList ids{2, 4, 6, 8, 10, 12};
    Ids model = ids;
    auto check = [&] { ASSERT_EQ(ids, model); };
    EXPECT_EQ(*ids.insert(ids.begin(), 0), 0);
    model.insert(model.begin(), 0);
    check();
    EXPECT_EQ(*ids.insert(ids.begin() + 3, 5), 5);  // the eighth id: the list moves out
    model.insert(model.begin() + 3, 5);
    check();
    EXPECT_GT(ids.capacity(), IdList::kInline);
    ids.insert(ids.end(), 14);
    model.push_back(14);
    check();
    EXPECT_EQ(*ids.erase(ids.begin() + 1), 4);
    model.erase(model.begin() + 1);
    check();
    const IdList::iterator after = ids.erase(ids.end() - 1);
    EXPECT_EQ(after, ids.end());
    model.pop_back();
    check();
    ids.erase(ids.begin());
    model.erase(model.begin());
    check();
    EXPECT_EQ(ids.front(), 4);
    EXPECT_EQ(ids.back(), 12);
    ids[0] = -1;
    EXPECT_EQ(ids[0], -1);
    ids.clear();
    EXPECT_TRUE(ids.empty());
    ids.reserve(40);
    EXPECT_GE(ids.capacity(), 40u);
    EXPECT_TRUE(ids.empty());

    EXPECT_NE(IdList({1, 2}), (Ids{1, 2, 3}));
    EXPECT_NE((Ids{1, 3}), IdList({1, 2}));
    EXPECT_EQ(IdList(), Ids());
}
