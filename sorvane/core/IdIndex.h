#ifndef SORVANE_CORE_IDINDEX_H
#define SORVANE_CORE_IDINDEX_H

#include <cstdint>
#include <unordered_map>
#include <vector>

namespace sorvane {

// Positions of 64-bit ids in a list, the first position of each id.
//
// Documents number their items densely (1, 2, 3 ... or 0, 1, 2 ...), so the
// ids live in a table indexed by `id - base` while they stay dense: one load
// per lookup, a few bytes per id. Ids far apart move the index into a hash
// map for good (until `clear`).
class IdIndex {
public:
    void clear() {
        table.clear();
        base = 0;
        lowest = highest = 0;
        count = 0;
        sparse = false;
        map.clear();
    }

    // -1 when the id is not in the index.
    int64_t find(int64_t id) const {
        if (!sparse) {
            const uint64_t slot = static_cast<uint64_t>(id) - static_cast<uint64_t>(base);
            return slot < table.size() ? table[slot] : -1;
        }
        auto it = map.find(id);
        return it == map.end() ? -1 : it->second;
    }

    // False, and the index unchanged, when the id is already there.
    bool insert(int64_t id, int64_t position) {
        if (!sparse && position <= INT32_MAX && makeRoom(id)) {
            int32_t& slot = table[static_cast<uint64_t>(id) - static_cast<uint64_t>(base)];
            if (slot >= 0) return false;
            slot = static_cast<int32_t>(position);
            if (count == 0 || id < lowest) lowest = id;
            if (count == 0 || id > highest) highest = id;
            ++count;
            return true;
        }
        if (!sparse) toMap();
        return map.emplace(id, position).second;
    }

    // False when the id was not there.
    bool erase(int64_t id) {
        if (sparse) return map.erase(id) != 0;
        const uint64_t slot = static_cast<uint64_t>(id) - static_cast<uint64_t>(base);
        if (slot >= table.size() || table[slot] < 0) return false;
        table[slot] = -1;
        --count;  // the bounds stay as they were: they only decide when to go sparse
        return true;
    }

    size_t size() const { return sparse ? map.size() : count; }

private:
    // Ids this far from zero are left to the map, so that the bounds
    // arithmetic below cannot overflow.
    static constexpr int64_t kReach = INT64_C(1) << 60;

    // Grows the table to cover `id`; false when the ids would no longer be
    // dense enough for a table.
    bool makeRoom(int64_t id) {
        if (id < -kReach || id > kReach) return false;
        const int64_t end = base + static_cast<int64_t>(table.size());
        if (!table.empty() && id >= base && id < end) return true;
        const int64_t lo = count == 0 || id < lowest ? id : lowest;
        const int64_t hi = count == 0 || id > highest ? id : highest;
        const uint64_t span = static_cast<uint64_t>(hi - lo) + 1;
        // At most four slots per id (plus a little for short lists).
        if (span > 4 * static_cast<uint64_t>(count + 1) + 64) return false;
        // Room on the side the ids grow towards, so that runs of ascending or
        // descending ids copy the table a logarithmic number of times.
        const int64_t capacity = static_cast<int64_t>(span + span / 2 + 16);
        const int64_t newBase = table.empty() || id >= base ? lo : hi - capacity + 1;
        std::vector<int32_t> grown(static_cast<size_t>(capacity), -1);
        for (size_t i = 0; i < table.size(); ++i)
            if (table[i] >= 0) grown[static_cast<size_t>(base - newBase) + i] = table[i];
        table.swap(grown);
        base = newBase;
        return true;
    }

    void toMap() {
        map.clear();
        map.reserve(count + 1);
        for (size_t i = 0; i < table.size(); ++i)
            if (table[i] >= 0) map.emplace(base + static_cast<int64_t>(i), table[i]);
        table.clear();
        table.shrink_to_fit();
        sparse = true;
    }

    std::vector<int32_t> table;  // position, or -1 for an id not in the list
    int64_t base = 0;            // the id of table[0]
    int64_t lowest = 0, highest = 0;
    size_t count = 0;
    bool sparse = false;
    std::unordered_map<int64_t, int64_t> map;
};

} // namespace sorvane

#endif
