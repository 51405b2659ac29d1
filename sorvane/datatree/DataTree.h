#ifndef SORVANE_DATATREE_DATATREE_H
#define SORVANE_DATATREE_DATATREE_H

#include <cstddef>
#include <initializer_list>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "sorvane/core/Export.h"
#include "sorvane/datatree/ScalarType.h"
#include "sorvane/datatree/node/Node.h"

namespace sorvane {

namespace archive {
class JsonImporter;
class JsonExporter;
} // namespace archive

// A handle on a shared value. Copying a handle shares the node: both see the
// same value. Node::clone is the one deep copy. A handle is never empty.
class SORVANE_API DataTree {
public:
    DataTree();
    DataTree(std::nullptr_t);
    DataTree(const char* value);
    DataTree(const std::string& value);
    DataTree(long value);
    DataTree(int value);
    DataTree(unsigned int value);
    DataTree(double value);
    DataTree(bool value);
    // The empty value of a kind; Array and Tensor take the scalar type.
    DataTree(DataTreeType type, ScalarType scalarType);
    // An Object when the list is empty or every element is a two-item List
    // starting with a String (key, value); a List of the elements otherwise.
    DataTree(std::initializer_list<DataTree> items);
    // Takes ownership of the node.
    explicit DataTree(datatree::Node* node);
    explicit DataTree(std::shared_ptr<datatree::Node> node);

    // Factories; the Ptr forms return a new heap handle owned by the caller.
    static DataTree createNull();
    static DataTree* createNullPtr();
    static DataTree createBoolean(bool value);
    static DataTree* createBooleanPtr(bool value);
    static DataTree createInteger(int value);
    static DataTree createInteger(unsigned int value);
    static DataTree createInteger(signed char value);
    static DataTree createInteger(short value);
    static DataTree createInteger(unsigned short value);
    static DataTree createInteger(unsigned char value);
    static DataTree createInteger(long value);
    static DataTree* createIntegerPtr(long value);
    static DataTree createFloat(double value);
    static DataTree* createFloatPtr(double value);
    static DataTree createString(const std::string& value);
    static DataTree createString(const char* value);
    static DataTree* createStringPtr(const char* value);
    static DataTree createList();
    static DataTree* createListPtr();
    static DataTree createObject();
    static DataTree* createObjectPtr();
    static DataTree createArray(ScalarType type);
    static DataTree createArray(int count, ScalarType type);
    static DataTree* createArrayPtr(long count, ScalarType type);
    static DataTree createArray(const void* data, long count, ScalarType type);
    // "Invalid data size" when count elements need more than dataSize bytes.
    static DataTree* createArrayPtr(const void* data, long dataSize, long count, ScalarType type);
    static DataTree createTensor(ScalarType type);
    static DataTree createTensor(const std::vector<long>& sizes, ScalarType type);
    static DataTree* createTensorPtr(const std::vector<long>& sizes, ScalarType type);
    // Copies the bytes.
    static DataTree createTensor(const void* data, long dataSize, const std::vector<long>& sizes, ScalarType type);
    // Takes the malloc block.
    static DataTree createTensor(void* data, long dataSize, const std::vector<long>& sizes, ScalarType type);
    static DataTree createTensor(const void* data, long dataSize, const long* sizes, long dimCount, ScalarType type);
    static DataTree* createTensorPtr(const void* data, long dataSize, const long* sizes, long dimCount,
                                     ScalarType type);
    static DataTree createFromJson(archive::JsonImporter& importer, DataTreeImport flags = DATATREE_IMPORT_DEFAULT);
    static DataTree* createFromJsonPtr(archive::JsonImporter& importer,
                                       DataTreeImport flags = DATATREE_IMPORT_DEFAULT);

    datatree::Node& getNode() const { return *node; }
    const std::shared_ptr<datatree::Node>& getNodeRef() const { return node; }
    // Points this handle (only) at another node.
    void reset(datatree::Node* newNode);

    // Setters: in place when the node already is of that kind (every sharing
    // handle sees it), else this handle alone moves to a new node.
    void setNull(std::nullptr_t = nullptr);
    void setInteger(long value);
    void setFloat(double value);
    void setBoolean(bool value);
    void setString(const std::string& value);
    void setItems(const std::vector<std::string>& items);
    void setArrayData(const void* data, long count, ScalarType type);
    void giveArrayData(void* data, long count, ScalarType type);
    void setTensorData(const void* data, long dataSize, const std::vector<long>& sizes, ScalarType type);
    void giveTensorData(void* data, long dataSize, const std::vector<long>& sizes, ScalarType type);

