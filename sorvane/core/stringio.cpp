#include "sorvane/core/stringio.h"

#include <fstream>

#include "sorvane/core/RuntimeException.h"
#include "sorvane/core/detail/ReadFile.h"

namespace sorvane {

std::string loadStringFile(const char* path) {
    detail::ReadFile file(path);
    std::string text(static_cast<size_t>(file.size()), '\0');
    file.read(&text[0], file.size());
    return text;
}

std::string loadStringFile(const std::string& path) {
    return loadStringFile(path.c_str());
}

std::string loadStringFile(const std::filesystem::path& path) {
    return loadStringFile(path.c_str());
}

std::vector<std::string> loadStringLines(const std::string& path, bool skipComments) {
    std::error_code error;
    std::ifstream in(path, std::ios::binary);
    if (!in || std::filesystem::is_directory(path, error)) SORVANE_THROW("Error opening %s", path.c_str());
    // One block read: mesh and point files can be large.
    std::string text;
    in.seekg(0, std::ios::end);
    const std::streamoff length = in.tellg();
    in.seekg(0, std::ios::beg);
    if (length < 0 || !in) SORVANE_THROW("Error reading %s", path.c_str());
    text.resize(static_cast<size_t>(length));
    if (length > 0 && !in.read(&text[0], length)) SORVANE_THROW("Error reading %s", path.c_str());
    std::vector<std::string> lines;
    size_t start = 0;
    const size_t size = text.size();
    while (start < size) {
        size_t end = text.find_first_of("\r\n", start);
        if (end == std::string::npos) end = size;
        if (end > start && !(skipComments && text[start] == '#')) lines.emplace_back(text, start, end - start);
        start = end + 1;
    }
    return lines;
}

} // namespace sorvane
