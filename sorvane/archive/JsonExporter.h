#ifndef SORVANE_ARCHIVE_JSONEXPORTER_H
#define SORVANE_ARCHIVE_JSONEXPORTER_H

#include <cstdint>
#include <deque>
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
    void addNumberList(const std::vector<double>& values);
    void addStringList(const std::vector<std::string>& values);
    void addIntegerMap(const IntegerMap& map);
    void addIntegerMapList(const std::vector<IntegerMap>& maps);

    // Hands buffered output to the stream (also done by the destructor).
    void flush();

private:
    // (private members: chosen by the implementation)
};

} // namespace sorvane::archive

#endif
