#include "sorvane/datatree/node/Array.h"

#include <cstdlib>
#include <cstring>
#include <exception>
#include <vector>

#include "sorvane/archive/JsonImporter.h"
#include "sorvane/core/RuntimeException.h"
#include "sorvane/datatree/node/Buffers.h"
#include "sorvane/datatree/node/JsonValues.h"

namespace sorvane::datatree {

Array::Array(ScalarType type) : type(type) {}

Array::Array(long count, ScalarType type) : type(type) {
    if (count < 0) SORVANE_THROW("Invalid size %ld", count);
    if (count > 0) buffer = detail::allocZeroed(detail::byteCount(count, type));
    size = count;
}

Array::Array(const void* source, long count, ScalarType type) : type(type) {
    if (count < 0) SORVANE_THROW("Invalid size %ld", count);
    if (count > 0) {
        const size_t bytes = detail::byteCount(count, type);
        if (source) {
            buffer = detail::allocBytes(bytes);
            std::memcpy(buffer, source, bytes);
        } else {
            // A count with no bytes behind it would send readers past the
            // end; the elements are zero instead.
            buffer = detail::allocZeroed(bytes);
        }
    }
    size = count;
}

Array::~Array() { std::free(buffer); }

DataTreeType Array::getType() const { return DataTreeType::Array; }

bool Array::equals(const Node& other) const {
    if (!other.isArray() || other.getSize() != size || other.getScalarType() != type) return false;
    if (size == 0) return true;
    return std::memcmp(buffer, other.getBuffer(), static_cast<size_t>(getBufferSize())) == 0;
}

Node* Array::clone() const { return new Array(buffer, size, type); }

bool Array::isArray() const { return true; }
bool Array::hasScalarType() const { return true; }
ScalarType Array::getScalarType() const { return type; }
long Array::getValueCount() const { return size; }
long Array::getSize() const { return size; }
long Array::getBufferSize() const { return size == 0 ? 0 : size * getScalarSize(type); }
const void* Array::getBuffer() const { return buffer; }
void* Array::getBuffer() { return buffer; }

void* Array::releaseBuffer() {
    void* released = buffer;
    buffer = nullptr;
    size = 0;
    return released;
}

void Array::resizeArrayData(long newSize) {
    if (newSize <= 0) SORVANE_THROW("Invalid size %ld", newSize);
    const size_t newBytes = detail::byteCount(newSize, type);
    void* fresh = allocBuffer(newBytes);
    if (!fresh) throw std::bad_alloc();
    const size_t oldBytes = buffer ? static_cast<size_t>(getBufferSize()) : 0;
    const size_t kept = oldBytes < newBytes ? oldBytes : newBytes;
    if (kept) std::memcpy(fresh, buffer, kept);
    std::memset(static_cast<unsigned char*>(fresh) + kept, 0, newBytes - kept);
    freeBuffer(buffer);
    buffer = fresh;
    size = newSize;
}

void Array::giveArrayData(void* data, long count, ScalarType newType) {
    if (count < 0) SORVANE_THROW("Invalid size %ld", count);
    if (!data && count > 0) data = detail::allocZeroed(detail::byteCount(count, newType));
    if (buffer && buffer != data) freeBuffer(buffer);
    buffer = data;
    size = count;
    type = newType;
}

void Array::setArrayData(const void* data, long count, ScalarType newType) {
    Array copy(data, count, newType);
    freeBuffer(buffer);
    buffer = copy.releaseBuffer();
    size = count;
    type = newType;
}

bool Array::canConvertToArray() const { return true; }
bool Array::canConvertToIntegerArray(ScalarType t) const { return t == type; }
bool Array::canConvertToFloatArray(ScalarType t) const { return t == type; }
Node* Array::convertToArray() const { return clone(); }
Node* Array::convertToArray(ScalarType t) const { return convertScalarType(t); }
Node* Array::convertToIntegerArray(ScalarType t) const { return convertScalarType(t); }
Node* Array::convertToFloatArray(ScalarType t) const { return convertScalarType(t); }

Node* Array::convertScalarType(ScalarType t) const {
    if (t == type) return clone();
    auto* converted = new Array(size, t);
    try {
        convertBufferScalarType(converted->buffer, t, buffer, type, size);
    } catch (const std::exception& e) {
        delete converted;
        SORVANE_THROW("Error converting array scalar type from %s to %s:\n%s", scalarType2string(type),
                      scalarType2string(t), e.what());
    }
    return converted;
}

void Array::fromJson(archive::JsonImporter& importer, DataTreeImport) {
    std::vector<double> values;
    if (!importer.nextNumberList(values))
        SORVANE_THROW("Expect an array of numbers at line %d", static_cast<int>(importer.getLine()));
    Array read(values.data(), static_cast<long>(values.size()), ScalarType::Double);
    freeBuffer(buffer);
    size = read.size;
    type = ScalarType::Double;
    buffer = read.releaseBuffer();
}

void Array::toJson(archive::JsonExporter& exporter) const {
    detail::writeValueLine(exporter, type, buffer, size);
}

} // namespace sorvane::datatree
