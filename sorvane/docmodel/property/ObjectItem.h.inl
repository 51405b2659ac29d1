// Shared by the two document models: included inside namespace sorvane::arf
// and namespace sorvane::gltf2, where RootNode and the other names resolve
// to the module's own classes.

class GenericProperty;

// The value under one key of a generic object, which need not exist yet:
// setting or adding creates it.
class SORVANE_API ObjectItem : public Property {
public:
    ObjectItem();
    ObjectItem(const std::shared_ptr<RootNode>& root, const std::shared_ptr<AbstractNode>& object,
               const std::string& key, bool readOnly);
    ObjectItem(const ObjectItem& other) = default;
    ~ObjectItem() override;

    int64_t getPropertyIndex() const override;
    std::string getPropertyName() const override;
    std::string getPropertyPath() const override;
    const char* getPropertyTypeName() const override;
    void outputRepresentation(std::ostream& out) const override;

    bool isPropertyPresent() const;
    const std::string& getKey() const { return key; }

    GenericProperty getItem() const;
    GenericProperty* getItemPtr() const;

    void setInteger(int64_t value);
    void setString(const std::string& text);
    // Stores a copy of the value under the key. Assigning another item
    // copies its value too: item = other is item = other.getItem().
    ObjectItem& operator=(const GenericProperty& value);
    ObjectItem& operator=(const ObjectItem& other);

    // Appends to the list under the key, which is created when missing.
    void add(const GenericProperty& value);
    void add(const std::string& text);
    void add(const char* text);
    void add(int64_t value);
    void add(int value);
    void add(bool) = delete;
    void addNull();

    void removeProperty();

    const std::shared_ptr<AbstractNode>& getNode() const { return object; }

private:
    AbstractNode& owner() const {
        if (!object) failInvalidNode();
        return *object;
    }
    // The owner, after the read-only test of a change to the value.
    AbstractNode& modifiableOwner() const;
    AbstractNode& writableOwner(Change change) const;

    std::shared_ptr<AbstractNode> object;
    std::string key;
};
