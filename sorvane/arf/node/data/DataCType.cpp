#include "sorvane/arf/node/data/DataCType.h"

#include "sorvane/core/RuntimeException.h"

namespace sorvane::arf {

DataCType int2DataCType(long value) {
    if (value < 0 || value > 2) SORVANE_THROW("Invalid or unsupported ctype %ld", value);
    return static_cast<DataCType>(value);
}

const char* dataCType2name(DataCType type) {
    switch (type) {
    case DATA_CTYPE_NONE: return "NONE";
    case DATA_CTYPE_RGB: return "RGB";
    case DATA_CTYPE_RGBA: return "RGBA";
    }
    SORVANE_THROW("Invalid or unsupported ctype %d", static_cast<int>(type));
}

long getDataCTypeSize(DataCType type) {
    switch (type) {
    case DATA_CTYPE_RGB: return 3;
    case DATA_CTYPE_RGBA: return 4;
    default: break;
    }
    SORVANE_THROW("Invalid or unsupported ctype %d", static_cast<int>(type));
}

DataCType pixelFormat2DataCType(int pixelFormat) {
    if (pixelFormat != 1 && pixelFormat != 2) SORVANE_THROW("Invalid or unsupported pixel format %d", pixelFormat);
    return static_cast<DataCType>(pixelFormat);
}

int dataCType2PixelFormat(DataCType type) {
    if (type != DATA_CTYPE_RGB && type != DATA_CTYPE_RGBA)
        SORVANE_THROW("Invalid or unsupported ctype %d", static_cast<int>(type));
    return static_cast<int>(type);
}

std::ostream& operator<<(std::ostream& out, DataCType type) {
    if (type < 0 || type > 2) return out << "Invalid";
    return out << dataCType2name(type);
}

} // namespace sorvane::arf
