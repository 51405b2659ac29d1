// A large generated .glb (10,000 meshes of one primitive with POSITION,
// NORMAL, TEXCOORD_0 and indices, each mesh named by a node: 40,000
// accessors over as many views, a JSON chunk above 8 MB, a BIN chunk above
// 16 MB) loaded from memory by this library and, in the same run, by
// tinygltf's LoadBinaryFromMemory with image loading off; every accessor read
// as a tensor against an allocation and memcpy of the same bytes; the
// document saved as .glb into memory. Compare the pairs' times.
#include <benchmark/benchmark.h>

#include <cstring>
#include <filesystem>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "sorvane/archive/MemoryFileProvider.h"
#include "sorvane/gltf2/Gltf.h"
#include "bench/GltfAccessorReads.h"

#ifdef TALVEX_BENCH_TINYGLTF
#include <tiny_gltf.h>
#endif

namespace {

using sorvane::gltf2::Gltf;

constexpr int kMeshes = 10000;
constexpr int kVertices = 45;   // POSITION and NORMAL 540 bytes, TEXCOORD_0 360
constexpr int kIndices = 90;    // 360 bytes of UNSIGNED_INT

// The .glb bytes, made once by this library: every mesh's values differ, so
// "min" and "max" hold real numbers.
const std::vector<uint8_t>& glbBytes() {
    static const std::vector<uint8_t> bytes = [] {
        using namespace sorvane::gltf2;
        // Never saved there: the bytes go to a memory store.
        Gltf gltf = Gltf::create(std::filesystem::temp_directory_path() / "talvex-bench.glb");
        auto accessors = gltf.accessors.get();
        auto meshes = gltf.meshes.get();
        auto nodes = gltf.nodes.get();
        std::vector<float> positions(kVertices * 3), normals(kVertices * 3), uvs(kVertices * 2);
        std::vector<uint32_t> indices(kIndices);
        int64_t added = 0;
        for (int m = 0; m < kMeshes; ++m) {
            const float shift = static_cast<float>(m) * 0.001f;
            for (int v = 0; v < kVertices; ++v) {
                for (int c = 0; c < 3; ++c) {
                    positions[v * 3 + c] = shift + static_cast<float>(v * 3 + c) * 0.37f;
                    normals[v * 3 + c] = c == 2 ? 1.0f - shift : shift;
                }
                uvs[v * 2] = static_cast<float>(v) / kVertices, uvs[v * 2 + 1] = shift;
            }
            for (int i = 0; i < kIndices; ++i) indices[i] = static_cast<uint32_t>((i + m) % kVertices);
            const std::string name = "mesh_" + std::to_string(m);
            // Counted here: an accessor's own index is found by a walk of its list.
            auto add = [&](const void* data, int count, AccessorComponentType type, const char* kind,
                           BufferViewTarget target) {
                accessors.addDense(data, count, type, kind, target, false, nullptr);
                return static_cast<int64_t>(added++);
            };
            const int64_t position = add(positions.data(), kVertices, ACCESSOR_COMPONENT_TYPE_FLOAT, "VEC3",
                                         BUFFER_VIEW_TARGET_ARRAY_BUFFER);
            const int64_t normal = add(normals.data(), kVertices, ACCESSOR_COMPONENT_TYPE_FLOAT, "VEC3",
                                       BUFFER_VIEW_TARGET_ARRAY_BUFFER);
            const int64_t uv = add(uvs.data(), kVertices, ACCESSOR_COMPONENT_TYPE_FLOAT, "VEC2",
                                   BUFFER_VIEW_TARGET_ARRAY_BUFFER);
            const int64_t index = add(indices.data(), kIndices, ACCESSOR_COMPONENT_TYPE_UNSIGNED_INT, "SCALAR",
                                      BUFFER_VIEW_TARGET_ELEMENT_ARRAY_BUFFER);
            Primitive primitive = meshes.add(name.c_str()).primitives.add();
            primitive.attributes.put("POSITION", position);
            primitive.attributes.put("NORMAL", normal);
            primitive.attributes.put("TEXCOORD_0", uv);
            primitive.indices.set(index);
            Node node = nodes.add(("node_" + std::to_string(m)).c_str());
            node.mesh.set(m);
            node.translation.set({static_cast<double>(m % 100), static_cast<double>(m / 100), 0.0});
        }
        auto memory = std::make_shared<sorvane::archive::MemoryFileProvider>();
        gltf.save(memory, "bench.glb");
        return memory->getBytes("bench.glb", 0);
    }();
    return bytes;
}

Gltf decode() { return talvex_bench::decodeGlb(glbBytes()); }

void BM_GltfLoadGlb(benchmark::State& state) {
    const auto& bytes = glbBytes();
    for (auto _ : state) {
        Gltf gltf = decode();
        benchmark::DoNotOptimize(gltf.accessors.size());
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * static_cast<int64_t>(bytes.size()));
    state.counters["glb_MB"] = static_cast<double>(bytes.size()) / 1e6;
    uint32_t jsonLength = 0;
    std::memcpy(&jsonLength, bytes.data() + 12, 4);
    state.counters["json_MB"] = static_cast<double>(jsonLength) / 1e6;
}
BENCHMARK(BM_GltfLoadGlb)->Unit(benchmark::kMillisecond);

#ifdef TALVEX_BENCH_TINYGLTF
bool noImages(tinygltf::Image*, const int, std::string*, std::string*, int, int, const unsigned char*, int, void*) {
    return true;
}

void BM_TinyGltfLoadGlb(benchmark::State& state) {
    const auto& bytes = glbBytes();
    for (auto _ : state) {
        tinygltf::TinyGLTF loader;
        loader.SetImageLoader(noImages, nullptr);
        tinygltf::Model model;
        std::string error, warning;
        if (!loader.LoadBinaryFromMemory(&model, &error, &warning, bytes.data(), static_cast<unsigned int>(bytes.size())))
            state.SkipWithError(error.c_str());
        benchmark::DoNotOptimize(model.accessors.size());
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * static_cast<int64_t>(bytes.size()));
}
BENCHMARK(BM_TinyGltfLoadGlb)->Unit(benchmark::kMillisecond);
#endif

void BM_GltfAccessorTensors(benchmark::State& state) { talvex_bench::readThroughHandles(state, glbBytes()); }
BENCHMARK(BM_GltfAccessorTensors)->Unit(benchmark::kMillisecond);

void BM_GltfAccessorTensorsNodes(benchmark::State& state) { talvex_bench::readThroughNodes(state, glbBytes()); }
BENCHMARK(BM_GltfAccessorTensorsNodes)->Unit(benchmark::kMillisecond);

void BM_GltfAccessorTensorsAtOnce(benchmark::State& state) { talvex_bench::readAllAtOnce(state, glbBytes()); }
BENCHMARK(BM_GltfAccessorTensorsAtOnce)->Unit(benchmark::kMillisecond);

void BM_GltfAccessorTensorsNodesKept(benchmark::State& state) { talvex_bench::readThroughNodesKept(state, glbBytes()); }
BENCHMARK(BM_GltfAccessorTensorsNodesKept)->Unit(benchmark::kMillisecond);

void BM_GltfAccessorMemcpyKept(benchmark::State& state) { talvex_bench::copyEveryAccessorKept(state, glbBytes()); }
BENCHMARK(BM_GltfAccessorMemcpyKept)->Unit(benchmark::kMillisecond);

void BM_GltfAccessorMemcpyWhole(benchmark::State& state) { talvex_bench::copyEveryAccessorWhole(state, glbBytes()); }
BENCHMARK(BM_GltfAccessorMemcpyWhole)->Unit(benchmark::kMillisecond);

void BM_GltfAccessorMemcpy(benchmark::State& state) { talvex_bench::copyEveryAccessor(state, glbBytes()); }
BENCHMARK(BM_GltfAccessorMemcpy)->Unit(benchmark::kMillisecond);

void BM_GltfSaveGlb(benchmark::State& state) {
    const Gltf gltf = decode();
    int64_t written = 0;
    for (auto _ : state) {
        auto memory = std::make_shared<sorvane::archive::MemoryFileProvider>();
        gltf.save(memory, "out.glb");
        written = memory->getDataSize("out.glb");
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * written);
}
BENCHMARK(BM_GltfSaveGlb)->Unit(benchmark::kMillisecond);

} // namespace
