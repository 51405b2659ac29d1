// Sample stream throughput: 10,000 face units (52 blendshape weights each)
// and 10,000 body units (84 joint transforms each), decoded from 4 KB chunks
// and encoded. Reference: memcpy of the same bytes in the same 4 KB chunks,
// measured in the same run; the counter x_memcpy is the ratio of throughputs
// (thread CPU time on both sides).
#include <benchmark/benchmark.h>

#include <ctime>
#include <cstring>
#include <memory>
#include <vector>

#include "sorvane/arf/animation/stream/AnimationSampleStream.h"
#include "sorvane/arf/animation/stream/BlendshapeAnimationSample.h"
#include "sorvane/arf/animation/stream/JointAnimationSample.h"

using namespace sorvane::arf;

namespace {

// Thread CPU seconds: both sides of the ratio are measured on the same clock,
// which a loaded machine disturbs less than the wall clock.
double cpuNow() {
    timespec t;
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &t);
    return static_cast<double>(t.tv_sec) + static_cast<double>(t.tv_nsec) * 1e-9;
}

constexpr int kUnits = 10000;
constexpr size_t kChunk = 4096;

std::vector<std::unique_ptr<UnitAnimationSample>> makeSamples(bool face) {
    std::vector<std::unique_ptr<UnitAnimationSample>> samples;
    for (int u = 0; u < kUnits; ++u) {
        if (face) {
            auto s = std::make_unique<BlendshapeAnimationSample>();
            s->setSetId(0);
            s->setBlendshapeCount(52);
            for (long i = 0; i < 52; ++i) {
                s->setBlendshapeId(i, i);
                s->setBlendshapeWeight(i, static_cast<float>((u + i) % 100) / 100.0f);
            }
            samples.push_back(std::move(s));
        } else {
            auto s = std::make_unique<JointAnimationSample>();
            s->setSetId(0);
            s->setJointCount(84);
            for (long j = 0; j < 84; ++j) {
                auto& joint = s->getJoints()[static_cast<size_t>(j)];
                joint.id = j;
                for (int k = 0; k < 16; ++k) joint.transform[k] = static_cast<float>(u % 7 + j + k) * 0.01f;
            }
            samples.push_back(std::move(s));
        }
    }
    return samples;
}

const std::vector<uint8_t>& streamBytes(bool face) {
    static std::vector<uint8_t> cache[2];
    std::vector<uint8_t>& bytes = cache[face ? 1 : 0];
    if (bytes.empty()) {
        auto samples = makeSamples(face);
        AnimationSampleStream stream(false);
        for (int u = 0; u < kUnits; ++u) stream.addUnitSample(static_cast<float>(u * 33), samples[static_cast<size_t>(u)].get());
        bytes = stream.flushBytes();
    }
    return bytes;
}

// Bytes per second of memcpy over the same bytes in the same chunks.
double memcpyRate(const std::vector<uint8_t>& bytes) {
    std::vector<uint8_t> target(bytes.size());
    const double start = cpuNow();
    int rounds = 0;
    double seconds = 0;
    do {
        for (size_t at = 0; at < bytes.size(); at += kChunk)
            std::memcpy(target.data() + at, bytes.data() + at, std::min(kChunk, bytes.size() - at));
        benchmark::DoNotOptimize(target.data());
        benchmark::ClobberMemory();
        ++rounds;
        seconds = (cpuNow() - start);
    } while (seconds < 0.2);
    return static_cast<double>(bytes.size()) * rounds / seconds;
}

void report(benchmark::State& state, const std::vector<uint8_t>& bytes, double seconds) {
    const double iterations = static_cast<double>(state.iterations());
    const double rate = static_cast<double>(bytes.size()) * iterations / seconds;
    state.SetBytesProcessed(static_cast<int64_t>(bytes.size()) * state.iterations());
    state.counters["units/s"] = benchmark::Counter(kUnits * iterations, benchmark::Counter::kIsRate);
    state.counters["x_memcpy"] = rate / memcpyRate(bytes);
}

