// Trees built in code may hold themselves or share subtrees: comparing and
// copying them must end, and in time proportional to the distinct nodes.
#include <gtest/gtest.h>

#include <vector>

#include "datatree/Expect.h"
#include "sorvane/core/RuntimeException.h"
#include "sorvane/datatree/DataTree.h"

using sorvane::DataTree;

namespace {

// Breaks every cycle through the given containers so that they are freed.
void unlink(std::vector<DataTree> nodes) {
    for (DataTree& node : nodes) node.removeItems();
}

// A list whose two items are the same list, `levels` times: 2^levels paths
// reach the innermost value.
DataTree doubling(int levels, long leaf) {
    DataTree at = DataTree::createList();
    at.addItem(DataTree(leaf));
    for (int i = 0; i < levels; ++i) {
        DataTree next = DataTree::createList();
        next.addItem(at);
        next.addItem(at);
        at = next;
    }
    return at;
}

} // namespace

TEST(Cycles, DistinctCyclicTreesCompareAndEnd) {
    // Two lists, each holding itself, unfold to the same infinite nesting.
    DataTree a = DataTree::createList();
    a.addItem(a);
    DataTree b = DataTree::createList();
    b.addItem(b);
    EXPECT_TRUE(a.equals(b));

    // A cycle of two lists against a cycle of one: still the same unfolding.
    DataTree c = DataTree::createList();
    DataTree c2 = DataTree::createList();
    c.addItem(c2);
    c2.addItem(c);
    EXPECT_TRUE(a.equals(c));
    EXPECT_TRUE(c2.equals(b));

    // A value beside the cycle decides, also when it is met only after
    // going round the cycle.
    DataTree d = DataTree::createList();
    d.addItem(d);
    d.addItem(DataTree(1L));
    DataTree e = DataTree::createList();
    DataTree e2 = DataTree::createList();
    e.addItem(e2);
    e.addItem(DataTree(1L));
    e2.addItem(e);
    e2.addItem(DataTree(1L));
    EXPECT_TRUE(d.equals(e));
    e2.setItem(1L, DataTree(2L));
    EXPECT_FALSE(d.equals(e));
    EXPECT_FALSE(e.equals(d));

    // Objects holding themselves under a key.
    DataTree o = DataTree::createObject();
    o.setItem("self", o);
    o.setItem("x", DataTree("v"));
    DataTree p = DataTree::createObject();
    p.setItem("self", p);
    p.setItem("x", DataTree("v"));
    EXPECT_TRUE(o.equals(p));
    p.setItem("x", DataTree("w"));
    EXPECT_FALSE(o.equals(p));
    EXPECT_FALSE(o.equals(a)) << "an Object never equals a List";

    unlink({a, b, c, d, e, e2, o, p});
}

TEST(Cycles, SharedSubtreesAreComparedOnce) {
    // 2^200 paths: a walk along every path would never end.
    const DataTree x = doubling(200, 7);
    const DataTree y = doubling(200, 7);
    EXPECT_TRUE(x.equals(y));
    EXPECT_FALSE(x.equals(doubling(200, 8)));
    EXPECT_FALSE(x.equals(doubling(199, 7)));
}

TEST(Cycles, CopyingACyclicTreeIsRefused) {
    DataTree loop = DataTree::createList();
    loop.addItem(DataTree(1L));
    loop.addItem(loop);
    EXPECT_THROW_TEXT(delete loop.getNode().clone(), sorvane::RuntimeException,
                      "A DataTree that holds itself cannot be copied");

    // The cycle closed further down, through an Object.
    DataTree top = DataTree::createObject();
    DataTree middle = DataTree::createList();
    top.setItem("m", middle);
    middle.addItem(DataTree::createList());
    middle.addItem(top);
    EXPECT_THROW_TEXT(delete top.getNode().clone(), sorvane::RuntimeException,
                      "A DataTree that holds itself cannot be copied");
    EXPECT_THROW_TEXT(delete middle.getNode().clone(), sorvane::RuntimeException,
                      "A DataTree that holds itself cannot be copied");
    unlink({loop, top, middle});
}

TEST(Cycles, SharedButAcyclicTreesStillCopyDeeply) {
    // The same list twice side by side, and once more below a sibling: no
    // cycle, so the copy is made, with every occurrence its own node.
    DataTree s = DataTree::createList();
    s.addItem(DataTree(3L));
    DataTree holder = DataTree::createList();
    DataTree sibling = DataTree::createList();
    sibling.addItem(s);
    holder.addItem(s);
    holder.addItem(s);
    holder.addItem(sibling);
    DataTree copy(holder.getNode().clone());
    EXPECT_TRUE(copy.equals(holder));
    copy.getItem(0L).setItem(0L, DataTree(4L));
    EXPECT_EQ(copy.getItem(1L).getItem(0L).getInteger(), 3);
    EXPECT_EQ(s.getItem(0L).getInteger(), 3);
    EXPECT_FALSE(copy.equals(holder));
}
