#ifndef SORVANE_DATATREE_NODE_ARRAY_H
#define SORVANE_DATATREE_NODE_ARRAY_H

#include "sorvane/datatree/node/Node.h"

namespace sorvane::datatree {

// A flat run of values of one scalar type in a malloc block the node owns.
class SORVANE_API Array : public Node {
public:
    explicit Array(ScalarType type);
    // Zero-filled; "Invalid size %ld" below 0.
    Array(long count, ScalarType type);
    // Copies count elements; a null source gives count zero elements.
    Array(const void* source, long count, ScalarType type);
    ~Array() override;
    Array(const Array&) = delete;
    Array& operator=(const Array&) = delete;

    DataTreeType getType() const override;
    bool equals(const Node& other) const override;
    // A copy of the bytes: the clone owns its own block.
    Node* clone() const override;
    bool isArray() const override;
    bool hasScalarType() const override;
    ScalarType getScalarType() const override;

    long getValueCount() const override;
    long getSize() const override;
    long getBufferSize() const override;
    const void* getBuffer() const override;
    void* getBuffer() override;
    // The block goes to the caller, who frees it; the array becomes empty.
    void* releaseBuffer() override;

    void resizeArrayData(long size) override;
    // Takes the malloc block as it is.
    void giveArrayData(void* data, long count, ScalarType type) override;
    void setArrayData(const void* data, long count, ScalarType type) override;

    bool canConvertToArray() const override;
    bool canConvertToIntegerArray(ScalarType type) const override;
    bool canConvertToFloatArray(ScalarType type) const override;
    Node* convertToArray() const override;
    Node* convertToArray(ScalarType type) const override;
    Node* convertToIntegerArray(ScalarType type) const override;
    Node* convertToFloatArray(ScalarType type) const override;
    Node* convertScalarType(ScalarType type) const override;

    void fromJson(archive::JsonImporter& importer, DataTreeImport flags) override;
    void toJson(archive::JsonExporter& exporter) const override;

private:
    void* buffer = nullptr;
    long size = 0;
    ScalarType type;
};

} // namespace sorvane::datatree

#endif
