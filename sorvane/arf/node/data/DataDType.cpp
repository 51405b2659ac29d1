#include "sorvane/arf/node/data/DataDType.h"

#include "sorvane/core/RuntimeException.h"

namespace sorvane::arf {

namespace {

struct Entry {
    int32_t value;
    const char* name;
    long size;
    ScalarType scalar;
    bool index;
};

// NONE has a name but neither a size nor a scalar type.
const Entry kEntries[] = {
    {0, "NONE", 0, ScalarType::Invalid, true},
    {5120, "BYTE", 1, ScalarType::Integer8, true},
    {5121, "UNSIGNED_BYTE", 1, ScalarType::UInteger8, true},
    {5122, "SHORT", 2, ScalarType::Integer16, true},
    {5123, "UNSIGNED_SHORT", 2, ScalarType::UInteger16, true},
    {5125, "UNSIGNED_INT", 4, ScalarType::UInteger32, true},
    {5126, "FLOAT", 4, ScalarType::Float, false},
};

const Entry* find(long value, bool index) {
    for (const Entry& e : kEntries)
        if (e.value == value && (!index || e.index)) return &e;
    return nullptr;
}

const Entry& dtype(long value) {
    const Entry* e = find(value, false);
    if (!e) SORVANE_THROW("Invalid or unsupported dtype %ld", value);
    return *e;
}

const Entry& itype(long value) {
    const Entry* e = find(value, true);
    if (!e) SORVANE_THROW("Invalid or unsupported itype %ld", value);
    return *e;
}

const Entry* byScalar(ScalarType type, bool index) {
    for (const Entry& e : kEntries)
        if (e.value != 0 && e.scalar == type && (!index || e.index)) return &e;
    return nullptr;
}

} // namespace

DataDType int2DataDType(long value) { return static_cast<DataDType>(dtype(value).value); }

const char* dataDType2name(DataDType type) { return dtype(type).name; }

long getDataDTypeSize(DataDType type) {
    const Entry& e = dtype(type);
    if (e.value == 0) SORVANE_THROW("dtype NONE has no size");
    return e.size;
}

DataDType scalarType2DataDType(ScalarType type) {
    const Entry* e = byScalar(type, false);
    if (!e) SORVANE_THROW("Invalid scalar type %d", static_cast<int>(type));
    return static_cast<DataDType>(e->value);
}

ScalarType dataDType2ScalarType(DataDType type) {
    const Entry& e = dtype(type);
    if (e.value == 0) SORVANE_THROW("dtype NONE has no scalar type");
    return e.scalar;
}

std::ostream& operator<<(std::ostream& out, DataDType type) {
    const Entry* e = find(type, false);
    return out << (e ? e->name : "Invalid");
}

DataIType int2DataIType(long value) { return static_cast<DataIType>(itype(value).value); }

const char* dataIType2name(DataIType type) { return itype(type).name; }

long getDataITypeSize(DataIType type) {
    const Entry& e = itype(type);
    if (e.value == 0) SORVANE_THROW("itype NONE has no size");
    return e.size;
}

DataIType scalarType2dataIType(ScalarType type) {
    const Entry* e = byScalar(type, true);
    if (!e) SORVANE_THROW("Invalid scalar type %d", static_cast<int>(type));
    return static_cast<DataIType>(e->value);
}

ScalarType dataIType2ScalarType(DataIType type) {
    const Entry& e = itype(type);
    if (e.value == 0) SORVANE_THROW("itype NONE has no scalar type");
    return e.scalar;
}

std::ostream& operator<<(std::ostream& out, DataIType type) {
    const Entry* e = find(type, true);
    return out << (e ? e->name : "Invalid");
}

} // namespace sorvane::arf
