// The math kernels against the same loops with vectorisation turned off, the
// small matrix functions against hand-written scalar code, and the reference
// setters of scene nodes against std::unordered_set<long>::count on the same
// ids, in the same run.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <unordered_set>
#include <vector>

#include "sorvane/arf/node/ComponentsNode.h"
#include "sorvane/arf/node/RootNode.h"
#include "sorvane/arf/node/components/NodeNode.h"
#include "sorvane/arf/node/components/NodeNodes.h"
#include "sorvane/core/math.h"

namespace {

// ----- the references: the library's loops, not vectorised ------------------

#if defined(__clang__)
#define NO_VECTORIZE
#define NO_VECTORIZE_LOOP _Pragma("clang loop vectorize(disable) interleave(disable)")
#else
#define NO_VECTORIZE __attribute__((optimize("no-tree-vectorize")))
#define NO_VECTORIZE_LOOP
// The optimize attribute makes GCC see index overflows no caller can reach.
#pragma GCC diagnostic ignored "-Waggressive-loop-optimizations"
#endif

NO_VECTORIZE void clampScalar(float* data, long count, float min, float max) {
    NO_VECTORIZE_LOOP
    for (long i = 0; i < count; ++i) {
        const float v = data[i];
        data[i] = v < min ? min : (v > max ? max : v);
    }
}

NO_VECTORIZE void linearAddScalar(float* out, long size, const float* weights, const float* vectors, long count) {
    if (size < 1 || count < 1) return;
    long j = 0;
    for (; j + 4 <= count; j += 4) {
        const float w0 = weights[j], w1 = weights[j + 1], w2 = weights[j + 2], w3 = weights[j + 3];
        const float* v0 = vectors + j * size;
        const float* v1 = v0 + size;
        const float* v2 = v1 + size;
        const float* v3 = v2 + size;
        NO_VECTORIZE_LOOP
        for (long k = 0; k < size; ++k) out[k] = (((out[k] + v0[k] * w0) + v1[k] * w1) + v2[k] * w2) + v3[k] * w3;
    }
    for (; j < count; ++j) {
        const float w = weights[j];
        const float* v = vectors + j * size;
        NO_VECTORIZE_LOOP
        for (long k = 0; k < size; ++k) out[k] += v[k] * w;
    }
}

NO_VECTORIZE void minmaxScalar(float* out, const float* in, int groups, int rows, int cols, int stride) {
    if (groups < 1 || rows < 1 || cols < 1) return;
    constexpr int block = 64;
    for (long g = 0; g < groups; ++g) {
        const float* group = in + g * rows * static_cast<long>(stride);
        for (int c0 = 0; c0 < cols; c0 += block) {
            const int n = cols - c0 < block ? cols - c0 : block;
            float lo[block], hi[block];
            for (int c = 0; c < n; ++c) lo[c] = hi[c] = group[c0 + c];
            for (long r = 1; r < rows; ++r) {
                const float* row = group + r * stride + c0;
                NO_VECTORIZE_LOOP
                for (int c = 0; c < n; ++c) {
                    const float v = row[c];
                    lo[c] = v < lo[c] ? v : lo[c];
                    hi[c] = v > hi[c] ? v : hi[c];
                }
            }
            float* o = out + 2 * (g * cols + c0);
            for (int c = 0; c < n; ++c) {
                o[2 * c] = lo[c];
                o[2 * c + 1] = hi[c];
            }
        }
    }
}

// Hand-written scalar 4x4 product and quaternion matrix, either layout.
void mulScalar(float* out, const float* a, const float* b, int type) {
    for (int r = 0; r < 4; ++r)
        for (int c = 0; c < 4; ++c) {
            float sum = 0;
            for (int k = 0; k < 4; ++k)
                sum += type ? a[k * 4 + r] * b[c * 4 + k] : a[r * 4 + k] * b[k * 4 + c];
            out[type ? c * 4 + r : r * 4 + c] = sum;
        }
}

void quaternionScalar(float* m, const float* q, int type) {
    const float x = q[0], y = q[1], z = q[2], w = q[3];
    const float r[3][3] = {{1 - 2 * (y * y + z * z), 2 * (x * y - z * w), 2 * (x * z + y * w)},
                           {2 * (x * y + z * w), 1 - 2 * (x * x + z * z), 2 * (y * z - x * w)},
                           {2 * (x * z - y * w), 2 * (y * z + x * w), 1 - 2 * (x * x + y * y)}};
    for (int i = 0; i < 16; ++i) m[i] = (i % 5 == 0) ? 1.f : 0.f;
    for (int i = 0; i < 3; ++i)
        for (int j = 0; j < 3; ++j) m[type ? j * 4 + i : i * 4 + j] = r[i][j];
}

std::vector<float> ramp(size_t n) {
    std::vector<float> v(n);
    for (size_t i = 0; i < n; ++i) v[i] = static_cast<float>((i * 7919) % 1000) / 250.f - 2.f;
    return v;
}

// ----- array kernels ---------------------------------------------------------

constexpr long kVectors = 52, kVectorSize = 90000;
constexpr long kBig = 16L * 1024 * 1024;

template <bool Vectorised>
void BM_LinearAdd(benchmark::State& state) {
    const auto vectors = ramp(kVectors * kVectorSize);
    const auto weights = ramp(kVectors);
    std::vector<float> out(kVectorSize, 0.f);
    for (auto _ : state) {
        if (Vectorised) sorvane::linearAdd_float_cpu(out.data(), kVectorSize, weights.data(), vectors.data(), kVectors);
        else linearAddScalar(out.data(), kVectorSize, weights.data(), vectors.data(), kVectors);
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * kVectors * kVectorSize);
}

template <bool Vectorised>
void BM_Clamp(benchmark::State& state) {
    auto data = ramp(kBig);
    for (auto _ : state) {
        if (Vectorised) sorvane::clamp_float_cpu(data.data(), kBig, -1.f, 1.f);
        else clampScalar(data.data(), kBig, -1.f, 1.f);
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * kBig);
}

// The same on values that need clamping in every block, restored (untimed)
// before each round: the kernel writes everything back here.
template <bool Vectorised>
void BM_ClampFresh(benchmark::State& state) {
    const auto source = ramp(kBig);
    std::vector<float> data(source.size());
    for (auto _ : state) {
        state.PauseTiming();
        std::memcpy(data.data(), source.data(), source.size() * sizeof(float));
        state.ResumeTiming();
        if (Vectorised) sorvane::clamp_float_cpu(data.data(), kBig, -1.f, 1.f);
        else clampScalar(data.data(), kBig, -1.f, 1.f);
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * kBig);
}

template <bool Vectorised>
void BM_MinMax(benchmark::State& state) {
    const auto data = ramp(kBig);
    const int groups = 4, cols = 64, rows = static_cast<int>(kBig / groups / cols);
    std::vector<float> out(2 * groups * cols);
    for (auto _ : state) {
        if (Vectorised) sorvane::minmax_float_cpu(out.data(), data.data(), groups, rows, cols, cols);
        else minmaxScalar(out.data(), data.data(), groups, rows, cols, cols);
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * kBig);
}

BENCHMARK(BM_LinearAdd<true>)->Name("Math_linearAdd_float_cpu")->Unit(benchmark::kMillisecond);
BENCHMARK(BM_LinearAdd<false>)->Name("Math_linearAdd_novec")->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Clamp<true>)->Name("Math_clamp_float_cpu")->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Clamp<false>)->Name("Math_clamp_novec")->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ClampFresh<true>)->Name("Math_clamp_fresh_float_cpu")->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ClampFresh<false>)->Name("Math_clamp_fresh_novec")->Unit(benchmark::kMillisecond);
BENCHMARK(BM_MinMax<true>)->Name("Math_minmax_float_cpu")->Unit(benchmark::kMillisecond);
BENCHMARK(BM_MinMax<false>)->Name("Math_minmax_novec")->Unit(benchmark::kMillisecond);

