#ifndef SORVANE_TOOLS_RECORDTABLE_H
#define SORVANE_TOOLS_RECORDTABLE_H

#include <cstddef>

namespace sorvane::detail {

// One key of a record description: its kind ("string", "ref", "refs",
// "list", "object", "id", ...), the record of a child list or object, and the
// target ("components.nodes", "data") of a reference.
struct FieldInfo {
    const char* key;
    const char* type;
    const char* of;
    const char* target;
};

// A record: its module, name, the root section it is (or null), the root
// list it fills (or null), and its keys in writing order.
struct RecordInfo {
    const char* module;
    const char* name;
    const char* section;
    const char* rootList;
    const FieldInfo* fields;
    int fieldCount;
};

// Generated from the record descriptions.
const RecordInfo* recordTable(size_t& count);

} // namespace sorvane::detail

#endif
