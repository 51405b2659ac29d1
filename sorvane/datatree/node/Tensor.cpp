#include "sorvane/datatree/node/Tensor.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <utility>

#include "sorvane/archive/JsonExporter.h"
#include "sorvane/core/RuntimeException.h"
#include "sorvane/datatree/node/Buffers.h"
#include "sorvane/datatree/node/JsonValues.h"

namespace sorvane::datatree {

namespace {

// One element, or one byte for a type with no size yet.
size_t elementOrByte(ScalarType type) {
    return isScalarTypeValid(type) ? static_cast<size_t>(getScalarSize(type)) : 1;
}

// Bytes of a tensor the allocating constructors make: below 2 GiB.
size_t allocatingBytes(const std::vector<long>& sizes, ScalarType type) {
    const size_t bytes = detail::byteCount(detail::valueCount(sizes), type);
    if (bytes > static_cast<size_t>(INT32_MAX)) SORVANE_THROW("Invalid buffer size");
    return bytes;
}

} // namespace

Tensor::Tensor(ScalarType type) : sizes{1}, type(type) { buffer = detail::allocZeroed(elementOrByte(type)); }

Tensor::Tensor(const std::vector<long>& newSizes, ScalarType type) : sizes(newSizes), type(type) {
    buffer = detail::allocZeroed(allocatingBytes(sizes, type));
}

Tensor::Tensor(const void* source, long bufferSize, const std::vector<long>& newSizes, ScalarType type)
    : sizes(newSizes), type(type) {
    const size_t bytes = allocatingBytes(sizes, type);
    if (bufferSize < 0 || bytes > static_cast<size_t>(bufferSize)) SORVANE_THROW("Invalid buffer size");
    if (!source && bytes > 0) SORVANE_THROW("Invalid buffer size");
    buffer = detail::allocBytes(bytes);
    if (bytes) std::memcpy(buffer, source, bytes);
}

Tensor::Tensor(void* data, long bufferSize, const std::vector<long>& newSizes, ScalarType type)
    : sizes(newSizes), type(type) {
    const size_t bytes = detail::byteCount(detail::valueCount(sizes), type);
    if (bufferSize < 0 || bytes > static_cast<size_t>(bufferSize)) SORVANE_THROW("Invalid buffer size");
    buffer = data;
}

Tensor::Tensor(void* data, long bufferSize, std::vector<long>&& newSizes, ScalarType type)
    : sizes(std::move(newSizes)), type(type) {
    const size_t bytes = detail::byteCount(detail::valueCount(sizes), type);
    if (bufferSize < 0 || bytes > static_cast<size_t>(bufferSize)) SORVANE_THROW("Invalid buffer size");
    buffer = data;
}

Tensor::~Tensor() { std::free(buffer); }

DataTreeType Tensor::getType() const { return DataTreeType::Tensor; }

bool Tensor::equals(const Node& other) const {
    const auto* tensor = dynamic_cast<const Tensor*>(&other);
    if (!tensor || tensor->sizes != sizes || tensor->type != type) return false;
    const long bytes = detail::valueCount(sizes) == 0 ? 0 : getBufferSize();
    if (bytes == 0 || buffer == tensor->buffer) return true;
    if (!buffer || !tensor->buffer) return false;
    return std::memcmp(buffer, tensor->buffer, static_cast<size_t>(bytes)) == 0;
}

Node* Tensor::clone() const {
    void* copy = nullptr;
    if (buffer) {
        const size_t bytes = detail::valueCount(sizes) == 0 ? 0 : static_cast<size_t>(getBufferSize());
        copy = detail::allocBytes(bytes);
        if (bytes) std::memcpy(copy, buffer, bytes);
    }
    auto* tensor = new Tensor(ScalarType::Invalid);
    std::free(tensor->buffer);
    tensor->buffer = copy;
    tensor->sizes = sizes;
    tensor->type = type;
    return tensor;
}

bool Tensor::isTensor() const { return true; }
bool Tensor::hasScalarType() const { return true; }
ScalarType Tensor::getScalarType() const { return type; }
long Tensor::getValueCount() const { return detail::valueCount(sizes); }
long Tensor::getSize() const { return getValueCount(); }
long Tensor::getBufferSize() const { return getScalarSize(type) * getValueCount(); }
const void* Tensor::getBuffer() const { return buffer; }
void* Tensor::getBuffer() { return buffer; }

void* Tensor::releaseBuffer() {
    void* fresh = detail::allocZeroed(elementOrByte(type));
    void* released = buffer;
    buffer = fresh;
    sizes.assign(1, 1);
    return released;
}

long Tensor::getTensorDim() const { return static_cast<long>(sizes.size()); }
std::vector<long> Tensor::getTensorSizes() const { return sizes; }

std::vector<long> Tensor::getTensorStrides(bool inBytes) const {
    std::vector<long> strides(sizes.size());
    long stride = inBytes ? getScalarSize(type) : 1;
    for (size_t i = sizes.size(); i-- > 0;) {
        strides[i] = stride;
        stride *= sizes[i];
    }
    return strides;
}

long Tensor::getTensorSize(long dim) const {
    if (dim < 0 || dim >= getTensorDim()) SORVANE_THROW("Invalid dim index %ld", dim);
    return sizes[static_cast<size_t>(dim)];
}

// Only the row length of a two-dimensional tensor changes. The shape is
// checked before anything is touched, so a refused resize leaves the tensor
// as it was.
template <class T>
void Tensor::resize(const std::vector<long>& newSizes) {
    if (sizes.size() != 2 || newSizes.size() != 2 || sizes[0] != newSizes[0]) SORVANE_THROW("Unsupported resize");
    const long rows = sizes[0];
    const long oldLength = sizes[1];
    const long newLength = newSizes[1];
    const size_t bytes = detail::byteCount(detail::valueCount(newSizes), type);
    T* fresh = static_cast<T*>(allocBuffer(bytes ? bytes : 1));
    if (!fresh) throw std::bad_alloc();
    const T* old = static_cast<const T*>(buffer);
    const long kept = oldLength < newLength ? oldLength : newLength;
    for (long r = 0; r < rows; ++r) {
        T* row = fresh + r * newLength;
        if (old && kept > 0) std::memcpy(row, old + r * oldLength, static_cast<size_t>(kept) * sizeof(T));
        for (long c = old ? kept : 0; c < newLength; ++c) row[c] = T(0);
    }
    freeBuffer(buffer);
    buffer = fresh;
}

void Tensor::setTensorSizes(const std::vector<long>& newSizes) {
    const long newCount = newSizes.empty() ? 1 : detail::valueCount(newSizes);
    if (newCount == getValueCount()) {
        sizes = newSizes;
        return;
    }
    switch (type) {
    case ScalarType::UInteger8: resize<unsigned char>(newSizes); break;
    case ScalarType::Integer8: resize<signed char>(newSizes); break;
    case ScalarType::UInteger16: resize<unsigned short>(newSizes); break;
    case ScalarType::Integer16: resize<short>(newSizes); break;
    case ScalarType::UInteger32: resize<unsigned int>(newSizes); break;
    case ScalarType::Integer32: resize<int>(newSizes); break;
    case ScalarType::UInteger64: resize<unsigned long>(newSizes); break;
    case ScalarType::Integer64: resize<long>(newSizes); break;
    case ScalarType::Float: resize<float>(newSizes); break;
    case ScalarType::Double: resize<double>(newSizes); break;
    default: SORVANE_THROW("Invalid or unsupported scalar type");
    }
    sizes = newSizes;
}

void Tensor::giveTensorData(void* data, const std::vector<long>& newSizes, ScalarType newType) {
    std::vector<long> copy(newSizes);  // newSizes may be this tensor's own
    detail::valueCount(copy);          // negative sizes would break every reader
    if (buffer && buffer != data) freeBuffer(buffer);
    buffer = data;
    sizes.swap(copy);
    type = newType;
}

void Tensor::setTensorData(const void* data, const std::vector<long>& newSizes, ScalarType newType) {
    std::vector<long> copy(newSizes);
    const size_t bytes = detail::byteCount(detail::valueCount(copy), newType);
    void* fresh = allocBuffer(bytes ? bytes : 1);
    if (!fresh) throw std::bad_alloc();
    if (bytes) {
        if (data)
            std::memcpy(fresh, data, bytes);
        else
            std::memset(fresh, 0, bytes);
    }
    freeBuffer(buffer);
    buffer = fresh;
    sizes.swap(copy);
    type = newType;
}

Node* Tensor::getSubTensor(long index) const {
    if (sizes.size() < 2) SORVANE_THROW("There is no sub tensor");
    if (index < 0 || index >= sizes[0]) SORVANE_THROW("Invalid index %ld", index);
    std::vector<long> rest(sizes.begin() + 1, sizes.end());
    const size_t bytes = detail::byteCount(detail::valueCount(rest), type);
    void* slice = nullptr;
    if (buffer) {
        slice = detail::allocBytes(bytes);
        if (bytes) std::memcpy(slice, static_cast<const unsigned char*>(buffer) + index * bytes, bytes);
    }
    try {
        return new Tensor(slice, static_cast<long>(bytes), rest, type);
    } catch (...) {
        std::free(slice);
        throw;
    }
}

Node* Tensor::convertScalarType(ScalarType t) const {
    if (t == type) return clone();
    const long count = getValueCount();
    const size_t bytes = detail::byteCount(count, t);
    void* block = allocBuffer(bytes ? bytes : 1);
    if (!block) throw std::bad_alloc();
    try {
        if (buffer) convertBufferScalarType(block, t, buffer, type, count);
        else std::memset(block, 0, bytes);
    } catch (const std::exception& e) {
        freeBuffer(block);
        SORVANE_THROW("Conversion failed:\n%s", e.what());
    }
    try {
        return new Tensor(block, static_cast<long>(bytes), sizes, t);
    } catch (...) {
        freeBuffer(block);
        throw;
    }
}

namespace {

// Nested lists, the innermost on one line each. Iterative, so that a tensor
// of very many dimensions cannot exhaust the stack.
void writeTensor(archive::JsonExporter& exporter, ScalarType type, const unsigned char* data,
                 const std::vector<long>& sizes, long element) {
    const size_t last = sizes.size() - 1;
    if (last == 0) {
        detail::writeValueLine(exporter, type, data, sizes[0]);
        return;
    }
    std::vector<long> inner(sizes.size(), 1);
    for (size_t d = last; d-- > 0;) inner[d] = inner[d + 1] * sizes[d + 1];
    std::vector<long> index(last, 0);
    std::vector<long> base(last, 0);
    size_t dim = 0;
    exporter.beginArray();
    for (;;) {
        if (index[dim] < sizes[dim]) {
            const long start = base[dim] + index[dim] * inner[dim];
            ++index[dim];
            exporter.addArrayItem();
            if (dim + 1 == last) {
                detail::writeValueLine(exporter, type, data + start * element, sizes[last]);
            } else {
                ++dim;
                base[dim] = start;
                index[dim] = 0;
                exporter.beginArray();
            }
        } else {
            exporter.endArray();
            if (dim == 0) break;
            --dim;
        }
    }
}

} // namespace

void Tensor::toJson(archive::JsonExporter& exporter) const {
    // No block, or no sizes to lay the values out: an empty list, so that the
    // text stays readable.
    if (!buffer || sizes.empty()) {
        exporter.beginArray();
        exporter.endArray();
        return;
    }
    detail::checkWritableType(type);
    // Deeper nesting than a read accepts would be text that cannot come back
    // (and its indentation grows with the square of the depth).
    if (getTensorDim() > kMaxJsonDepth) SORVANE_THROW("Tensor dimension %ld is too deep to write", getTensorDim());
    writeTensor(exporter, type, static_cast<const unsigned char*>(buffer), sizes, getScalarSize(type));
}

} // namespace sorvane::datatree
