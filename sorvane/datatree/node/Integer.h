#ifndef SORVANE_DATATREE_NODE_INTEGER_H
#define SORVANE_DATATREE_NODE_INTEGER_H

#include "sorvane/datatree/node/Node.h"

namespace sorvane::datatree {

class SORVANE_API Integer : public Node {
public:
    Integer() = default;
    explicit Integer(long value);

    DataTreeType getType() const override;
    bool equals(const Node& other) const override;
    Node* clone() const override;
    bool isInteger() const override;
    long getInteger() const override;
    void setInteger(long value) override;
    ScalarType getScalarType() const override;
    void fromJson(archive::JsonImporter& importer, DataTreeImport flags) override;
    void toJson(archive::JsonExporter& exporter) const override;

private:
    long value{};
};

} // namespace sorvane::datatree

#endif
