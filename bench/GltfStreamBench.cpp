// Every accessor of a .glb with vertex streams of common sizes read as a
// tensor, against an allocation and memcpy of the same bytes: 2,500 meshes of
// 1,000 to 2,000 vertices, each with POSITION, NORMAL, TEXCOORD_0 and
// UNSIGNED_SHORT indices (two triangles a vertex), so 10,000 accessors of 8 to
// 48 KB, about 165 MB of BIN. GltfBench.cpp's file has accessors of about 450
// bytes, where the fixed cost of each read dominates; here the copies do.
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

namespace {

using sorvane::gltf2::Gltf;

constexpr int kMeshes = 2500;

int verticesOf(int mesh) { return 1000 + (mesh * 397) % 1001; }

const std::vector<uint8_t>& streamGlbBytes() {
    static const std::vector<uint8_t> bytes = [] {
        using namespace sorvane::gltf2;
        // Never saved there: the bytes go to a memory store.
        Gltf gltf = Gltf::create(std::filesystem::temp_directory_path() / "talvex-stream-bench.glb");
        auto accessors = gltf.accessors.get();
        auto meshes = gltf.meshes.get();
        std::vector<float> positions, normals, uvs;
        std::vector<uint16_t> indices;
        int64_t added = 0;
        for (int m = 0; m < kMeshes; ++m) {
            const int vertices = verticesOf(m);
            positions.resize(static_cast<size_t>(vertices) * 3);
            normals.resize(static_cast<size_t>(vertices) * 3);
            uvs.resize(static_cast<size_t>(vertices) * 2);
            indices.resize(static_cast<size_t>(vertices) * 6);
            const float shift = static_cast<float>(m) * 0.001f;
            for (size_t i = 0; i < positions.size(); ++i) {
                positions[i] = shift + static_cast<float>(i) * 0.37f;
                normals[i] = i % 3 == 2 ? 1.0f - shift : shift;
            }
            for (size_t i = 0; i < uvs.size(); ++i) uvs[i] = static_cast<float>(i) / static_cast<float>(uvs.size());
            for (size_t i = 0; i < indices.size(); ++i)
                indices[i] = static_cast<uint16_t>((i / 3 + i % 3) % static_cast<size_t>(vertices));
            auto add = [&](const void* data, int count, AccessorComponentType type, const char* kind,
                           BufferViewTarget target) {
                accessors.addDense(data, count, type, kind, target, false, nullptr);
                return static_cast<int64_t>(added++);
            };
            const int64_t position = add(positions.data(), vertices, ACCESSOR_COMPONENT_TYPE_FLOAT, "VEC3",
                                         BUFFER_VIEW_TARGET_ARRAY_BUFFER);
            const int64_t normal = add(normals.data(), vertices, ACCESSOR_COMPONENT_TYPE_FLOAT, "VEC3",
                                       BUFFER_VIEW_TARGET_ARRAY_BUFFER);
            const int64_t uv = add(uvs.data(), vertices, ACCESSOR_COMPONENT_TYPE_FLOAT, "VEC2",
                                   BUFFER_VIEW_TARGET_ARRAY_BUFFER);
            const int64_t index = add(indices.data(), vertices * 6, ACCESSOR_COMPONENT_TYPE_UNSIGNED_SHORT, "SCALAR",
                                      BUFFER_VIEW_TARGET_ELEMENT_ARRAY_BUFFER);
            Primitive primitive = meshes.add(("mesh_" + std::to_string(m)).c_str()).primitives.add();
            primitive.attributes.put("POSITION", position);
            primitive.attributes.put("NORMAL", normal);
            primitive.attributes.put("TEXCOORD_0", uv);
            primitive.indices.set(index);
        }
        auto memory = std::make_shared<sorvane::archive::MemoryFileProvider>();
        gltf.save(memory, "stream.glb");
        return memory->getBytes("stream.glb", 0);
    }();
    return bytes;
}

void BM_GltfAccessorStreamTensors(benchmark::State& state) { talvex_bench::readThroughHandles(state, streamGlbBytes()); }
BENCHMARK(BM_GltfAccessorStreamTensors)->Unit(benchmark::kMillisecond);

void BM_GltfAccessorStreamTensorsNodes(benchmark::State& state) {
    talvex_bench::readThroughNodes(state, streamGlbBytes());
}
BENCHMARK(BM_GltfAccessorStreamTensorsNodes)->Unit(benchmark::kMillisecond);

void BM_GltfAccessorStreamTensorsAtOnce(benchmark::State& state) { talvex_bench::readAllAtOnce(state, streamGlbBytes()); }
BENCHMARK(BM_GltfAccessorStreamTensorsAtOnce)->Unit(benchmark::kMillisecond);

void BM_GltfAccessorStreamMemcpyKept(benchmark::State& state) {
    talvex_bench::copyEveryAccessorKept(state, streamGlbBytes());
}
BENCHMARK(BM_GltfAccessorStreamMemcpyKept)->Unit(benchmark::kMillisecond);

void BM_GltfAccessorStreamMemcpy(benchmark::State& state) { talvex_bench::copyEveryAccessor(state, streamGlbBytes()); }
BENCHMARK(BM_GltfAccessorStreamMemcpy)->Unit(benchmark::kMillisecond);

} // namespace
