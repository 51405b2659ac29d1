#include "sorvane/datatree/node/Tensor.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <new>
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

constexpr size_t kBlockAlign = alignof(std::max_align_t);

// Gives the shared node's allocation `extra` more bytes, aligned as malloc
// aligns; where they start goes to *tail before the node is built in it.
template <class T>
struct TailAllocator {
    using value_type = T;
    size_t extra;
    void** tail;

    TailAllocator(size_t extraBytes, void** tailSlot) : extra(extraBytes), tail(tailSlot) {}
    template <class U>
    TailAllocator(const TailAllocator<U>& other) : extra(other.extra), tail(other.tail) {}

    T* allocate(size_t n) {
        // extra is at most kMaxAdjacentBytes, so the sum cannot wrap
        const size_t head = (n * sizeof(T) + kBlockAlign - 1) & ~(kBlockAlign - 1);
        void* p = std::malloc(head + extra);
        if (!p) throw std::bad_alloc();
        *tail = static_cast<unsigned char*>(p) + head;
        return static_cast<T*>(p);
    }
    void deallocate(T* p, size_t) noexcept { std::free(p); }

    template <class U>
    bool operator==(const TailAllocator<U>& other) const { return extra == other.extra && tail == other.tail; }
    template <class U>
    bool operator!=(const TailAllocator<U>& other) const { return !(*this == other); }
};

} // namespace

Tensor::Dims& Tensor::Dims::operator=(const Dims& other) {
    if (this != &other) assign(other.data(), other.count);
    return *this;
}

Tensor::Dims& Tensor::Dims::operator=(const std::vector<long>& values) {
    assign(values.data(), values.size());
    return *this;
}

void Tensor::Dims::assign(const long* values, size_t n) {
    if (n <= kLocal) {
        // values may be this object's own (memmove), and the heap block is
        // dropped only once they are copied
        if (n && values != local) std::memmove(local, values, n * sizeof(long));
        heap.reset();
    } else {
        std::unique_ptr<long[]> fresh(new long[n]);
        std::copy(values, values + n, fresh.get());
        heap = std::move(fresh);
    }
    count = n;
}

bool Tensor::Dims::operator==(const Dims& other) const {
    return count == other.count && std::equal(begin(), end(), other.begin());
}

std::shared_ptr<Tensor> Tensor::makeWithBlock(size_t bytes, const long* sizes, size_t dimCount, ScalarType type) {
    const size_t need = detail::byteCount(detail::valueCount(sizes, dimCount), type);
    if (bytes < need || bytes > kMaxAdjacentBytes) SORVANE_THROW("Invalid buffer size");
    void* tail = nullptr;
    return std::allocate_shared<Tensor>(TailAllocator<Tensor>(bytes ? bytes : 1, &tail), BlockTag{}, &tail, sizes,
                                        dimCount, type);
}

Tensor::Tensor(ScalarType type) : sizes(std::vector<long>{1}), type(type) {
    buffer = detail::allocZeroed(elementOrByte(type));
}

Tensor::Tensor(const std::vector<long>& newSizes, ScalarType type) : sizes(newSizes), type(type) {
    buffer = detail::allocZeroed(allocatingBytes(newSizes, type));
}

Tensor::Tensor(const void* source, long bufferSize, const std::vector<long>& newSizes, ScalarType type)
    : sizes(newSizes), type(type) {
    const size_t bytes = allocatingBytes(newSizes, type);
    if (bufferSize < 0 || bytes > static_cast<size_t>(bufferSize)) SORVANE_THROW("Invalid buffer size");
    if (!source && bytes > 0) SORVANE_THROW("Invalid buffer size");
    buffer = detail::allocBytes(bytes);
    if (bytes) std::memcpy(buffer, source, bytes);
}

Tensor::Tensor(void* data, long bufferSize, const std::vector<long>& newSizes, ScalarType type)
    : sizes(newSizes), type(type) {
    const size_t bytes = detail::byteCount(detail::valueCount(newSizes), type);
    if (bufferSize < 0 || bytes > static_cast<size_t>(bufferSize)) SORVANE_THROW("Invalid buffer size");
    buffer = data;
}

