#include "sorvane/gltf2/node/buffer/BinaryData.h"

#include <cstdlib>
#include <cstring>
#include <exception>
#include <new>

#include "sorvane/archive/DocumentUri.h"
#include "sorvane/archive/FileProvider.h"
#include "sorvane/archive/base64.h"
#include "sorvane/core/RuntimeException.h"
#include "sorvane/datatree/node/Tensor.h"
#include "sorvane/datatree/node/TensorBatch.h"
#include "sorvane/gltf2/node/RootNode.h"
#include "sorvane/gltf2/node/buffer/ByteBlock.h"

namespace sorvane::gltf2 {

namespace {

constexpr const char kDataPrefix[] = "data:";
const char* const kBufferPrefixes[] = {"data:application/octet-stream;base64,", "data:application/gltf-buffer;base64,"};

bool startsWith(const std::string& text, const char* prefix) {
    return text.compare(0, std::strlen(prefix), prefix) == 0;
}

std::shared_ptr<RootNode> rootOf(const AbstractNode& node) {
    std::shared_ptr<RootNode> root = node.getNodeRoot().lock();
    if (!root) SORVANE_THROW("Invalid node");
    return root;
}

// Where the bytes of a buffer are: in memory (the shared buffer or a decoded
// data uri) or in a file of the provider.
struct BufferBytes {
    const uint8_t* memory = nullptr;
    std::vector<uint8_t> decoded;
    std::shared_ptr<archive::FileProvider> provider;
    std::string fileName;
    int64_t size = 0;
};

void locate(const BufferNode& buffer, BufferBytes& bytes) {
    std::shared_ptr<RootNode> root = rootOf(buffer);
    const RootNode::SharedBuffer* shared = root->getSharedBuffer();
    if (shared && shared->bufferIndex == buffer.getNodeIndex()) {
        bytes.memory = shared->data.data();
        bytes.size = static_cast<int64_t>(shared->data.size());
        return;
    }
    if (!buffer.hasUri()) SORVANE_THROW("%s has no uri", buffer.getNodePath().c_str());
    const std::string& uri = buffer.getUri();
    if (!startsWith(uri, kDataPrefix)) {
        if (archive::isAbsoluteUri(uri)) SORVANE_THROW("uri '%s' is absolute", uri.c_str());
        bytes.provider = root->getFileProvider();
        if (archive::leavesFolder(bytes.provider.get(), uri))
            SORVANE_THROW("uri '%s' leaves the document's folder", uri.c_str());
        if (!bytes.provider) SORVANE_THROW("No file provider");
        bytes.fileName = uri;
        bytes.size = bytes.provider->getDataSize(uri);
    } else {
        const char* prefix = nullptr;
        for (const char* p : kBufferPrefixes)
            if (startsWith(uri, p)) prefix = p;
        if (!prefix) {
            const size_t end = uri.find_first_of(";,", 5);
            SORVANE_THROW("Unsupported data mime type %s", uri.substr(5, end == std::string::npos ? 32 : end - 5).c_str());
        }
        const size_t start = std::strlen(prefix);
        const char* text = uri.c_str() + start;
        const long textSize = static_cast<long>(uri.size() - start);
        const long size = base64decode(nullptr, 0, text, textSize);
        bytes.decoded.resize(static_cast<size_t>(size));
        base64decode(bytes.decoded.data(), size, text, textSize);
        bytes.memory = bytes.decoded.data();
        bytes.size = size;
    }
    if (bytes.size != buffer.getByteLength())
        SORVANE_THROW("In %s: Invalid byteLength %ld >= %ld", buffer.getNodePath().c_str(), static_cast<long>(bytes.size),
                      static_cast<long>(buffer.getByteLength()));
}

// A node's path walks its list to find its position: it is made only for a
// message, so that reading every accessor of a long list stays linear.
const BufferViewNode& viewOf(const AccessorNode& accessor, const RootNode& root) {
    const auto& views = root.getBufferViews();
    if (!views) SORVANE_THROW("Getting data from %s\n:There is no buffer views", accessor.getNodePath().c_str());
    if (!accessor.hasBufferView())
        SORVANE_THROW("Getting data from %s\n:Buffer view is not defined", accessor.getNodePath().c_str());
    return *views->getByIndex(accessor.getBufferView());
}

// Values of the accessor: count times the values of its type, checked so
// that a hostile count cannot overflow.
int64_t accessorValueCount(const AccessorNode& accessor) {
    const int64_t count = accessor.getCount();
    int64_t values = 0;
    int64_t bytes = 0;
    if (count < 0 || __builtin_mul_overflow(count, accessorType2valueCount(accessor.getType()), &values) ||
        __builtin_mul_overflow(values, accessorComponentType2size(accessor.getComponentType()), &bytes))
        SORVANE_THROW("Getting data from %s:\nInvalid count %ld", accessor.getNodePath().c_str(),
                      static_cast<long>(count));
    return values;
}

// The shape of an accessor type without a string compare per read.
struct TypeShape {
    long values = 0;
    int rank = 0;  // 0: unknown type
    long inner[2] = {0, 0};
};

TypeShape shapeOf(const std::string& type) {
    TypeShape s;
    const char* t = type.c_str();
    if (type.size() == 6 && std::memcmp(t, "SCALAR", 6) == 0) return {1, 1, {0, 0}};
    if (type.size() != 4 || (t[3] < '2' || t[3] > '4')) return s;
    const long n = t[3] - '0';
    if (t[0] == 'V' && t[1] == 'E' && t[2] == 'C') return {n, 2, {n, 0}};
    if (t[0] == 'M' && t[1] == 'A' && t[2] == 'T') return {n * n, 3, {n, n}};
    return s;
}

// One accessor read whose every check passed: where its bytes are and how
// many. Made only for the common case (a valid accessor over the open shared
// buffer); anything else, failures included, takes the general path, which
// words each message. Reading every accessor of a large file is dominated by
// these fixed costs, not by the copies.
struct ReadPlan {
    const uint8_t* source = nullptr;
    int64_t length = 0;    // bytes the view gives
    int64_t bytes = 0;     // bytes the accessor's elements take
    TypeShape shape;
    ScalarType scalar = ScalarType::Invalid;
};

// Where the last short read of this thread was in its accessor list. Reading
// every accessor in order is the common case; the nodes the next reads need
// are then asked for ahead, as a file system reads ahead. Only a hint: the
// list is compared, never followed, and the position is checked against the
// node being read.
struct ReadAhead {
    const void* list = nullptr;
    size_t next = 0;
};
thread_local ReadAhead readAhead;

constexpr size_t kNodesAhead = 2;

void prefetchNode(const void* node) {
    if (!node) return;
    const char* p = static_cast<const char*>(node);
    __builtin_prefetch(p);
    __builtin_prefetch(p + 64);
    __builtin_prefetch(p + 128);
}

// The view a node names, or null.
const BufferViewNode* viewNamed(const AccessorNode* accessor, const std::vector<std::shared_ptr<BufferViewNode>>& views) {
    if (!accessor || !accessor->hasBufferView()) return nullptr;
    const int64_t view = accessor->getBufferView();
    return view >= 0 && static_cast<size_t>(view) < views.size() ? views[static_cast<size_t>(view)].get() : nullptr;
}

// The node is asked for two reads ahead; its view one read later, when the
// node has had time to arrive.
void readAheadFrom(const AccessorNode& accessor, const RootNode& root) {
    const auto& list = root.getAccessors();
    const auto& views = root.getBufferViews();
    if (!list || !views) return;
    const auto& items = list->getItems();
    if (readAhead.list != list.get()) readAhead = {list.get(), 0};
    size_t at = readAhead.next;
    if (at >= items.size() || items[at].get() != &accessor) {
        if (items.empty() || items[0].get() != &accessor) return;
        at = 0;  // a new pass
    }
    readAhead.next = at + 1;
    if (at + kNodesAhead < items.size()) prefetchNode(items[at + kNodesAhead].get());
    if (at + 1 < items.size()) {
        if (const BufferViewNode* view = viewNamed(items[at + 1].get(), views->getItems())) prefetchNode(view);
    }
}

// What the quick path checks once per document: its lists and the open
// shared buffer, whose node must be the one its index names.
struct SharedSource {
    const std::vector<std::shared_ptr<BufferViewNode>>* views = nullptr;
    const RootNode::SharedBuffer* shared = nullptr;
    bool bufferValid = false;  // the shared buffer's node is in place
};

bool sharedSourceOf(const RootNode& root, SharedSource& source) {
    const auto& views = root.getBufferViews();
    const auto& buffers = root.getBuffers();
    const RootNode::SharedBuffer* shared = root.getSharedBuffer();
    if (!views || !buffers || !shared) return false;
    source.views = &views->getItems();
    source.shared = shared;
    const int64_t bufferIndex = shared->bufferIndex;
    if (bufferIndex < 0 || bufferIndex >= buffers->getNodeSize()) return true;
    const BufferNode* buffer = buffers->getItems()[static_cast<size_t>(bufferIndex)].get();
    if (!buffer) return true;
    // The general path knows the shared buffer by the node's own position in its list.
    const AbstractNode::WeakRef& parent = buffer->peekNodeParent();
    source.bufferValid = !parent.owner_before(buffers) && !buffers.owner_before(parent);
    return true;
}

// The accessor's own checks: its type, count and view, against the
// document's source.
bool planWithin(const AccessorNode& accessor, const SharedSource& source, ReadPlan& plan) {
    plan.shape = shapeOf(accessor.getType());
    if (plan.shape.rank == 0) return false;
    long componentSize = 0;
    switch (accessor.getComponentType()) {
    case ACCESSOR_COMPONENT_TYPE_BYTE: componentSize = 1, plan.scalar = ScalarType::Integer8; break;
    case ACCESSOR_COMPONENT_TYPE_UNSIGNED_BYTE: componentSize = 1, plan.scalar = ScalarType::UInteger8; break;
    case ACCESSOR_COMPONENT_TYPE_SHORT: componentSize = 2, plan.scalar = ScalarType::Integer16; break;
    case ACCESSOR_COMPONENT_TYPE_UNSIGNED_SHORT: componentSize = 2, plan.scalar = ScalarType::UInteger16; break;
    case ACCESSOR_COMPONENT_TYPE_UNSIGNED_INT: componentSize = 4, plan.scalar = ScalarType::UInteger32; break;
    case ACCESSOR_COMPONENT_TYPE_FLOAT: componentSize = 4, plan.scalar = ScalarType::Float; break;
    default: return false;
    }
    const int64_t count = accessor.getCount();
    int64_t values = 0;
    if (count < 0 || __builtin_mul_overflow(count, plan.shape.values, &values) ||
        __builtin_mul_overflow(values, componentSize, &plan.bytes))
        return false;
    if (!accessor.hasBufferView()) return false;
    const auto& views = *source.views;
    const int64_t viewIndex = accessor.getBufferView();
    if (viewIndex < 0 || static_cast<uint64_t>(viewIndex) >= views.size()) return false;
    const BufferViewNode* view = views[static_cast<size_t>(viewIndex)].get();
    if (!view) return false;
    const int64_t byteOffset = accessor.getByteOffset();
    if (byteOffset < 0 || byteOffset >= view->getByteLength()) return false;
    if (view->hasByteStride() && view->getByteStride() != 0 && view->getByteStride() != componentSize) return false;
    // The count minus the offset, as the general path reads it.
    plan.length = plan.bytes - byteOffset;
    if (plan.length < 0) return false;
    if (plan.length == 0) return true;
    if (!source.bufferValid || view->getBuffer() != source.shared->bufferIndex) return false;
    // The shared buffer's own bytes, as the general path takes them: a .glb's
    // BIN chunk may be longer than "byteLength" by its padding.
    const int64_t size = static_cast<int64_t>(source.shared->data.size());
    int64_t offset = 0;
    int64_t end = 0;
    if (__builtin_add_overflow(byteOffset, view->hasByteOffset() ? view->getByteOffset() : 0, &offset) ||
        offset < 0 || offset >= size || __builtin_add_overflow(offset, plan.length, &end) || end > size)
        return false;
    plan.source = source.shared->data.data() + offset;
    return true;
}

bool planRead(const AccessorNode& accessor, ReadPlan& plan) {
    // The caller holds the accessor, and the read keeps nothing: its
    // document is looked at without taking a reference.
    const RootNode* root = accessor.peekNodeRoot();
    if (!root) return false;
    readAheadFrom(accessor, *root);
    SharedSource source;
    return sharedSourceOf(*root, source) && planWithin(accessor, source, plan);
}

// The tensor of a quick plan, its values copied and the rest zeroed; from
// the batch when one is given. Null when memory is short: the general path
// then words it.
std::shared_ptr<datatree::Node> tensorOf(const AccessorNode& accessor, const ReadPlan& plan,
                                         datatree::TensorBatch* batch) {
    const size_t rank = static_cast<size_t>(plan.shape.rank);
    long sizes[3] = {static_cast<long>(accessor.getCount()), plan.shape.inner[0], plan.shape.inner[1]};
    const auto fill = [&plan](void* block) {
        if (plan.length) std::memcpy(block, plan.source, static_cast<size_t>(plan.length));
        // The view may give less than the elements take (the offset is
        // subtracted): the rest reads as zeros.
        if (plan.bytes > plan.length)
            std::memset(static_cast<uint8_t*>(block) + plan.length, 0, static_cast<size_t>(plan.bytes - plan.length));
    };
    if (static_cast<size_t>(plan.bytes) <= datatree::Tensor::kMaxAdjacentBytes) {
        // The bytes are fetched while the tensor is made: reading every
        // accessor of a large file, they are mostly not in the cache.
        const int64_t ahead = plan.length < 4096 ? plan.length : 4096;
        for (int64_t at = 0; at < ahead; at += 64) __builtin_prefetch(plan.source + at);
        // One allocation for the node, its sizes and its values (or a share of the batch's).
        std::shared_ptr<datatree::Tensor> tensor;
        try {
            const size_t bytes = static_cast<size_t>(plan.bytes);
            tensor = batch ? batch->make(bytes, sizes, rank, plan.scalar)
                           : datatree::Tensor::makeWithBlock(bytes, sizes, rank, plan.scalar);
        } catch (const std::bad_alloc&) {
            return nullptr;
        }
        fill(tensor->getBuffer());
        return tensor;
    }
    void* block = allocateBlock(static_cast<size_t>(plan.bytes));
    if (!block) return nullptr;
    fill(block);
    try {
        return std::make_shared<datatree::Tensor>(block, static_cast<long>(plan.bytes),
                                                  std::vector<long>(sizes, sizes + rank), plan.scalar);
    } catch (...) {
        std::free(block);
        throw;
    }
}

} // namespace

int64_t BinaryData::getData(const BufferNode& buffer, void* out, int64_t outSize, int64_t byteOffset,
                            int64_t valueCount, int64_t valueSize, int64_t byteStride) {
    BufferBytes bytes;
    locate(buffer, bytes);
    if (byteOffset >= bytes.size || byteOffset < 0)
        SORVANE_THROW("Invalid value offset %d >= %d", static_cast<int>(byteOffset), static_cast<int>(bytes.size));
    if (valueSize < 1) SORVANE_THROW("Invalid value size %d", static_cast<int>(valueSize));
    if (byteStride >= 0 && byteStride != valueSize) SORVANE_THROW("Not implemented");
    int64_t count = bytes.size;
    int64_t end = 0;
    if (valueCount >= 0 && __builtin_mul_overflow(valueSize, valueCount, &count)) count = INT64_MAX;
    if (__builtin_add_overflow(count, byteOffset, &end) || end > bytes.size)
        SORVANE_THROW("Invalid value count %ld with offset %ld and value size %ld, e.g. %ld * %ld + %ld > %ld",
                      static_cast<long>(valueCount), static_cast<long>(byteOffset), static_cast<long>(valueSize),
                      static_cast<long>(valueCount), static_cast<long>(valueSize), static_cast<long>(byteOffset),
                      static_cast<long>(bytes.size));
    if (!out) return count;
    if (count > outSize)
        SORVANE_THROW("Output buffer size %ld < %ld", static_cast<long>(outSize), static_cast<long>(count));
    if (bytes.memory) {
        if (count) std::memcpy(out, bytes.memory + byteOffset, static_cast<size_t>(count));
    } else if (count) {
        bytes.provider->getRange(out, count, bytes.fileName, byteOffset);
    }
    return count;
}

int64_t BinaryData::getData(const BufferViewNode& view, void* out, int64_t outSize, int64_t byteOffset,
                            int64_t valueCount, int64_t valueSize) {
    try {
        const bool sizeGiven = valueSize >= 1;
        const bool countGiven = valueCount >= 0;
        const int64_t byteLength = view.getByteLength();
        if (byteOffset >= byteLength)
            SORVANE_THROW("Invalid offset %ld >= %ld", static_cast<long>(byteOffset), static_cast<long>(byteLength));
        const int64_t stride = view.hasByteStride() ? view.getByteStride() : 0;
        if (!sizeGiven) {
            if (countGiven) SORVANE_THROW("valueCount can't be defined if valueSize is not defined");
            if (stride != 0) SORVANE_THROW("valueSize must be defined if there is a byte stride in the buffer view");
        } else if (stride != 0 && stride != valueSize) {
            SORVANE_THROW("byteStrire != valueSize not implemented");
        }
        // Before any arithmetic with it: a very negative offset would overflow.
        if (byteOffset < 0) SORVANE_THROW("Invalid offset %ld", static_cast<long>(byteOffset));
        int64_t length = 0;
        if (!sizeGiven || !countGiven) {
            length = byteLength - byteOffset;
        } else if (__builtin_mul_overflow(valueSize, valueCount, &length)) {
            SORVANE_THROW("Invalid value count %ld", static_cast<long>(valueCount));
        } else {
            // Deliberately the count minus the offset (see docs/decisions.md).
            length -= byteOffset;
        }
        if (length < 0 || byteOffset < 0) SORVANE_THROW("Invalid offset %ld", static_cast<long>(byteOffset));
        if (length == 0) return 0;
        std::shared_ptr<RootNode> root = rootOf(view);
        const auto& buffers = root->getBuffers();
        if (!buffers) SORVANE_THROW("There is no buffers");
        int64_t offset = 0;
        if (__builtin_add_overflow(byteOffset, view.hasByteOffset() ? view.getByteOffset() : 0, &offset))
            SORVANE_THROW("Invalid offset %ld", static_cast<long>(byteOffset));
        return getData(*buffers->getByIndex(view.getBuffer()), out, outSize, offset, length, 1, -1);
    } catch (const std::exception& e) {
        SORVANE_THROW("Getting data from %s: %s", view.getNodePath().c_str(), e.what());
    }
}

int64_t BinaryData::getData(const AccessorNode& accessor, void* out, int64_t outSize) {
    ReadPlan plan;
    if (planRead(accessor, plan) && (!out || plan.length <= outSize)) {
        if (out && plan.length) std::memcpy(out, plan.source, static_cast<size_t>(plan.length));
        return plan.length;
    }
    const int64_t componentSize = accessorComponentType2size(accessor.getComponentType());
    std::shared_ptr<RootNode> root = rootOf(accessor);
    const BufferViewNode& view = viewOf(accessor, *root);
    const int64_t values = accessorValueCount(accessor);
    return getData(view, out, outSize, accessor.getByteOffset(), values, componentSize);
}

int64_t BinaryData::getDataSize(const AccessorNode& accessor) { return getData(accessor, nullptr, 0); }

const uint8_t* BinaryData::peekData(const AccessorNode& accessor, int64_t& length) {
    ReadPlan plan;
    if (!planRead(accessor, plan) || !plan.source) return nullptr;
    length = plan.length;
    return plan.source;
}

std::vector<long> BinaryData::getDims(const AccessorNode& accessor) {
    const long count = static_cast<long>(accessor.getCount());
    const std::string& type = accessor.getType();
    if (type == "SCALAR") return {count};
    if (type == "VEC2") return {count, 2};
    if (type == "VEC3") return {count, 3};
    if (type == "VEC4") return {count, 4};
    if (type == "MAT2") return {count, 2, 2};
    if (type == "MAT3") return {count, 3, 3};
    if (type == "MAT4") return {count, 4, 4};
    SORVANE_THROW("Accessor type %s is not a vector or is not supported", type.c_str());
}

namespace {

// The general read: every check words its failure.
DataTree readTensor(const AccessorNode& accessor) {
    const std::vector<long> dims = BinaryData::getDims(accessor);
    const ScalarType type = accessorComponentType2ScalarType(accessor.getComponentType());
    const int64_t bytes = accessorValueCount(accessor) * accessorComponentType2size(accessor.getComponentType());
    // Measured first: a count the buffer cannot hold fails before anything is allocated.
    BinaryData::getDataSize(accessor);
    void* block = allocateBlock(static_cast<size_t>(bytes));
    if (!block) SORVANE_THROW("Getting data from %s:\nOut of memory", accessor.getNodePath().c_str());
    try {
        const int64_t got = BinaryData::getData(accessor, block, bytes);
        if (got < bytes) std::memset(static_cast<uint8_t*>(block) + got, 0, static_cast<size_t>(bytes - got));
        return DataTree::createTensor(block, static_cast<long>(bytes), dims, type);
    } catch (...) {
        std::free(block);
        throw;
    }
}

} // namespace

DataTree BinaryData::getTensor(const AccessorNode& accessor) {
    ReadPlan plan;
    if (planRead(accessor, plan)) {
        if (std::shared_ptr<datatree::Node> tensor = tensorOf(accessor, plan, nullptr)) return DataTree(std::move(tensor));
    }
    return readTensor(accessor);
}

std::vector<DataTree> BinaryData::getTensors(const AccessorNodes& accessors) {
    const auto& items = accessors.getItems();
    std::vector<DataTree> tensors;
    tensors.reserve(items.size());
    // The document's lists and shared buffer are looked at once for all.
    SharedSource source;
    const RootNode* root = accessors.peekNodeRoot();
    const bool quick = root && sharedSourceOf(*root, source);
    datatree::TensorBatch batch;
    for (size_t i = 0; i < items.size(); ++i) {
        // The nodes the next reads need are asked for ahead: their fields are mostly not in the cache.
        if (i + 4 < items.size()) prefetchNode(items[i + 4].get());
        if (quick && i + 2 < items.size()) {
            if (const BufferViewNode* view = viewNamed(items[i + 2].get(), *source.views)) prefetchNode(view);
        }
        const AccessorNode& accessor = *items[i];
        ReadPlan plan;
        std::shared_ptr<datatree::Node> tensor;
        if (quick && planWithin(accessor, source, plan)) tensor = tensorOf(accessor, plan, &batch);
        if (tensor) tensors.emplace_back(std::move(tensor));
        else tensors.push_back(readTensor(accessor));
    }
    return tensors;
}

DataTree* BinaryData::getTensorPtr(const AccessorNode& accessor) { return new DataTree(getTensor(accessor)); }

DataTree BinaryData::getDataArray(const AccessorNode& accessor) {
    const auto path = [&] { return accessor.getNodePath(); };
    if (getDims(accessor).size() != 1) SORVANE_THROW("Getting data from %s:\nAccessor is not 1D", path().c_str());
    std::shared_ptr<RootNode> root = rootOf(accessor);
    const auto& views = root->getBufferViews();
    if (!views) SORVANE_THROW("Getting data from %s:\nThere is no buffer views", path().c_str());
    if (!accessor.hasBufferView()) SORVANE_THROW("Getting data from %s:\nBuffer view is not defined", path().c_str());
    const BufferViewNode& view = *views->getByIndex(accessor.getBufferView());
    const ScalarType type = accessorComponentType2ScalarType(accessor.getComponentType());
    const int64_t count = accessorValueCount(accessor);
    const int64_t size = getScalarSize(type);
    getData(view, nullptr, 0, accessor.getByteOffset(), count, size);
    std::unique_ptr<DataTree> made(DataTree::createArrayPtr(static_cast<long>(count), type));
    DataTree array = *made;
    getData(view, array.getBuffer(), array.getBufferSize(), accessor.getByteOffset(), count, size);
    return array;
}

std::string BinaryData::getString(const BufferNode& buffer, int64_t byteOffset, int64_t valueCount,
                                  int64_t valueSize, int64_t byteStride) {
    std::string text(static_cast<size_t>(getData(buffer, nullptr, 0, byteOffset, valueCount, valueSize, byteStride)),
                     '\0');
    getData(buffer, text.data(), static_cast<int64_t>(text.size()), byteOffset, valueCount, valueSize, byteStride);
    return text;
}

std::string BinaryData::getString(const BufferViewNode& view, int64_t byteOffset, int64_t valueCount,
                                  int64_t valueSize) {
    std::string text(static_cast<size_t>(getData(view, nullptr, 0, byteOffset, valueCount, valueSize)), '\0');
    getData(view, text.data(), static_cast<int64_t>(text.size()), byteOffset, valueCount, valueSize);
    return text;
}

int64_t BinaryData::clone(const BufferNode& buffer, RootNode& target) {
    const std::string bytes = getString(buffer, 0, -1, 1, -1);
    BufferNodes& buffers = target.buffers();
    const std::string fileName = target.findFreeFileName(nullptr, nullptr, buffers.getNodeSize(), ".bin");
    const std::string name = buffer.hasName() ? buffer.getName() : std::string();
    return buffers.addData(bytes.data(), static_cast<int64_t>(bytes.size()), fileName.c_str(),
                           buffer.hasName() ? name.c_str() : nullptr);
}

int64_t BinaryData::clone(const BufferViewNode& view, RootNode& target) {
    std::shared_ptr<RootNode> root = rootOf(view);
    const auto& buffers = root->getBuffers();
    if (!buffers) SORVANE_THROW("There is no buffers");
    const int64_t buffer = clone(*buffers->getByIndex(view.getBuffer()), target);
    const std::string name = view.hasName() ? view.getName() : std::string();
    std::optional<BufferViewTarget> bindTarget;
    if (view.hasTarget()) bindTarget = view.getTarget();
    return target.bufferViews().addBuffer(buffer, bindTarget, view.getByteLength(),
                                          view.hasByteOffset() ? view.getByteOffset() : 0,
                                          view.hasName() ? name.c_str() : nullptr);
}

int64_t BinaryData::clone(const AccessorNode& accessor, RootNode& target) {
    const std::string name = accessor.hasName() ? accessor.getName() : std::string();
    AccessorNodes& accessors = target.accessors();
    std::shared_ptr<AccessorNode> copy = accessors.add(accessor.getComponentType(), accessor.getCount(),
                                                        accessor.getType().c_str(),
                                                        accessor.hasName() ? name.c_str() : nullptr);
    if (accessor.hasBufferView()) {
        std::shared_ptr<RootNode> root = rootOf(accessor);
        copy->setBufferView(clone(viewOf(accessor, *root), target));
    }
    if (accessor.hasByteOffset()) copy->setByteOffset(accessor.getByteOffset());
    if (accessor.hasNormalized()) copy->setNormalized(accessor.getNormalized());
    if (accessor.hasMax()) copy->setMax(accessor.getMax());
    if (accessor.hasMin()) copy->setMin(accessor.getMin());
    return accessors.getNodeSize() - 1;
}

} // namespace sorvane::gltf2
