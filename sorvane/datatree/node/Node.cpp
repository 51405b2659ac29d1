#include "sorvane/datatree/node/Node.h"

#include <cmath>
#include <cstdlib>
#include <stdexcept>

#include "sorvane/archive/JsonImporter.h"
#include "sorvane/core/RuntimeException.h"
#include "sorvane/datatree/node/Array.h"
#include "sorvane/datatree/node/Boolean.h"
#include "sorvane/datatree/node/Float.h"
#include "sorvane/datatree/node/Integer.h"
#include "sorvane/datatree/node/List.h"
#include "sorvane/datatree/node/Null.h"
#include "sorvane/datatree/node/Object.h"
#include "sorvane/datatree/node/String.h"

namespace sorvane::datatree {

#define SORVANE_KIND_ERROR(what) SORVANE_THROW("a %s cannot be used as " what, kindName())

Node::~Node() = default;

const char* Node::kindName() const { return dataType2string(getType()); }

bool Node::isNull() const { return false; }
void Node::setNull(std::nullptr_t) { SORVANE_KIND_ERROR("a Null"); }

bool Node::isString() const { return false; }
const std::string& Node::getString() const { SORVANE_KIND_ERROR("a String"); }
void Node::setString(const std::string&) { SORVANE_KIND_ERROR("a String"); }

bool Node::isInteger() const { return false; }
long Node::getInteger() const { SORVANE_KIND_ERROR("an Integer"); }
void Node::setInteger(long) { SORVANE_KIND_ERROR("an Integer"); }

bool Node::isFloat() const { return false; }
double Node::getFloat() const { SORVANE_KIND_ERROR("a Float"); }
void Node::setFloat(double) { SORVANE_KIND_ERROR("a Float"); }

bool Node::isBoolean() const { return false; }
bool Node::getBoolean() const { SORVANE_KIND_ERROR("a Boolean"); }
void Node::setBoolean(bool) { SORVANE_KIND_ERROR("a Boolean"); }

bool Node::hasScalarType() const { return false; }
ScalarType Node::getScalarType() const { SORVANE_KIND_ERROR("a type with scalars"); }

long Node::getValueCount() const { SORVANE_KIND_ERROR("a type with a buffer"); }
long Node::getBufferSize() const { SORVANE_KIND_ERROR("a type with a buffer"); }
const void* Node::getBuffer() const { SORVANE_KIND_ERROR("a type with a buffer"); }
void* Node::getBuffer() { SORVANE_KIND_ERROR("a type with a buffer"); }
void* Node::releaseBuffer() { SORVANE_KIND_ERROR("a type with a buffer"); }
void* Node::allocBuffer(unsigned long size) const { return std::malloc(size); }
void Node::freeBuffer(void* buffer) const { std::free(buffer); }

bool Node::isArray() const { return false; }
void Node::resizeArrayData(long) { SORVANE_KIND_ERROR("an Array"); }
void Node::giveArrayData(void*, long, ScalarType) { SORVANE_KIND_ERROR("an Array"); }
void Node::setArrayData(const void*, long, ScalarType) { SORVANE_KIND_ERROR("an Array"); }

bool Node::isTensor() const { return false; }
long Node::getTensorDim() const { SORVANE_KIND_ERROR("a Tensor"); }
std::vector<long> Node::getTensorSizes() const { SORVANE_KIND_ERROR("a Tensor"); }
std::vector<long> Node::getTensorStrides(bool) const { SORVANE_KIND_ERROR("a Tensor"); }
long Node::getTensorSize(long) const { SORVANE_KIND_ERROR("a Tensor"); }
void Node::setTensorSizes(const std::vector<long>&) { SORVANE_KIND_ERROR("a Tensor"); }
void Node::giveTensorData(void*, const std::vector<long>&, ScalarType) { SORVANE_KIND_ERROR("a Tensor"); }
void Node::setTensorData(const void*, const std::vector<long>&, ScalarType) { SORVANE_KIND_ERROR("a Tensor"); }
Node* Node::getSubTensor(long) const { SORVANE_KIND_ERROR("a Tensor"); }

bool Node::isObject() const { return false; }
bool Node::hasItem(const std::string&) const { SORVANE_KIND_ERROR("an Object"); }
std::vector<std::string> Node::getItemNames() const { SORVANE_KIND_ERROR("an Object"); }
const DataTree& Node::getItem(const std::string&) const { SORVANE_KIND_ERROR("an Object"); }
DataTree& Node::getItem(const std::string&) { SORVANE_KIND_ERROR("an Object"); }
void Node::setItem(const std::string&, const DataTree&) { SORVANE_KIND_ERROR("an Object"); }
void Node::removeItem(const std::string&) { SORVANE_KIND_ERROR("an Object"); }

bool Node::isList() const { return false; }
std::vector<std::string> Node::getStringVector() const { SORVANE_KIND_ERROR("a List"); }
const DataTree& Node::getItem(long) const { SORVANE_KIND_ERROR("a List"); }
DataTree& Node::getItem(long) { SORVANE_KIND_ERROR("a List"); }
void Node::addItem(const DataTree&) { SORVANE_KIND_ERROR("a List"); }
void Node::insertItem(long, const DataTree&) { SORVANE_KIND_ERROR("a List"); }
void Node::setItem(long, const DataTree&) { SORVANE_KIND_ERROR("a List"); }
void Node::setItems(const std::vector<std::string>&) { SORVANE_KIND_ERROR("a List"); }
void Node::removeItem(long) { SORVANE_KIND_ERROR("a List"); }

bool Node::isEmpty() const { return getSize() == 0; }
long Node::getSize() const { SORVANE_KIND_ERROR("a container"); }
void Node::removeItems() { SORVANE_KIND_ERROR("a container"); }

bool Node::canConvertToArray() const {
    return canConvertToFloatArray(ScalarType::Double) || canConvertToIntegerArray(ScalarType::Integer64);
}
bool Node::canConvertToIntegerArray(ScalarType) const { return false; }
bool Node::canConvertToFloatArray(ScalarType) const { return false; }

Node* Node::convertToArray() const {
    if (canConvertToIntegerArray(ScalarType::Integer64)) return convertToIntegerArray(ScalarType::Integer64);
    if (canConvertToFloatArray(ScalarType::Double)) return convertToFloatArray(ScalarType::Double);
    throw std::runtime_error("Can't convert to an array");
}
Node* Node::convertToArray(ScalarType type) const {
    SORVANE_THROW("Can't convert %s to an array of %s", kindName(), scalarType2string(type));
}
Node* Node::convertToIntegerArray(ScalarType) const { SORVANE_THROW("Can't convert %s to an integer array", kindName()); }
Node* Node::convertToFloatArray(ScalarType) const { SORVANE_THROW("Can't convert %s to a float array", kindName()); }
Node* Node::convertScalarType(ScalarType) const { SORVANE_THROW("Can't convert %s scalar type", kindName()); }

void Node::fromJson(archive::JsonImporter&, DataTreeImport) { SORVANE_THROW("Not implemented"); }
void Node::toJson(archive::JsonExporter&) const { SORVANE_THROW("Not implemented"); }

namespace {

thread_local int jsonDepth = 0;

// Counts the nesting of containers being read, so that hostile input cannot
// exhaust the stack.
struct DepthGuard {
    explicit DepthGuard(archive::JsonImporter& importer) {
        if (jsonDepth >= Node::kMaxJsonDepth)
            SORVANE_THROW("Unsupported or invalid object at line %d", static_cast<int>(importer.getLine()));
        ++jsonDepth;
    }
    ~DepthGuard() { --jsonDepth; }
};

template <class T>
Node* readContainer(archive::JsonImporter& importer, DataTreeImport flags) {
    DepthGuard depth(importer);
    importer.rollback();
    auto* node = new T();
    try {
        node->fromJson(importer, flags);
    } catch (...) {
        delete node;
        throw;
    }
    return node;
}

// An integral value that fits 64 bits becomes an Integer. 2^63 itself passes
// the range test and takes the value cvttsd2si gives it, the lowest one.
Node* numberNode(double value) {
    if (value == std::floor(value) && value >= -9223372036854775808.0 && value <= 9223372036854775808.0) {
        if (value >= 9223372036854775808.0) return new Integer(INT64_MIN);
        return new Integer(static_cast<long>(value));
    }
    return new Float(value);
}

} // namespace

Node* Node::nextItem(archive::JsonImporter& importer, DataTreeImport flags) {
    if (importer.nextNull()) return new Null();
    if (auto number = importer.nextNumber()) return numberNode(*number);
    if (auto boolean = importer.nextBoolean()) return new Boolean(*boolean);
    {
        std::string text;
        if (importer.nextString(text)) return new String(std::move(text));
    }
    if (!(flags & DATATREE_IMPORT_KEEP_NUMBER_LISTS)) {
        {
            std::vector<int64_t> integers;
            if (importer.nextIntegerList(integers))
                return new Array(integers.data(), static_cast<long>(integers.size()), ScalarType::Integer64);
        }
        std::vector<double> numbers;
        if (importer.nextNumberList(numbers))
            return new Array(numbers.data(), static_cast<long>(numbers.size()), ScalarType::Double);
    }
    if (importer.peekBeginArray()) return readContainer<List>(importer, flags);
    importer.rollback();
    if (importer.peekBeginObject()) return readContainer<Object>(importer, flags);
    importer.rollback();
    SORVANE_THROW("Unsupported or invalid object at line %d", static_cast<int>(importer.getLine()));
}

} // namespace sorvane::datatree
