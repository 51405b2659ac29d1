#include "sorvane/archive/DocumentUri.h"

#include <cctype>

#include "sorvane/archive/base64.h"

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

std::string makeDataUri(const std::string& mimeType, const void* data, int64_t size) {
    std::string uri = "data:" + mimeType + ";base64,";
    const long textSize = base64encode(nullptr, 0, data, static_cast<long>(size), BASE64_ENCODING_STANDARD, '=');
    const size_t prefix = uri.size();
    uri.resize(prefix + static_cast<size_t>(textSize));
    base64encode(&uri[prefix], textSize, data, static_cast<long>(size), BASE64_ENCODING_STANDARD, '=');
    return uri;
}

} // namespace sorvane::archive
