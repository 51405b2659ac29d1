#ifndef SORVANE_ARF_NODE_ROOTNODE_H
#define SORVANE_ARF_NODE_ROOTNODE_H

#include <memory>
#include <string>

#include "sorvane/arf/node/IdentityNode.h"
#include "sorvane/arf/node/PreambleNode.h"
#include "sorvane/arf/node/RecordNode.h"
#include "sorvane/arf/node/StructureNode.h"

namespace sorvane::arf {

// The root of an ARF document tree: owns the top-level sections. It has an
// empty name and path, so the paths of its children start with their key.
class SORVANE_API RootNode : public RecordNode {
public:
    RootNode();
    ~RootNode() override;

    const char* getNodeTypeName() const override;
    int64_t getNodeIndex() const override;
    std::string getNodeName() const override;
    std::string getNodePath() const override;

    // True for every section key of the format, whether the section exists.
    bool hasNodeItem(const std::string& key) const override;
    using RecordNode::hasNodeItem;
    ConstRef getNodeItem(const std::string& key) const override;
    Ref getNodeItem(const std::string& key) override;
    using RecordNode::getNodeItem;

    RecordFields getRecordFields() const override;
    // Every section built empty, for reading.
    void incompleteInit() override;
    // Every section built with its fresh content.
    void init();

    const std::shared_ptr<PreambleNode>& getPreamble() const { return preamble_; }
    const std::shared_ptr<IdentityNode>& getIdentity() const { return identity_; }
    const std::shared_ptr<StructureNode>& getStructure() const { return structure_; }
    void setPreamble(const std::shared_ptr<PreambleNode>& node);
    void setIdentity(const std::shared_ptr<IdentityNode>& node);
    void setStructure(const std::shared_ptr<StructureNode>& node);

    static bool isSectionKey(const std::string& key);

private:
    std::shared_ptr<PreambleNode> preamble_;
    std::shared_ptr<IdentityNode> identity_;
    std::shared_ptr<StructureNode> structure_;
};

} // namespace sorvane::arf

#endif
