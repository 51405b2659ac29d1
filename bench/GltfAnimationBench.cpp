// A generated .glb with one skinned, morphing mesh (200,000 vertices, two
// joint sets, 50 morph targets, 60 joints) and 100 animations of 60 rotation
// channels: the library loads it, pulls every vertex stream and the morph
// stack, and resamples every animation at 30 fps; Assimp (benchmark-only)
// imports the same file with ReadFile and default flags. Also the cost of one
// mixer apply over 100 channels.
#include <benchmark/benchmark.h>

#include <unistd.h>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "sorvane/gltf2/Gltf.h"
#include "sorvane/gltf2/property/animation/mixer/AnimationMixer.h"

#ifdef TALVEX_BENCH_ASSIMP
#include <assimp/Importer.hpp>
#include <assimp/scene.h>
#endif

namespace {

namespace fs = std::filesystem;
using namespace sorvane::gltf2;

constexpr long kVertices = 200000;
constexpr long kGridX = 400;  // 400 x 500 vertices
constexpr long kTargets = 50;
constexpr long kJoints = 60;
constexpr long kAnimations = 100;
constexpr long kKeys = 31;  // one second at 30 keys per second

// The first accessor of each kind in the generated document.
constexpr long kStreams = 8;  // POSITION, NORMAL, TEXCOORD_0, JOINTS_0, WEIGHTS_0, JOINTS_1, WEIGHTS_1, indices
constexpr long kFirstTarget = kStreams;

struct GlbWriter {
    std::string bin;
    std::string views;
    std::string accessors;
    long viewCount = 0;
    long accessorCount = 0;

