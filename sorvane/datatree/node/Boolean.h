#ifndef SORVANE_DATATREE_NODE_BOOLEAN_H
#define SORVANE_DATATREE_NODE_BOOLEAN_H

#include "sorvane/datatree/node/Node.h"

namespace sorvane::datatree {

class SORVANE_API Boolean : public Node {
public:
    Boolean() = default;
    explicit Boolean(bool value);

    DataTreeType getType() const override;
    bool equals(const Node& other) const override;
    Node* clone() const override;
    bool isBoolean() const override;
    bool getBoolean() const override;
    void setBoolean(bool value) override;
    ScalarType getScalarType() const override;
    void fromJson(archive::JsonImporter& importer, DataTreeImport flags) override;
    void toJson(archive::JsonExporter& exporter) const override;

private:
    bool value{};
};

} // namespace sorvane::datatree

#endif
