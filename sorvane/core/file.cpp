#include "sorvane/core/file.h"

#include <sys/stat.h>

#include <cstdio>
#include <memory>

#include "sorvane/core/RuntimeException.h"
#include "sorvane/core/detail/ReadFile.h"

namespace sorvane {

namespace {

inline bool isSeparator(char c) {
    return c == '/' || c == '\\';
}

// Position of the last separator, or npos.
inline size_t lastSeparator(const std::string& path) {
    return path.find_last_of("/\\");
}

// Position of the dot that starts the extension, or npos.
size_t extensionDot(const std::string& path) {
    const size_t dot = path.rfind('.');
    if (dot == std::string::npos) return dot;
    const size_t sep = lastSeparator(path);
    if (sep == std::string::npos) return dot == 0 ? std::string::npos : dot;
    return dot > sep ? dot : std::string::npos;
}

} // namespace

std::string getFileExtension(const std::string& path) {
    const size_t dot = extensionDot(path);
    return dot == std::string::npos ? std::string() : path.substr(dot);
}

std::string removeFileExtension(const std::string& path) {
    const size_t dot = extensionDot(path);
    return dot == std::string::npos ? path : path.substr(0, dot);
}

std::string replaceFileExtension(const std::string& path, const std::string& extension) {
    return removeFileExtension(path) + extension;
}

std::string getDirectoryName(const std::string& path) {
    const size_t sep = lastSeparator(path);
    return sep == std::string::npos ? std::string() : path.substr(0, sep);
}

std::string getFileName(const std::string& path) {
    const size_t sep = lastSeparator(path);
    return sep == std::string::npos ? path : path.substr(sep + 1);
}

std::pair<std::string, std::string> splitFilePath(const std::string& path) {
    return {getFileName(path), getDirectoryName(path)};
}

std::string joinFilePaths(const std::string& first, const std::string& second) {
    if (first.empty()) return second;
    const bool absolute = (!second.empty() && second[0] == '/') || (second.size() > 1 && second[1] == ':');
    if (absolute) return second;
    if (isSeparator(first.back())) return first + second;
    return first + "/" + second;
}

std::string replaceFileName(const std::string& path, const std::string& name) {
    const std::string dir = getDirectoryName(path);
    return dir.empty() ? name : dir + "/" + name;
}

std::vector<std::string> getPathComponents(const std::string& path) {
    std::vector<std::string> components;
    if (path.size() < 2) return components;
    size_t start = 0;
    for (size_t i = 0; i <= path.size(); ++i) {
        if (i < path.size() && !isSeparator(path[i])) continue;
        const bool leading = start == 0 && i == 0;
        const bool trailing = i == path.size() && i > 0 && isSeparator(path[i - 1]);
        if (i > start || leading || trailing) components.emplace_back(path, start, i - start);
        start = i + 1;
    }
    return components;
}

std::string relativizePath(const std::string& path, const std::string& base) {
    if (path.empty() || base.empty()) return path;
    // A one-character path has no components; take it as the single
    // component it is ("/" being the root) so that nothing is lost.
    auto components = [](const std::string& text) {
        if (text.size() == 1) return std::vector<std::string>{isSeparator(text[0]) ? std::string() : text};
        return getPathComponents(text);
    };
    const std::vector<std::string> p = components(path);
    const std::vector<std::string> b = components(base);
    const bool pathAbsolute = !p.empty() && p[0].empty();
    const bool baseAbsolute = !b.empty() && b[0].empty();
    if (pathAbsolute != baseAbsolute) SORVANE_THROW("Both paths must be absolute or relative");
    size_t i = pathAbsolute ? 1 : 0;
    while (i < p.size() && i < b.size() && p[i] == b[i]) ++i;
    std::string result;
    auto append = [&result](const std::string& piece) {
        if (!result.empty()) result += '/';
        result += piece;
    };
    for (size_t k = i; k < b.size(); ++k) append("..");
    for (size_t k = i; k < p.size(); ++k) append(p[k]);
    return result;
}

bool fileExists(const std::string& path) {
    struct stat info;
    return ::stat(path.c_str(), &info) == 0;
}

bool fileExists(const std::filesystem::path& path) {
    return fileExists(path.string());
}

std::vector<unsigned char> loadFile(const char* path) {
    detail::ReadFile file(path);
    std::vector<unsigned char> data(static_cast<size_t>(file.size()));
    file.read(data.data(), file.size());
    return data;
}

std::vector<unsigned char> loadFile(const std::string& path) {
    return loadFile(path.c_str());
}

std::vector<unsigned char> loadFile(const std::filesystem::path& path) {
    return loadFile(path.c_str());
}

void saveFile(const char* path, const unsigned char* data, unsigned long size) {
    std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path, "wb"), &std::fclose);
    if (!file) SORVANE_THROW("Error when creating '%s'", path);
    bool ok = size == 0 || std::fwrite(data, 1, size, file.get()) == size;
    ok = std::fclose(file.release()) == 0 && ok;  // a full disk may only show at the flush
    if (!ok) SORVANE_THROW("Error when writing '%s'", path);
}

void saveFile(const std::string& path, const unsigned char* data, unsigned long size) {
    saveFile(path.c_str(), data, size);
}

void saveFile(const std::filesystem::path& path, const unsigned char* data, unsigned long size) {
    saveFile(path.c_str(), data, size);
}

void saveFile(const char* path, const std::vector<unsigned char>& data) {
    saveFile(path, data.data(), data.size());
}

void saveFile(const std::string& path, const std::vector<unsigned char>& data) {
    saveFile(path.c_str(), data.data(), data.size());
}

void saveFile(const std::filesystem::path& path, const std::vector<unsigned char>& data) {
    saveFile(path.c_str(), data.data(), data.size());
}

long loadDataFile(void* buffer, long bufferSize, const char* path) {
    detail::ReadFile file(path);
    if (!buffer) return static_cast<long>(file.size());
    if (bufferSize < file.size()) SORVANE_THROW("Reading '%s': buffer is too small", path);
    file.read(buffer, file.size());
    return static_cast<long>(file.size());
}

long loadDataFile(void* buffer, long bufferSize, const std::string& path) {
    return loadDataFile(buffer, bufferSize, path.c_str());
}

long loadDataFile(void* buffer, long bufferSize, const std::filesystem::path& path) {
    return loadDataFile(buffer, bufferSize, path.c_str());
}

} // namespace sorvane
