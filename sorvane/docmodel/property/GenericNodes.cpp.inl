// Shared by the two document models: included inside namespace sorvane::arf
// and namespace sorvane::gltf2, where RootNode and the other names resolve
// to the module's own classes.

namespace {

bool isScalar(const AbstractNode& node) {
    return dynamic_cast<const NullNode*>(&node) || dynamic_cast<const IntegerNode*>(&node) ||
           dynamic_cast<const StringNode*>(&node);
}

[[noreturn]] void failNested(const AbstractNode& value, const AbstractNode& container) {
    SORVANE_THROW("Unsupported nested %s in %s", value.getNodeTypeName(), container.getNodePath().c_str());
}

ListNode& genericList(AbstractNode& node) {
    if (auto* list = dynamic_cast<ListNode*>(&node)) return *list;
    SORVANE_THROW("%s is not a list", node.getNodePath().c_str());
}

ObjectNode& genericObject(AbstractNode& node) {
    if (auto* object = dynamic_cast<ObjectNode*>(&node)) return *object;
    SORVANE_THROW("%s is not an object", node.getNodePath().c_str());
}

} // namespace

AbstractNode::Ref cloneGenericNode(const AbstractNode& source, const NodeParent& parent) {
    if (dynamic_cast<const NullNode*>(&source)) return std::make_shared<NullNode>(parent);
    if (auto* integer = dynamic_cast<const IntegerNode*>(&source))
        return std::make_shared<IntegerNode>(parent, integer->getNodeInteger());
    if (auto* text = dynamic_cast<const StringNode*>(&source))
        return std::make_shared<StringNode>(parent, text->getNodeString());
    if (auto* list = dynamic_cast<const ListNode*>(&source)) {
        auto copy = std::make_shared<ListNode>(parent);
        for (const auto& item : list->getItems())
            if (item) copy->addNodeItem(cloneGenericNode(*item, copy));
        return copy;
    }
    if (auto* object = dynamic_cast<const ObjectNode*>(&source)) {
        auto copy = std::make_shared<ObjectNode>(parent);
        for (const auto& entry : object->getItems())
            if (entry.second) copy->setNodeItem(entry.first, cloneGenericNode(*entry.second, copy));
        return copy;
    }
    SORVANE_THROW("Cloning %s: %s is no generic value", source.getNodePath().c_str(), source.getNodeTypeName());
}

void appendToGenericList(AbstractNode& list, const AbstractNode& value) {
    ListNode& target = genericList(list);
    if (!isScalar(value)) failNested(value, target);
    auto self = target.shared_from_this();
    target.addNodeItem(cloneGenericNode(value, self));
}

void storeInGenericObject(AbstractNode& object, const std::string& key, const AbstractNode& value) {
    ObjectNode& target = genericObject(object);
    if (auto* list = dynamic_cast<const ListNode*>(&value)) {
        for (const auto& item : list->getItems())
            if (item && !isScalar(*item)) failNested(*item, target);
    } else if (!isScalar(value)) {
        failNested(value, target);
    }
    auto self = target.shared_from_this();
    target.setNodeItem(key, cloneGenericNode(value, self));
}

AbstractNode::Ref listUnderKey(AbstractNode& object, const std::string& key) {
    ObjectNode& target = genericObject(object);
    if (!target.hasNodeItem(key)) {
        auto list = std::make_shared<ListNode>(target.shared_from_this());
        target.setNodeItem(key, list);
        return list;
    }
    auto item = target.getNodeItem(key);
    genericList(*item);
    return item;
}
