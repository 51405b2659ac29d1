// A large generated .glb (36,000 accessors over as many views, a JSON chunk
// above 8 MB, a BIN chunk above 16 MB) loaded from memory by this library and,
// in the same run, by tinygltf's LoadBinaryFromMemory with image loading off;
// every accessor read as a tensor against an allocation and memcpy of the same
// bytes; the document saved as .glb into memory. Compare the pairs' times.
#include <benchmark/benchmark.h>

#include <cstring>
#include <filesystem>
#include <istream>
#include <memory>
#include <streambuf>
#include <string>
#include <vector>

#include "sorvane/archive/MemoryFileProvider.h"
#include "sorvane/gltf2/Gltf.h"

#ifdef TALVEX_BENCH_TINYGLTF
#include <tiny_gltf.h>
#endif

namespace {

using sorvane::gltf2::Gltf;

constexpr int64_t kAccessors = 36000;
constexpr int64_t kVertices = 40;  // VEC3 floats per accessor: 480 bytes

// A read-only stream over bytes held elsewhere.
class Span : public std::streambuf {
public:
    Span(const std::vector<uint8_t>& bytes) {
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

// The .glb bytes, made once by this library: each accessor's floats differ,
// so "min" and "max" hold real numbers.
const std::vector<uint8_t>& glbBytes() {
    static const std::vector<uint8_t> bytes = [] {
        // Never saved there: the bytes go to a memory store.
        Gltf gltf = Gltf::create(std::filesystem::temp_directory_path() / "talvex-bench.glb");
        auto accessors = gltf.accessors.get();
        std::vector<float> values(kVertices * 3);
        for (int64_t a = 0; a < kAccessors; ++a) {
            for (size_t i = 0; i < values.size(); ++i) values[i] = static_cast<float>(a) * 0.001f + static_cast<float>(i) * 0.37f;
            const std::string name = "accessor_" + std::to_string(a);
            accessors.addDense(values.data(), kVertices, sorvane::gltf2::ACCESSOR_COMPONENT_TYPE_FLOAT, "VEC3",
                               sorvane::gltf2::BUFFER_VIEW_TARGET_ARRAY_BUFFER, false, name.c_str());
        }
        auto memory = std::make_shared<sorvane::archive::MemoryFileProvider>();
        gltf.save(memory, "bench.glb");
        return memory->getBytes("bench.glb", 0);
    }();
    return bytes;
}

Gltf decode() {
    Span span(glbBytes());
    std::istream in(&span);
    return Gltf::decode(in);
}

void BM_GltfLoadGlb(benchmark::State& state) {
    const auto& bytes = glbBytes();
    for (auto _ : state) {
        Gltf gltf = decode();
        benchmark::DoNotOptimize(gltf.accessors.size());
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * static_cast<int64_t>(bytes.size()));
    state.counters["glb_MB"] = static_cast<double>(bytes.size()) / 1e6;
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

void BM_GltfAccessorTensors(benchmark::State& state) {
    const Gltf gltf = decode();
    auto accessors = gltf.accessors.get();
    int64_t total = 0;
    for (auto _ : state) {
        total = 0;
        for (int64_t i = 0; i < kAccessors; ++i) {
            sorvane::DataTree tensor = accessors.getByIndex(i).getTensor();
            benchmark::DoNotOptimize(tensor.getBuffer());
            total += kVertices * 3 * 4;
        }
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * total);
}
BENCHMARK(BM_GltfAccessorTensors)->Unit(benchmark::kMillisecond);

// The reference: a new block per accessor and a memcpy of its bytes.
void BM_GltfAccessorMemcpy(benchmark::State& state) {
    const auto& bytes = glbBytes();
    const size_t each = kVertices * 3 * 4;
    const uint8_t* source = bytes.data() + bytes.size() - each * kAccessors;
    for (auto _ : state) {
        for (int64_t i = 0; i < kAccessors; ++i) {
            std::unique_ptr<uint8_t[]> block(new uint8_t[each]);
            std::memcpy(block.get(), source + i * each, each);
            benchmark::DoNotOptimize(block.get());
        }
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * static_cast<int64_t>(each * kAccessors));
}
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
