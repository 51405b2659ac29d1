// loadObj of a generated 1 M-vertex, 2 M-triangle OBJ, against Assimp's
// ReadFile of the same file when Assimp is installed (benchmark-only), and
// saveObj of the loaded mesh in MB/s.
#include <benchmark/benchmark.h>

#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <string>

#include "sorvane/datatree/DataTree.h"
#include "sorvane/meshio/mesh_obj.h"

#ifdef TALVEX_BENCH_ASSIMP
#include <assimp/Importer.hpp>
#include <assimp/scene.h>
#endif

namespace {

namespace fs = std::filesystem;

constexpr long kSide = 1000; // 1000 x 1000 vertices, 999 x 999 x 2 triangles

fs::path benchDir() {
    static const fs::path dir = [] {
        auto d = fs::temp_directory_path() / ("talvex_bench_mesh_" + std::to_string(::getpid()));
        fs::create_directories(d);
        return d;
    }();
    return dir;
}

const std::string& gridObj() {
    static const std::string path = [] {
        const std::string p = (benchDir() / "grid.obj").string();
        std::FILE* f = std::fopen(p.c_str(), "wb");
        for (long y = 0; y < kSide; ++y)
            for (long x = 0; x < kSide; ++x)
                std::fprintf(f, "v %g %g %g\n", x * 0.001, y * 0.001, ((x * 7 + y * 13) % 101) * 0.0001);
        for (long y = 0; y + 1 < kSide; ++y)
            for (long x = 0; x + 1 < kSide; ++x) {
                const long a = y * kSide + x + 1, b = a + 1, c = a + kSide, d = c + 1;
                std::fprintf(f, "f %ld %ld %ld\nf %ld %ld %ld\n", a, b, d, a, d, c);
            }
        std::fclose(f);
        return p;
    }();
    return path;
}

void BM_LoadObj(benchmark::State& state) {
    const std::string& path = gridObj();
    for (auto _ : state) {
        sorvane::DataTree mesh = sorvane::loadObj(path);
        benchmark::DoNotOptimize(mesh.getItem("facesVertices").getBuffer());
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * static_cast<int64_t>(fs::file_size(path)));
}

#ifdef TALVEX_BENCH_ASSIMP
void BM_LoadObj_Assimp(benchmark::State& state) {
    const std::string& path = gridObj();
    for (auto _ : state) {
        Assimp::Importer importer;
        const aiScene* scene = importer.ReadFile(path, 0);
        if (!scene || scene->mNumMeshes == 0) state.SkipWithError("Assimp could not read the file");
        benchmark::DoNotOptimize(scene);
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * static_cast<int64_t>(fs::file_size(path)));
}
BENCHMARK(BM_LoadObj_Assimp)->Unit(benchmark::kMillisecond);
#endif

void BM_SaveObj(benchmark::State& state) {
    const sorvane::DataTree mesh = sorvane::loadObj(gridObj());
    const std::string out = (benchDir() / "saved.obj").string();
    for (auto _ : state) sorvane::saveObj(out, mesh);
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * static_cast<int64_t>(fs::file_size(out)));
}

} // namespace

BENCHMARK(BM_LoadObj)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_SaveObj)->Unit(benchmark::kMillisecond);
