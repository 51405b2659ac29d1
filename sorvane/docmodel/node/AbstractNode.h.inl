// Shared by the two document models: included inside namespace sorvane::arf
// and namespace sorvane::gltf2, where RootNode and the other names resolve
// to the module's own classes.

class AbstractNode;
class RootNode;
class IdItemListBase;
struct RecordField;

// Where a reference member points: a list under a section of the root
// ("components", "skins"), or a list that is a section itself (null, "data").
struct ReferenceTarget {
    const char* section;
    const char* list;
};

// Where the roots keep the target lists of references last found, so that
// the full reference check and the reads of a reference's record do not look
// the list up by name each time. An entry is
// checked against the live tree before use (same section, same list behind
// the same fields), so a replaced or removed list is never used. Every node
// of a document points at its root's cache while the root lives.
struct ReferenceListCache {
    struct Entry {
        const ReferenceTarget* target = nullptr;
        const RecordField* sectionField = nullptr;  // in the root; null for a list at the root
        const RecordField* listField = nullptr;     // in the holder
        const AbstractNode* holder = nullptr;
        AbstractNode* list = nullptr;
        const IdItemListBase* ids = nullptr;
    };
    static constexpr size_t kSize = 16;
    RootNode* owner = nullptr;  // the root holding this cache, set by the nodes it adopts
    Entry entries[kSize];

    Entry& slot(const ReferenceTarget* target) {
        return entries[(reinterpret_cast<uintptr_t>(target) / sizeof(ReferenceTarget)) % kSize];
    }
};

// The parent handed to a node's constructor: a shared or a weak reference to
// any node class. A shared one is only looked at, not copied: the caller
// holds it for the whole construction, and a load makes thousands of nodes
// under one parent.
struct NodeParent {
    AbstractNode* node = nullptr;
    std::shared_ptr<AbstractNode> locked;  // keeps a weak parent alive meanwhile
    NodeParent(const std::shared_ptr<AbstractNode>& parent) : node(parent.get()) {}
    NodeParent(const std::weak_ptr<AbstractNode>& parent) : locked(parent.lock()) { node = locked.get(); }
    template <class T>
    NodeParent(const std::shared_ptr<T>& parent) : node(parent.get()) {}
    template <class T>
    NodeParent(const std::weak_ptr<T>& parent) : locked(parent.lock()) { node = locked.get(); }
};

// One node of a document tree: a JSON object or array of the document.
// Children are owned by their parents; the links upward (root, parent) are
// weak. Every operation that a kind of node does not support fails with a
// message naming the node by its path.
class SORVANE_API AbstractNode : public std::enable_shared_from_this<AbstractNode> {
public:
    using Ref = std::shared_ptr<AbstractNode>;
    using ConstRef = std::shared_ptr<const AbstractNode>;
    using WeakRef = std::weak_ptr<AbstractNode>;

    virtual ~AbstractNode();

    virtual std::weak_ptr<RootNode> getNodeRoot() const;
    virtual WeakRef getNodeParent() const;
    virtual void setNodeParent(const WeakRef& parent);
    virtual void setNodeParent(const Ref& parent);
    virtual bool isNodePresent() const;
    virtual int64_t getNodeIndex() const;
    virtual std::optional<std::string> getNodeIdRepr() const;
    virtual std::string getNodeName() const;
    virtual std::string getNodePath() const;
    virtual const char* getNodeTypeName() const = 0;
    virtual void removeNode();

    virtual bool isNodeNull() const;
    virtual bool isNodeInteger() const;
    virtual int64_t getNodeInteger() const;
    virtual void setNodeInteger(int64_t value);
    virtual bool isNodeString() const;
    virtual std::string getNodeString() const;
    virtual void setNodeString(const std::string& value);

    virtual bool isNodeEmpty() const;
    virtual int64_t getNodeSize() const;
    virtual bool hasNodeItem(const AbstractNode* item) const;
    virtual void removeNodeItem(const AbstractNode* item);
    virtual void removeNodeItems();
    virtual std::vector<std::string> getNodeItemNames() const;
    virtual const char* getNodeItemTypeName() const;

    virtual bool isNodeObject() const;
    virtual bool hasNodeItem(const std::string& key) const;
    virtual ConstRef getNodeItem(const std::string& key) const;
    virtual Ref getNodeItem(const std::string& key);
    virtual void setNodeItem(const std::string& key, const Ref& item);
    virtual void removeNodeItem(const std::string& key);
    virtual std::string findNodeItemKey(const AbstractNode* item) const;

    virtual bool isNodeList() const;
    virtual bool hasNodeItem(int64_t index) const;
    virtual ConstRef getNodeItem(int64_t index) const;
    virtual Ref getNodeItem(int64_t index);
    virtual void addNodeItem(const Ref& item);
    virtual void setNodeItem(int64_t index, const Ref& item);
    virtual void removeNodeItem(int64_t index);
    virtual int64_t findNodeItemIndex(const AbstractNode* item) const;
    virtual int64_t findNodeItemIndexByName(const std::string& name) const;
    virtual std::vector<std::string> getNodeStringVector() const;

    virtual void fromJson(archive::JsonImporter& importer) = 0;
    virtual void toJson(archive::JsonExporter& exporter) const = 0;
    virtual std::string toJsonString(const archive::JsonExporter::Options& options = {}) const;

    // The root without taking a reference, null once the document is gone.
    // For short reads that keep no pointer: a lock costs an atomic exchange
    // per call, which shows when every accessor of a large file is read.
    RootNode* peekNodeRoot() const { return root.expired() ? nullptr : rootReferences->owner; }
    // The parent link itself, for identity checks without a counted copy.
    const WeakRef& peekNodeParent() const { return parent; }

protected:
    AbstractNode();  // for RootNode only
    explicit AbstractNode(const NodeParent& parent);

    // The failures of the unsupported families, with this node's path.
    [[noreturn]] void failNotContainer() const;
    [[noreturn]] void failNotList() const;
    [[noreturn]] void failNotObject() const;
    [[noreturn]] void failNotString() const;
    [[noreturn]] void failNotInteger() const;

private:
    // The links of a node made under `parent` (null: none).
    void adoptParent(AbstractNode* parent);

protected:
    WeakRef parent;
    // Last, so that they share a cache line with the first members of the
    // record (generated records put their references first): a reference
    // setter reads these and the member it sets, on nodes spread over memory.
    std::weak_ptr<RootNode> root;
    // The reference cache of the root, for the reference checks that would
    // otherwise lock the root for each id: use only while `root` has not
    // expired. Set and cleared with `root`. The cache also knows its root,
    // which spares every node a pointer of its own, so that a record's
    // reference members start within the node's first 64 bytes.
    ReferenceListCache* rootReferences = nullptr;
};

// Writes the node as JSON with default options.
SORVANE_API std::ostream& operator<<(std::ostream& out, const AbstractNode& node);
