// Shared by the two document models: included inside namespace sorvane::arf
// and namespace sorvane::gltf2, where RootNode and the other names resolve
// to the module's own classes.

// The shared part of every object accessor (Identity, Asset, Lod, ...): the
// record node it views. The record's own accessor adds one member accessor
// per JSON key.
template <class NodeT>
class SORVANE_API ObjectProperty : public Property {
public:
    using NodeType = NodeT;

    int64_t getPropertyIndex() const override { return node().getNodeIndex(); }
    std::string getPropertyName() const override { return node().getNodeName(); }
    std::string getPropertyPath() const override { return node().getNodePath(); }
    const char* getPropertyTypeName() const override { return node().getNodeTypeName(); }
    void outputRepresentation(std::ostream& out) const override { out << node(); }

    // True for the record's JSON keys, whether present or not.
    bool has(const std::string& key) const {
        for (const char* k : NodeT::kKeys)
            if (key == k) return true;
        return false;
    }

    bool isPropertyPresent() const { return nodeRef && nodeRef->isNodePresent(); }

    // Detaches the record from its parent; this accessor is unusable afterwards.
    void removeProperty() {
        checkWritable(Change::RemoveProperty, node().getNodePath());
        nodeRef->removeNode();
        nodeRef.reset();
        clearMembers();
    }

    const std::shared_ptr<NodeT>& getNode() const { return nodeRef; }

    // Id of the record, for records of id-carrying lists.
    int64_t getPropertyId() const { return node().getId(); }

protected:
    ObjectProperty() = default;
    ObjectProperty(const std::shared_ptr<RootNode>& root_, const std::shared_ptr<NodeT>& node_, bool readOnly_)
        : Property(root_, readOnly_), nodeRef(node_) {}

    NodeT& node() const {
        if (!nodeRef) failInvalidNode();
        return *nodeRef;
    }

    // Drops the node references of the member accessors.
    virtual void clearMembers() = 0;

    std::shared_ptr<NodeT> nodeRef;
};

// The shared part of every member accessor (Identity::Name, Lod::Meshes,
// ...): the owner's node, and the member's key from its descriptor D.
template <class NodeT, class D>
class SORVANE_API MemberProperty : public Property {
public:
    int64_t getPropertyIndex() const override { return -1; }
    std::string getPropertyName() const override { return D::kKey; }
    std::string getPropertyPath() const override { return node().getNodePath() + "." + D::kKey; }

    // Required members are always present.
    bool isPropertyPresent() const {
        if constexpr (D::kOptional) return D::has(node());
        else return static_cast<bool>(ownerRef()) || (failInvalidNode(), false);
    }

    void reset() {
        owner.reset();
        ownerSource = &owner;
    }

    // A member held by the record accessor `host`: it views host's node
    // through host's own references, so it costs no reference counting. A copy
    // of it (taken out of the host) owns its references again.
    explicit MemberProperty(const ObjectProperty<NodeT>& host) { bind(host); }
    // For the host, after it was assigned to or moved: its members keep
    // viewing what it views.
    void bind(const ObjectProperty<NodeT>& host) {
        borrowRoot(host);
        owner.reset();
        ownerSource = &host.getNode();
    }

    MemberProperty(const MemberProperty& other) : Property(other), owner(other.ownerRef()) {}
    MemberProperty(MemberProperty&& other) noexcept : Property(std::move(other)), owner(other.takeOwner()) {}
    MemberProperty& operator=(const MemberProperty& other) {
        if (this != &other) {
            Property::operator=(other);
            owner = other.ownerRef();
            ownerSource = &owner;
        }
        return *this;
    }
    MemberProperty& operator=(MemberProperty&& other) noexcept {
        if (this != &other) {
            Property::operator=(std::move(other));
            owner = other.takeOwner();
            ownerSource = &owner;
        }
        return *this;
    }

protected:
    MemberProperty() = default;
    MemberProperty(const std::shared_ptr<RootNode>& root_, const std::shared_ptr<NodeT>& owner_, bool readOnly_)
        : Property(root_, readOnly_), owner(owner_) {}

    NodeT& node() const {
        const std::shared_ptr<NodeT>& n = *ownerSource;
        if (!n) failInvalidNode();
        return *n;
    }

    NodeT& writableNode(Change change) const {
        NodeT& n = node();
        checkWritable(change, getPropertyPath());
        return n;
    }

    // The owner's node, owned or borrowed.
    const std::shared_ptr<NodeT>& ownerRef() const { return *ownerSource; }

private:
    // Members may be borrowing: they reach the document and the owner through
    // getPropertyRoot() and ownerRef(), never through the fields.
    using Property::propertyRoot;

    std::shared_ptr<NodeT> takeOwner() {
        if (ownerSource == &owner) return std::move(owner);
        return *ownerSource;
    }

    std::shared_ptr<NodeT> owner;
    const std::shared_ptr<NodeT>* ownerSource = &owner;
};