Tensor::Tensor(void* data, long bufferSize, std::vector<long>&& newSizes, ScalarType type)
    : sizes(newSizes), type(type) {
    const size_t bytes = detail::byteCount(detail::valueCount(newSizes), type);
    if (bufferSize < 0 || bytes > static_cast<size_t>(bufferSize)) SORVANE_THROW("Invalid buffer size");
    buffer = data;
}

Tensor::Tensor(BlockTag, void* tailSlot, const long* newSizes, size_t dimCount, ScalarType type)
    : buffer(*static_cast<void**>(tailSlot)), sizes(newSizes, dimCount), type(type), adjacent(true) {}

Tensor::~Tensor() { dropBuffer(); }

void Tensor::dropBuffer() {
    if (!adjacent) std::free(buffer);
    buffer = nullptr;
    adjacent = false;
}

DataTreeType Tensor::getType() const { return DataTreeType::Tensor; }

bool Tensor::equals(const Node& other) const {
    const auto* tensor = dynamic_cast<const Tensor*>(&other);
    if (!tensor || tensor->sizes != sizes || tensor->type != type) return false;
    const long bytes = getValueCount() == 0 ? 0 : getBufferSize();
    if (bytes == 0 || buffer == tensor->buffer) return true;
    if (!buffer || !tensor->buffer) return false;
    return std::memcmp(buffer, tensor->buffer, static_cast<size_t>(bytes)) == 0;
}

Node* Tensor::clone() const {
    void* copy = nullptr;
    if (buffer) {
        const size_t bytes = getValueCount() == 0 ? 0 : static_cast<size_t>(getBufferSize());
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
long Tensor::getValueCount() const { return detail::valueCount(sizes.data(), sizes.size()); }
long Tensor::getSize() const { return getValueCount(); }
long Tensor::getBufferSize() const { return getScalarSize(type) * getValueCount(); }
const void* Tensor::getBuffer() const { return buffer; }
void* Tensor::getBuffer() { return buffer; }

void* Tensor::releaseBuffer() {
    void* released = buffer;
    if (adjacent) {
        // The caller frees what it gets: a block beside the node is copied out.
        const size_t bytes = getValueCount() == 0 ? 0 : static_cast<size_t>(getBufferSize());
        released = detail::allocBytes(bytes);
        if (bytes) std::memcpy(released, buffer, bytes);
    }
    void* fresh = nullptr;
    try {
        fresh = detail::allocZeroed(elementOrByte(type));
    } catch (...) {
        if (adjacent) std::free(released);
        throw;
    }
    buffer = fresh;
    adjacent = false;
    const long one = 1;
    sizes.assign(&one, 1);
    return released;
}

long Tensor::getTensorDim() const { return static_cast<long>(sizes.size()); }
std::vector<long> Tensor::getTensorSizes() const { return sizes.toVector(); }

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
    dropBuffer();
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
    detail::valueCount(newSizes);  // negative sizes would break every reader
    // The tensor's own block given back keeps its place (and its owner).
    if (buffer != data) {
        dropBuffer();
        buffer = data;
    }
    sizes = newSizes;
    type = newType;
}

void Tensor::setTensorData(const void* data, const std::vector<long>& newSizes, ScalarType newType) {
    const size_t bytes = detail::byteCount(detail::valueCount(newSizes), newType);
    void* fresh = allocBuffer(bytes ? bytes : 1);
    if (!fresh) throw std::bad_alloc();
    if (bytes) {
        if (data)
            std::memcpy(fresh, data, bytes);
        else
            std::memset(fresh, 0, bytes);
    }
    dropBuffer();
    buffer = fresh;
    sizes = newSizes;
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
        return new Tensor(block, static_cast<long>(bytes), sizes.toVector(), t);
    } catch (...) {
        freeBuffer(block);
        throw;
    }
}

namespace {

// Nested lists, the innermost on one line each. Iterative, so that a tensor
// of very many dimensions cannot exhaust the stack.
void writeTensor(archive::JsonExporter& exporter, ScalarType type, const unsigned char* data, const long* sizes,
                 size_t dimCount, long element) {
    const size_t last = dimCount - 1;
    if (last == 0) {
        detail::writeValueLine(exporter, type, data, sizes[0]);
        return;
    }
    std::vector<long> inner(dimCount, 1);
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
    writeTensor(exporter, type, static_cast<const unsigned char*>(buffer), sizes.data(), sizes.size(),
                getScalarSize(type));
}

} // namespace sorvane::datatree
