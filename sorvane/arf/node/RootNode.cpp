#include "sorvane/arf/node/RootNode.h"

namespace sorvane::arf {

namespace {
const char* const kSectionKeys[] = {"preamble", "identity", "structure", "components", "data"};
}

RootNode::RootNode() = default;

RootNode::~RootNode() = default;

const char* RootNode::getNodeTypeName() const { return "root"; }
int64_t RootNode::getNodeIndex() const { return -1; }
std::string RootNode::getNodeName() const { return std::string(); }
std::string RootNode::getNodePath() const { return std::string(); }

bool RootNode::isSectionKey(const std::string& key) {
    for (const char* k : kSectionKeys)
        if (key == k) return true;
    return false;
}

bool RootNode::hasNodeItem(const std::string& key) const { return isSectionKey(key); }

AbstractNode::ConstRef RootNode::getNodeItem(const std::string& key) const {
    return const_cast<RootNode*>(this)->getNodeItem(key);
}

AbstractNode::Ref RootNode::getNodeItem(const std::string& key) {
    // A section the document model does not hold yet reads as absent.
    if (isSectionKey(key) && !findChildField(key)) return Ref();
    return RecordNode::getNodeItem(key);
}

RecordFields RootNode::getRecordFields() const {
    static constexpr RecordField fields[] = {
        recordField<&RootNode::preamble_>("preamble"),
        recordField<&RootNode::identity_>("identity"),
        recordField<&RootNode::structure_>("structure"),
    };
    return {fields, fields + sizeof fields / sizeof fields[0]};
}

void RootNode::incompleteInit() {
    auto self = shared_from_this();
    preamble_ = std::make_shared<PreambleNode>(self);
    identity_ = std::make_shared<IdentityNode>(self);
    structure_ = std::make_shared<StructureNode>(self);
    preamble_->incompleteInit();
    identity_->incompleteInit();
    structure_->incompleteInit();
}

void RootNode::init() {
    auto self = shared_from_this();
    preamble_ = std::make_shared<PreambleNode>(self);
    identity_ = std::make_shared<IdentityNode>(self);
    structure_ = std::make_shared<StructureNode>(self);
    preamble_->init(nullptr, nullptr);
    identity_->init(nullptr, nullptr, std::nullopt, nullptr);
    structure_->init();
}

void RootNode::setPreamble(const std::shared_ptr<PreambleNode>& node) {
    if (node) node->setNodeParent(shared_from_this());
    preamble_ = node;
}

void RootNode::setIdentity(const std::shared_ptr<IdentityNode>& node) {
    if (node) node->setNodeParent(shared_from_this());
    identity_ = node;
}

void RootNode::setStructure(const std::shared_ptr<StructureNode>& node) {
    if (node) node->setNodeParent(shared_from_this());
    structure_ = node;
}

} // namespace sorvane::arf
