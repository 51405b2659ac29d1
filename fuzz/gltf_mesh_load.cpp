// Arbitrary bytes as a .glb file read as a mesh: the first scene node with
// its mesh, transform and children. Whatever loads must hold faces that are
// whole triangles.
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <sstream>
#include <string>

#include "sorvane/datatree/DataTree.h"
#include "sorvane/meshio/mesh_gltf.h"

// Keeps the .glb header and chunk lengths consistent so that mutations reach the JSON.
#if TALVEX_FUZZ_MUTATORS
#include "mutators/GlbChunks.h"
#endif

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    // Removed again when the process ends.
    static const struct Folder {
        std::filesystem::path path =
            std::filesystem::temp_directory_path() / ("talvex_fuzz_gltf_mesh_" + std::to_string(::getpid()));
        Folder() { std::filesystem::create_directories(path); }
        ~Folder() {
            std::error_code ignored;
            std::filesystem::remove_all(path, ignored);
        }
    } folder;
    const std::string file = (folder.path / "m.glb").string();
    std::ofstream(file, std::ios::binary).write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
    std::stringstream sink;
    std::streambuf* old = std::cerr.rdbuf(sink.rdbuf());
    try {
        const sorvane::DataTree mesh = sorvane::loadGltf(file);
        if (mesh.hasItem("faces") && mesh.getItem("faces").getTensorSize(1) != 3) std::abort();
    } catch (const std::exception&) {
    }
    std::cerr.rdbuf(old);
    return 0;
}