    // Forwarded to the node.
    DataTreeType getType() const { return node->getType(); }
    bool equals(const DataTree& other) const { return node->equals(*other.node); }
    bool operator==(const DataTree& other) const { return equals(other); }
    bool operator!=(const DataTree& other) const { return !equals(other); }
    bool isNull() const { return node->isNull(); }
    bool isString() const { return node->isString(); }
    const std::string& getString() const { return node->getString(); }
    bool isInteger() const { return node->isInteger(); }
    long getInteger() const { return node->getInteger(); }
    bool isFloat() const { return node->isFloat(); }
    double getFloat() const { return node->getFloat(); }
    bool isBoolean() const { return node->isBoolean(); }
    bool getBoolean() const { return node->getBoolean(); }
    bool hasScalarType() const { return node->hasScalarType(); }
    ScalarType getScalarType() const { return node->getScalarType(); }
    long getValueCount() const { return node->getValueCount(); }
    long getBufferSize() const { return node->getBufferSize(); }
    const void* getBuffer() const { return static_cast<const datatree::Node&>(*node).getBuffer(); }
    void* getBuffer() { return node->getBuffer(); }
    void* releaseBuffer() { return node->releaseBuffer(); }
    bool isArray() const { return node->isArray(); }
    void resizeArrayData(long size) { node->resizeArrayData(size); }
    bool isTensor() const { return node->isTensor(); }
    long getTensorDim() const { return node->getTensorDim(); }
    std::vector<long> getTensorSizes() const { return node->getTensorSizes(); }
    std::vector<long> getTensorStrides(bool inBytes) const { return node->getTensorStrides(inBytes); }
    long getTensorSize(long dim) const { return node->getTensorSize(dim); }
    void setTensorSizes(const std::vector<long>& sizes) { node->setTensorSizes(sizes); }
    DataTree getSubTensor(long index) const { return DataTree(node->getSubTensor(index)); }
    bool isObject() const { return node->isObject(); }
    bool hasItem(const std::string& name) const { return node->hasItem(name); }
    std::vector<std::string> getItemNames() const { return node->getItemNames(); }
    const DataTree& getItem(const std::string& name) const { return cnode().getItem(name); }
    DataTree& getItem(const std::string& name) { return node->getItem(name); }
    void setItem(const std::string& name, const DataTree& item) { node->setItem(name, item); }
    void removeItem(const std::string& name) { node->removeItem(name); }
    bool isList() const { return node->isList(); }
    std::vector<std::string> getStringVector() const { return node->getStringVector(); }
    const DataTree& getItem(long index) const { return cnode().getItem(index); }
    DataTree& getItem(long index) { return node->getItem(index); }
    const DataTree& getItem(int index) const { return cnode().getItem(static_cast<long>(index)); }
    DataTree& getItem(int index) { return node->getItem(static_cast<long>(index)); }
    void addItem(const DataTree& item) { node->addItem(item); }
    void insertItem(long index, const DataTree& item) { node->insertItem(index, item); }
    void setItem(long index, const DataTree& item) { node->setItem(index, item); }
    void removeItem(long index) { node->removeItem(index); }
    bool isEmpty() const { return node->isEmpty(); }
    long getSize() const { return node->getSize(); }
    void removeItems() { node->removeItems(); }
    bool canConvertToArray() const { return node->canConvertToArray(); }
    bool canConvertToIntegerArray(ScalarType type) const { return node->canConvertToIntegerArray(type); }
    bool canConvertToFloatArray(ScalarType type) const { return node->canConvertToFloatArray(type); }
    DataTree convertToArray() const { return DataTree(node->convertToArray()); }
    DataTree convertToArray(ScalarType type) const { return DataTree(node->convertToArray(type)); }
    void toJson(archive::JsonExporter& exporter) const { node->toJson(exporter); }

    // Object access that adds a Null item under a missing name.
    DataTree& operator[](const std::string& name);

    // The buffer as T*; "Invalid scalar type" unless the element type is T's.
    template <class T>
    T* getData();
    template <class T>
    const T* getData() const;

    // Array or Tensor values as floats (only float is provided).
    template <class T>
    std::vector<T> getVector() const;

    // Re-seat this handle on a converted node; no change when the type is
    // already the wanted one. Other handles keep the old value.
    DataTree& convertScalarType(ScalarType type);
    DataTree& convertToIntegerArray(ScalarType type);
    DataTree& convertToFloatArray(ScalarType type);

    void removeArrayValue(long index);

    // Element-wise, in place in this node; same count and element type.
    DataTree& operator+=(const DataTree& other);
    DataTree& operator-=(const DataTree& other);
    DataTree& operator*=(const DataTree& other);
    DataTree& operator/=(const DataTree& other);

    // The sizes joined by "," (no blanks, no line end).
    void showTensorSizes(std::ostream& out) const;

    // The JSON text, as a file would hold it.
    std::string toJsonString() const;
    // Writes the JSON to a stream through an exporter built on it.
    void toJson(std::ostream& stream) const;

private:
    const datatree::Node& cnode() const { return *node; }
    void init(std::initializer_list<DataTree> items);

    std::shared_ptr<datatree::Node> node;
};

SORVANE_API std::ostream& operator<<(std::ostream& out, const DataTree& tree);

// DataTree files: one JSON value.
SORVANE_API DataTree loadDataTree(const char* path, DataTreeImport flags = DATATREE_IMPORT_DEFAULT);
SORVANE_API DataTree* loadDataTreePtr(const char* path, DataTreeImport flags = DATATREE_IMPORT_DEFAULT);
SORVANE_API void saveDataTree(const char* path, const DataTree& tree);

template <> unsigned char* DataTree::getData<unsigned char>();
template <> signed char* DataTree::getData<signed char>();
template <> unsigned short* DataTree::getData<unsigned short>();
template <> short* DataTree::getData<short>();
template <> unsigned int* DataTree::getData<unsigned int>();
template <> int* DataTree::getData<int>();
template <> unsigned long* DataTree::getData<unsigned long>();
template <> long* DataTree::getData<long>();
template <> float* DataTree::getData<float>();
template <> double* DataTree::getData<double>();
template <> const unsigned char* DataTree::getData<unsigned char>() const;
template <> const signed char* DataTree::getData<signed char>() const;
template <> const unsigned short* DataTree::getData<unsigned short>() const;
template <> const short* DataTree::getData<short>() const;
template <> const unsigned int* DataTree::getData<unsigned int>() const;
template <> const int* DataTree::getData<int>() const;
template <> const unsigned long* DataTree::getData<unsigned long>() const;
template <> const long* DataTree::getData<long>() const;
template <> const float* DataTree::getData<float>() const;
template <> const double* DataTree::getData<double>() const;
template <> std::vector<float> DataTree::getVector<float>() const;

} // namespace sorvane

#endif
