#include "sorvane/arf/node/data/DataContent.h"

#include <cstring>

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
    const bool absolute = (!uri.empty() && (uri[0] == '/' || uri[0] == '\\')) ||
                          (uri.size() >= 2 && std::isalpha(static_cast<unsigned char>(uri[0])) && uri[1] == ':');
    if (absolute)
        SORVANE_THROW("Getting data from %s:\nuri '%s' is absolute", node.getNodePath().c_str(), uri.c_str());
    size_t start = 0;
    while (start <= uri.size()) {
        size_t end = uri.find_first_of("/\\", start);
        if (end == std::string::npos) end = uri.size();
        if (uri.compare(start, end - start, "..") == 0 && end - start == 2)
            SORVANE_THROW("Getting data from %s:\nuri '%s' leaves the document's folder", node.getNodePath().c_str(),
                          uri.c_str());
        start = end + 1;
    }
}

std::shared_ptr<RootNode> rootOf(const DataNode& node) {
    auto root = node.getNodeRoot().lock();
    if (!root) SORVANE_THROW("Getting data from %s:\nNo document", node.getNodePath().c_str());
    return root;
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
        const int64_t bytes = node.hasByteLength() ? node.getByteLength() : provider->getData(nullptr, 0, uri, offset);
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
    std::string text(static_cast<size_t>(getDataSize(node)), '\0');
    if (!text.empty()) text.resize(static_cast<size_t>(getData(node, &text[0], static_cast<int64_t>(text.size()))));
    return text;
}

BitBuffer DataContent::getBitBuffer(const DataNode& node) {
    BitBuffer buffer;
    const int64_t size = getDataSize(node);
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
                const int64_t length =
                    node.hasByteLength() ? node.getByteLength() : provider->getData(nullptr, 0, uri, offset);
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

DataTree* DataContent::getTensorPtr(const DataNode& node) { return new DataTree(getTensor(node)); }

} // namespace sorvane::arf
