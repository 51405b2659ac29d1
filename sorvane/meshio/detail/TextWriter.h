#ifndef SORVANE_MESHIO_DETAIL_TEXTWRITER_H
#define SORVANE_MESHIO_DETAIL_TEXTWRITER_H

// Internal: a buffered text file for the mesh writers. Numbers are written as
// a default-formatted stream writes them (six significant digits).

#include <cstdio>
#include <string>

namespace sorvane::detail {

class TextWriter {
public:
    // "Error writing file '%s'" when it cannot be opened.
    explicit TextWriter(const std::string& path);
    TextWriter(const TextWriter&) = delete;
    TextWriter& operator=(const TextWriter&) = delete;
    ~TextWriter();

    TextWriter& operator<<(const char* text) {
        buffer_ += text;
        return spill();
    }
    TextWriter& operator<<(const std::string& text) {
        buffer_ += text;
        return spill();
    }
    TextWriter& operator<<(char c) {
        buffer_ += c;
        return spill();
    }
    TextWriter& operator<<(long value);
    TextWriter& operator<<(double value);
    // Flushes and closes; "Error writing file '%s'" when the data did not all reach the disk.
    void close();

private:
    TextWriter& spill() {
        if (buffer_.size() >= (1u << 20)) flush();
        return *this;
    }
    void flush();

    std::string path_;
    std::FILE* file_ = nullptr;
    std::string buffer_;
    bool ok_ = true;
};

// Refuses a file name taken from a file when it is empty, absolute (a root
// or a drive), or leads out of the file's folder ("..", or a symbolic link).
void checkLocalUri(const std::string& uri, const std::string& from);

} // namespace sorvane::detail

#endif