// ----- small matrix functions, 1 M calls ------------------------------------

constexpr int kCalls = 1 << 20;
constexpr int kMatrices = 1024;

template <bool Library>
void BM_Mul(benchmark::State& state) {
    const int type = static_cast<int>(state.range(0));
    const auto a = ramp(16 * kMatrices);
    const auto b = ramp(16 * kMatrices + 16);
    std::vector<float> out(16 * kMatrices);
    for (auto _ : state) {
        for (int i = 0; i < kCalls; ++i) {
            const size_t k = static_cast<size_t>(i % kMatrices) * 16;
            if (Library) sorvane::matrix4x4_mul_float(&out[k], &a[k], &b[k + 16], static_cast<sorvane::Matrix4x4Type>(type));
            else mulScalar(&out[k], &a[k], &b[k + 16], type);
        }
        benchmark::DoNotOptimize(out.data());
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * kCalls);
}

template <bool Library>
void BM_Quaternion(benchmark::State& state) {
    const int type = static_cast<int>(state.range(0));
    const auto q = ramp(4 * kMatrices);
    std::vector<float> out(16 * kMatrices);
    for (auto _ : state) {
        for (int i = 0; i < kCalls; ++i) {
            const size_t k = static_cast<size_t>(i % kMatrices);
            if (Library) sorvane::quaternion2matrix4x4_float(&out[k * 16], &q[k * 4], static_cast<sorvane::Matrix4x4Type>(type));
            else quaternionScalar(&out[k * 16], &q[k * 4], type);
        }
        benchmark::DoNotOptimize(out.data());
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * kCalls);
}

