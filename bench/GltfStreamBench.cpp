// Every accessor of a .glb with vertex streams of common sizes read as a
// tensor, against an allocation and memcpy of the same bytes: 2,500 meshes of
// 1,000 to 2,000 vertices, each with POSITION, NORMAL, TEXCOORD_0 and
// UNSIGNED_SHORT indices (two triangles a vertex), so 10,000 accessors of 8 to
// 48 KB, about 165 MB of BIN. GltfBench.cpp's file has accessors of about 450
// bytes, where the fixed cost of each read dominates; here the copies do.
#include <benchmark/benchmark.h>

#include <cstring>
#include <filesystem>
#include <istream>
#include <memory>
#include <streambuf>
#include <string>
#include <utility>
#include <vector>

#include "sorvane/archive/MemoryFileProvider.h"
#include "sorvane/gltf2/Gltf.h"

namespace {

using sorvane::gltf2::Gltf;

constexpr int kMeshes = 2500;

int verticesOf(int mesh) { return 1000 + (mesh * 397) % 1001; }

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

Gltf decodeStreams() {
    Span span(streamGlbBytes());
    std::istream in(&span);
    return Gltf::decode(in);
}

void BM_GltfAccessorStreamTensors(benchmark::State& state) {
    const Gltf gltf = decodeStreams();
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
BENCHMARK(BM_GltfAccessorStreamTensors)->Unit(benchmark::kMillisecond);

void BM_GltfAccessorStreamTensorsNodes(benchmark::State& state) {
    const Gltf gltf = decodeStreams();
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
BENCHMARK(BM_GltfAccessorStreamTensorsNodes)->Unit(benchmark::kMillisecond);

// The reference: a new block per accessor and a memcpy of its bytes from
// where they lie in the .glb.
void BM_GltfAccessorStreamMemcpy(benchmark::State& state) {
    const auto& bytes = streamGlbBytes();
    uint32_t jsonLength = 0;
    std::memcpy(&jsonLength, bytes.data() + 12, 4);
    const size_t bin = 28 + jsonLength;
    std::vector<std::pair<size_t, size_t>> ranges;
    {
        const Gltf gltf = decodeStreams();
        const auto& views = gltf.getRoot()->getBufferViews()->getItems();
        for (const auto& node : gltf.getRoot()->getAccessors()->getItems()) {
            const auto& view = views[static_cast<size_t>(node->getBufferView())];
            const size_t size = static_cast<size_t>(sorvane::gltf2::BinaryData::getDataSize(*node));
            ranges.emplace_back(bin + static_cast<size_t>(view->getByteOffset() + node->getByteOffset()), size);
        }
    }
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
BENCHMARK(BM_GltfAccessorStreamMemcpy)->Unit(benchmark::kMillisecond);

} // namespace
