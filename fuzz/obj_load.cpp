// Arbitrary bytes as an .obj file, with everything after a line "#mtl" as the
// m.mtl beside it. Whatever loads must hold only indices inside its arrays.
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <fstream>
#include <string>

#include "sorvane/datatree/DataTree.h"
#include "sorvane/meshio/mesh_obj.h"

namespace {

void checkIndices(const sorvane::DataTree& mesh, const char* faces, const char* items) {
    if (!mesh.hasItem(faces)) return;
    if (!mesh.hasItem(items)) std::abort();
    const sorvane::DataTree& f = mesh.getItem(faces);
    const long count = mesh.getItem(items).getTensorSize(0);
    const long* v = f.getData<long>();
    for (long i = 0; i < f.getValueCount(); ++i)
        if (v[i] < 0 || v[i] >= count) std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const std::filesystem::path dir = [] {
        auto d = std::filesystem::temp_directory_path() / ("talvex_fuzz_obj_" + std::to_string(::getpid()));
        std::filesystem::create_directories(d);
        return d;
    }();
    const std::string input(reinterpret_cast<const char*>(data), size);
    const size_t split = input.find("\n#mtl\n");
    std::ofstream(dir / "f.obj", std::ios::binary) << input.substr(0, split);
    if (split != std::string::npos) {
        std::ofstream(dir / "m.mtl", std::ios::binary) << input.substr(split + 6);
    } else {
        std::filesystem::remove(dir / "m.mtl");
    }
    try {
        const sorvane::DataTree mesh = sorvane::loadObj((dir / "f.obj").string());
        checkIndices(mesh, "facesVertices", "vertices");
        checkIndices(mesh, "facesUvs", "uvs");
        checkIndices(mesh, "facesNormals", "normals");
    } catch (const std::exception&) {
    }
    return 0;
}
