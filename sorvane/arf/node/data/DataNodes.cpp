#include "sorvane/arf/node/data/DataNodes.h"

#include <cstring>

#include "sorvane/archive/BitBuffer.h"
#include "sorvane/archive/DocumentUri.h"
#include "sorvane/archive/FileProvider.h"
#include "sorvane/archive/base64.h"
#include "sorvane/arf/format/dense.h"
#include "sorvane/arf/node/RootNode.h"
#include "sorvane/core/RuntimeException.h"
#include "sorvane/datatree/DataTree.h"

namespace sorvane::arf {

namespace {

template <class T>
DataDType dtypeOf() {
    if constexpr (std::is_same_v<T, float>) return DATA_DTYPE_FLOAT;
    else if constexpr (std::is_same_v<T, signed char>) return DATA_DTYPE_BYTE;
    else if constexpr (std::is_same_v<T, unsigned char>) return DATA_DTYPE_UNSIGNED_BYTE;
    else if constexpr (std::is_same_v<T, short>) return DATA_DTYPE_SHORT;
    else if constexpr (std::is_same_v<T, unsigned short>) return DATA_DTYPE_UNSIGNED_SHORT;
    else if constexpr (std::is_same_v<T, unsigned int>) return DATA_DTYPE_UNSIGNED_INT;
    else return DATA_DTYPE_NONE;
}

template <class I>
void putPositions(std::vector<uint8_t>& out, const std::vector<int64_t>& positions) {
    out.resize(positions.size() * sizeof(I));
    for (size_t i = 0; i < positions.size(); ++i) {
        const I v = static_cast<I>(positions[i]);  // wraps when the caller chose too narrow a type
        std::memcpy(out.data() + i * sizeof(I), &v, sizeof(I));
    }
}

} // namespace

DataNodes::DataNodes(const NodeParent& parent_) : IdItemList<DataNode>(parent_) {}
DataNodes::~DataNodes() = default;

std::shared_ptr<DataNode> DataNodes::add(const char* type, const char* uri, const char* name,
                                         std::optional<int64_t> id) {
    auto item = std::make_shared<DataNode>(shared_from_this());
    item->init(type, uri, name, id);
    items.push_back(item);
    return item;
}

int64_t DataNodes::addContent(const void* content, int64_t size, bool embedded, const char* type, const char* uri,
                              const std::string& extension, const char* name, std::optional<int64_t> id) {
    const archive::FileProvider::Block block{content, size};
    return addContent(&block, 1, embedded, type, uri, extension, name, id);
}

int64_t DataNodes::addContent(const archive::FileProvider::Block* blocks, size_t count, bool embedded,
                              const char* type, const char* uri, const std::string& extension, const char* name,
                              std::optional<int64_t> id) {
    const std::string path = getNodePath();
    if (id) {
        if (findNodeItemIndexById(*id) >= 0)
            SORVANE_THROW("Adding item to %s: id %ld is already used", path.c_str(), static_cast<long>(*id));
    } else {
        id = getNodeItemFreeId();
        if (!id) SORVANE_THROW("Adding item to %s: Unable to generate a new id", path.c_str());
    }
    int64_t size = 0;
    for (size_t i = 0; i < count; ++i)
        if (blocks[i].size < 0 || (blocks[i].size > 0 && !blocks[i].data) ||
            __builtin_add_overflow(size, blocks[i].size, &size))
            SORVANE_THROW("Adding item to %s:\nNo content", path.c_str());
    if (!type) SORVANE_THROW("Adding item to %s:\nNo type", path.c_str());
    auto root = getNodeRoot().lock();
    if (!root) SORVANE_THROW("Adding item to %s:\nNo document", path.c_str());
    // The pieces put together, for the few places that need one block.
    auto whole = [&] {
        std::vector<uint8_t> bytes;
        bytes.reserve(static_cast<size_t>(size));
        for (size_t i = 0; i < count; ++i) {
            const auto* piece = static_cast<const uint8_t*>(blocks[i].data);
            if (blocks[i].size > 0) bytes.insert(bytes.end(), piece, piece + blocks[i].size);
        }
        return bytes;
    };

    std::string itemUri;
    int64_t offset = 0;
    if (root->getSharedRawData()) {
        const bool refused = embedded && root->getStorageMode() == MULTIPLE_FILES;
        offset = root->appendSharedRawData(count > 0 ? blocks[0].data : nullptr, count > 0 ? blocks[0].size : 0, refused);
        for (size_t i = 1; i < count; ++i) root->appendSharedRawData(blocks[i].data, blocks[i].size, false);
        itemUri = root->getSharedRawData()->fileName;
    } else if (embedded) {
        const std::vector<uint8_t> bytes = count == 1 ? std::vector<uint8_t>() : whole();
        const void* content = count == 1 ? blocks[0].data : bytes.data();
        const long textSize = base64encode(nullptr, 0, content, static_cast<long>(size), BASE64_ENCODING_STANDARD, '=');
        itemUri = std::string("data:") + type + ";base64,";
        const size_t prefix = itemUri.size();
        itemUri.resize(prefix + static_cast<size_t>(textSize));
        base64encode(&itemUri[prefix], textSize, content, static_cast<long>(size), BASE64_ENCODING_STANDARD, '=');
    } else {
        const StorageMode mode = root->getStorageMode();
        if (mode != MULTIPLE_FILES && mode != SINGLE_FILE && mode != MEMORY_ONLY)
            SORVANE_THROW("Adding item to %s:\nInvalid storage mode", path.c_str());
        if (!root->getFileProvider()) SORVANE_THROW("Adding item to %s:\nNo file provider", path.c_str());
        if (uri && !archive::isAbsoluteUri(uri) && archive::leavesFolder(root->getFileProvider().get(), uri))
            SORVANE_THROW("Adding item to %s:\nuri '%s' leaves the document's folder", path.c_str(), uri);
        itemUri = root->findFreeFileName(uri, name, *id, extension);
        root->getFileProvider()->createBlocks(itemUri, blocks, count);
        if (root->getKeepRawData() && mode != MEMORY_ONLY) root->getRawDataCache()[itemUri] = whole();
    }
    auto item = std::make_shared<DataNode>(shared_from_this());
    item->init(type, itemUri.c_str(), name, id);
    item->setOffset(offset);
    item->setByteLength(size);
    items.push_back(item);
    return static_cast<int64_t>(items.size()) - 1;
}

int64_t DataNodes::addDense(const void* buffer, int64_t size, DataDType dtype, const std::vector<long>& sizes,
                            bool embedded, const char* uri, const char* name, std::optional<int64_t> id) {
    // The header and the caller's values go to the store as two pieces: the
    // values are copied once, into their place.
    BitBuffer header;
    long bytes = 0;
    try {
        if (!buffer) SORVANE_THROW("buffer if NULL");
        bytes = dense_encodeHeader(header, dtype, sizes);
        if (bytes > size) SORVANE_THROW("buffer is too small");
    } catch (const std::exception& e) {
        SORVANE_THROW("Adding item to %s:\n%s", getNodePath().c_str(), e.what());
    }
    const archive::FileProvider::Block blocks[] = {{header.data(), header.storedSize()}, {buffer, bytes}};
    return addContent(blocks, 2, embedded, kDenseMimeType, uri, ".bin", name, id);
}

int64_t DataNodes::addDenseTensor(const DataTree& tensor, bool embedded, const char* uri, const char* name,
                                  std::optional<int64_t> id) {
    if (!tensor.isTensor()) SORVANE_THROW("Adding item to %s:\nNot a tensor", getNodePath().c_str());
    return addDense(tensor.getBuffer(), tensor.getBufferSize(), scalarType2DataDType(tensor.getScalarType()),
                    tensor.getTensorSizes(), embedded, uri, name, id);
}

int64_t DataNodes::addSparse(const void* indices, int64_t indicesSize, DataIType itype, const void* values,
                             int64_t valuesSize, DataDType dtype, const std::vector<long>& sizes, int64_t count,
                             bool embedded, const char* uri, const char* name, std::optional<int64_t> id) {
    BitBuffer bits;
    try {
        sparse_encode(bits, indices, static_cast<long>(indicesSize), itype, values, static_cast<long>(valuesSize),
                      dtype, sizes, static_cast<long>(count));
    } catch (const std::exception& e) {
        SORVANE_THROW("Adding item to %s:\n%s", getNodePath().c_str(), e.what());
    }
    return addContent(bits.data(), bits.storedSize(), embedded, kSparseMimeType, uri, ".bin", name, id);
}

template <class T>
int64_t DataNodes::addSparseFromDenseTyped(const T* buffer, int64_t valueCount, const std::vector<long>& sizes,
                                           DataIType itype, bool embedded, const char* uri, const char* name,
                                           std::optional<int64_t> id) {
    if (itype == DATA_ITYPE_NONE) {
        if (valueCount < 256) itype = DATA_ITYPE_UNSIGNED_BYTE;
        else if (valueCount < 65536) itype = DATA_ITYPE_UNSIGNED_SHORT;
        else if (valueCount <= 4294967295L) itype = DATA_ITYPE_UNSIGNED_INT;
        else SORVANE_THROW("Sparse tensor can't be encoded because there are too many values");
    } else if (itype != DATA_ITYPE_BYTE && itype != DATA_ITYPE_UNSIGNED_BYTE && itype != DATA_ITYPE_SHORT &&
               itype != DATA_ITYPE_UNSIGNED_SHORT && itype != DATA_ITYPE_UNSIGNED_INT) {
        SORVANE_THROW("Invalid itype %d", static_cast<int>(itype));
    }
    if (valueCount != tensorElementCount(sizes)) SORVANE_THROW("Inconsistent valueCount / dims");
    if (valueCount > 0 && !buffer) SORVANE_THROW("buffer is NULL");
    std::vector<int64_t> positions;
    std::vector<T> values;
    for (int64_t i = 0; i < valueCount; ++i) {
        if (buffer[i] != T(0)) {
            positions.push_back(i);
            values.push_back(buffer[i]);
        }
    }
    std::vector<uint8_t> indices;
    switch (itype) {
    case DATA_ITYPE_BYTE: putPositions<int8_t>(indices, positions); break;
    case DATA_ITYPE_UNSIGNED_BYTE: putPositions<uint8_t>(indices, positions); break;
    case DATA_ITYPE_SHORT: putPositions<int16_t>(indices, positions); break;
    case DATA_ITYPE_UNSIGNED_SHORT: putPositions<uint16_t>(indices, positions); break;
    default: putPositions<uint32_t>(indices, positions); break;
    }
    // Empty blocks still need a non-null address.
    static const uint8_t none = 0;
    return addSparse(indices.empty() ? &none : indices.data(), static_cast<int64_t>(indices.size()), itype,
                     values.empty() ? static_cast<const void*>(&none) : values.data(),
                     static_cast<int64_t>(values.size() * sizeof(T)), dtypeOf<T>(), sizes,
                     static_cast<int64_t>(positions.size()), embedded, uri, name, id);
}

int64_t DataNodes::addSparseFromDense(const void* buffer, int64_t valueCount, DataDType dtype,
                                      const std::vector<long>& sizes, DataIType itype, bool embedded, const char* uri,
                                      const char* name, std::optional<int64_t> id) {
    switch (dtype) {
    case DATA_DTYPE_FLOAT:
        return addSparseFromDenseTyped(static_cast<const float*>(buffer), valueCount, sizes, itype, embedded, uri,
                                       name, id);
    case DATA_DTYPE_UNSIGNED_BYTE:
        return addSparseFromDenseTyped(static_cast<const unsigned char*>(buffer), valueCount, sizes, itype, embedded,
                                       uri, name, id);
    case DATA_DTYPE_UNSIGNED_SHORT:
        return addSparseFromDenseTyped(static_cast<const unsigned short*>(buffer), valueCount, sizes, itype, embedded,
                                       uri, name, id);
    case DATA_DTYPE_BYTE:
        return addSparseFromDenseTyped(static_cast<const signed char*>(buffer), valueCount, sizes, itype, embedded,
                                       uri, name, id);
    case DATA_DTYPE_UNSIGNED_INT:
        return addSparseFromDenseTyped(static_cast<const unsigned int*>(buffer), valueCount, sizes, itype, embedded,
                                       uri, name, id);
    case DATA_DTYPE_SHORT:
        return addSparseFromDenseTyped(static_cast<const short*>(buffer), valueCount, sizes, itype, embedded, uri,
                                       name, id);
    default: SORVANE_THROW("Invalid or unsupported dtype %d", static_cast<int>(dtype));
    }
}

int64_t DataNodes::addSparseTensor(const DataTree& tensor, DataIType itype, bool embedded, const char* uri,
                                   const char* name, std::optional<int64_t> id) {
    if (!tensor.isTensor()) SORVANE_THROW("Adding item to %s:\nNot a tensor", getNodePath().c_str());
    const ScalarType st = tensor.getScalarType();
    switch (st) {
    case ScalarType::Float:
    case ScalarType::UInteger8:
    case ScalarType::UInteger16:
    case ScalarType::Integer8:
    case ScalarType::UInteger32:
    case ScalarType::Integer16:
        return addSparseFromDense(tensor.getBuffer(), tensor.getValueCount(), scalarType2DataDType(st),
                                  tensor.getTensorSizes(), itype, embedded, uri, name, id);
    default: SORVANE_THROW("Invalid scalar type %d", static_cast<int>(st));
    }
}

} // namespace sorvane::arf
