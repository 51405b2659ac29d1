#include "sorvane/meshio/detail/TextWriter.h"

#include "sorvane/archive/DocumentUri.h"
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
    // The documents' own uri rules, plus a name that must not be empty.
    if (uri.empty() || archive::leavesFolderOf(from, uri))
        SORVANE_THROW("Error in %s: '%s' is absolute or leaves the file's folder", from.c_str(), uri.c_str());
}

} // namespace sorvane::detail
