#ifndef SORVANE_DATATREE_NODE_NULL_H
#define SORVANE_DATATREE_NODE_NULL_H

#include "sorvane/datatree/node/Node.h"

namespace sorvane::datatree {

class SORVANE_API Null : public Node {
public:
    DataTreeType getType() const override;
    bool equals(const Node& other) const override;
    Node* clone() const override;
    bool isNull() const override;
    void setNull(std::nullptr_t) override;
    void fromJson(archive::JsonImporter& importer, DataTreeImport flags) override;
    void toJson(archive::JsonExporter& exporter) const override;
};

} // namespace sorvane::datatree

#endif
