// What the two accessor benchmark files share: a stream over bytes in memory,
// the .glb decoded from it, and the three loops compared (every accessor as a
// tensor through handles, through the node layer, all in one call, and the
// reference: a new block and a memcpy of the same bytes per accessor).
#ifndef TALVEX_BENCH_GLTF_ACCESSOR_READS_H
#define TALVEX_BENCH_GLTF_ACCESSOR_READS_H

#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstring>
#include <istream>
#include <memory>
#include <streambuf>
#include <utility>
#include <vector>

#include "sorvane/gltf2/Gltf.h"

namespace talvex_bench {

// A read-only stream over bytes held elsewhere.
class Span : public std::streambuf {
public:
    explicit Span(const std::vector<uint8_t>& bytes) {
        char* p = const_cast<char*>(reinterpret_cast<const char*>(bytes.data()));
        setg(p, p, p + bytes.size());
    }

protected:
    pos_type seekoff(off_type off, std::ios_base::seekdir dir, std::ios_base::openmode) override {
        char* target = dir == std::ios_base::beg ? eback() + off : dir == std::ios_base::cur ? gptr() + off : egptr() + off;
        if (target < eback() || target > egptr()) return pos_type(off_type(-1));
        setg(eback(), target, egptr());
        return pos_type(target - eback());
    }
    pos_type seekpos(pos_type pos, std::ios_base::openmode mode) override {
        return seekoff(off_type(pos), std::ios_base::beg, mode);
    }
};

inline sorvane::gltf2::Gltf decodeGlb(const std::vector<uint8_t>& bytes) {
    Span span(bytes);
    std::istream in(&span);
    return sorvane::gltf2::Gltf::decode(in);
}

// Where each accessor's bytes are in the .glb and how many there are.
inline std::vector<std::pair<size_t, size_t>> accessorRanges(const std::vector<uint8_t>& bytes) {
    const sorvane::gltf2::Gltf gltf = decodeGlb(bytes);
    uint32_t jsonLength = 0;
    std::memcpy(&jsonLength, bytes.data() + 12, 4);
    const size_t bin = 28 + jsonLength;
    const auto& views = gltf.getRoot()->getBufferViews()->getItems();
    std::vector<std::pair<size_t, size_t>> ranges;
    for (const auto& node : gltf.getRoot()->getAccessors()->getItems()) {
        const auto& view = views[static_cast<size_t>(node->getBufferView())];
        const size_t size = static_cast<size_t>(sorvane::gltf2::BinaryData::getDataSize(*node));
        ranges.emplace_back(bin + static_cast<size_t>(view->getByteOffset() + node->getByteOffset()), size);
    }
    return ranges;
}

// Through the accessor handles a user takes from the list.
inline void readThroughHandles(benchmark::State& state, const std::vector<uint8_t>& bytes) {
    const sorvane::gltf2::Gltf gltf = decodeGlb(bytes);
    auto accessors = gltf.accessors.get();
    const int64_t count = accessors.size();
    int64_t total = 0;
    for (auto _ : state) {
        total = 0;
        for (int64_t i = 0; i < count; ++i) {
            sorvane::DataTree tensor = accessors.getByIndex(i).getTensor();
            benchmark::DoNotOptimize(tensor.getBuffer());
            total += tensor.getBufferSize();
        }
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * total);
    state.counters["accessors"] = static_cast<double>(count);
}

// The same reads through the node layer, without an accessor handle per item
// (a handle carries one member accessor per key).
inline void readThroughNodes(benchmark::State& state, const std::vector<uint8_t>& bytes) {
    const sorvane::gltf2::Gltf gltf = decodeGlb(bytes);
    const auto& nodes = gltf.getRoot()->getAccessors()->getItems();
    int64_t total = 0;
    for (auto _ : state) {
        total = 0;
        for (const auto& node : nodes) {
            sorvane::DataTree tensor = sorvane::gltf2::BinaryData::getTensor(*node);
            benchmark::DoNotOptimize(tensor.getBuffer());
            total += tensor.getBufferSize();
        }
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * total);
}

// Every accessor in one call through the list handle.
inline void readAllAtOnce(benchmark::State& state, const std::vector<uint8_t>& bytes) {
    const sorvane::gltf2::Gltf gltf = decodeGlb(bytes);
    auto accessors = gltf.accessors.get();
    int64_t total = 0;
    for (auto _ : state) {
        total = 0;
        const std::vector<sorvane::DataTree> tensors = accessors.getTensors();
        for (const sorvane::DataTree& tensor : tensors) {
            benchmark::DoNotOptimize(tensor.getBuffer());
            total += tensor.getBufferSize();
        }
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * total);
}

// The reference: a new block per accessor and a memcpy of its bytes, from
// where they lie in the .glb.
inline void copyEveryAccessor(benchmark::State& state, const std::vector<uint8_t>& bytes) {
    const auto ranges = accessorRanges(bytes);
    int64_t total = 0;
    for (auto _ : state) {
        total = 0;
        for (const auto& range : ranges) {
            std::unique_ptr<uint8_t[]> block(new uint8_t[range.second]);
            std::memcpy(block.get(), bytes.data() + range.first, range.second);
            benchmark::DoNotOptimize(block.get());
            total += static_cast<int64_t>(range.second);
        }
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * total);
}

// Every accessor through the node layer, all tensors kept until the pass ends,
// as a caller that wants the whole file holds them.
inline void readThroughNodesKept(benchmark::State& state, const std::vector<uint8_t>& bytes) {
    const sorvane::gltf2::Gltf gltf = decodeGlb(bytes);
    const auto& nodes = gltf.getRoot()->getAccessors()->getItems();
    int64_t total = 0;
    std::vector<sorvane::DataTree> tensors;
    for (auto _ : state) {
        total = 0;
        tensors.clear();
        tensors.reserve(nodes.size());
        for (const auto& node : nodes) tensors.push_back(sorvane::gltf2::BinaryData::getTensor(*node));
        for (const sorvane::DataTree& tensor : tensors) {
            benchmark::DoNotOptimize(tensor.getBuffer());
            total += tensor.getBufferSize();
        }
        tensors.clear();
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * total);
}

// The reference for reads that keep every block until the pass ends: a new
// block per accessor and a memcpy of its bytes, all freed at the end.
inline void copyEveryAccessorKept(benchmark::State& state, const std::vector<uint8_t>& bytes) {
    const auto ranges = accessorRanges(bytes);
    int64_t total = 0;
    std::vector<std::unique_ptr<uint8_t[]>> blocks;
    for (auto _ : state) {
        total = 0;
        blocks.clear();
        blocks.reserve(ranges.size());
        for (const auto& range : ranges) {
            blocks.emplace_back(new uint8_t[range.second]);
            std::memcpy(blocks.back().get(), bytes.data() + range.first, range.second);
            benchmark::DoNotOptimize(blocks.back().get());
            total += static_cast<int64_t>(range.second);
        }
        blocks.clear();
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * total);
}

// The bytes alone: every accessor's bytes copied, in order, into one block
// made once.
inline void copyEveryAccessorWhole(benchmark::State& state, const std::vector<uint8_t>& bytes) {
    const auto ranges = accessorRanges(bytes);
    size_t size = 0;
    for (const auto& range : ranges) size += range.second;
    std::vector<uint8_t> target(size, 1);
    int64_t total = 0;
    for (auto _ : state) {
        uint8_t* at = target.data();
        for (const auto& range : ranges) {
            std::memcpy(at, bytes.data() + range.first, range.second);
            at += range.second;
        }
        benchmark::DoNotOptimize(target.data());
        benchmark::ClobberMemory();
        total = static_cast<int64_t>(size);
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * total);
}

} // namespace talvex_bench

#endif
