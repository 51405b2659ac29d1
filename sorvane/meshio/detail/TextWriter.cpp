#include "sorvane/meshio/detail/TextWriter.h"

#include "sorvane/core/RuntimeException.h"

namespace sorvane::detail {

TextWriter::TextWriter(const std::string& path) : path_(path) {
    file_ = std::fopen(path.c_str(), "wb");
    if (!file_) SORVANE_THROW("Error writing file '%s'", path.c_str());
    buffer_.reserve(1u << 20);
}

TextWriter::~TextWriter() {
    if (!file_) return;
    flush();
    std::fclose(file_);
}

TextWriter& TextWriter::operator<<(long value) {
    char text[32];
    const int n = std::snprintf(text, sizeof text, "%ld", value);
    buffer_.append(text, static_cast<size_t>(n));
    return spill();
}

TextWriter& TextWriter::operator<<(double value) {
    char text[48];
    const int n = std::snprintf(text, sizeof text, "%g", value);
    buffer_.append(text, static_cast<size_t>(n));
    return spill();
}

void TextWriter::flush() {
    if (!buffer_.empty() && std::fwrite(buffer_.data(), 1, buffer_.size(), file_) != buffer_.size()) ok_ = false;
    buffer_.clear();
}

void TextWriter::close() {
    if (!file_) return;
    flush();
    const bool closed = std::fclose(file_) == 0;
    file_ = nullptr;
    if (!ok_ || !closed) SORVANE_THROW("Error writing file '%s'", path_.c_str());
}

void checkLocalUri(const std::string& uri, const std::string& from) {
    bool bad = uri.empty() || uri[0] == '/' || uri[0] == '\\';
    const size_t colon = uri.find(':');
    if (colon != std::string::npos && uri.find_first_of("/\\") > colon) bad = true; // "C:..." or "scheme:..."
    size_t start = 0;
    while (!bad && start <= uri.size()) {
        size_t end = uri.find_first_of("/\\", start);
        if (end == std::string::npos) end = uri.size();
        if (end - start == 2 && uri.compare(start, 2, "..") == 0) bad = true;
        start = end + 1;
    }
    if (bad) SORVANE_THROW("Error in %s: '%s' is absolute or leaves the file's folder", from.c_str(), uri.c_str());
}

} // namespace sorvane::detail
