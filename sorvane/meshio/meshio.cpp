#include "sorvane/meshio/meshio.h"

#include <cstring>

#include "sorvane/core/RuntimeException.h"
#include "sorvane/core/file.h"
#include "sorvane/meshio/mesh_gltf.h"

namespace sorvane {

long countPatterns(const std::string& text, const char* pattern) {
    const size_t length = pattern ? std::strlen(pattern) : 0;
    if (length == 0) return 0;
    long count = 0;
    for (size_t at = text.find(pattern); at != std::string::npos; at = text.find(pattern, at + length)) ++count;
    return count;
}

long countChars(const std::string& text, char c) {
    long count = 0;
    for (char x : text) count += x == c;
    return count;
}

long countWords(const std::string& text) {
    long count = 0;
    bool inWord = false;
    for (char x : text) {
        const bool blank = x == ' ' || x == '\t';
        if (!blank && !inWord) ++count;
        inWord = !blank;
    }
    return count;
}

DataTree loadMesh(const std::string& path) {
    const std::string extension = getFileExtension(path);
    if (extension == ".obj") return loadObj(path);
    if (extension == ".gltf" || extension == ".glb") return loadGltf(path);
    SORVANE_THROW("Unsupported file extension %s", extension.c_str());
}

void saveMesh(const std::string& path, const DataTree& mesh, bool) {
    const std::string extension = getFileExtension(path);
    if (extension == ".obj") return saveObj(path, mesh);
    // Always embedded: one file to hand on, whatever the caller asked.
    if (extension == ".gltf" || extension == ".glb") return saveGltf(path, mesh, true);
    SORVANE_THROW("Unsupported file extension %s", extension.c_str());
}

} // namespace sorvane
