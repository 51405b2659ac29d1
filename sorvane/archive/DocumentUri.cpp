#include "sorvane/archive/DocumentUri.h"

#include <cctype>
#include <cstdlib>
#include <filesystem>
#include <optional>

#include "sorvane/archive/DiskFileProvider.h"
#include "sorvane/archive/FileProvider.h"
#include "sorvane/archive/RelativeFileProvider.h"
#include "sorvane/archive/base64.h"
#include "sorvane/core/RuntimeException.h"

namespace sorvane::archive {

bool isAbsoluteUri(const std::string& uri) {
    if (!uri.empty() && (uri[0] == '/' || uri[0] == '\\')) return true;
    return uri.size() >= 2 && std::isalpha(static_cast<unsigned char>(uri[0])) && uri[1] == ':';
}

bool climbsOutOfFolder(const std::string& uri) {
    size_t start = 0;
    while (start <= uri.size()) {
        size_t end = uri.find_first_of("/\\", start);
        if (end == std::string::npos) end = uri.size();
        if (end - start == 2 && uri.compare(start, 2, "..") == 0) return true;
        start = end + 1;
    }
    return false;
}

namespace {

namespace fs = std::filesystem;

// Where a provider keeps a name on disk, if it keeps it on disk at all.
std::optional<fs::path> onDisk(const FileProvider* provider, const std::string& name) {
    if (const auto* disk = dynamic_cast<const DiskFileProvider*>(provider)) return disk->resolve(name);
    if (const auto* relative = dynamic_cast<const RelativeFileProvider*>(provider))
        return onDisk(relative->getParent().get(), relative->resolve(name));
    return std::nullopt;
}

// Both paths made real (links followed as far as they exist), then compared
// element by element. Anything that cannot be resolved counts as outside.
bool resolvesOutside(const fs::path& folder, const fs::path& target) {
    std::error_code error;
    fs::path realFolder = fs::weakly_canonical(fs::absolute(folder, error), error);
    if (error) return true;
    const fs::path realTarget = fs::weakly_canonical(fs::absolute(target, error), error);
    if (error) return true;
    if (realFolder.filename().empty()) realFolder = realFolder.parent_path();
    auto t = realTarget.begin();
    for (auto f = realFolder.begin(); f != realFolder.end(); ++f, ++t) {
        if (t == realTarget.end() || *f != *t) return true;
    }
    return false;
}

} // namespace

bool leavesFolder(const FileProvider* provider, const std::string& uri) {
    if (climbsOutOfFolder(uri)) return true;
    const std::optional<fs::path> folder = onDisk(provider, ".");
    if (!folder) return false;
    return resolvesOutside(*folder, *onDisk(provider, uri));
}

bool leavesFolderOf(const std::string& from, const std::string& uri) {
    if (isAbsoluteUri(uri) || climbsOutOfFolder(uri)) return true;
    const fs::path folder = fs::path(from).parent_path();
    return resolvesOutside(folder.empty() ? fs::path(".") : folder, folder / uri);
}

std::string makeDataUri(const std::string& mimeType, const void* data, int64_t size) {
    std::string uri = "data:" + mimeType + ";base64,";
    const long textSize = base64encode(nullptr, 0, data, static_cast<long>(size), BASE64_ENCODING_STANDARD, '=');
    const size_t prefix = uri.size();
    uri.resize(prefix + static_cast<size_t>(textSize));
    base64encode(&uri[prefix], textSize, data, static_cast<long>(size), BASE64_ENCODING_STANDARD, '=');
    return uri;
}

namespace {

std::string withNumber(const std::string& base, int64_t number) {
    if (number < 0) return base;
    return base.empty() ? std::to_string(number) : base + "_" + std::to_string(number);
}

} // namespace

std::string findFreeFileName(const FileProvider* provider, bool overwrite, const char* uri, const char* name,
                             int64_t number, const std::string& extension, const std::string& mainBase) {
    auto isFree = [&](const std::string& candidate) {
        return overwrite || !provider || !provider->exists(candidate);
    };
    std::string base;
    if (uri) {
        if (isAbsoluteUri(uri)) SORVANE_THROW("uri '%s' is absolute", uri);
        base = uri;
        if (isFree(base)) return base;
    } else {
        base = mainBase;
    }
    if (name) {
        std::string kept;
        for (const char* c = name; *c; ++c)
            if (std::isalnum(static_cast<unsigned char>(*c)) || *c == '_') kept += *c;
        if (!kept.empty()) base = base.empty() ? kept : base + "_" + kept;
    }
    std::string candidate = withNumber(base, number) + extension;
    if (isFree(candidate)) return candidate;
    for (int attempt = 0; attempt < 10; ++attempt) {
        candidate = withNumber(base, std::rand() % 100000) + extension;
        if (isFree(candidate)) return candidate;
    }
    SORVANE_THROW("Can't find a free file name");
}

} // namespace sorvane::archive
