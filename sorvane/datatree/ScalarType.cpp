#include "sorvane/datatree/ScalarType.h"

#include <cctype>

#include "sorvane/core/RuntimeException.h"

namespace sorvane {

namespace {

struct ScalarInfo {
    const char* printed;
    const char* accepted;
    long size;
    bool integer;
};

const ScalarInfo kScalarInfo[] = {
    {"Invalid", nullptr, 0, false},
    {"Boolean", "boolean", 1, true},
    {"UInteger8", "uinteger8", 1, true},
    {"Integer8", "integer8", 1, true},
    {"UInteger16", "uinteger16", 2, true},
    {"Integer16", "integer16", 2, true},
    {"UInteger32", "uinteger32", 4, true},
    {"Integer32", "integer32", 4, true},
    {"UInteger64", "uinteger64", 8, true},
    {"Integer64", "integer64", 8, true},
    {"Float", "float", 4, false},
    {"Double", "double", 8, false},
};

const ScalarInfo& infoOf(ScalarType type) {
    if (!isScalarTypeValid(type)) SORVANE_THROW("Invalid scalar type");
    return kScalarInfo[static_cast<int32_t>(type)];
}

} // namespace

bool isScalarTypeValid(ScalarType type) {
    const int32_t value = static_cast<int32_t>(type);
    return value >= 1 && value <= 11;
}

long getScalarSize(ScalarType type) { return infoOf(type).size; }

bool isScalarTypeInteger(ScalarType type) { return infoOf(type).integer; }

bool isScalarTypeFloat(ScalarType type) { return !infoOf(type).integer; }

const char* scalarType2string(ScalarType type) {
    return isScalarTypeValid(type) ? kScalarInfo[static_cast<int32_t>(type)].printed : "Invalid";
}

std::ostream& operator<<(std::ostream& out, ScalarType type) { return out << scalarType2string(type); }

ScalarType string2scalarType(const std::string& name) {
    std::string lower(name);
    for (char& c : lower) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    for (int32_t i = 1; i <= 11; ++i) {
        if (lower == kScalarInfo[i].accepted) return static_cast<ScalarType>(i);
    }
    return ScalarType::Invalid;
}

const char* dataType2string(DataTreeType type) {
    switch (type) {
    case DataTreeType::Null: return "Null";
    case DataTreeType::String: return "String";
    case DataTreeType::Integer: return "Integer";
    case DataTreeType::Float: return "Float";
    case DataTreeType::Boolean: return "Boolean";
    case DataTreeType::Array: return "Array";
    case DataTreeType::Tensor: return "Tensor";
    case DataTreeType::Object: return "Object";
    case DataTreeType::List: return "List";
    }
    return "<Invalid data type>";
}

std::ostream& operator<<(std::ostream& out, DataTreeType type) { return out << dataType2string(type); }

} // namespace sorvane
