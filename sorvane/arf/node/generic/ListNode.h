#ifndef SORVANE_ARF_NODE_GENERIC_LISTNODE_H
#define SORVANE_ARF_NODE_GENERIC_LISTNODE_H

#include "sorvane/arf/node/BasicList.h"

namespace sorvane::arf {

// A list of strings and integers inside a generic value; nested lists and
// objects are not part of the format.
class SORVANE_API ListNode : public BasicList<AbstractNode> {
public:
    explicit ListNode(const NodeParent& parent);

    const char* getNodeTypeName() const override;
    const char* getNodeItemTypeName() const override;
    void fromJson(archive::JsonImporter& importer) override;
    void toJson(archive::JsonExporter& exporter) const override;
};

} // namespace sorvane::arf

#endif
