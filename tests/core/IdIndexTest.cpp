#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <random>
#include <unordered_map>
#include <vector>

#include "sorvane/core/IdIndex.h"

using sorvane::IdIndex;

namespace {

// An index and a plain map fed the same operations must answer alike.
struct Checked {
    IdIndex index;
    std::unordered_map<int64_t, int64_t> model;

    void insert(int64_t id, int64_t position) {
        const bool fresh = model.emplace(id, position).second;
        ASSERT_EQ(index.insert(id, position), fresh) << "id " << id;
    }
    void erase(int64_t id) { ASSERT_EQ(index.erase(id), model.erase(id) != 0) << "id " << id; }
    void expectSame(const std::vector<int64_t>& probes) const {
        ASSERT_EQ(index.size(), model.size());
        for (const auto& [id, position] : model) ASSERT_EQ(index.find(id), position) << "id " << id;
        for (int64_t id : probes) {
            auto it = model.find(id);
            ASSERT_EQ(index.find(id), it == model.end() ? -1 : it->second) << "id " << id;
        }
    }
};

const std::vector<int64_t> kEdges = {0,  -1, 1, 2, 999, 1000, 1001, 5000, INT64_MIN, INT64_MIN + 1, INT64_MAX,
                                     INT64_MAX - 1, int64_t(1) << 60, -(int64_t(1) << 60), (int64_t(1) << 60) + 1};

} // namespace

TEST(IdIndex, DenseRunsInEitherDirectionAndDuplicates) {
    Checked up, down;
    for (int64_t i = 1; i <= 1000; ++i) up.insert(i, i - 1);
    for (int64_t i = 1000; i >= 1; --i) down.insert(i, 1000 - i);
    up.expectSame(kEdges);
    down.expectSame(kEdges);

    // The first position of an id stays; a second insert is refused.
    up.insert(500, 7);
    EXPECT_EQ(up.index.find(500), 499);
    // Removed ids read as absent and can come back at another position.
    up.erase(500);
    up.erase(500);
    up.expectSame({500});
    up.insert(500, 42);
    up.expectSame({500});

    // Ids from zero and below.
    Checked low;
    for (int64_t i = -10; i <= 10; ++i) low.insert(i, i + 10);
    low.expectSame(kEdges);
}

TEST(IdIndex, FarApartIdsAndHugePositionsStillFound) {
    Checked c;
    for (int64_t i = 1; i <= 100; ++i) c.insert(i, i);
    c.insert(int64_t(1) << 40, 101);  // far from the others: the index changes form
    c.insert(INT64_MAX, 102);
    c.insert(INT64_MIN, 103);
    c.insert(-(int64_t(1) << 60) - 1, 104);
    c.expectSame(kEdges);
    c.erase(50);
    c.insert(50, 105);
    c.expectSame(kEdges);

    // Extreme ids as the first ones, and positions past 32 bits.
    Checked extreme;
    extreme.insert(INT64_MAX, 0);
    extreme.insert(INT64_MIN, 1);
    extreme.insert(0, int64_t(1) << 33);
    extreme.expectSame(kEdges);
    Checked wide;
    wide.insert(1, 0);
    wide.insert(2, int64_t(std::numeric_limits<int32_t>::max()) + 1);
    wide.insert(3, 2);
    wide.expectSame(kEdges);

    c.index.clear();
    c.model.clear();
    c.insert(7, 0);  // dense again after a clear
    c.expectSame(kEdges);
}

TEST(IdIndex, AgreesWithAMapUnderMixedOperations) {
    std::mt19937_64 random(11);
    for (int round = 0; round < 40; ++round) {
        Checked c;
        // Mostly dense ids with a growing spread, so that some rounds stay
        // tables and others turn into maps part way.
        const int64_t spread = int64_t(1) << (round % 20);
        const int64_t shift = static_cast<int64_t>(random() % 2000) - 1000;
        for (int step = 0; step < 400; ++step) {
            const int64_t id = shift + static_cast<int64_t>(random() % static_cast<uint64_t>(spread + 50));
            if (random() % 4 == 0) c.erase(id);
            else c.insert(id, step);
        }
        std::vector<int64_t> probes = kEdges;
        for (int64_t probe = shift - 5; probe < shift + 60; ++probe) probes.push_back(probe);
        c.expectSame(probes);
    }
}
