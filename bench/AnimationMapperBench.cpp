// The mapper per tracker frame: a face (52 blendshapes, each the sum of two
// weighted mediapipe inputs) and a body (84 joints bypassed from a full-body
// tracker). One call is what a receiver does per frame: setWeights and
// setTransforms on the frames, both updateComponents, getBlendshapeWeights and
// getJointTransforms. In the same run a hand-written kernel does the same
// arithmetic and copies on plain arrays. Counters: x_kernel is the call's
// time over the kernel's; allocs is heap allocations per call.
#include <benchmark/benchmark.h>

#include <cstring>
#include <ctime>
#include <string>
#include <vector>

#include "sorvane/arf/Arf.h"
#include "sorvane/arf/animation/AnimationComponents.h"
#include "sorvane/arf/animation/AnimationFramework.h"
#include "sorvane/arf/animation/AnimationMapper.h"
#include "sorvane/arf/animation/stream/BlendshapeAnimationSample.h"
#include "sorvane/arf/animation/stream/JointAnimationSample.h"

long talvexBenchAllocations();

using namespace sorvane::arf;

namespace {

constexpr long kShapes = 52;
constexpr long kJoints = 84;
constexpr int kCalls = 1000;
const char* const kFace = "urn:mpeg:avatar:blendshapes:mediapipe";
const char* const kBody = "urn:khronos:openxr:body-tracking:meta-full-body";

double cpuNow() {
    timespec t;
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &t);
    return static_cast<double>(t.tv_sec) + static_cast<double>(t.tv_nsec) * 1e-9;
}

long source(long shape, int k) { return k == 0 ? shape : (shape + 1) % kShapes; }

