// Shared by the two document models: included inside namespace sorvane::arf
// and namespace sorvane::gltf2, where RootNode and the other names resolve
// to the module's own classes.

class RootNode;

// The base of every accessor: a small value that names one place of a
// document, keeps the document alive and enforces the read-only rule.
class SORVANE_API Property {
public:
    // What a mutating operation is about to do, for the read-only message.
    enum class Change {
        Set,             // "Setting %s: ..."
        Append,          // "Appending %s: ..."
        AddItem,         // "Adding an item to %s: ..."
        ListAdd,         // "Adding an item to %s\n..." (also the list accessor's removals)
        SetItem,         // "Setting an item of %s: ..."
        RemoveItem,      // "Removing an item of %s: ..."
        RemoveProperty,  // "Removing %s: ..."
        Get,             // "Getting %s: ..."
        Clear,           // "Clearing %s: ... read-only object"
        AddNull,         // "Adding Null to %s: ..."
        AddValue,        // "Adding to %s: ..."
        Modify,          // "Modifying %s: ... read-only object" (the path ends in "[key]")
        Clone,           // "Cloning %s: ... read-only target container"
    };

    virtual ~Property();

    // A copy always holds its own reference to the document, also when the
    // source borrowed one (see borrowRoot).
    Property(const Property& other) : propertyRoot(*other.rootSource), propertyReadOnly(other.propertyReadOnly) {}
    Property(Property&& other) noexcept : propertyRoot(other.takeRoot()), propertyReadOnly(other.propertyReadOnly) {}
    Property& operator=(const Property& other) {
        if (this != &other) {
            propertyRoot = *other.rootSource;
            rootSource = &propertyRoot;
            propertyReadOnly = other.propertyReadOnly;
        }
        return *this;
    }
    Property& operator=(Property&& other) noexcept {
        if (this != &other) {
            propertyRoot = other.takeRoot();
            rootSource = &propertyRoot;
            propertyReadOnly = other.propertyReadOnly;
        }
        return *this;
    }

    virtual int64_t getPropertyIndex() const = 0;
    virtual std::string getPropertyName() const = 0;
    virtual std::string getPropertyPath() const = 0;
    virtual const char* getPropertyTypeName() const = 0;
    virtual void outputRepresentation(std::ostream& out) const = 0;
    std::string buildRepresentation() const;

    const std::shared_ptr<RootNode>& getPropertyRoot() const { return *rootSource; }
    bool isPropertyReadOnly() const { return propertyReadOnly; }

protected:
    Property();
    Property(const std::shared_ptr<RootNode>& root, bool readOnly);

    [[noreturn]] static void failInvalidNode();
    // Fails with the read-only message of the change when this accessor is read-only.
    void checkWritable(Change change, const std::string& path) const;

    // A member accessor held inside its record's accessor uses that
    // accessor's reference to the document instead of counting one of its
    // own: a record accessor would otherwise take and drop two references per
    // key. The host must outlive the borrower (it contains it).
    void borrowRoot(const Property& host) {
        propertyRoot.reset();
        rootSource = &host.getPropertyRoot();
        propertyReadOnly = host.propertyReadOnly;
    }

    std::shared_ptr<RootNode> propertyRoot;
    bool propertyReadOnly = false;

private:
    std::shared_ptr<RootNode> takeRoot() {
        if (rootSource == &propertyRoot) return std::move(propertyRoot);
        return *rootSource;
    }

    // &propertyRoot, or the host's reference while borrowing.
    const std::shared_ptr<RootNode>* rootSource = &propertyRoot;
};
