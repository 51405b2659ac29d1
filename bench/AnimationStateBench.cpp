// Animation state per tracker frame: the bulk calls a receiver makes on a
// frame (52 weights, 84 matrices) and on an avatar's components (84 joints),
// each measured with memcpy of the same bytes in the same run. Counters:
// x_memcpy is the call's time over memcpy's; allocs is the number of heap
// allocations per call (counted by this program's operator new).
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <cstring>
#include <ctime>
#include <new>
#include <string>
#include <vector>

#include "sorvane/arf/Arf.h"
#include "sorvane/arf/animation/AnimationComponents.h"
#include "sorvane/arf/animation/AnimationFramework.h"

namespace {
// Per thread and not atomic: the replacement new serves every benchmark of
// this program, and a locked add on each allocation taxed the library's
// side of the JSON and document benchmarks (their references allocate
// with malloc, which is not counted).
thread_local long allocations = 0;
}

void* operator new(std::size_t size) {
    ++allocations;
    if (void* p = std::malloc(size ? size : 1)) return p;
    throw std::bad_alloc();
}
void operator delete(void* p) noexcept { std::free(p); }
void operator delete(void* p, std::size_t) noexcept { std::free(p); }

// Heap allocations so far on the calling thread, for the other benchmark files.
long talvexBenchAllocations() { return allocations; }

using namespace sorvane::arf;

namespace {

constexpr int kCalls = 1000;
constexpr long kJoints = 84;

double cpuNow() {
    timespec t;
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &t);
    return static_cast<double>(t.tv_sec) + static_cast<double>(t.tv_nsec) * 1e-9;
}

// Seconds per memcpy of `bytes`, over at least 0.1 s.
double memcpySeconds(size_t bytes) {
    std::vector<char> from(bytes, 1), to(bytes);
    long rounds = 0;
    const double start = cpuNow();
    double seconds = 0;
    do {
        for (int i = 0; i < kCalls; ++i) {
            std::memcpy(to.data(), from.data(), bytes);
            benchmark::DoNotOptimize(to.data());
            benchmark::ClobberMemory();
        }
        rounds += kCalls;
        seconds = cpuNow() - start;
    } while (seconds < 0.1);
    return seconds / static_cast<double>(rounds);
}

// Runs call() kCalls times per iteration and reports against memcpy.
template <class Call>
void measure(benchmark::State& state, size_t bytes, Call&& call) {
    call(); // first touch outside the count
    const long before = allocations;
    const double start = cpuNow();
    for (auto _ : state) {
        for (int i = 0; i < kCalls; ++i) {
            call();
            benchmark::ClobberMemory();
        }
    }
    const double seconds = cpuNow() - start;
    const double calls = static_cast<double>(state.iterations()) * kCalls;
    state.counters["allocs"] = static_cast<double>(allocations - before) / calls;
    state.counters["x_memcpy"] = (seconds / calls) / memcpySeconds(bytes);
    state.counters["ns/call"] = seconds / calls * 1e9;
}

Arf skeletonDocument() {
    std::string json = R"(memory:{"components": {"meshes": [], "nodes": [)";
    for (long j = 0; j < kJoints; ++j)
        json += (j ? "," : "") + std::string(R"({"mapping": "n", "translation": [1, 2, 3], "name": "n", "id": )") +
                std::to_string(j + 1) + "}";
    json += R"(], "skeletons": [{"root": 1, "joints": [)";
    for (long j = 0; j < kJoints; ++j)
        json += (j ? "," : "") + std::string(R"({"node": )") + std::to_string(j + 1) + R"(, "id": )" +
                std::to_string(j) + "}";
    json += R"(], "name": "s", "id": 1}]}})";
    return Arf::load(json);
}

void BM_ComponentsGetJointTransforms(benchmark::State& state) {
    AnimationComponents components(skeletonDocument());
    std::vector<float> out(kJoints * 16);
    measure(state, out.size() * 4, [&] {
        components.getJointTransforms(out.data(), static_cast<long>(out.size() * 4), 1);
        benchmark::DoNotOptimize(out.data());
    });
}

void BM_ComponentsSetJointTransforms(benchmark::State& state) {
    AnimationComponents components(skeletonDocument());
    std::vector<float> in(kJoints * 16, 0.5f);
    measure(state, in.size() * 4,
            [&] { components.setJointTransforms(1, in.data(), static_cast<long>(in.size() * 4), kJoints); });
}

void BM_FrameGetTransforms(benchmark::State& state) {
    auto frame = AnimationFramework::create("urn:khronos:openxr:body-tracking:meta-full-body", 0)->createData();
    std::vector<float> out(kJoints * 16);
    measure(state, out.size() * 4, [&] {
        frame->getTransforms(out.data(), static_cast<long>(out.size() * 4));
        benchmark::DoNotOptimize(out.data());
    });
}

void BM_FrameSetTransforms(benchmark::State& state) {
    auto frame = AnimationFramework::create("urn:khronos:openxr:body-tracking:meta-full-body", 0)->createData();
    std::vector<float> in(kJoints * 16, 0.5f);
    measure(state, in.size() * 4, [&] {
        frame->setTransforms(in.data(), static_cast<long>(in.size() * 4), static_cast<long>(in.size()));
    });
}

void BM_FrameGetWeights(benchmark::State& state) {
    auto frame = AnimationFramework::create("urn:mpeg:avatar:blendshapes:mediapipe", 0)->createData();
    std::vector<float> out(52);
    measure(state, out.size() * 4, [&] {
        frame->getWeights(out.data(), static_cast<long>(out.size() * 4));
        benchmark::DoNotOptimize(out.data());
    });
}

void BM_FrameSetWeights(benchmark::State& state) {
    auto frame = AnimationFramework::create("urn:mpeg:avatar:blendshapes:mediapipe", 0)->createData();
    std::vector<float> in(52, 0.5f);
    measure(state, in.size() * 4,
            [&] { frame->setWeights(in.data(), static_cast<long>(in.size() * 4), static_cast<long>(in.size())); });
}

} // namespace

BENCHMARK(BM_ComponentsGetJointTransforms);
BENCHMARK(BM_ComponentsSetJointTransforms);
BENCHMARK(BM_FrameGetTransforms);
BENCHMARK(BM_FrameSetTransforms);
BENCHMARK(BM_FrameGetWeights);
BENCHMARK(BM_FrameSetWeights);
