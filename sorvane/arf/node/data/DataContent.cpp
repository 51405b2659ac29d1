#include "sorvane/arf/node/data/DataContent.h"

#include <algorithm>
#include <cstring>
#include <unordered_map>

#include "sorvane/archive/DocumentUri.h"
#include "sorvane/archive/FileProvider.h"
#include "sorvane/archive/base64.h"
#include "sorvane/arf/format/dense.h"
#include "sorvane/arf/node/RootNode.h"
#include "sorvane/arf/node/data/DataNode.h"
#include "sorvane/arf/node/data/DataNodes.h"
#include "sorvane/core/RuntimeException.h"

namespace sorvane::arf {

namespace {

constexpr const char kDataPrefix[] = "data:";
constexpr const char kBase64Marker[] = ";base64,";

bool isDataUri(const std::string& uri) { return uri.compare(0, sizeof kDataPrefix - 1, kDataPrefix) == 0; }

// A payload file must stay inside the document: no root, no drive, no "..".
void checkRelativeUri(const DataNode& node, const archive::FileProvider* provider, const std::string& uri) {
    if (archive::isAbsoluteUri(uri))
        SORVANE_THROW("Getting data from %s:\nuri '%s' is absolute", node.getNodePath().c_str(), uri.c_str());
    if (archive::leavesFolder(provider, uri))
        SORVANE_THROW("Getting data from %s:\nuri '%s' leaves the document's folder", node.getNodePath().c_str(),
                      uri.c_str());
}

// The bytes of an item in a store: its "byteLength" at its "offset", or the
// rest of the file; checked against the store so that a hostile length
// allocates nothing.
int64_t storedLength(const DataNode& node, const archive::FileProvider& provider, const std::string& uri,
                     int64_t offset) {
    const int64_t total = provider.getData(nullptr, 0, uri, 0);
    if (offset < 0 || offset > total)
        SORVANE_THROW("Getting data from %s:\nInvalid offset %ld", node.getNodePath().c_str(), static_cast<long>(offset));
    if (!node.hasByteLength()) return total - offset;
    const int64_t length = node.getByteLength();
    if (length < 0 || length > total - offset)
        SORVANE_THROW("Getting data from %s:\nbyteLength %ld does not fit the %ld bytes of '%s' at offset %ld",
                      node.getNodePath().c_str(), static_cast<long>(length), static_cast<long>(total), uri.c_str(),
                      static_cast<long>(offset));
    return length;
}

std::shared_ptr<RootNode> rootOf(const DataNode& node) {
    auto root = node.getNodeRoot().lock();
    if (!root) SORVANE_THROW("Getting data from %s:\nNo document", node.getNodePath().c_str());
    return root;
}

// The bytes of an item, read a part at a time where they lie: the raw data
// cache, the document's store, or a "data:" uri decoded once. The same
// sources and checks as getData, without a copy of the whole.
class PayloadBytes {
public:
    explicit PayloadBytes(const DataNode& node) : node_(node), root_(rootOf(node)) {
        const std::string& uri = node.getUri();
        if (root_->getKeepRawData()) {
            const auto& cache = root_->getRawDataCache();
            const auto found = cache.find(uri);
            if (found != cache.end()) {
                bytes_ = found->second.data();
                size_ = static_cast<int64_t>(found->second.size());
                return;
            }
        }
        if (!isDataUri(uri)) {
            provider_ = root_->getFileProvider().get();
            checkRelativeUri(node, provider_, uri);
            if (!provider_) SORVANE_THROW("Getting data from %s:\nNo file provider", node.getNodePath().c_str());
            offset_ = node.hasOffset() ? node.getOffset() : 0;
            size_ = storedLength(node, *provider_, uri, offset_);
            return;
        }
        decoded_.resize(static_cast<size_t>(DataContent::getData(node, nullptr, 0)));
        if (!decoded_.empty())
            decoded_.resize(static_cast<size_t>(
                DataContent::getData(node, decoded_.data(), static_cast<int64_t>(decoded_.size()))));
        bytes_ = decoded_.data();
        size_ = static_cast<int64_t>(decoded_.size());
    }

