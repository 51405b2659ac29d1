// Shared by the two document models: included inside namespace sorvane::arf
// and namespace sorvane::gltf2, where RootNode and the other names resolve
// to the module's own classes.

// The container and list operations shared by every list node, over a vector
// of shared references to Item (AbstractNode for generic lists, one record
// class for item lists).
template <class Item>
class SORVANE_API BasicList : public AbstractNode {
public:
    using ItemRef = std::shared_ptr<Item>;

    bool isNodeList() const override { return true; }
    bool isNodeEmpty() const override { return items.empty(); }
    int64_t getNodeSize() const override { return static_cast<int64_t>(items.size()); }

    bool hasNodeItem(const AbstractNode* item) const override { return findNodeItemIndex(item) >= 0; }
    bool hasNodeItem(int64_t index) const override {
        return index >= 0 && index < static_cast<int64_t>(items.size());
    }
    using AbstractNode::hasNodeItem;

    int64_t findNodeItemIndex(const AbstractNode* item) const override {
        for (size_t i = 0; i < items.size(); ++i)
            if (items[i].get() == item) return static_cast<int64_t>(i);
        return -1;
    }

    std::vector<std::string> getNodeItemNames() const override { return {}; }
    int64_t findNodeItemIndexByName(const std::string&) const override { return -1; }

    ConstRef getNodeItem(int64_t index) const override { return getByIndex(index); }
    Ref getNodeItem(int64_t index) override { return getByIndex(index); }
    using AbstractNode::getNodeItem;

    // The low-level append of the generic view: no null, id or parent
    // handling; an item of another class becomes a null entry.
    void addNodeItem(const Ref& item) override { items.push_back(std::dynamic_pointer_cast<Item>(item)); }
    void setNodeItem(int64_t index, const Ref& item) override { setByIndex(index, std::dynamic_pointer_cast<Item>(item)); }
    using AbstractNode::setNodeItem;

    void removeNodeItem(int64_t index) override { removeByIndex(index); }
    void removeNodeItem(const AbstractNode* item) override {
        int64_t index = findNodeItemIndex(item);
        if (index < 0) SORVANE_THROW("Removing at item of %s: Node was not found", getNodePath().c_str());
        items.erase(items.begin() + index);
        itemsChanged();
    }
    using AbstractNode::removeNodeItem;
    void removeNodeItems() override {
        items.clear();
        itemsChanged();
    }

    std::vector<std::string> getNodeStringVector() const override {
        std::vector<std::string> result;
        result.reserve(items.size());
        for (const auto& item : items) result.push_back(item ? item->getNodeString() : std::string("<Null>"));
        return result;
    }

    const ItemRef& getByIndex(int64_t index) const {
        if (!hasNodeItem(index))
            SORVANE_THROW("Getting item from %s: Invalid index %ld", getNodePath().c_str(), static_cast<long>(index));
        return items[static_cast<size_t>(index)];
    }

    void setByIndex(int64_t index, const ItemRef& item) {
        if (!hasNodeItem(index))
            SORVANE_THROW("Setting item in %s:\nInvalid index %ld", getNodePath().c_str(), static_cast<long>(index));
        if (!item) SORVANE_THROW("Setting item in %s:\nItem is NULL", getNodePath().c_str());
        item->setNodeParent(shared_from_this());
        items[static_cast<size_t>(index)] = item;
        itemsChanged();
    }

    void removeByIndex(int64_t index) {
        if (!hasNodeItem(index))
            SORVANE_THROW("Removing item in %s:\nInvalid index %ld", getNodePath().c_str(), static_cast<long>(index));
        items.erase(items.begin() + index);
        itemsChanged();
    }

    const std::vector<ItemRef>& getItems() const { return items; }

protected:
    using AbstractNode::AbstractNode;

    // Called after every change of `items` other than an append, for lists
    // that keep an index of their items.
    virtual void itemsChanged() {}

    std::vector<ItemRef> items;
};
