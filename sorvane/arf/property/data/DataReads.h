#ifndef SORVANE_ARF_PROPERTY_DATA_DATAREADS_H
#define SORVANE_ARF_PROPERTY_DATA_DATAREADS_H

#include <cstdint>
#include <string>
#include <vector>

#include "sorvane/arf/node/data/DataContent.h"
#include "sorvane/arf/node/data/DataNode.h"
#include "sorvane/arf/property/MemberAccessors.h"
#include "sorvane/arf/property/ObjectProperty.h"

namespace sorvane::arf {

// The payload reads of a data item's accessor, forwarded to its content.
class SORVANE_API DataReads : public ObjectProperty<DataNode> {
public:
    int64_t getDataSize() const { return DataContent::getDataSize(node()); }
    int64_t getData(void* out, int64_t size) const { return DataContent::getData(node(), out, size); }
    std::string getString() const { return DataContent::getString(node()); }
    BitBuffer getBitBuffer() const { return DataContent::getBitBuffer(node()); }
    int64_t getTensorData(std::vector<long>& sizes, DataDType& dtype, void* out, int64_t size) const {
        return DataContent::getTensorData(node(), sizes, dtype, out, size);
    }
    DataTree getTensor() const { return DataContent::getTensor(node()); }
    DataTree* getTensorPtr() const { return DataContent::getTensorPtr(node()); }
    void getColSparseTensorData(std::vector<long>& sizes, DataDType& dtype, long* indices, long indicesSize,
                                void* values, long valuesSize, long* pColSize, bool normalize) const {
        DataContent::getColSparseTensorData(node(), sizes, dtype, indices, indicesSize, values, valuesSize, pColSize,
                                            normalize);
    }
    std::pair<DataTree, DataTree> getColSparseTensor(long minCols, long maxCols, bool normalize) const {
        return DataContent::getColSparseTensor(node(), minCols, maxCols, normalize);
    }
    std::pair<DataTree, DataTree>* getColSparseTensorPtr(long minCols, long maxCols, bool normalize) const {
        return DataContent::getColSparseTensorPtr(node(), minCols, maxCols, normalize);
    }

protected:
    DataReads() = default;
    DataReads(const std::shared_ptr<RootNode>& root_, const std::shared_ptr<DataNode>& node_, bool readOnly_)
        : ObjectProperty(root_, node_, readOnly_) {}
};

class Data;

// A reference to one data item (Mesh::DataItem, Skeleton::InverseBindMatrix,
// Skin::Weights, ...) reads the payload of the item it names, failing like
// get() for a dangling id.
template <class Ref>
class ReferenceReads<Ref, Data> {
public:
    int64_t getDataSize() const { return item().getDataSize(); }
    int64_t getData(void* out, int64_t size) const { return item().getData(out, size); }
    std::string getString() const { return item().getString(); }
    BitBuffer getBitBuffer() const { return item().getBitBuffer(); }
    int64_t getTensorData(std::vector<long>& sizes, DataDType& dtype, void* out, int64_t size) const {
        return item().getTensorData(sizes, dtype, out, size);
    }
    DataTree getTensor() const { return item().getTensor(); }
    DataTree* getTensorPtr() const { return item().getTensorPtr(); }
    void getColSparseTensorData(std::vector<long>& sizes, DataDType& dtype, long* indices, long indicesSize,
                                void* values, long valuesSize, long* pColSize, bool normalize) const {
        item().getColSparseTensorData(sizes, dtype, indices, indicesSize, values, valuesSize, pColSize, normalize);
    }
    std::pair<DataTree, DataTree> getColSparseTensor(long minCols, long maxCols, bool normalize) const {
        return item().getColSparseTensor(minCols, maxCols, normalize);
    }
    std::pair<DataTree, DataTree>* getColSparseTensorPtr(long minCols, long maxCols, bool normalize) const {
        return item().getColSparseTensorPtr(minCols, maxCols, normalize);
    }

private:
    auto item() const { return static_cast<const Ref&>(*this).get(); }
};

} // namespace sorvane::arf

#endif
