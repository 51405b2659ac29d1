#include "sorvane/datatree/DataTree.h"

#include <cfloat>
#include <cstring>
#include <stdexcept>

#include "sorvane/core/RuntimeException.h"
#include "sorvane/datatree/node/Array.h"
#include "sorvane/datatree/node/Boolean.h"
#include "sorvane/datatree/node/Buffers.h"
#include "sorvane/datatree/node/Float.h"
#include "sorvane/datatree/node/Integer.h"
#include "sorvane/datatree/node/List.h"
#include "sorvane/datatree/node/Null.h"
#include "sorvane/datatree/node/Object.h"
#include "sorvane/datatree/node/String.h"
#include "sorvane/datatree/node/Tensor.h"

namespace sorvane {

using namespace datatree;

DataTree::DataTree() : node(std::make_shared<Null>()) {}
DataTree::DataTree(std::nullptr_t) : node(std::make_shared<Null>()) {}
DataTree::DataTree(const char* value) : node(std::make_shared<String>(std::string(value))) {}
DataTree::DataTree(const std::string& value) : node(std::make_shared<String>(value)) {}
DataTree::DataTree(long value) : node(std::make_shared<Integer>(value)) {}
DataTree::DataTree(int value) : node(std::make_shared<Integer>(static_cast<long>(value))) {}
DataTree::DataTree(unsigned int value) : node(std::make_shared<Integer>(static_cast<long>(value))) {}
DataTree::DataTree(double value) : node(std::make_shared<Float>(value)) {}
DataTree::DataTree(bool value) : node(std::make_shared<Boolean>(value)) {}
DataTree::DataTree(Node* newNode) : node(newNode) {}
DataTree::DataTree(std::shared_ptr<Node> newNode) : node(std::move(newNode)) {
    if (!node) node = std::make_shared<Null>();
}

DataTree::DataTree(DataTreeType type, ScalarType scalarType) {
    switch (type) {
    case DataTreeType::Null: node = std::make_shared<Null>(); break;
    case DataTreeType::String: node = std::make_shared<String>(); break;
    case DataTreeType::Integer: node = std::make_shared<Integer>(0L); break;
    case DataTreeType::Float: node = std::make_shared<Float>(0.0); break;
    case DataTreeType::Boolean: node = std::make_shared<Boolean>(false); break;
    case DataTreeType::Array: node = std::make_shared<Array>(scalarType); break;
    case DataTreeType::Tensor: node = std::make_shared<Tensor>(scalarType); break;
    case DataTreeType::Object: node = std::make_shared<Object>(); break;
    case DataTreeType::List: node = std::make_shared<List>(); break;
    default: throw std::runtime_error("Invalid or unsupported data type");
    }
}

DataTree::DataTree(std::initializer_list<DataTree> items) { init(items); }

void DataTree::init(std::initializer_list<DataTree> items) {
    bool pairs = true;
    for (const DataTree& item : items) {
        if (!item.isList() || item.getSize() != 2 || !item.getItem(0L).isString()) {
            pairs = false;
            break;
        }
    }
    if (pairs) {
        auto object = std::make_shared<Object>();
        for (const DataTree& item : items) object->setItem(item.getItem(0L).getString(), item.getItem(1L));
        node = object;
    } else {
        auto list = std::make_shared<List>();
        for (const DataTree& item : items) list->addItem(item);
        node = list;
    }
}

void DataTree::reset(Node* newNode) { node.reset(newNode); }

DataTree DataTree::createNull() { return DataTree(); }
DataTree* DataTree::createNullPtr() { return new DataTree(); }
DataTree DataTree::createBoolean(bool value) { return DataTree(value); }
DataTree* DataTree::createBooleanPtr(bool value) { return new DataTree(value); }
DataTree DataTree::createInteger(int value) { return DataTree(static_cast<long>(value)); }
DataTree DataTree::createInteger(unsigned int value) { return DataTree(static_cast<long>(value)); }
DataTree DataTree::createInteger(signed char value) { return DataTree(static_cast<long>(value)); }
DataTree DataTree::createInteger(short value) { return DataTree(static_cast<long>(value)); }
DataTree DataTree::createInteger(unsigned short value) { return DataTree(static_cast<long>(value)); }
DataTree DataTree::createInteger(unsigned char value) { return DataTree(static_cast<long>(value)); }
DataTree DataTree::createInteger(long value) { return DataTree(value); }
DataTree* DataTree::createIntegerPtr(long value) { return new DataTree(value); }
DataTree DataTree::createFloat(double value) { return DataTree(value); }
DataTree* DataTree::createFloatPtr(double value) { return new DataTree(value); }
DataTree DataTree::createString(const std::string& value) { return DataTree(value); }
DataTree DataTree::createString(const char* value) { return DataTree(value); }
DataTree* DataTree::createStringPtr(const char* value) { return new DataTree(value); }
DataTree DataTree::createList() { return DataTree(new List()); }
DataTree* DataTree::createListPtr() { return new DataTree(new List()); }
DataTree DataTree::createObject() { return DataTree(new Object()); }
DataTree* DataTree::createObjectPtr() { return new DataTree(new Object()); }
DataTree DataTree::createArray(ScalarType type) { return DataTree(new Array(type)); }
DataTree DataTree::createArray(int count, ScalarType type) { return DataTree(new Array(static_cast<long>(count), type)); }
DataTree* DataTree::createArrayPtr(long count, ScalarType type) {
    DataTree tree(new Array(count, type));
    return new DataTree(tree);
}
DataTree DataTree::createArray(const void* data, long count, ScalarType type) {
    return DataTree(new Array(data, count, type));
}
DataTree* DataTree::createArrayPtr(const void* data, long dataSize, long count, ScalarType type) {
    const long element = getScalarSize(type);
    long needed = 0;
    if (count >= 0 && (__builtin_mul_overflow(element, count, &needed) || needed > dataSize))
        SORVANE_THROW("Invalid data size");
    DataTree tree(new Array(data, count, type));
    return new DataTree(tree);
}
DataTree DataTree::createTensor(ScalarType type) { return DataTree(new Tensor(type)); }
DataTree DataTree::createTensor(const std::vector<long>& sizes, ScalarType type) {
    return DataTree(new Tensor(sizes, type));
}
DataTree* DataTree::createTensorPtr(const std::vector<long>& sizes, ScalarType type) {
    DataTree tree(new Tensor(sizes, type));
    return new DataTree(tree);
}
DataTree DataTree::createTensor(const void* data, long dataSize, const std::vector<long>& sizes, ScalarType type) {
    return DataTree(new Tensor(data, dataSize, sizes, type));
}
DataTree DataTree::createTensor(void* data, long dataSize, const std::vector<long>& sizes, ScalarType type) {
    return DataTree(new Tensor(data, dataSize, sizes, type));
}

namespace {

std::vector<long> sizesOf(const long* sizes, long dimCount) {
    if (dimCount < 0) SORVANE_THROW("Invalid size %ld", dimCount);
    if (!sizes && dimCount > 0) SORVANE_THROW("sizes is NULL");
    return std::vector<long>(sizes, sizes + dimCount);
}

} // namespace

DataTree DataTree::createTensor(const void* data, long dataSize, const long* sizes, long dimCount, ScalarType type) {
    return DataTree(new Tensor(data, dataSize, sizesOf(sizes, dimCount), type));
}
DataTree* DataTree::createTensorPtr(const void* data, long dataSize, const long* sizes, long dimCount,
                                    ScalarType type) {
    DataTree tree(new Tensor(data, dataSize, sizesOf(sizes, dimCount), type));
    return new DataTree(tree);
}

DataTree DataTree::createFromJson(archive::JsonImporter& importer, DataTreeImport flags) {
    return DataTree(Node::nextItem(importer, flags));
}
DataTree* DataTree::createFromJsonPtr(archive::JsonImporter& importer, DataTreeImport flags) {
    DataTree tree(Node::nextItem(importer, flags));
    return new DataTree(tree);
}

void DataTree::setNull(std::nullptr_t) {
    if (!node->isNull()) node = std::make_shared<Null>();
}

void DataTree::setInteger(long value) {
    if (node->isInteger()) node->setInteger(value);
    else node = std::make_shared<Integer>(value);
}

void DataTree::setFloat(double value) {
    if (node->isFloat()) node->setFloat(value);
    else node = std::make_shared<Float>(value);
}

void DataTree::setBoolean(bool value) {
    if (node->isBoolean()) node->setBoolean(value);
    else node = std::make_shared<Boolean>(value);
}

void DataTree::setString(const std::string& value) {
    if (node->isString()) node->setString(value);
    else node = std::make_shared<String>(value);
}

void DataTree::setItems(const std::vector<std::string>& items) {
    if (node->isList()) {
        node->setItems(items);
    } else {
        auto list = std::make_shared<List>();
        list->setItems(items);
        node = list;
    }
}

void DataTree::setArrayData(const void* data, long count, ScalarType type) {
    if (node->isArray()) node->setArrayData(data, count, type);
    else node = std::make_shared<Array>(data, count, type);
}

void DataTree::giveArrayData(void* data, long count, ScalarType type) {
    if (node->isArray()) {
        node->giveArrayData(data, count, type);
    } else {
        auto array = std::make_shared<Array>(type);
        array->giveArrayData(data, count, type);
        node = array;
    }
}

namespace {

// The byte size is checked also when the node is already a Tensor: the
// bytes the sizes need are read or owned, whoever holds the node.
void checkTensorBytes(long dataSize, const std::vector<long>& sizes, ScalarType type) {
    const size_t bytes = datatree::detail::byteCount(datatree::detail::valueCount(sizes), type);
    if (dataSize < 0 || bytes > static_cast<size_t>(dataSize)) SORVANE_THROW("Invalid buffer size");
}

} // namespace

void DataTree::setTensorData(const void* data, long dataSize, const std::vector<long>& sizes, ScalarType type) {
    if (node->isTensor()) {
        checkTensorBytes(dataSize, sizes, type);
        node->setTensorData(data, sizes, type);
    } else {
        node = std::make_shared<Tensor>(data, dataSize, sizes, type);
    }
}

void DataTree::giveTensorData(void* data, long dataSize, const std::vector<long>& sizes, ScalarType type) {
    if (node->isTensor()) {
        checkTensorBytes(dataSize, sizes, type);
        node->giveTensorData(data, sizes, type);
    } else {
        node = std::make_shared<Tensor>(data, dataSize, sizes, type);
    }
}

DataTree& DataTree::operator[](const std::string& name) {
    if (!node->hasItem(name)) node->setItem(name, DataTree());
    return node->getItem(name);
}

namespace {

template <class T>
struct ScalarOf;
template <> struct ScalarOf<unsigned char> { static constexpr ScalarType value = ScalarType::UInteger8; };
template <> struct ScalarOf<signed char> { static constexpr ScalarType value = ScalarType::Integer8; };
template <> struct ScalarOf<unsigned short> { static constexpr ScalarType value = ScalarType::UInteger16; };
template <> struct ScalarOf<short> { static constexpr ScalarType value = ScalarType::Integer16; };
template <> struct ScalarOf<unsigned int> { static constexpr ScalarType value = ScalarType::UInteger32; };
template <> struct ScalarOf<int> { static constexpr ScalarType value = ScalarType::Integer32; };
template <> struct ScalarOf<unsigned long> { static constexpr ScalarType value = ScalarType::UInteger64; };
template <> struct ScalarOf<long> { static constexpr ScalarType value = ScalarType::Integer64; };
template <> struct ScalarOf<float> { static constexpr ScalarType value = ScalarType::Float; };
template <> struct ScalarOf<double> { static constexpr ScalarType value = ScalarType::Double; };

template <class T>
void checkType(const Node& node) {
    if (node.getScalarType() != ScalarOf<T>::value) SORVANE_THROW("Invalid scalar type");
}

} // namespace

#define SORVANE_GET_DATA(T)                                                        \
    template <> T* DataTree::getData<T>() {                                        \
        checkType<T>(*node);                                                       \
        return static_cast<T*>(node->getBuffer());                                 \
    }                                                                              \
    template <> const T* DataTree::getData<T>() const {                            \
        checkType<T>(*node);                                                       \
        return static_cast<const T*>(static_cast<const Node&>(*node).getBuffer()); \
    }
SORVANE_GET_DATA(unsigned char)
SORVANE_GET_DATA(signed char)
SORVANE_GET_DATA(unsigned short)
SORVANE_GET_DATA(short)
SORVANE_GET_DATA(unsigned int)
SORVANE_GET_DATA(int)
SORVANE_GET_DATA(unsigned long)
SORVANE_GET_DATA(long)
SORVANE_GET_DATA(float)
SORVANE_GET_DATA(double)
#undef SORVANE_GET_DATA

namespace {

template <class T>
std::vector<float> integersToFloats(const void* buffer, long count) {
    std::vector<float> values(static_cast<size_t>(count));
    const T* source = static_cast<const T*>(buffer);
    for (long i = 0; i < count; ++i) {
        const float value = static_cast<float>(source[i]);
        if (value < -FLT_MAX || value > FLT_MAX) throw std::overflow_error("Overflow in scalar conversion");
        values[static_cast<size_t>(i)] = value;
    }
    return values;
}

} // namespace

template <>
std::vector<float> DataTree::getVector<float>() const {
    const ScalarType type = node->getScalarType();
    const long count = node->getSize();
    const void* buffer = cnode().getBuffer();
    if (count > 0 && !buffer) SORVANE_THROW("Unsupported conversion");
    switch (type) {
    case ScalarType::UInteger8: return integersToFloats<unsigned char>(buffer, count);
    case ScalarType::Integer8: return integersToFloats<signed char>(buffer, count);
    case ScalarType::UInteger16: return integersToFloats<unsigned short>(buffer, count);
    case ScalarType::Integer16: return integersToFloats<short>(buffer, count);
    case ScalarType::UInteger32: return integersToFloats<unsigned int>(buffer, count);
    case ScalarType::Integer32: return integersToFloats<int>(buffer, count);
    case ScalarType::UInteger64: return integersToFloats<unsigned long>(buffer, count);
    case ScalarType::Integer64: return integersToFloats<long>(buffer, count);
    case ScalarType::Float: {
        std::vector<float> values(static_cast<size_t>(count));
        if (count > 0) std::memcpy(values.data(), buffer, static_cast<size_t>(count) * sizeof(float));
        return values;
    }
    case ScalarType::Double: {
        // Narrowing without a check; values past the Float range round to
        // infinity through the buffer conversion rather than an undefined cast.
        std::vector<float> values(static_cast<size_t>(count));
        convertBufferScalarType(values.data(), ScalarType::Float, buffer, ScalarType::Double, count);
        return values;
    }
    default: SORVANE_THROW("Unsupported conversion");
    }
}

DataTree& DataTree::convertScalarType(ScalarType type) {
    if (!node->hasScalarType()) SORVANE_THROW("Can't convert scalar type since this item has no scalars");
    if (node->getScalarType() == type) return *this;
    node.reset(node->convertScalarType(type));
    return *this;
}

DataTree& DataTree::convertToIntegerArray(ScalarType type) {
    if (node->isArray()) {
        if (node->getScalarType() != type) node.reset(node->convertScalarType(type));
        return *this;
    }
    node.reset(node->convertToIntegerArray(type));
    return *this;
}

DataTree& DataTree::convertToFloatArray(ScalarType type) {
    if (node->isArray()) {
        if (node->getScalarType() != type) node.reset(node->convertScalarType(type));
        return *this;
    }
    node.reset(node->convertToFloatArray(type));
    return *this;
}

void DataTree::removeArrayValue(long index) {
    // Anything but an Array fails here, before an element has moved.
    if (!node->isArray()) node->resizeArrayData(1);
    const long size = node->getSize();
    if (index < 0 || index >= size) SORVANE_THROW("Invalid array index %ld", index);
    const long element = getScalarSize(node->getScalarType());
    auto* bytes = static_cast<unsigned char*>(node->getBuffer());
    if (bytes && index + 1 < size)
        std::memmove(bytes + index * element, bytes + (index + 1) * element,
                     static_cast<size_t>((size - index - 1) * element));
    node->resizeArrayData(size - 1);
}

namespace {

enum class Operation { Add, Subtract, Multiply, Divide };

// Integers wrap in their own width: computed unsigned, stored back.
template <class T>
T apply(Operation operation, T a, T b) {
    if constexpr (std::is_integral_v<T>) {
        using U = std::make_unsigned_t<T>;
        switch (operation) {
        case Operation::Add: return static_cast<T>(static_cast<U>(static_cast<U>(a) + static_cast<U>(b)));
        case Operation::Subtract: return static_cast<T>(static_cast<U>(static_cast<U>(a) - static_cast<U>(b)));
        case Operation::Multiply: return static_cast<T>(static_cast<U>(static_cast<U>(a) * static_cast<U>(b)));
        case Operation::Divide:
            // The one signed overflow of division wraps like the others.
            if constexpr (std::is_signed_v<T>) {
                if (b == T(-1)) return static_cast<T>(static_cast<U>(U(0) - static_cast<U>(a)));
            }
            if (b == T(0)) SORVANE_THROW("Division by zero");
            return static_cast<T>(a / b);
        }
        return a;
    } else {
        switch (operation) {
        case Operation::Add: return a + b;
        case Operation::Subtract: return a - b;
        case Operation::Multiply: return a * b;
        case Operation::Divide: return a / b;
        }
        return a;
    }
}

template <class T>
void elementWise(DataTree& left, const DataTree& right, Operation operation) {
    const T* b = right.getData<T>();
    T* a = static_cast<T*>(left.getBuffer());
    const long count = left.getValueCount();
    if (!a || !b) return;
    for (long i = 0; i < count; ++i) a[i] = apply<T>(operation, a[i], b[i]);
}

void arithmetic(DataTree& left, const DataTree& right, Operation operation) {
    const long leftCount = left.getValueCount();
    const long rightCount = right.getValueCount();
    if (leftCount != rightCount) SORVANE_THROW("Different value counts %ld != %ld", leftCount, rightCount);
    const ScalarType type = left.getScalarType();
    switch (type) {
    case ScalarType::UInteger8: elementWise<unsigned char>(left, right, operation); break;
    case ScalarType::Integer8: elementWise<signed char>(left, right, operation); break;
    case ScalarType::UInteger16: elementWise<unsigned short>(left, right, operation); break;
    case ScalarType::Integer16: elementWise<short>(left, right, operation); break;
    case ScalarType::UInteger32: elementWise<unsigned int>(left, right, operation); break;
    case ScalarType::Integer32: elementWise<int>(left, right, operation); break;
    case ScalarType::UInteger64: elementWise<unsigned long>(left, right, operation); break;
    case ScalarType::Integer64: elementWise<long>(left, right, operation); break;
    case ScalarType::Float: elementWise<float>(left, right, operation); break;
    case ScalarType::Double: elementWise<double>(left, right, operation); break;
    default: SORVANE_THROW("Invalid or unsupported scalar type '%s'", scalarType2string(type));
    }
}

} // namespace

DataTree& DataTree::operator+=(const DataTree& other) {
    arithmetic(*this, other, Operation::Add);
    return *this;
}
DataTree& DataTree::operator-=(const DataTree& other) {
    arithmetic(*this, other, Operation::Subtract);
    return *this;
}
DataTree& DataTree::operator*=(const DataTree& other) {
    arithmetic(*this, other, Operation::Multiply);
    return *this;
}
DataTree& DataTree::operator/=(const DataTree& other) {
    arithmetic(*this, other, Operation::Divide);
    return *this;
}

void DataTree::showTensorSizes(std::ostream& out) const {
    const std::vector<long> sizes = node->getTensorSizes();
    for (size_t i = 0; i < sizes.size(); ++i) {
        if (i > 0) out << ',';
        out << sizes[i];
    }
}

} // namespace sorvane
