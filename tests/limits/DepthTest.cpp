// Trees nested far deeper than any stack, built in code: every walk over them
// must keep its own work list. Run under a memory cap (see run_limited.sh).
#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include "datatree/Expect.h"
#include "sorvane/archive/JsonImporter.h"
#include "sorvane/core/RuntimeException.h"
#include "sorvane/datatree/DataTree.h"

using sorvane::DataTree;
using sorvane::DataTreeType;
using sorvane::ScalarType;

namespace {

constexpr long kDeep = 1000000;

// Lists inside lists, `depth` levels; the innermost holds `leaf`.
DataTree nestedLists(long depth, const DataTree& leaf) {
    DataTree root = DataTree::createList();
    DataTree at = root;
    for (long i = 1; i < depth; ++i) {
        DataTree next = DataTree::createList();
        at.addItem(next);
        at = next;
    }
    at.addItem(leaf);
    return root;
}

// Alternating objects and lists.
DataTree nestedMixed(long depth) {
    DataTree root = DataTree::createObject();
    DataTree at = root;
    for (long i = 1; i < depth; ++i) {
        DataTree next = (i % 2) ? DataTree::createList() : DataTree::createObject();
        if (at.isObject())
            at.setItem("k", next);
        else
            at.addItem(next);
        at = next;
    }
    return root;
}

} // namespace

TEST(DeepTree, MillionListsCompareCloneDestroyAndRefuseWriting) {
    {
        DataTree a = nestedLists(kDeep, DataTree(1L));
        DataTree b = nestedLists(kDeep, DataTree(1L));
        DataTree c = nestedLists(kDeep, DataTree(2L));
        EXPECT_TRUE(a.equals(b));
        EXPECT_FALSE(a.equals(c)) << "the innermost value differs";
        EXPECT_FALSE(a.equals(nestedLists(kDeep - 1, DataTree(1L))));

        DataTree copy(a.getNode().clone());
        EXPECT_TRUE(copy.equals(a));
        // A deep copy: changing the innermost list of the copy leaves `a` alone.
        DataTree inner = copy;
        for (long i = 1; i < kDeep; ++i) inner = inner.getItem(0L);
        inner.setItem(0L, DataTree(5L));
        EXPECT_FALSE(copy.equals(a));

        std::ostringstream out;
        EXPECT_THROW_TEXT(a.toJson(out), sorvane::RuntimeException, "DataTree depth 513 is too deep to write");
        EXPECT_TRUE(out.str().empty()) << "nothing is written before the refusal";
    }
    {
        DataTree mixed = nestedMixed(kDeep);
        DataTree copy(mixed.getNode().clone());
        EXPECT_TRUE(mixed.equals(copy));
        EXPECT_THROW(mixed.toJsonString(), sorvane::RuntimeException);
    }
}

TEST(DeepTree, SharedSubtreesSurviveTheirParents) {
    DataTree shared = nestedLists(1000, DataTree("leaf"));
    {
        DataTree holder = nestedLists(kDeep, shared);
        DataTree other = DataTree::createList();
        other.addItem(shared);
    }
    // Both parents are gone; the shared chain is whole.
    DataTree at = shared;
    for (int i = 1; i < 1000; ++i) at = at.getItem(0L);
    EXPECT_EQ(at.getItem(0L).getString(), "leaf");
}

TEST(DeepTree, WritingStopsExactlyWhereReadingStops) {
    // 512 levels write and read back; 513 are refused.
    DataTree limit = nestedLists(512, DataTree("x"));
    const std::string text = limit.toJsonString();
    std::istringstream in(text);
    sorvane::archive::JsonImporter importer(in);
    EXPECT_TRUE(DataTree::createFromJson(importer).equals(limit));
    EXPECT_THROW_TEXT(nestedLists(513, DataTree("x")).toJsonString(), sorvane::RuntimeException,
                      "DataTree depth 513 is too deep to write");

    // A tensor adds its dimensions but the innermost to the nesting around it.
    DataTree tensor = DataTree::createTensor(std::vector<long>(3, 1L), ScalarType::Float);
    EXPECT_NO_THROW(nestedLists(510, tensor).toJsonString());
    EXPECT_THROW_TEXT(nestedLists(511, tensor).toJsonString(), sorvane::RuntimeException,
                      "DataTree depth 513 is too deep to write");

    // A list holding itself is refused on writing instead of overflowing.
    DataTree loop = DataTree::createList();
    loop.addItem(loop);
    EXPECT_THROW(loop.toJsonString(), sorvane::RuntimeException);
    EXPECT_TRUE(loop.equals(loop));
    loop.removeItems(); // breaks the cycle so that the list is freed
}