    int64_t size() const { return size_; }

    // `count` bytes at `at` from the start of the payload; the caller keeps
    // the range inside size().
    void read(void* out, int64_t count, int64_t at) const {
        if (count <= 0) return;
        if (bytes_) std::memcpy(out, bytes_ + at, static_cast<size_t>(count));
        else provider_->getRange(out, count, node_.getUri(), offset_ + at);
    }

    // The first bytes, enough for any payload header.
    BitBuffer head() const {
        BitBuffer buffer;
        uint8_t bytes[kHeadSize];
        const int64_t count = size_ < kHeadSize ? size_ : kHeadSize;
        read(bytes, count, 0);
        buffer.feed(bytes, static_cast<long>(count));
        return buffer;
    }

private:
    // dimCount, 5 dims, count, itype, dtype.
    static constexpr int64_t kHeadSize = 4 + 4 * kMaxPayloadDims + 8 + 4 + 4;

    const DataNode& node_;
    std::shared_ptr<RootNode> root_;
    const archive::FileProvider* provider_ = nullptr;
    int64_t offset_ = 0;
    const uint8_t* bytes_ = nullptr;
    int64_t size_ = 0;
    std::vector<uint8_t> decoded_;
};

// Keeps the K largest non-zero values of one row, sorted by descending value;
// of equal values the one seen first stays first.
template <class T>
void keepLargest(T* rowValues, long* rowColumns, long k, T value, long column) {
    long fill = 0;
    while (fill < k && rowValues[fill] != T(0)) ++fill;
    long at = 0;
    while (at < fill && !(rowValues[at] < value)) ++at;
    if (at >= k) return;
    const long last = fill < k ? fill : k - 1;
    for (long j = last; j > at; --j) {
        rowValues[j] = rowValues[j - 1];
        rowColumns[j] = rowColumns[j - 1];
    }
    rowValues[at] = value;
    rowColumns[at] = column;
}

template <class T>
void normalizeRows(T* values, long rows, long k) {
    for (long r = 0; r < rows; ++r) {
        T* row = values + r * k;
        float sum = 0.0f;
        for (long j = 0; j < k; ++j) sum += static_cast<float>(row[j]);
        if (static_cast<double>(sum) > 1e-5) {
            const float scale = 1.0f / sum;
            for (long j = 0; j < k; ++j) row[j] = static_cast<T>(static_cast<float>(row[j]) * scale);
        }
    }
}

// Payload bytes are visited a slice at a time, never all at once.
constexpr int64_t kSliceBytes = int64_t(1) << 20;

// One pass over the pairs (row, column, value) of a dense or sparse payload
// whose values start at `start` in the payload.
template <class T, class Visit>
void visitNonZero(bool dense, const PayloadBytes& payload, int64_t start, long rows, long cols, long count,
                  DataIType itype, Visit&& visit) {
    std::vector<uint8_t> slice;
    if (dense) {
        const long rowBytes = cols * static_cast<long>(sizeof(T));
        if (rows == 0 || rowBytes == 0) return;
        const long rowsPerSlice = std::max<long>(1, static_cast<long>(kSliceBytes / rowBytes));
        for (long r0 = 0; r0 < rows; r0 += rowsPerSlice) {
            const long n = std::min(rowsPerSlice, rows - r0);
            slice.resize(static_cast<size_t>(n * rowBytes));
            payload.read(slice.data(), n * rowBytes, start + r0 * rowBytes);
            for (long r = 0; r < n; ++r)
                for (long c = 0; c < cols; ++c) {
                    T v;
                    std::memcpy(&v, slice.data() + (r * cols + c) * static_cast<long>(sizeof(T)), sizeof v);
                    if (v != T(0)) visit(r0 + r, c, v);
                }
        }
        return;
    }
    const long indexSize = getDataITypeSize(itype);
    const long pairBytes = indexSize + static_cast<long>(sizeof(T));
    const long pairsPerSlice = static_cast<long>(kSliceBytes / pairBytes);
    for (long i0 = 0; i0 < count; i0 += pairsPerSlice) {
        const long n = std::min(pairsPerSlice, count - i0);
        slice.resize(static_cast<size_t>(n * pairBytes));
        uint8_t* indices = slice.data();
        uint8_t* values = slice.data() + n * indexSize;
        payload.read(indices, n * indexSize, start + i0 * indexSize);
        payload.read(values, n * static_cast<long>(sizeof(T)), start + count * indexSize + i0 * static_cast<long>(sizeof(T)));
        for (long i = 0; i < n; ++i) {
            long index = 0;
            const uint8_t* p = indices + i * indexSize;
            switch (itype) {
            case DATA_ITYPE_BYTE: index = static_cast<int8_t>(*p); break;
            case DATA_ITYPE_UNSIGNED_BYTE: index = *p; break;
            case DATA_ITYPE_SHORT: { int16_t x; std::memcpy(&x, p, 2); index = x; break; }
            case DATA_ITYPE_UNSIGNED_SHORT: { uint16_t x; std::memcpy(&x, p, 2); index = x; break; }
            default: { uint32_t x; std::memcpy(&x, p, 4); index = static_cast<long>(x); break; }
            }
            if (index < 0 || cols == 0 || index / cols >= rows) SORVANE_THROW("Invalid index %ld", index);
            T v;
            std::memcpy(&v, values + i * static_cast<long>(sizeof(T)), sizeof v);
            if (v != T(0)) visit(index / cols, index % cols, v);
        }
    }
}

template <class T>
void colSparse(bool dense, const PayloadBytes& payload, int64_t start, long rows, long cols, long count,
               DataIType itype, long* indices, long indicesSize, void* valuesOut, long valuesSize, long* pColSize,
               bool normalize) {
    if (!indices || !valuesOut) {
        // Measuring: the largest count of non-zero values in one row. A dense
        // matrix is visited row by row; sparse pairs may come in any order.
        long best = 0;
        if (dense) {
            long row = -1, n = 0;
            visitNonZero<T>(dense, payload, start, rows, cols, count, itype, [&](long r, long, T) {
                if (r != row) {
                    row = r;
                    n = 0;
                }
                if (++n > best) best = n;
            });
        } else {
            std::unordered_map<long, long> perRow;
            visitNonZero<T>(dense, payload, start, rows, cols, count, itype, [&](long r, long, T) {
                const long n = ++perRow[r];
                if (n > best) best = n;
            });
        }
        *pColSize = best;
        return;
    }
    const long k = *pColSize;
    long cells = 0;
    if (k < 0 || __builtin_mul_overflow(rows, k, &cells)) SORVANE_THROW("Invalid column count %ld", k);
    if (indicesSize / 8 < cells) SORVANE_THROW("indices buffer is too small");
    if (valuesSize / static_cast<long>(sizeof(T)) < cells) SORVANE_THROW("values buffer is too small");
    T* values = static_cast<T*>(valuesOut);
    std::memset(indices, 0, static_cast<size_t>(cells) * 8);
    std::memset(values, 0, static_cast<size_t>(cells) * sizeof(T));
    if (k == 0) return;
    visitNonZero<T>(dense, payload, start, rows, cols, count, itype,
                    [&](long r, long c, T v) { keepLargest(values + r * k, indices + r * k, k, v, c); });
    if (normalize) normalizeRows(values, rows, k);
}

} // namespace

int64_t DataContent::getDataSize(const DataNode& node) {
    static const std::string octet = std::string(kDataPrefix) + "application/octet-stream" + kBase64Marker;
    const std::string& uri = node.getUri();
    if (uri.compare(0, octet.size(), octet) == 0)
        return base64decode(nullptr, 0, uri.data() + octet.size(), static_cast<long>(uri.size() - octet.size()));
    if (node.hasByteLength()) return node.getByteLength();
    return getData(node, nullptr, 0);
}

int64_t DataContent::getData(const DataNode& node, void* out, int64_t size) {
    const std::string& uri = node.getUri();
    auto root = rootOf(node);
    if (root->getKeepRawData()) {
        const auto& cache = root->getRawDataCache();
        const auto found = cache.find(uri);
        if (found != cache.end()) {
            const auto bytes = static_cast<int64_t>(found->second.size());
            if (!out) return bytes;
            if (size < bytes) SORVANE_THROW("out is too small");
            if (bytes > 0) std::memcpy(out, found->second.data(), static_cast<size_t>(bytes));
            return bytes;
        }
    }
    if (!isDataUri(uri)) {
        const auto& provider = root->getFileProvider();
        checkRelativeUri(node, provider.get(), uri);
        if (!provider) SORVANE_THROW("Getting data from %s:\nNo file provider", node.getNodePath().c_str());
        const int64_t offset = node.hasOffset() ? node.getOffset() : 0;
        const int64_t bytes = storedLength(node, *provider, uri, offset);
        if (!out) return bytes;
        if (size < bytes) SORVANE_THROW("out is too small");
        provider->getRange(out, bytes, uri, offset);
        return bytes;
    }
    const size_t marker = uri.find(kBase64Marker, sizeof kDataPrefix - 1);
    if (marker == std::string::npos)
        SORVANE_THROW("Invalid URI; expect a string starting with \"data:<mimeType>;base64,\"");
    const char* text = uri.data() + marker + sizeof kBase64Marker - 1;
    const long textSize = static_cast<long>(uri.size() - (marker + sizeof kBase64Marker - 1));
    const long bytes = base64decode(nullptr, 0, text, textSize);
    if (!out) return bytes;
    if (size < bytes) SORVANE_THROW("out is too small");
    return base64decode(out, static_cast<long>(size), text, textSize);
}

std::string DataContent::getString(const DataNode& node) {
    // Sized by the checked read, not by the stored length alone.
    std::string text(static_cast<size_t>(getData(node, nullptr, 0)), '\0');
    if (!text.empty()) text.resize(static_cast<size_t>(getData(node, &text[0], static_cast<int64_t>(text.size()))));
    return text;
}

BitBuffer DataContent::getBitBuffer(const DataNode& node) {
    BitBuffer buffer;
    const int64_t size = getData(node, nullptr, 0);
    if (size > 0) {
        uint8_t* block = buffer.writeBlock(static_cast<long>(size));
        getData(node, block, size);
    }
    return buffer;
}

int64_t DataContent::getTensorData(const DataNode& node, std::vector<long>& sizes, DataDType& dtype, void* out,
                                   int64_t size) {
    const std::string& type = node.getType();
    const bool dense = type == kDenseMimeType;
    if (!dense && type != kSparseMimeType)
        SORVANE_THROW("Getting dense tensor from %s:\nInvalid or unsupported mime type %s",
                      node.getNodePath().c_str(), type.c_str());
    try {
        if (dense) {
            // Only the header is read on its own; the values go straight from
            // where they lie into out.
            const PayloadBytes payload(node);
            BitBuffer buffer = payload.head();
            const long bytes = dense_decodeHeader(sizes, dtype, buffer);
            if (!out) return bytes;
            if (size < bytes) SORVANE_THROW("Output buffer is too small");
            const int64_t headerLength = buffer.getReadPos() / 8;
            if (bytes > payload.size() - headerLength) SORVANE_THROW("Error reading values");
            payload.read(out, bytes, headerLength);
            return bytes;
        }
        BitBuffer buffer = getBitBuffer(node);
        long count = 0;
        DataIType itype = DATA_ITYPE_NONE;
        const long bytes = DataNode__decodeSparseHeader(sizes, count, dtype, itype, buffer);
        if (!out) return bytes;
        DataNode_decodeSparse(out, static_cast<long>(size), itype, dtype, buffer, count, sizes);
        return bytes;
    } catch (const std::exception& e) {
        SORVANE_THROW("Getting dense tensor from %s:\n%s", node.getNodePath().c_str(), e.what());
    }
}

DataTree DataContent::decodeTensor(const std::string& type, BitBuffer& buffer) {
    std::vector<long> sizes;
    DataDType dtype = DATA_DTYPE_NONE;
    const long payload = buffer.bitsLeft() / 8;
    if (type == kDenseMimeType) {
        const long bytes = dense_decodeHeader(sizes, dtype, buffer);
        // The values must be there before a tensor is made for them.
        if (bytes > buffer.bitsLeft() / 8) SORVANE_THROW("Error reading values");
        // A payload without dimensions holds one value: a tensor of one element.
        DataTree tensor = DataTree::createTensor(sizes.empty() ? std::vector<long>{1} : sizes,
                                                 dataDType2ScalarType(dtype));
        dense_decodeContent(tensor.getBuffer(), tensor.getBufferSize(), sizes, dtype, buffer);
        return tensor;
    }
    if (type == kSparseMimeType) {
        long count = 0;
        DataIType itype = DATA_ITYPE_NONE;
        const long bytes = DataNode__decodeSparseHeader(sizes, count, dtype, itype, buffer);
        if (bytes > kSparseExpansionSlack && bytes / kMaxSparseExpansion > payload)
            SORVANE_THROW("Sparse tensor of %ld bytes is too large for a payload of %ld bytes", bytes, payload);
        if (count > (buffer.bitsLeft() / 8) / (getDataITypeSize(itype) + getDataDTypeSize(dtype)))
            SORVANE_THROW("Error reading values");
        DataTree tensor = DataTree::createTensor(sizes.empty() ? std::vector<long>{1} : sizes,
                                                 dataDType2ScalarType(dtype));
        DataNode_decodeSparse(tensor.getBuffer(), tensor.getBufferSize(), itype, dtype, buffer, count, sizes);
        return tensor;
    }
    SORVANE_THROW("Invalid or unsupported mime type %s", type.c_str());
}

DataTree DataContent::getTensor(const DataNode& node) {
    const std::string& type = node.getType();
    if (type != kDenseMimeType && type != kSparseMimeType)
        SORVANE_THROW("Getting dense tensor from %s:\nInvalid or unsupported mime type %s",
                      node.getNodePath().c_str(), type.c_str());
    try {
        if (type == kDenseMimeType) {
            // The values go from where they lie straight into the tensor.
            const PayloadBytes payload(node);
            BitBuffer buffer = payload.head();
            std::vector<long> sizes;
            DataDType dtype = DATA_DTYPE_NONE;
            const long bytes = dense_decodeHeader(sizes, dtype, buffer);
            const int64_t headerLength = buffer.getReadPos() / 8;
            if (bytes > payload.size() - headerLength) SORVANE_THROW("Error reading values");
            DataTree tensor = DataTree::createTensor(sizes.empty() ? std::vector<long>{1} : sizes,
                                                     dataDType2ScalarType(dtype));
            payload.read(tensor.getBuffer(), bytes, headerLength);
            return tensor;
        }
        BitBuffer buffer = getBitBuffer(node);
        return decodeTensor(type, buffer);
    } catch (const std::exception& e) {
        SORVANE_THROW("Getting dense tensor from %s:\n%s", node.getNodePath().c_str(), e.what());
    }
}

void DataContent::getColSparseTensorData(const DataNode& node, std::vector<long>& sizes, DataDType& dtype,
                                         long* indices, long indicesSize, void* values, long valuesSize,
                                         long* pColSize, bool normalize) {
    const std::string& type = node.getType();
    const bool dense = type == kDenseMimeType;
    if (!dense && type != kSparseMimeType)
        SORVANE_THROW("Getting tensor from %s:\nUnsupported type '%s'", node.getNodePath().c_str(), type.c_str());
    try {
        if (!pColSize) SORVANE_THROW("pColSize is NULL");
        const PayloadBytes payload(node);
        BitBuffer buffer = payload.head();
        long count = 0;
        DataIType itype = DATA_ITYPE_NONE;
        long blockSize = 0;
        if (dense) {
            blockSize = dense_decodeHeader(sizes, dtype, buffer);
        } else {
            DataNode__decodeSparseHeader(sizes, count, dtype, itype, buffer);
            const int64_t left = payload.size() - buffer.getReadPos() / 8;
            if (count > left / (getDataITypeSize(itype) + getDataDTypeSize(dtype))) SORVANE_THROW("Error reading values");
            blockSize = count * (getDataITypeSize(itype) + getDataDTypeSize(dtype));
        }
        if (sizes.size() != 2) SORVANE_THROW("Only works for matrices");
        const int64_t start = buffer.getReadPos() / 8;
        if (blockSize > payload.size() - start)
            SORVANE_THROW(dense ? "Content buffer is too small" : "Error reading values");
        const long rows = sizes[0], cols = sizes[1];
        switch (dtype) {
        case DATA_DTYPE_BYTE:
            colSparse<int8_t>(dense, payload, start, rows, cols, count, itype, indices, indicesSize, values, valuesSize,
                              pColSize, normalize);
            break;
        case DATA_DTYPE_UNSIGNED_BYTE:
            colSparse<uint8_t>(dense, payload, start, rows, cols, count, itype, indices, indicesSize, values,
                               valuesSize, pColSize, normalize);
            break;
        case DATA_DTYPE_SHORT:
            colSparse<int16_t>(dense, payload, start, rows, cols, count, itype, indices, indicesSize, values,
                               valuesSize, pColSize, normalize);
            break;
        case DATA_DTYPE_UNSIGNED_SHORT:
            colSparse<uint16_t>(dense, payload, start, rows, cols, count, itype, indices, indicesSize, values,
                                valuesSize, pColSize, normalize);
            break;
        case DATA_DTYPE_UNSIGNED_INT:
            colSparse<uint32_t>(dense, payload, start, rows, cols, count, itype, indices, indicesSize, values,
                                valuesSize, pColSize, normalize);
            break;
        default:
            colSparse<float>(dense, payload, start, rows, cols, count, itype, indices, indicesSize, values, valuesSize,
                             pColSize, normalize);
            break;
        }
    } catch (const std::exception& e) {
        SORVANE_THROW("Getting dense tensor from %s:\n%s", node.getNodePath().c_str(), e.what());
    }
}

std::pair<DataTree, DataTree> DataContent::getColSparseTensor(const DataNode& node, long minCols, long maxCols,
                                                              bool normalize) {
    std::vector<long> sizes;
    DataDType dtype = DATA_DTYPE_NONE;
    long k = 0;
    getColSparseTensorData(node, sizes, dtype, nullptr, 0, nullptr, 0, &k, normalize);
    if (k < minCols) k = minCols;
    if (k > maxCols) k = maxCols;
    if (k < 0) k = 0;
    // The compact form of a sparse payload can be far larger than the
    // payload; it is held to the same bound as a full sparse tensor.
    long cells = 0, bytes = 0;
    const int64_t payload = getDataSize(node);
    if (__builtin_mul_overflow(sizes[0], k, &cells) ||
        __builtin_mul_overflow(cells, 8 + getDataDTypeSize(dtype), &bytes) ||
        (bytes > kSparseExpansionSlack && bytes / kMaxSparseExpansion > payload))
        SORVANE_THROW("Getting tensor from %s:\nCompact tensor is too large for a payload of %ld bytes",
                      node.getNodePath().c_str(), static_cast<long>(payload));
    sizes[1] = k;
    DataTree indices = DataTree::createTensor(sizes, ScalarType::Integer64);
    DataTree values = DataTree::createTensor(sizes, dataDType2ScalarType(dtype));
    getColSparseTensorData(node, sizes, dtype, static_cast<long*>(indices.getBuffer()), indices.getBufferSize(),
                           values.getBuffer(), values.getBufferSize(), &k, normalize);
    return {values, indices};
}

std::pair<DataTree, DataTree>* DataContent::getColSparseTensorPtr(const DataNode& node, long minCols, long maxCols,
                                                                  bool normalize) {
    return new std::pair<DataTree, DataTree>(getColSparseTensor(node, minCols, maxCols, normalize));
}

DataTree* DataContent::getTensorPtr(const DataNode& node) { return new DataTree(getTensor(node)); }

} // namespace sorvane::arf
