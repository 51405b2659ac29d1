#ifndef SORVANE_ARF_NODE_GENERIC_INTEGERNODE_H
#define SORVANE_ARF_NODE_GENERIC_INTEGERNODE_H

#include "sorvane/arf/node/AbstractNode.h"

namespace sorvane::arf {

// A 64-bit integer inside a generic value.
class SORVANE_API IntegerNode : public AbstractNode {
public:
    explicit IntegerNode(const NodeParent& parent, int64_t value = 0);

    const char* getNodeTypeName() const override;
    bool isNodeInteger() const override;
    int64_t getNodeInteger() const override;
    void setNodeInteger(int64_t value) override;
    void fromJson(archive::JsonImporter& importer) override;
    void toJson(archive::JsonExporter& exporter) const override;

private:
    int64_t value;
};

} // namespace sorvane::arf

#endif
