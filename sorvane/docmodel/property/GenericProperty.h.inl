// Shared by the two document models: included inside namespace sorvane::arf
// and namespace sorvane::gltf2, where RootNode and the other names resolve
// to the module's own classes.

class ObjectItem;

// The accessor of a generic JSON value of a document: a null, an integer, a
// string, a list of those, or an object of those and of lists. Values made
// here without a document are detached: no root, no parent, path
// "<noparent>". Values given to add and set are copied into the container.
class SORVANE_API GenericProperty : public Property {
public:
    using NodeType = AbstractNode;

    GenericProperty();  // a detached null
    GenericProperty(int value);
    GenericProperty(int64_t value);
    GenericProperty(const std::string& text);
    GenericProperty(const char* text);
    GenericProperty(bool) = delete;  // booleans are no generic values
    // A list of the values, or an object when every value is a pair
    // {"key", value}: GenericProperty{{"a", 1}, {"b", {"x", "y"}}}.
    GenericProperty(std::initializer_list<GenericProperty> values);
    GenericProperty(const std::shared_ptr<RootNode>& root, const std::shared_ptr<AbstractNode>& node, bool readOnly);
    ~GenericProperty() override;

    static GenericProperty createNull();
    static GenericProperty* createNullPtr();
    static GenericProperty createInteger(int64_t value);
    static GenericProperty* createIntegerPtr(int64_t value);
    static GenericProperty createString(const std::string& text);
    static GenericProperty* createStringPtr(const std::string& text);
    static GenericProperty createList();
    static GenericProperty* createListPtr();

    int64_t getPropertyIndex() const override;
    std::string getPropertyName() const override;
    std::string getPropertyPath() const override;
    const char* getPropertyTypeName() const override;
    void outputRepresentation(std::ostream& out) const override;

    bool isNull() const;
    bool isInteger() const;
    bool isString() const;
    bool isList() const;
    bool isObject() const;
    int64_t getInteger() const;
    std::string getString() const;

    // Containers.
    bool empty() const;
    int64_t size() const;
    void clear();

    // Objects.
    bool has(const std::string& key) const;
    ObjectItem get(const std::string& key) const;
    ObjectItem* getPtr(const std::string& key) const;
    GenericProperty* getPropertyPtr(const std::string& key) const;
    void set(const std::string& key, const GenericProperty& value);

    // Lists.
    GenericProperty get(int64_t index) const;
    GenericProperty* getPtr(int64_t index) const;
    void add(const GenericProperty& value);
    void add(const std::string& text);
    void add(const char* text);
    void add(int64_t value);
    void add(int value);
    void add(bool) = delete;
    void add(std::initializer_list<GenericProperty> values);  // appends each value
    void addNull();
    std::vector<std::string> getStringVector() const;

    // Change the value in place when the node has this type; otherwise this
    // accessor moves to a new detached node of the type, and the old node
    // stays where it is.
    void setInteger(int64_t value);
    void setString(const std::string& text);

    // Detaches the value from its container; this accessor is unusable afterwards.
    void removeProperty();

    const std::shared_ptr<AbstractNode>& getNode() const { return nodeRef; }

    // Walks the items of a list, or the values of an object in key order.
    class SORVANE_API Iterator {
    public:
        using iterator_category = std::forward_iterator_tag;
        using value_type = GenericProperty;
        using difference_type = std::ptrdiff_t;
        using pointer = void;
        using reference = GenericProperty;

        Iterator(const GenericProperty& container, std::shared_ptr<const std::vector<std::string>> keys,
                 int64_t index);
        GenericProperty operator*() const;
        Iterator& operator++();
        bool operator==(const Iterator& other) const { return index == other.index; }
        bool operator!=(const Iterator& other) const { return index != other.index; }

    private:
        std::shared_ptr<RootNode> propertyRoot;  // holds the document while iterating
        std::shared_ptr<AbstractNode> container;
        std::shared_ptr<const std::vector<std::string>> keys;  // object keys, sorted; null for a list
        int64_t index;
        bool propertyReadOnly;
    };
    using ConstIterator = Iterator;

    Iterator begin() const;
    Iterator end() const;

protected:
    AbstractNode& node() const {
        if (!nodeRef) failInvalidNode();
        return *nodeRef;
    }
    AbstractNode& writableNode(Change change) const;

    std::shared_ptr<AbstractNode> nodeRef;

private:
    void init(std::initializer_list<GenericProperty> values);
};
