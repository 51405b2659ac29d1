#ifndef SORVANE_DATATREE_NODE_FLOAT_H
#define SORVANE_DATATREE_NODE_FLOAT_H

#include "sorvane/datatree/node/Node.h"

namespace sorvane::datatree {

class SORVANE_API Float : public Node {
public:
    Float() = default;
    explicit Float(double value);

    DataTreeType getType() const override;
    bool equals(const Node& other) const override;
    Node* clone() const override;
    bool isFloat() const override;
    double getFloat() const override;
    void setFloat(double value) override;
    ScalarType getScalarType() const override;
    void fromJson(archive::JsonImporter& importer, DataTreeImport flags) override;
    void toJson(archive::JsonExporter& exporter) const override;

private:
    double value{};
};

} // namespace sorvane::datatree

#endif
