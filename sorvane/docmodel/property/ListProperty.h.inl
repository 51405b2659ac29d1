// Shared by the two document models: included inside namespace sorvane::arf
// and namespace sorvane::gltf2, where RootNode and the other names resolve
// to the module's own classes.

// The list accessor of an item list (AssetList over AssetNodes, ...): gives
// object accessors of type ItemT for its records.
template <class ListNodeT, class ItemT>
class SORVANE_API ListProperty : public Property {
public:
    using NodeType = ListNodeT;
    using Item = ItemT;
    using RecordNodeType = typename ItemT::NodeType;

    ListProperty() = default;
    ListProperty(const std::shared_ptr<RootNode>& root_, const std::shared_ptr<ListNodeT>& node_, bool readOnly_)
        : Property(root_, readOnly_), nodeRef(node_) {}

    int64_t getPropertyIndex() const override { return node().getNodeIndex(); }
    std::string getPropertyName() const override { return node().getNodeName(); }
    std::string getPropertyPath() const override { return node().getNodePath(); }
    const char* getPropertyTypeName() const override { return node().getNodeTypeName(); }
    void outputRepresentation(std::ostream& out) const override { out << node(); }

    bool isPropertyPresent() const { return adopt() && nodeRef->isNodePresent(); }
    bool empty() const { return node().isNodeEmpty(); }
    int64_t size() const { return node().getNodeSize(); }
    bool hasByIndex(int64_t index) const { return node().hasNodeItem(index); }
    bool hasByName(const std::string& name) const { return node().findNodeItemIndexByName(name) >= 0; }
    int64_t findPropertyItemIndexByName(const std::string& name) const { return node().findNodeItemIndexByName(name); }
    std::vector<std::string> getPropertyItemNames() const { return node().getNodeItemNames(); }

    Item getByIndex(int64_t index) const { return Item(propertyRoot, node().getByIndex(index), propertyReadOnly); }
    Item* getPtrByIndex(int64_t index) const { return new Item(getByIndex(index)); }
    Item getByName(const std::string& name) const {
        int64_t index = node().findNodeItemIndexByName(name);
        if (index < 0) SORVANE_THROW("No item with name '%s' in %s", name.c_str(), node().getNodePath().c_str());
        return getByIndex(index);
    }
    Item* getPtrByName(const std::string& name) const { return new Item(getByName(name)); }

    // Id forms, for lists whose records carry ids.
    bool has(int64_t id) const { return node().findNodeItemIndexById(id) >= 0; }
    int64_t find(const std::string& name) const { return node().findNodeItemIdByName(name); }
    Item get(int64_t id) const { return Item(propertyRoot, node().get(id), propertyReadOnly); }
    Item* getPtr(int64_t id) const { return new Item(get(id)); }
    Item operator[](int64_t id) const { return get(id); }
    void remove(int64_t id) {
        ListNodeT& n = node();
        checkWritable(Change::ListAdd, n.getNodePath());
        n.remove(id);
    }

    void removeByIndex(int64_t index) {
        ListNodeT& n = node();
        checkWritable(Change::ListAdd, n.getNodePath());
        n.removeByIndex(index);
    }

    // A new record made with the record's init arguments; the accessor of
    // the new record is writable.
    template <class... A>
    Item add(A&&... args) {
        if (!adopt() && absentOwner) {
            // Taken while the record had no such list: the first add creates it.
            checkWritable(Change::ListAdd, absentOwner->getNodePath() + "." + absentKey);
            auto created = std::make_shared<ListNodeT>(absentOwner);
            absentOwner->setNodeItem(absentKey, created);
            nodeRef = created;
            absentOwner.reset();
        }
        ListNodeT& n = node();
        checkWritable(Change::ListAdd, n.getNodePath());
        return Item(propertyRoot, n.add(initArgument(std::forward<A>(args))...), false);
    }
    template <class... A>
    Item* addPtr(A&&... args) {
        return new Item(add(std::forward<A>(args)...));
    }

    void removeProperty() {
        checkWritable(Change::RemoveProperty, node().getNodePath());
        nodeRef->removeNode();
        nodeRef.reset();
        absentOwner.reset();
    }

    const std::shared_ptr<ListNodeT>& getNode() const {
        adopt();
        return nodeRef;
    }

    // For a handle over an absent optional list: the record and key where the
    // list belongs. The handle then follows the list once it exists and
    // creates it on its first add.
    void setAbsentOwner(const std::shared_ptr<AbstractNode>& owner, const char* key) {
        absentOwner = owner;
        absentKey = key;
    }

    class Iterator {
    public:
        using iterator_category = std::forward_iterator_tag;
        using value_type = Item;
        using difference_type = std::ptrdiff_t;
        using pointer = void;
        using reference = Item;

        Iterator(const ListProperty* list_, int64_t index_) : list(*list_), index(index_) {}
        Item operator*() const { return list.getByIndex(index); }
        Iterator& operator++() {
            ++index;
            return *this;
        }
        bool operator==(const Iterator& other) const { return index == other.index; }
        bool operator!=(const Iterator& other) const { return index != other.index; }

    private:
        ListProperty list;  // holds the document while iterating
        int64_t index;
    };
    using ConstIterator = Iterator;

    Iterator begin() const { return Iterator(this, 0); }
    Iterator end() const { return Iterator(this, size()); }

protected:
    // Texts reach init as constant text pointers; a std::string is taken too.
    template <class T>
    static decltype(auto) initArgument(T&& value) {
        if constexpr (std::is_same_v<std::decay_t<T>, std::string>) return value.c_str();
        else return std::forward<T>(value);
    }

    ListNodeT& node() const {
        if (!adopt()) failInvalidNode();
        return *nodeRef;
    }

    // Takes up the list an absent handle stands for once it exists.
    bool adopt() const {
        if (!nodeRef && absentOwner) {
            nodeRef = std::dynamic_pointer_cast<ListNodeT>(absentOwner->getNodeItem(absentKey));
            if (nodeRef) absentOwner.reset();
        }
        return static_cast<bool>(nodeRef);
    }

    mutable std::shared_ptr<ListNodeT> nodeRef;
    mutable std::shared_ptr<AbstractNode> absentOwner;
    const char* absentKey = nullptr;
};