    // One view and one accessor over `bytes`; returns the accessor index.
    long add(const void* data, size_t bytes, long count, int componentType, const char* type,
             const std::string& extra = "") {
        while (bin.size() % 4) bin += '\0';
        views += std::string(viewCount ? "," : "") + "{\"buffer\":0,\"byteOffset\":" + std::to_string(bin.size()) +
                 ",\"byteLength\":" + std::to_string(bytes) + "}";
        bin.append(static_cast<const char*>(data), bytes);
        accessors += std::string(accessorCount ? "," : "") + "{\"bufferView\":" + std::to_string(viewCount) +
                     ",\"componentType\":" + std::to_string(componentType) + ",\"count\":" + std::to_string(count) +
                     ",\"type\":\"" + type + "\"" + extra + "}";
        ++viewCount;
        return accessorCount++;
    }
};

void putWord(std::string& out, uint32_t v) {
    for (int i = 0; i < 4; ++i) out += static_cast<char>(v >> (8 * i));
}

std::string generateGlb() {
    GlbWriter w;
    std::vector<float> position(kVertices * 3), normal(kVertices * 3), uv(kVertices * 2);
    std::vector<uint16_t> joints0(kVertices * 4), joints1(kVertices * 4);
    std::vector<float> weights0(kVertices * 4), weights1(kVertices * 4);
    for (long v = 0; v < kVertices; ++v) {
        const float x = static_cast<float>(v % kGridX) * 0.01f, y = static_cast<float>(v / kGridX) * 0.01f;
        position[v * 3] = x, position[v * 3 + 1] = y, position[v * 3 + 2] = 0.001f * static_cast<float>(v % 7);
        normal[v * 3 + 2] = 1.0f;
        uv[v * 2] = x / 4.0f, uv[v * 2 + 1] = y / 5.0f;
        for (int k = 0; k < 4; ++k) {
            joints0[v * 4 + k] = static_cast<uint16_t>((v + k) % kJoints);
            joints1[v * 4 + k] = static_cast<uint16_t>((v + 7 * k + 3) % kJoints);
        }
        const float w0[] = {0.4f, 0.25f, 0.15f, 0.1f}, w1[] = {0.05f, 0.03f, 0.02f, 0.0f};
        std::memcpy(&weights0[v * 4], w0, sizeof w0);
        std::memcpy(&weights1[v * 4], w1, sizeof w1);
    }
    std::vector<uint32_t> indices;
    const long gridY = kVertices / kGridX;
    indices.reserve(static_cast<size_t>((kGridX - 1) * (gridY - 1) * 6));
    for (long y = 0; y + 1 < gridY; ++y)
        for (long x = 0; x + 1 < kGridX; ++x) {
            const uint32_t a = static_cast<uint32_t>(y * kGridX + x), b = a + 1, c = a + kGridX, d = c + 1;
            indices.insert(indices.end(), {a, b, d, a, d, c});
        }
    w.add(position.data(), position.size() * 4, kVertices, 5126, "VEC3",
          ",\"min\":[0,0,0],\"max\":[3.99,4.99,0.006]");
    w.add(normal.data(), normal.size() * 4, kVertices, 5126, "VEC3");
    w.add(uv.data(), uv.size() * 4, kVertices, 5126, "VEC2");
    w.add(joints0.data(), joints0.size() * 2, kVertices, 5123, "VEC4");
    w.add(weights0.data(), weights0.size() * 4, kVertices, 5126, "VEC4");
    w.add(joints1.data(), joints1.size() * 2, kVertices, 5123, "VEC4");
    w.add(weights1.data(), weights1.size() * 4, kVertices, 5126, "VEC4");
    w.add(indices.data(), indices.size() * 4, static_cast<long>(indices.size()), 5125, "SCALAR");
    std::vector<float> offsets(kVertices * 3);
    for (long t = 0; t < kTargets; ++t) {
        for (long v = 0; v < kVertices; ++v) offsets[v * 3 + 2] = 0.001f * static_cast<float>((v + t) % 11);
        w.add(offsets.data(), offsets.size() * 4, kVertices, 5126, "VEC3",
              ",\"min\":[0,0,0],\"max\":[0,0,0.01]");
    }
    std::vector<float> inverseBind(kJoints * 16, 0.0f);
    for (long j = 0; j < kJoints; ++j)
        for (int d = 0; d < 4; ++d) inverseBind[j * 16 + d * 5] = 1.0f;
    const long ibm = w.add(inverseBind.data(), inverseBind.size() * 4, kJoints, 5126, "MAT4");

    std::string animations;
    std::vector<float> times(kKeys), rotations(kKeys * 4);
    for (long k = 0; k < kKeys; ++k) times[k] = static_cast<float>(k) / 30.0f;
    for (long a = 0; a < kAnimations; ++a) {
        const long input = w.add(times.data(), times.size() * 4, kKeys, 5126, "SCALAR", ",\"min\":[0],\"max\":[1]");
        std::string channels, samplers;
        for (long c = 0; c < kJoints; ++c) {
            for (long k = 0; k < kKeys; ++k) {
                const float angle = 0.01f * static_cast<float>(k + a + c);
                rotations[k * 4] = std::sin(angle), rotations[k * 4 + 1] = 0, rotations[k * 4 + 2] = 0;
                rotations[k * 4 + 3] = std::cos(angle);
            }
            const long output = w.add(rotations.data(), rotations.size() * 4, kKeys, 5126, "VEC4");
            channels += std::string(c ? "," : "") + "{\"sampler\":" + std::to_string(c) +
                        ",\"target\":{\"node\":" + std::to_string(c + 1) + ",\"path\":\"rotation\"}}";
            samplers += std::string(c ? "," : "") + "{\"input\":" + std::to_string(input) +
                        ",\"output\":" + std::to_string(output) + "}";
        }
        animations += std::string(a ? "," : "") + "{\"channels\":[" + channels + "],\"samplers\":[" + samplers +
                      "],\"name\":\"anim" + std::to_string(a) + "\"}";
    }

    std::string targets, nodes = "{\"mesh\":0,\"skin\":0}", jointList, weights;
    for (long t = 0; t < kTargets; ++t) {
        targets += std::string(t ? "," : "") + "{\"POSITION\":" + std::to_string(kFirstTarget + t) + "}";
        weights += std::string(t ? "," : "") + "0";
    }
    for (long j = 0; j < kJoints; ++j) {
        jointList += std::string(j ? "," : "") + std::to_string(j + 1);
        nodes += ",{\"name\":\"joint" + std::to_string(j) + "\"" +
                 (j + 1 < kJoints ? ",\"children\":[" + std::to_string(j + 2) + "]" : std::string()) +
                 ",\"translation\":[0,0.1,0]}";
    }
    while (w.bin.size() % 4) w.bin += '\0';
    std::string json =
        "{\"asset\":{\"version\":\"2.0\"},\"scene\":0,\"scenes\":[{\"nodes\":[0,1]}],\"nodes\":[" + nodes +
        "],\"meshes\":[{\"primitives\":[{\"attributes\":{\"POSITION\":0,\"NORMAL\":1,\"TEXCOORD_0\":2,"
        "\"JOINTS_0\":3,\"WEIGHTS_0\":4,\"JOINTS_1\":5,\"WEIGHTS_1\":6},\"indices\":7,\"targets\":[" +
        targets + "]}],\"weights\":[" + weights + "]}],\"skins\":[{\"inverseBindMatrices\":" + std::to_string(ibm) +
        ",\"joints\":[" + jointList + "]}],\"animations\":[" + animations + "],\"buffers\":[{\"byteLength\":" +
        std::to_string(w.bin.size()) + "}],\"bufferViews\":[" + w.views + "],\"accessors\":[" + w.accessors + "]}";
    while (json.size() % 4) json += ' ';
    std::string glb;
    putWord(glb, 0x46546C67);
    putWord(glb, 2);
    putWord(glb, static_cast<uint32_t>(28 + json.size() + w.bin.size()));
    putWord(glb, static_cast<uint32_t>(json.size()));
    putWord(glb, 0x4E4F534A);
    glb += json;
    putWord(glb, static_cast<uint32_t>(w.bin.size()));
    putWord(glb, 0x004E4942);
    glb += w.bin;
    return glb;
}

const std::string& glbPath() {
    static const std::string path = [] {
        const fs::path dir = fs::temp_directory_path() / ("talvex_bench_gltf_" + std::to_string(::getpid()));
        fs::create_directories(dir);
        const std::string p = (dir / "avatar.glb").string();
        std::ofstream(p, std::ios::binary) << generateGlb();
        return p;
    }();
    return path;
}

void BM_GltfSkinnedMorphAnimated(benchmark::State& state) {
    const std::string& path = glbPath();
    for (auto _ : state) {
        const Gltf gltf = Gltf::load(path, true);
        // Through the mesh records: every attribute stream and the indices,
        // the merged joint influences and the POSITION morph stack.
        const Primitive primitive = gltf.meshes.getByIndex(0).primitives.getByIndex(0);
        for (const std::string& key : primitive.attributes.getKeys())
            benchmark::DoNotOptimize(primitive.attributes.get(key).getTensor());
        benchmark::DoNotOptimize(primitive.indices.get().getTensor());
        benchmark::DoNotOptimize(primitive.attributes.getJointsTensor(-1, 4));
        benchmark::DoNotOptimize(primitive.targets.getTensor("POSITION"));
        for (int64_t a = 0; a < gltf.animations.size(); ++a)
            for (const auto& sampler : gltf.animations.getByIndex(a).getNode()->getSamplers()->getItems())
                benchmark::DoNotOptimize(sampler->getTensor(30.0f));
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * static_cast<int64_t>(fs::file_size(path)));
}
BENCHMARK(BM_GltfSkinnedMorphAnimated)->Unit(benchmark::kMillisecond);

#ifdef TALVEX_BENCH_ASSIMP
void BM_GltfSkinnedMorphAnimated_Assimp(benchmark::State& state) {
    const std::string& path = glbPath();
    for (auto _ : state) {
        Assimp::Importer importer;
        const aiScene* scene = importer.ReadFile(path, 0);
        if (!scene || scene->mNumMeshes == 0) state.SkipWithError("Assimp could not read the file");
        benchmark::DoNotOptimize(scene);
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * static_cast<int64_t>(fs::file_size(path)));
}
BENCHMARK(BM_GltfSkinnedMorphAnimated_Assimp)->Unit(benchmark::kMillisecond);
#endif

// One apply of a mixer with 100 channels (one rotation track each, 31 keys).
void BM_GltfMixerApply100(benchmark::State& state) {
    AnimationMixer mixer(30.0f);
    float time = 0.0f;
    std::vector<float> times(kKeys), values(kKeys * 4);
    for (long k = 0; k < kKeys; ++k) {
        times[k] = static_cast<float>(k) / 30.0f;
        values[k * 4] = std::sin(0.02f * k), values[k * 4 + 3] = std::cos(0.02f * k);
    }
    for (long c = 0; c < 100; ++c)
        mixer.addAnimationChannel(c, TransformData(TransformType::STR), "rotation", times, values, "LINEAR", time,
                                  "walk", std::nullopt, TransformPolicy::Multiply);
    long frame = 0;
    for (auto _ : state) {
        time = static_cast<float>(frame++ % 30) / 30.0f;
        benchmark::DoNotOptimize(mixer.apply());
    }
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations()) * 100);
}
BENCHMARK(BM_GltfMixerApply100)->Unit(benchmark::kMicrosecond);

} // namespace
