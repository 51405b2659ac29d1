#ifndef TALVEX_TESTS_GLTF2_GLTFTESTSUPPORT_H
#define TALVEX_TESTS_GLTF2_GLTFTESTSUPPORT_H

#include <gtest/gtest.h>

#include <unistd.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "tests/arf/node/NodeTestSupport.h"

namespace talvex_test {

// A scratch folder per test.
struct GltfScratch {
    std::filesystem::path dir;
    GltfScratch() {
        dir = std::filesystem::temp_directory_path() /
              ("talvex-gltf-" + std::to_string(::getpid()) + "-" +
               ::testing::UnitTest::GetInstance()->current_test_info()->name());
        std::filesystem::remove_all(dir);
        std::filesystem::create_directories(dir);
    }
    ~GltfScratch() {
        std::error_code ignored;
        std::filesystem::remove_all(dir, ignored);
    }
    std::string path(const std::string& name) const { return (dir / name).string(); }
    std::string read(const std::string& name) const {
        std::ifstream in(dir / name, std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
    }
    void write(const std::string& name, const std::string& bytes) const {
        std::ofstream out(dir / name, std::ios::binary);
        out << bytes;
    }
};

inline uint32_t wordAt(const std::string& bytes, size_t offset) {
    const auto* p = reinterpret_cast<const unsigned char*>(bytes.data() + offset);
    return uint32_t(p[0]) | uint32_t(p[1]) << 8 | uint32_t(p[2]) << 16 | uint32_t(p[3]) << 24;
}

inline void putWord(std::string& bytes, uint32_t v) {
    for (int i = 0; i < 4; ++i) bytes += static_cast<char>(v >> (8 * i));
}

// A .glb with the given JSON text and BIN bytes, padded as the format wants.
inline std::string glbOf(std::string json, std::string bin) {
    while (json.size() % 4) json += ' ';
    while (bin.size() % 4) bin += '\0';
    std::string out;
    putWord(out, 0x46546C67);
    putWord(out, 2);
    putWord(out, static_cast<uint32_t>(28 + json.size() + bin.size()));
    putWord(out, static_cast<uint32_t>(json.size()));
    putWord(out, 0x4E4F534A);
    out += json;
    putWord(out, static_cast<uint32_t>(bin.size()));
    putWord(out, 0x004E4942);
    out += bin;
    return out;
}

} // namespace talvex_test

#endif
