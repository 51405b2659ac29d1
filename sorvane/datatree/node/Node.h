#ifndef SORVANE_DATATREE_NODE_NODE_H
#define SORVANE_DATATREE_NODE_NODE_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "sorvane/core/Export.h"
#include "sorvane/datatree/ScalarType.h"

namespace sorvane {

class DataTree;

namespace archive {
class JsonImporter;
class JsonExporter;
} // namespace archive

// Flags of a DataTree read. Bit 0 set keeps JSON lists of numbers as Lists
// instead of reading them as one flat Array.
enum DataTreeImport : int32_t {
    DATATREE_IMPORT_DEFAULT = 0,
    DATATREE_IMPORT_KEEP_NUMBER_LISTS = 1,
};

namespace datatree {

// One value of a DataTree. Every operation is offered here; a kind that does
// not support it raises "a <kind> cannot be used as ...". Operations that
// return a Node* hand a new node to the caller.
class SORVANE_API Node {
public:
    virtual ~Node();

    virtual DataTreeType getType() const = 0;
    virtual bool equals(const Node& other) const = 0;
    virtual Node* clone() const = 0;

    virtual bool isNull() const;
    virtual void setNull(std::nullptr_t);

    virtual bool isString() const;
    virtual const std::string& getString() const;
    virtual void setString(const std::string& value);

    virtual bool isInteger() const;
    virtual long getInteger() const;
    virtual void setInteger(long value);

    virtual bool isFloat() const;
    virtual double getFloat() const;
    virtual void setFloat(double value);

    virtual bool isBoolean() const;
    virtual bool getBoolean() const;
    virtual void setBoolean(bool value);

    virtual bool hasScalarType() const;
    virtual ScalarType getScalarType() const;

    virtual long getValueCount() const;
    virtual long getBufferSize() const;
    virtual const void* getBuffer() const;
    virtual void* getBuffer();
    virtual void* releaseBuffer();
    virtual void* allocBuffer(unsigned long size) const;
    virtual void freeBuffer(void* buffer) const;

    virtual bool isArray() const;
    virtual void resizeArrayData(long size);
    virtual void giveArrayData(void* data, long count, ScalarType type);
    virtual void setArrayData(const void* data, long count, ScalarType type);

    virtual bool isTensor() const;
    virtual long getTensorDim() const;
    virtual std::vector<long> getTensorSizes() const;
    virtual std::vector<long> getTensorStrides(bool inBytes) const;
    virtual long getTensorSize(long dim) const;
    virtual void setTensorSizes(const std::vector<long>& sizes);
    virtual void giveTensorData(void* data, const std::vector<long>& sizes, ScalarType type);
    virtual void setTensorData(const void* data, const std::vector<long>& sizes, ScalarType type);
    virtual Node* getSubTensor(long index) const;

    virtual bool isObject() const;
    virtual bool hasItem(const std::string& name) const;
    virtual std::vector<std::string> getItemNames() const;
    virtual const DataTree& getItem(const std::string& name) const;
    virtual DataTree& getItem(const std::string& name);
    virtual void setItem(const std::string& name, const DataTree& item);
    virtual void removeItem(const std::string& name);

    virtual bool isList() const;
    virtual std::vector<std::string> getStringVector() const;
    virtual const DataTree& getItem(long index) const;
    virtual DataTree& getItem(long index);
    virtual void addItem(const DataTree& item);
    virtual void insertItem(long index, const DataTree& item);
    virtual void setItem(long index, const DataTree& item);
    virtual void setItems(const std::vector<std::string>& items);
    virtual void removeItem(long index);

    virtual bool isEmpty() const;
    virtual long getSize() const;
    virtual void removeItems();

    virtual bool canConvertToArray() const;
    virtual bool canConvertToIntegerArray(ScalarType type) const;
    virtual bool canConvertToFloatArray(ScalarType type) const;
    virtual Node* convertToArray() const;
    virtual Node* convertToArray(ScalarType type) const;
    virtual Node* convertToIntegerArray(ScalarType type) const;
    virtual Node* convertToFloatArray(ScalarType type) const;
    virtual Node* convertScalarType(ScalarType type) const;

    virtual void fromJson(archive::JsonImporter& importer, DataTreeImport flags);
    virtual void toJson(archive::JsonExporter& exporter) const;

    // Reads one value of unknown kind; the caller owns the result.
    static Node* nextItem(archive::JsonImporter& importer, DataTreeImport flags);

    // Deepest nesting of lists and objects a read accepts.
    static constexpr int kMaxJsonDepth = 512;

protected:
    const char* kindName() const;
};

} // namespace datatree
} // namespace sorvane

#endif
