#ifndef SORVANE_ARCHIVE_JSONEXPORTER_H
#define SORVANE_ARCHIVE_JSONEXPORTER_H

#include <cstdint>
#include <deque>
#include <memory>
#include <ostream>
#include <string>
#include <unordered_map>
#include <vector>

#include "sorvane/core/Export.h"

namespace sorvane::archive {

// A stream of writing calls that keeps commas and indentation. In an object
// each value is addObjectItem(key) and one value call; in an array each value
// is addArrayItem() and one value call.
class SORVANE_API JsonExporter {
public:
    struct Options {
        bool debug = false;
        bool compact = false;
        bool reserved = false;  // read by nothing
    };
    struct Item {
        int32_t type;  // 0 object, 1 array
        bool first;
    };
    using IntegerMap = std::unordered_map<std::string, int64_t>;

    // Two constructors rather than a default argument: a default argument
    // `Options()` inside this class would need Options' member initializers
    // before the class is complete, which compilers reject.
    explicit JsonExporter(std::ostream& stream);
    JsonExporter(std::ostream& stream, const Options& options);
    ~JsonExporter();  // flushes
    JsonExporter(const JsonExporter&) = delete;
    JsonExporter& operator=(const JsonExporter&) = delete;

    void beginObject();
    void endObject();
    void beginArray();
    void endArray();
    void addObjectItem(const std::string& key);
    void addObjectItem(const char* key);
    void addArrayItem();
    void addString(const std::string& value);
    void addString(const char* value);
    void addBoolean(bool value);
    void addNull();
    void addInteger(int64_t value);
    void addNumber(double value);
    void addIntegerList(const std::vector<int64_t>& values);
    void addIntegerList(const int64_t* values, size_t count);
    void addNumberList(const std::vector<double>& values);
    void addStringList(const std::vector<std::string>& values);
    void addIntegerMap(const IntegerMap& map);
    void addIntegerMapList(const std::vector<IntegerMap>& maps);

    // Hands buffered output to the stream (also done by the destructor).
    void flush();

private:
    void separator(int32_t type);
    void close(int32_t type, char c, const char* name);
    void debugLine(const char* name, size_t level, bool withFirst, bool first);
    // Space for n more bytes at the end of the buffer.
    char* room(size_t n) {
        if (capacity_ - size_ < n) makeRoom(n);
        return buffer_.get() + size_;
    }
    void makeRoom(size_t n);
    void put(char c) { *room(1) = c, ++size_; }
    void put(const char* text, size_t n);
    void indent();
    void appendString(const char* value, size_t size);
    void appendNumber(double value);
    void appendInteger(int64_t value);
    void done() {
        if (stack_.empty() || size_ >= kFlushSize) flush();
    }

    static constexpr size_t kFlushSize = 64 * 1024;

    int32_t indent_ = 0;
    std::ostream& stream_;
    std::vector<Item> stack_;
    Options options_;
    std::unique_ptr<char[]> buffer_;  // output not yet handed to the stream
    size_t size_ = 0;
    size_t capacity_ = 0;
    bool plainNumbers_ = true;  // the stream formats numbers as the C locale does
};

} // namespace sorvane::archive

#endif
