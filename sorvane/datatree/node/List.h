#ifndef SORVANE_DATATREE_NODE_LIST_H
#define SORVANE_DATATREE_NODE_LIST_H

#include <vector>

#include "sorvane/datatree/DataTree.h"
#include "sorvane/datatree/node/Node.h"

namespace sorvane::datatree {

namespace detail {
struct Access;
}

// An ordered sequence of shared handles.
class SORVANE_API List : public Node {
public:
    ~List() override;

    DataTreeType getType() const override;
    bool equals(const Node& other) const override;
    Node* clone() const override;
    bool isList() const override;

    long getSize() const override;
    void removeItems() override;
    std::vector<std::string> getStringVector() const override;
    const DataTree& getItem(long index) const override;
    DataTree& getItem(long index) override;
    void addItem(const DataTree& item) override;
    void insertItem(long index, const DataTree& item) override;
    void setItem(long index, const DataTree& item) override;
    void setItems(const std::vector<std::string>& items) override;
    void removeItem(long index) override;

    bool canConvertToIntegerArray(ScalarType type) const override;
    bool canConvertToFloatArray(ScalarType type) const override;
    Node* convertToArray(ScalarType type) const override;
    Node* convertToIntegerArray(ScalarType type) const override;
    Node* convertToFloatArray(ScalarType type) const override;

    void fromJson(archive::JsonImporter& importer, DataTreeImport flags) override;
    void toJson(archive::JsonExporter& exporter) const override;

    using Node::getItem;
    using Node::removeItem;
    using Node::setItem;

private:
    friend struct detail::Access;

    void checkIndex(long index, long limit) const;

    std::vector<DataTree> items;
};

} // namespace sorvane::datatree

#endif