Arf faceDocument() {
    std::string json = std::string(R"(memory:{"preamble": {"signature": "MPEG-ARF-2025", "version": "1.0.0",
        "supportedAnimations": {"faceAnimations": ["urn:example:rig", ")") + kFace +
                       R"("]}}, "components": {"meshes": [], "blendshapeSets": [{"animationInfo": [{"type":
        "ANIMATION_FACE", "target": 0, "mappings": [{"source": 1, "linearAssociations": [)";
    for (long i = 0; i < kShapes; ++i)
        json += (i ? ", " : "") + std::string(R"({"targetIndex": )") + std::to_string(i) + R"(, "sourceIndices": [)" +
                std::to_string(source(i, 0)) + ", " + std::to_string(source(i, 1)) + R"(], "weights": [0.5, 0.25]})";
    json += R"(]}]}], "shapes": [)";
    for (long i = 0; i < kShapes; ++i)
        json += (i ? ", " : "") + std::string(R"({"shape": 1, "name": "s", "id": )") + std::to_string(i) + "}";
    return Arf::load(json + R"(], "baseMesh": 1, "name": "face", "id": 1}]}})");
}

Arf bodyDocument() {
    std::string json = std::string(R"(memory:{"preamble": {"signature": "MPEG-ARF-2025", "version": "1.0.0",
        "supportedAnimations": {"bodyAnimations": [")") + kBody + R"("]}}, "components": {"meshes": [], "nodes": [)";
    for (long j = 0; j < kJoints; ++j)
        json += (j ? "," : "") + std::string(R"({"mapping": "n", "translation": [1, 2, 3], "name": "n", "id": )") +
                std::to_string(j + 1) + "}";
    json += R"(], "skeletons": [{"root": 1, "animationInfo": [{"type": "ANIMATION_BODY", "target": 0}], "joints": [)";
    for (long j = 0; j < kJoints; ++j)
        json += (j ? "," : "") + std::string(R"({"node": )") + std::to_string(j + 1) + R"(, "id": )" +
                std::to_string(j) + "}";
    return Arf::load(json + R"(], "name": "s", "id": 1}]}})");
}

// What a tracker hands over per frame, and where the receiver wants it back.
struct Io {
    std::vector<float> weightsIn = std::vector<float>(kShapes), transformsIn = std::vector<float>(kJoints * 16);
    std::vector<float> weightsOut = std::vector<float>(kShapes), transformsOut = std::vector<float>(kJoints * 16);
    Io() {
        for (size_t i = 0; i < weightsIn.size(); ++i) weightsIn[i] = static_cast<float>(i % 10) * 0.1f;
        for (size_t i = 0; i < transformsIn.size(); ++i) transformsIn[i] = static_cast<float>(i % 17) * 0.25f;
    }
};

// The same work on plain arrays: copy in, two weighted reads per shape, one
// matrix copy per joint, copy out.
struct Kernel {
    std::vector<float> faceFrame = std::vector<float>(kShapes), bodyFrame = std::vector<float>(kJoints * 16);
    std::vector<float> weights = std::vector<float>(kShapes), joints = std::vector<float>(kJoints * 16);
    std::vector<long> first, second, jointSource;
    std::vector<float> firstWeight, secondWeight;
    Kernel() {
        for (long i = 0; i < kShapes; ++i) {
            first.push_back(source(i, 0));
            second.push_back(source(i, 1));
            firstWeight.push_back(0.5f);
            secondWeight.push_back(0.25f);
        }
        for (long j = 0; j < kJoints; ++j) jointSource.push_back(j * 16);
    }
    void run(Io& io) {
        std::memcpy(faceFrame.data(), io.weightsIn.data(), kShapes * sizeof(float));
        std::memcpy(bodyFrame.data(), io.transformsIn.data(), kJoints * 16 * sizeof(float));
        for (long i = 0; i < kShapes; ++i) {
            float acc = faceFrame[static_cast<size_t>(first[i])] * firstWeight[i];
            acc = acc + faceFrame[static_cast<size_t>(second[i])] * secondWeight[i];
            weights[static_cast<size_t>(i)] = acc;
        }
        for (long j = 0; j < kJoints; ++j)
            std::memcpy(joints.data() + j * 16, bodyFrame.data() + jointSource[static_cast<size_t>(j)], 16 * sizeof(float));
        std::memcpy(io.weightsOut.data(), weights.data(), kShapes * sizeof(float));
        std::memcpy(io.transformsOut.data(), joints.data(), kJoints * 16 * sizeof(float));
    }
};

double kernelSeconds() {
    Io io;
    Kernel kernel;
    long rounds = 0;
    double seconds = 0;
    const double start = cpuNow();
    do {
        for (int i = 0; i < kCalls; ++i) {
            kernel.run(io);
            benchmark::DoNotOptimize(io.weightsOut.data());
            benchmark::DoNotOptimize(io.transformsOut.data());
            benchmark::ClobberMemory();
        }
        rounds += kCalls;
        seconds = cpuNow() - start;
    } while (seconds < 0.1);
    return seconds / static_cast<double>(rounds);
}

struct Receiver {
    Arf face = faceDocument(), body = bodyDocument();
    AnimationMapper faceMapper{face, AnimationFramework::create(kFace, 0)};
    AnimationMapper bodyMapper{body, AnimationFramework::create(kBody, 0)};
    AnimationComponents faceState{face}, bodyState{body};
    std::shared_ptr<AnimationData> faceFrame = faceMapper.getFramework()->createData();
    std::shared_ptr<AnimationData> bodyFrame = bodyMapper.getFramework()->createData();

    template <bool keyed>
    void run(Io& io) {
        faceFrame->setWeights(io.weightsIn.data(), kShapes * 4, kShapes);
        bodyFrame->setTransforms(io.transformsIn.data(), kJoints * 64, kJoints * 16);
        if (keyed) {
            faceMapper.updateComponentsKeyed(&faceState, faceFrame.get());
            bodyMapper.updateComponentsKeyed(&bodyState, bodyFrame.get());
        } else {
            faceMapper.updateComponents(&faceState, faceFrame.get());
            bodyMapper.updateComponents(&bodyState, bodyFrame.get());
        }
        faceState.getBlendshapeWeights(io.weightsOut.data(), kShapes * 4, 1);
        bodyState.getJointTransforms(io.transformsOut.data(), kJoints * 64, 1);
    }
};

template <class Call>
void measure(benchmark::State& state, Io& io, Call&& call) {
    call(); // first touch outside the count
    const long before = talvexBenchAllocations();
    const double start = cpuNow();
    for (auto _ : state) {
        for (int i = 0; i < kCalls; ++i) {
            call();
            benchmark::DoNotOptimize(io.weightsOut.data());
            benchmark::DoNotOptimize(io.transformsOut.data());
            benchmark::ClobberMemory();
        }
    }
    const double seconds = cpuNow() - start;
    const double calls = static_cast<double>(state.iterations()) * kCalls;
    state.counters["allocs"] = static_cast<double>(talvexBenchAllocations() - before) / calls;
    state.counters["ns/call"] = seconds / calls * 1e9;
    state.counters["x_kernel"] = (seconds / calls) / kernelSeconds();
}

void BM_MapperFrame(benchmark::State& state) {
    Io io, expected;
    Receiver r;
    Kernel kernel;
    kernel.run(expected);
    r.run<false>(io);
    if (io.weightsOut != expected.weightsOut || io.transformsOut != expected.transformsOut) {
        state.SkipWithError("the mapper and the kernel disagree");
        return;
    }
    measure(state, io, [&] { r.run<false>(io); });
}

// The operators by location (map lookups, a value copied per target): what
// the plan replaces, for comparison.
void BM_MapperFrameKeyed(benchmark::State& state) {
    Io io;
    Receiver r;
    measure(state, io, [&] { r.run<true>(io); });
}

// The same per decoded stream unit: a blendshape sample of 52 entries and a
// joint sample of 84, as nextUnitSample leaves them.
void BM_MapperSample(benchmark::State& state) {
    Io io;
    Receiver r;
    BlendshapeAnimationSample face;
    JointAnimationSample body;
    face.setBlendshapeCount(kShapes);
    for (long i = 0; i < kShapes; ++i) face.setBlendshapeId(i, i);
    body.setJointCount(kJoints);
    for (long j = 0; j < kJoints; ++j) body.getJoints()[static_cast<size_t>(j)].id = j;
    measure(state, io, [&] {
        for (long i = 0; i < kShapes; ++i) face.getBlendshapes()[static_cast<size_t>(i)].weight = io.weightsIn[static_cast<size_t>(i)];
        for (long j = 0; j < kJoints; ++j)
            std::memcpy(body.getJoints()[static_cast<size_t>(j)].transform, io.transformsIn.data() + j * 16, 64);
        r.faceMapper.updateComponents(&r.faceState, &face);
        r.bodyMapper.updateComponents(&r.bodyState, &body);
        r.faceState.getBlendshapeWeights(io.weightsOut.data(), kShapes * 4, 1);
        r.bodyState.getJointTransforms(io.transformsOut.data(), kJoints * 64, 1);
    });
}

void BM_MapperFrameKernel(benchmark::State& state) {
    Io io;
    Kernel kernel;
    measure(state, io, [&] { kernel.run(io); });
}

} // namespace

BENCHMARK(BM_MapperFrame);
BENCHMARK(BM_MapperFrameKeyed);
BENCHMARK(BM_MapperSample);
BENCHMARK(BM_MapperFrameKernel);
