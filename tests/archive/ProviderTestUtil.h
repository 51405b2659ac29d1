#ifndef TALVEX_TESTS_ARCHIVE_PROVIDERTESTUTIL_H
#define TALVEX_TESTS_ARCHIVE_PROVIDERTESTUTIL_H

#include <filesystem>
#include <fstream>
#include <string>

#include "sorvane/core/RuntimeException.h"

namespace providertest {

// A fresh folder per test under the build tree.
inline std::filesystem::path scratch(const std::string& name) {
    std::filesystem::path dir = std::filesystem::path(TALVEX_BINARY_DIR) / "test-scratch" / "archive" / name;
    std::filesystem::remove_all(dir);
    std::filesystem::create_directories(dir);
    return dir;
}

inline void writeText(const std::filesystem::path& path, const std::string& text) {
    std::ofstream(path, std::ios::binary) << text;
}

// The text of a RuntimeException without its location prefix.
template <class F>
std::string failure(F&& f) {
    try {
        f();
    } catch (const sorvane::RuntimeException& e) {
        const std::string text = e.what();
        const size_t at = text.find("(): ");
        return at == std::string::npos ? text : text.substr(at + 4);
    } catch (const std::exception& e) {
        return std::string("other: ") + e.what();
    }
    return "no exception";
}

} // namespace providertest

#endif