BENCHMARK(BM_Mul<true>)->Name("Math_matrix4x4_mul_float")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Mul<false>)->Name("Math_matrix4x4_mul_handwritten")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Quaternion<true>)->Name("Math_quaternion2matrix4x4_float")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Quaternion<false>)->Name("Math_quaternion2matrix4x4_handwritten")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

// ----- reference setters on a long node list ---------------------------------

constexpr int64_t kNodes = 100000;

struct Scene {
    std::shared_ptr<sorvane::arf::RootNode> root = std::make_shared<sorvane::arf::RootNode>();
    std::shared_ptr<sorvane::arf::NodeNodes> nodes;
    Scene() {
        root->init();
        auto components = root->getComponents();
        nodes = std::make_shared<sorvane::arf::NodeNodes>(components);
        components->setNodes(nodes);
        for (int64_t i = 1; i <= kNodes; ++i) nodes->add("m", ("n" + std::to_string(i)).c_str(), i);
    }
};

Scene& scene() {
    static Scene s;
    return s;
}

std::vector<int64_t> someIds(size_t n) {
    std::vector<int64_t> ids(n);
    for (size_t i = 0; i < n; ++i) ids[i] = 1 + static_cast<int64_t>((i * 7919) % kNodes);
    return ids;
}

void BM_SetParent(benchmark::State& state) {
    Scene& s = scene();
    const auto& items = s.nodes->getItems();
    const auto ids = someIds(items.size());
    int64_t shift = 0;
    for (auto _ : state) {
        // A different value each round: a setter given the current value returns at once.
        shift = shift == 0 ? 1 : 0;
        for (size_t i = 0; i < items.size(); ++i) items[i]->setParent(ids[(i + static_cast<size_t>(shift)) % ids.size()]);
    }
    state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(items.size()));
}

void BM_SetParentReference(benchmark::State& state) {
    const auto ids = someIds(static_cast<size_t>(kNodes));
    std::unordered_set<long> set;
    for (int64_t i = 1; i <= kNodes; ++i) set.insert(static_cast<long>(i));
    for (auto _ : state) {
        size_t found = 0;
        for (size_t i = 0; i < ids.size(); ++i) found += set.count(static_cast<long>(ids[i]));
        benchmark::DoNotOptimize(found);
    }
    state.SetItemsProcessed(state.iterations() * kNodes);
}

void BM_SetChildren(benchmark::State& state) {
    Scene& s = scene();
    auto node = s.nodes->getByIndex(0);
    const auto ids = someIds(1000);
    for (auto _ : state) node->setChildren(ids);
    state.SetItemsProcessed(state.iterations() * 1000);
}

void BM_SetChildrenReference(benchmark::State& state) {
    const auto ids = someIds(1000);
    std::unordered_set<long> set;
    for (int64_t i = 1; i <= kNodes; ++i) set.insert(static_cast<long>(i));
    for (auto _ : state) {
        size_t found = 0;
        for (int64_t id : ids) found += set.count(static_cast<long>(id));
        std::vector<int64_t> copy(ids);  // setChildren stores the list too
        benchmark::DoNotOptimize(copy.data());
        benchmark::DoNotOptimize(found);
    }
    state.SetItemsProcessed(state.iterations() * 1000);
}

BENCHMARK(BM_SetParent)->Name("Skeleton_setParent_100k")->Unit(benchmark::kMillisecond);
BENCHMARK(BM_SetParentReference)->Name("Skeleton_setParent_unordered_set_count")->Unit(benchmark::kMillisecond);
BENCHMARK(BM_SetChildren)->Name("Skeleton_setChildren_1000")->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_SetChildrenReference)->Name("Skeleton_setChildren_unordered_set_count")->Unit(benchmark::kMicrosecond);

} // namespace
