#ifndef SORVANE_ARF_NODE_GENERIC_STRINGNODE_H
#define SORVANE_ARF_NODE_GENERIC_STRINGNODE_H

#include "sorvane/arf/node/AbstractNode.h"

namespace sorvane::arf {

// A text inside a generic value.
class SORVANE_API StringNode : public AbstractNode {
public:
    explicit StringNode(const NodeParent& parent, std::string value = std::string());

    const char* getNodeTypeName() const override;
    bool isNodeString() const override;
    std::string getNodeString() const override;
    void setNodeString(const std::string& value) override;
    void fromJson(archive::JsonImporter& importer) override;
    void toJson(archive::JsonExporter& exporter) const override;

private:
    std::string value;
};

} // namespace sorvane::arf

#endif