void decode(benchmark::State& state, bool face) {
    const auto& bytes = streamBytes(face);
    const double start = cpuNow();
    for (auto _ : state) {
        AnimationSampleStream stream(false);
        long units = 0;
        for (size_t at = 0; at < bytes.size(); at += kChunk) {
            stream.feed(bytes.data() + at, static_cast<long>(std::min(kChunk, bytes.size() - at)));
            for (;;) {
                auto next = stream.nextUnitSamplePtr();
                if (!next.first) break;
                benchmark::DoNotOptimize(next.second);
                delete next.first;
                delete next.second;
                ++units;
            }
        }
        if (units != kUnits) state.SkipWithError("lost units");
    }
    report(state, bytes, (cpuNow() - start));
}

// The same, decoding into one header and sample reused for every unit, as a
// receiver that decodes every frame does.
void decodeReusing(benchmark::State& state, bool face) {
    const auto& bytes = streamBytes(face);
    const double start = cpuNow();
    for (auto _ : state) {
        AnimationSampleStream stream(false);
        HeaderAnimationSample header;
        std::unique_ptr<UnitAnimationSample> sample;
        long units = 0;
        for (size_t at = 0; at < bytes.size(); at += kChunk) {
            stream.feed(bytes.data() + at, static_cast<long>(std::min(kChunk, bytes.size() - at)));
            while (stream.nextUnitSample(header, sample)) {
                benchmark::DoNotOptimize(sample.get());
                ++units;
            }
        }
        if (units != kUnits) state.SkipWithError("lost units");
    }
    report(state, bytes, (cpuNow() - start));
}

void encode(benchmark::State& state, bool face) {
    const auto& bytes = streamBytes(face);
    const auto samples = makeSamples(face);
    std::vector<uint8_t> out(bytes.size() + kChunk);
    const double start = cpuNow();
    for (auto _ : state) {
        AnimationSampleStream stream(false);
        size_t written = 0;
        for (int u = 0; u < kUnits; ++u) {
            stream.addUnitSample(static_cast<float>(u * 33), samples[static_cast<size_t>(u)].get());
            // Drain in 4 KB steps, as a sender would hand chunks to a socket.
            if (stream.getBitSize() >= static_cast<long>(kChunk * 8))
                written += static_cast<size_t>(stream.flush(out.data() + written, static_cast<long>(out.size() - written)));
        }
        written += static_cast<size_t>(stream.flush(out.data() + written, static_cast<long>(out.size() - written)));
        if (written != bytes.size()) state.SkipWithError("size differs");
        benchmark::DoNotOptimize(out.data());
    }
    report(state, bytes, (cpuNow() - start));
}

void BM_StreamDecodeFace(benchmark::State& state) { decode(state, true); }
void BM_StreamDecodeBody(benchmark::State& state) { decode(state, false); }
void BM_StreamDecodeFaceReusing(benchmark::State& state) { decodeReusing(state, true); }
void BM_StreamDecodeBodyReusing(benchmark::State& state) { decodeReusing(state, false); }
void BM_StreamEncodeFace(benchmark::State& state) { encode(state, true); }
void BM_StreamEncodeBody(benchmark::State& state) { encode(state, false); }

void BM_StreamMemcpyReference(benchmark::State& state) {
    const auto& bytes = streamBytes(state.range(0) != 0);
    std::vector<uint8_t> target(bytes.size());
    for (auto _ : state) {
        for (size_t at = 0; at < bytes.size(); at += kChunk)
            std::memcpy(target.data() + at, bytes.data() + at, std::min(kChunk, bytes.size() - at));
        benchmark::DoNotOptimize(target.data());
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(static_cast<int64_t>(bytes.size()) * state.iterations());
}

} // namespace

BENCHMARK(BM_StreamDecodeFace)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_StreamDecodeFaceReusing)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_StreamDecodeBodyReusing)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_StreamDecodeBody)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_StreamEncodeFace)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_StreamEncodeBody)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_StreamMemcpyReference)->Arg(1)->Arg(0)->Unit(benchmark::kMillisecond);
