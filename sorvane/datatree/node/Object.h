#ifndef SORVANE_DATATREE_NODE_OBJECT_H
#define SORVANE_DATATREE_NODE_OBJECT_H

#include <map>
#include <string>

#include "sorvane/datatree/DataTree.h"
#include "sorvane/datatree/node/Node.h"

namespace sorvane::datatree {

namespace detail {
struct Access;
}

// Named shared handles, kept sorted by the bytes of the key.
class SORVANE_API Object : public Node {
public:
    ~Object() override;

    DataTreeType getType() const override;
    bool equals(const Node& other) const override;
    Node* clone() const override;
    bool isObject() const override;

    long getSize() const override;
    void removeItems() override;
    bool hasItem(const std::string& name) const override;
    std::vector<std::string> getItemNames() const override;
    const DataTree& getItem(const std::string& name) const override;
    DataTree& getItem(const std::string& name) override;
    void setItem(const std::string& name, const DataTree& item) override;
    void removeItem(const std::string& name) override;

    void fromJson(archive::JsonImporter& importer, DataTreeImport flags) override;
    void toJson(archive::JsonExporter& exporter) const override;

    using Node::getItem;
    using Node::removeItem;
    using Node::setItem;

private:
    friend struct detail::Access;

    std::map<std::string, DataTree> items;
};

} // namespace sorvane::datatree

#endif
