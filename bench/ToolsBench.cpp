// The flat layer and the comparison against their references in one run:
// a generated getter through the flat interface against the accessor call it
// wraps; the ids of a 1 M reference list read through _get...Values against
// memcpy of the same 8 MB; compare_tensors over 64 MB of floats against
// memcmp of the same bytes. Compare the rates of each pair.
#include <benchmark/benchmark.h>

#include <cstring>
#include <sstream>
#include <string>
#include <vector>

#include "sorvane/arf/Arf.h"
#include "sorvane/arf/property/components/Mesh.h"
#include "sorvane/arf/property/components/Node.h"
#include "sorvane/sorvane.h"
#include "sorvane/tools/compare.h"

namespace {

using sorvane::arf::Arf;

constexpr long kIds = 1L << 20;
constexpr long kFloats = 16L << 20;  // 64 MB

Arf& nodeDocument() {
    static Arf arf = Arf::load(R"(memory:{"components": {"meshes": [],
        "nodes": [{"mapping": "Hips", "name": "hips", "id": 1},
                  {"mapping": "Spine", "parent": 1, "name": "spine", "id": 2}]}})");
    return arf;
}

// A mesh whose data list names 1 M ids; loading does not follow them.
Arf& idDocument() {
    static Arf arf = [] {
        std::ostringstream text;
        text << R"(memory:{"components": {"meshes": [{"name": "m", "id": 1, "data": [)";
        for (long i = 0; i < kIds; ++i) text << (i ? "," : "") << i + 1;
        text << "]}]}}";
        return Arf::load(text.str());
    }();
    return arf;
}

void BM_Getter_Accessor(benchmark::State& state) {
    auto node = nodeDocument().components.get().nodes[2];
    for (auto _ : state) benchmark::DoNotOptimize(node.parent.getIndex());
}
BENCHMARK(BM_Getter_Accessor);

void BM_Getter_Flat(benchmark::State& state) {
    auto node = nodeDocument().components.get().nodes[2];
    sorvane_arf_Node* handle = &node;
    int64_t out = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(sorvane_arf_Node_getParentIndex(&out, handle));
        benchmark::DoNotOptimize(out);
    }
}
BENCHMARK(BM_Getter_Flat);

void BM_Ids1M_FlatValues(benchmark::State& state) {
    auto mesh = idDocument().components.get().meshes[1];
    sorvane_arf_Mesh* handle = &mesh;
    std::vector<int64_t> out(static_cast<size_t>(kIds));
    int64_t count = 0;
    for (auto _ : state) {
        if (sorvane_arf_Mesh_getDataItemValues(out.data(), kIds * 8, &count, handle) != 0) state.SkipWithError("read");
        benchmark::DoNotOptimize(out.data());
    }
    state.SetBytesProcessed(state.iterations() * kIds * 8);
}
BENCHMARK(BM_Ids1M_FlatValues)->Unit(benchmark::kMicrosecond);

void BM_Ids1M_Memcpy(benchmark::State& state) {
    std::vector<int64_t> in(static_cast<size_t>(kIds), 7), out(static_cast<size_t>(kIds));
    for (auto _ : state) {
        std::memcpy(out.data(), in.data(), static_cast<size_t>(kIds) * 8);
        benchmark::DoNotOptimize(out.data());
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(state.iterations() * kIds * 8);
}
BENCHMARK(BM_Ids1M_Memcpy)->Unit(benchmark::kMicrosecond);

const std::vector<float>& floats() {
    static const std::vector<float> values = [] {
        std::vector<float> v(static_cast<size_t>(kFloats));
        for (long i = 0; i < kFloats; ++i) v[static_cast<size_t>(i)] = static_cast<float>(i % 1000) * 0.5f;
        return v;
    }();
    return values;
}

void BM_Compare64MB_CompareTensors(benchmark::State& state) {
    const std::vector<float>& a = floats();
    static const std::vector<float> b = floats();
    std::ostringstream sink;
    for (auto _ : state)
        benchmark::DoNotOptimize(sorvane::compare_tensors<float>(a.data(), {kFloats}, b.data(), {kFloats}, 0.0f, true, sink));
    state.SetBytesProcessed(state.iterations() * kFloats * 4);
}
BENCHMARK(BM_Compare64MB_CompareTensors)->Unit(benchmark::kMillisecond);

void BM_Compare64MB_Memcmp(benchmark::State& state) {
    const std::vector<float>& a = floats();
    static const std::vector<float> b = floats();
    for (auto _ : state) {
        benchmark::DoNotOptimize(std::memcmp(a.data(), b.data(), static_cast<size_t>(kFloats) * 4));
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(state.iterations() * kFloats * 4);
}
BENCHMARK(BM_Compare64MB_Memcmp)->Unit(benchmark::kMillisecond);

} // namespace
