#include "sorvane/archive/JsonExporter.h"

#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <iostream>
#include <locale>

#include "sorvane/core/RuntimeException.h"

namespace sorvane::archive {

namespace {

constexpr int32_t kObject = 0;
constexpr int32_t kArray = 1;

// Bytes that a string can't hold as they are; all others are written raw.
inline bool needsEscape(unsigned char c) {
    return c == '\\' || c == '"' || c == 0 || c == 8 || c == 9 || c == 10 || c == 12 || c == 13;
}

} // namespace

JsonExporter::JsonExporter(std::ostream& stream) : JsonExporter(stream, Options()) {}

JsonExporter::JsonExporter(std::ostream& stream, const Options& options) : stream_(stream), options_(options) {
    // Numbers are formatted here as the stream would: that is the C locale's
    // form unless the stream carries a locale of its own.
    plainNumbers_ = stream_.getloc() == std::locale::classic();
    out_.reserve(kFlushSize + 4096);
}

JsonExporter::~JsonExporter() {
    try {
        flush();
    } catch (...) {
        // A stream that throws on failure must not end the program here.
    }
}

void JsonExporter::flush() {
    if (out_.empty()) return;
    stream_.write(out_.data(), static_cast<std::streamsize>(out_.size()));
    out_.clear();
}

void JsonExporter::debugLine(const char* name, size_t level, bool withFirst, bool first) {
    // Keeps the order of both outputs when the JSON goes to the same stream.
    flush();
    std::cout << name << "(level=" << level << ", indent=" << indent_;
    if (withFirst) std::cout << ", first=" << (first ? 1 : 0);
    std::cout << ")" << std::endl;
}

void JsonExporter::beginObject() {
    out_.push_back('{');
    stack_.push_back(Item{kObject, true});
    ++indent_;
    if (options_.debug) debugLine("beginObject", stack_.size(), false, false);
}

void JsonExporter::beginArray() {
    out_.push_back('[');
    stack_.push_back(Item{kArray, true});
    ++indent_;
    if (options_.debug) debugLine("beginArray", stack_.size(), false, false);
}

void JsonExporter::close(int32_t type, char c, const char* name) {
    if (stack_.empty() || stack_.back().type != type) SORVANE_THROW("Not in an object");
    bool first = stack_.back().first;
    if (options_.debug) debugLine(name, stack_.size(), true, first);
    stack_.pop_back();
    --indent_;
    if (!first && !options_.compact) {
        out_.push_back('\n');
        out_.append(static_cast<size_t>(indent_) * 2, ' ');
    }
    out_.push_back(c);
    done();
}

void JsonExporter::endObject() { close(kObject, '}', "endObject"); }

void JsonExporter::endArray() { close(kArray, ']', "endArray"); }

void JsonExporter::separator(int32_t type) {
    if (stack_.empty() || stack_.back().type != type) {
        if (type == kObject) SORVANE_THROW("Not in an object");
        SORVANE_THROW("Not in an array");
    }
    Item& item = stack_.back();
    if (item.first) {
        item.first = false;
        if (!options_.compact) out_.push_back('\n');
    } else if (options_.compact) {
        out_.push_back(',');
    } else {
        out_.append(",\n", 2);
    }
    if (!options_.compact) out_.append(static_cast<size_t>(indent_) * 2, ' ');
}

void JsonExporter::addObjectItem(const std::string& key) { addObjectItem(key.c_str()); }

void JsonExporter::addObjectItem(const char* key) {
    separator(kObject);
    appendString(key, std::strlen(key));
    if (options_.compact) {
        out_.push_back(':');
    } else {
        out_.append(": ", 2);
    }
}

void JsonExporter::addArrayItem() { separator(kArray); }

void JsonExporter::appendString(const char* value, size_t size) {
    out_.push_back('"');
    const char* p = value;
    const char* e = value + size;
    for (;;) {
        const char* start = p;
        while (p < e && !needsEscape(static_cast<unsigned char>(*p))) ++p;
        out_.append(start, static_cast<size_t>(p - start));
        if (p == e || *p == 0) break;  // a NUL ends the text
        char escaped[2] = {'\\', 0};
        switch (*p) {
        case '\\':
            escaped[1] = '\\';
            break;
        case '"':
            escaped[1] = '"';
            break;
        case 8:
            escaped[1] = 'b';
            break;
        case 9:
            escaped[1] = 't';
            break;
        case 10:
            escaped[1] = 'n';
            break;
        case 12:
            escaped[1] = 'f';
            break;
        default:
            escaped[1] = 'r';
            break;
        }
        out_.append(escaped, 2);
        ++p;
    }
    out_.push_back('"');
}

void JsonExporter::addString(const std::string& value) {
    appendString(value.data(), value.size());
    done();
}

void JsonExporter::addString(const char* value) {
    appendString(value, std::strlen(value));
    done();
}

void JsonExporter::addBoolean(bool value) {
    if (value) {
        out_.append("true", 4);
    } else {
        out_.append("false", 5);
    }
    done();
}

void JsonExporter::addNull() {
    out_.append("null", 4);
    done();
}

void JsonExporter::appendInteger(int64_t value) {
    char text[24];
    auto result = std::to_chars(text, text + sizeof(text), value);
    out_.append(text, static_cast<size_t>(result.ptr - text));
}

void JsonExporter::appendNumber(double value) {
    char text[40];
    size_t size = 0;
    if (!plainNumbers_) {
        // A stream with its own locale formats the number itself.
        flush();
        stream_ << value;
        return;
    }
    if (std::isfinite(value)) {
        // Same text as "%.16g" (shortest digits up to 16, exponent form when
        // the exponent is below -4 or at least 16), without printf's cost.
        auto result = std::to_chars(text, text + sizeof(text), value, std::chars_format::general, 16);
        size = static_cast<size_t>(result.ptr - text);
    } else {
        int written = std::snprintf(text, sizeof(text), "%.16g", value);
        size = written > 0 ? static_cast<size_t>(written) : 0;
    }
    out_.append(text, size);
}

void JsonExporter::addInteger(int64_t value) {
    appendInteger(value);
    done();
}

void JsonExporter::addNumber(double value) {
    stream_.precision(16);
    appendNumber(value);
    done();
}

void JsonExporter::addIntegerList(const std::vector<int64_t>& values) {
    out_.push_back('[');
    for (size_t i = 0; i < values.size(); ++i) {
        if (i > 0) out_.append(", ", 2);
        appendInteger(values[i]);
    }
    out_.push_back(']');
    done();
}

void JsonExporter::addNumberList(const std::vector<double>& values) {
    stream_.precision(16);
    out_.push_back('[');
    for (size_t i = 0; i < values.size(); ++i) {
        if (i > 0) out_.append(", ", 2);
        appendNumber(values[i]);
    }
    out_.push_back(']');
    done();
}

void JsonExporter::addStringList(const std::vector<std::string>& values) {
    out_.push_back('[');
    for (size_t i = 0; i < values.size(); ++i) {
        if (i > 0) out_.append(", ", 2);
        appendString(values[i].data(), values[i].size());
    }
    out_.push_back(']');
    done();
}

void JsonExporter::addIntegerMap(const IntegerMap& map) {
    beginObject();
    for (const auto& [key, value] : map) {
        addObjectItem(key);
        addInteger(value);
    }
    endObject();
}

void JsonExporter::addIntegerMapList(const std::vector<IntegerMap>& maps) {
    beginArray();
    for (const auto& map : maps) {
        addArrayItem();
        addIntegerMap(map);
    }
    endArray();
}

} // namespace sorvane::archive
