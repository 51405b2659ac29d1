#include "sorvane/arf/node/data/DataContent.h"

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
void checkRelativeUri(const DataNode& node, const std::string& uri) {
    if (archive::isAbsoluteUri(uri))
        SORVANE_THROW("Getting data from %s:\nuri '%s' is absolute", node.getNodePath().c_str(), uri.c_str());
    if (archive::climbsOutOfFolder(uri))
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

// One pass over the pairs (row, column, value) of a dense or sparse payload.
template <class T, class Visit>
void visitNonZero(bool dense, const uint8_t* block, long rows, long cols, long count, DataIType itype,
                  Visit&& visit) {
    if (dense) {
        for (long r = 0; r < rows; ++r)
            for (long c = 0; c < cols; ++c) {
                T v;
                std::memcpy(&v, block + (r * cols + c) * static_cast<long>(sizeof(T)), sizeof v);
                if (v != T(0)) visit(r, c, v);
            }
        return;
    }
    const long indexSize = getDataITypeSize(itype);
    const uint8_t* values = block + count * indexSize;
    for (long i = 0; i < count; ++i) {
        long index = 0;
        const uint8_t* p = block + i * indexSize;
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

template <class T>
void colSparse(bool dense, const uint8_t* block, long rows, long cols, long count, DataIType itype, long* indices,
               long indicesSize, void* valuesOut, long valuesSize, long* pColSize, bool normalize) {
    if (!indices || !valuesOut) {
        // Measuring: the largest count of non-zero values in one row. A dense
        // matrix is visited row by row; sparse pairs may come in any order.
        long best = 0;
        if (dense) {
            long row = -1, n = 0;
            visitNonZero<T>(dense, block, rows, cols, count, itype, [&](long r, long, T) {
                if (r != row) {
                    row = r;
                    n = 0;
                }
                if (++n > best) best = n;
            });
        } else {
            std::unordered_map<long, long> perRow;
            visitNonZero<T>(dense, block, rows, cols, count, itype, [&](long r, long, T) {
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
    visitNonZero<T>(dense, block, rows, cols, count, itype,
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
        checkRelativeUri(node, uri);
        const auto& provider = root->getFileProvider();
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
            // A dense payload in a file goes straight from the store into out:
            // only its header is read on its own.
            const std::string& uri = node.getUri();
            auto root = rootOf(node);
            const bool cached = root->getKeepRawData() && root->getRawDataCache().count(uri) != 0;
            if (!isDataUri(uri) && !cached && root->getFileProvider()) {
                checkRelativeUri(node, uri);
                const auto& provider = root->getFileProvider();
                const int64_t offset = node.hasOffset() ? node.getOffset() : 0;
                const int64_t length = storedLength(node, *provider, uri, offset);
                uint8_t head[8 + 4 * kMaxPayloadDims];
                const int64_t headSize = length < static_cast<int64_t>(sizeof head) ? length : sizeof head;
                if (headSize > 0) provider->getRange(head, headSize, uri, offset);
                BitBuffer buffer;
                buffer.feed(head, static_cast<long>(headSize));
                const long bytes = dense_decodeHeader(sizes, dtype, buffer);
                if (!out) return bytes;
                if (size < bytes) SORVANE_THROW("Output buffer is too small");
                const int64_t headerLength = buffer.getReadPos() / 8;
                if (bytes > length - headerLength) SORVANE_THROW("Error reading values");
                provider->getRange(out, bytes, uri, offset + headerLength);
                return bytes;
            }
        }
        BitBuffer buffer = getBitBuffer(node);
        if (dense) {
            const long bytes = dense_decodeHeader(sizes, dtype, buffer);
            if (!out) return bytes;
            return dense_decodeContent(out, static_cast<long>(size), sizes, dtype, buffer);
        }
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
        BitBuffer buffer = getBitBuffer(node);
        long count = 0;
        DataIType itype = DATA_ITYPE_NONE;
        long blockSize = 0;
        if (dense) {
            blockSize = dense_decodeHeader(sizes, dtype, buffer);
        } else {
            DataNode__decodeSparseHeader(sizes, count, dtype, itype, buffer);
            if (count > (buffer.bitsLeft() / 8) / (getDataITypeSize(itype) + getDataDTypeSize(dtype)))
                SORVANE_THROW("Error reading values");
            blockSize = count * (getDataITypeSize(itype) + getDataDTypeSize(dtype));
        }
        if (sizes.size() != 2) SORVANE_THROW("Only works for matrices");
        const uint8_t* block = buffer.readBlock(blockSize);
        if (!block) SORVANE_THROW(dense ? "Content buffer is too small" : "Error reading values");
        const long rows = sizes[0], cols = sizes[1];
        switch (dtype) {
        case DATA_DTYPE_BYTE:
            colSparse<int8_t>(dense, block, rows, cols, count, itype, indices, indicesSize, values, valuesSize,
                              pColSize, normalize);
            break;
        case DATA_DTYPE_UNSIGNED_BYTE:
            colSparse<uint8_t>(dense, block, rows, cols, count, itype, indices, indicesSize, values, valuesSize,
                               pColSize, normalize);
            break;
        case DATA_DTYPE_SHORT:
            colSparse<int16_t>(dense, block, rows, cols, count, itype, indices, indicesSize, values, valuesSize,
                               pColSize, normalize);
            break;
        case DATA_DTYPE_UNSIGNED_SHORT:
            colSparse<uint16_t>(dense, block, rows, cols, count, itype, indices, indicesSize, values, valuesSize,
                                pColSize, normalize);
            break;
        case DATA_DTYPE_UNSIGNED_INT:
            colSparse<uint32_t>(dense, block, rows, cols, count, itype, indices, indicesSize, values, valuesSize,
                                pColSize, normalize);
            break;
        default:
            colSparse<float>(dense, block, rows, cols, count, itype, indices, indicesSize, values, valuesSize,
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
