// base64 encode and decode of 64 MB. Reference: memcpy of the same input in
// the same run; the counter x_memcpy is the ratio of input throughputs (thread
// CPU time on both sides).
#include <benchmark/benchmark.h>

#include <ctime>
#include <cstring>
#include <random>
#include <vector>

#include "sorvane/archive/base64.h"

namespace {

// Thread CPU seconds: both sides of the ratio are measured on the same clock,
// which a loaded machine disturbs less than the wall clock.
double cpuNow() {
    timespec t;
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &t);
    return static_cast<double>(t.tv_sec) + static_cast<double>(t.tv_nsec) * 1e-9;
}

constexpr size_t kSize = 64u << 20;

const std::vector<uint8_t>& raw() {
    static std::vector<uint8_t> bytes;
    if (bytes.empty()) {
        bytes.resize(kSize);
        std::mt19937_64 rng(1);
        for (size_t i = 0; i < kSize; i += 8) {
            const uint64_t v = rng();
            std::memcpy(bytes.data() + i, &v, 8);
        }
    }
    return bytes;
}

const std::vector<char>& text() {
    static std::vector<char> chars;
    if (chars.empty()) {
        const auto& in = raw();
        const long n = sorvane::base64encode(nullptr, 0, in.data(), static_cast<long>(in.size()),
                                             sorvane::BASE64_ENCODING_STANDARD, '=');
        chars.resize(static_cast<size_t>(n));
        sorvane::base64encode(chars.data(), n, in.data(), static_cast<long>(in.size()), sorvane::BASE64_ENCODING_STANDARD,
                              '=');
    }
    return chars;
}

double memcpyRate(const void* source, size_t size) {
    std::vector<uint8_t> target(size);
    const double start = cpuNow();
    int rounds = 0;
    double seconds = 0;
    do {
        std::memcpy(target.data(), source, size);
        benchmark::DoNotOptimize(target.data());
        benchmark::ClobberMemory();
        ++rounds;
        seconds = (cpuNow() - start);
    } while (seconds < 0.3);
    return static_cast<double>(size) * rounds / seconds;
}

void finish(benchmark::State& state, size_t size, const void* source, double start) {
    const double seconds = (cpuNow() - start);
    const double rate = static_cast<double>(size) * static_cast<double>(state.iterations()) / seconds;
    state.SetBytesProcessed(static_cast<int64_t>(size) * state.iterations());
    state.counters["GB/s"] = rate / 1e9;
    state.counters["x_memcpy"] = rate / memcpyRate(source, size);
}

void BM_Base64Encode(benchmark::State& state) {
    const auto& in = raw();
    std::vector<char> out(text().size());
    const double start = cpuNow();
    for (auto _ : state) {
        const long n = sorvane::base64encode(out.data(), static_cast<long>(out.size()), in.data(),
                                             static_cast<long>(in.size()), sorvane::BASE64_ENCODING_STANDARD, '=');
        benchmark::DoNotOptimize(n);
    }
    finish(state, in.size(), in.data(), start);
}

void BM_Base64Decode(benchmark::State& state) {
    const auto& in = text();
    std::vector<uint8_t> out(raw().size());
    const double start = cpuNow();
    for (auto _ : state) {
        const long n = sorvane::base64decode(out.data(), static_cast<long>(out.size()), in.data(),
                                             static_cast<long>(in.size()));
        if (n != static_cast<long>(out.size())) state.SkipWithError("size differs");
    }
    finish(state, in.size(), in.data(), start);
}

// The sizing pass that callers make first.
void BM_Base64DecodeSize(benchmark::State& state) {
    const auto& in = text();
    const double start = cpuNow();
    for (auto _ : state) benchmark::DoNotOptimize(sorvane::base64decode(nullptr, 0, in.data(), static_cast<long>(in.size())));
    finish(state, in.size(), in.data(), start);
}

} // namespace

BENCHMARK(BM_Base64Encode)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Base64Decode)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Base64DecodeSize)->Unit(benchmark::kMillisecond);
