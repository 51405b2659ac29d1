#ifndef SORVANE_ARF_NODE_GENERIC_NULLNODE_H
#define SORVANE_ARF_NODE_GENERIC_NULLNODE_H

#include "sorvane/arf/node/AbstractNode.h"

namespace sorvane::arf {

// A JSON null inside a generic value. It writes itself as the string "null",
// which older documents expect, and reads a real JSON null.
class SORVANE_API NullNode : public AbstractNode {
public:
    explicit NullNode(const NodeParent& parent);

    const char* getNodeTypeName() const override;
    bool isNodeNull() const override;
    void fromJson(archive::JsonImporter& importer) override;
    void toJson(archive::JsonExporter& exporter) const override;
};

} // namespace sorvane::arf

#endif
