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

    virtual int64_t getPropertyIndex() const = 0;
    virtual std::string getPropertyName() const = 0;
    virtual std::string getPropertyPath() const = 0;
    virtual const char* getPropertyTypeName() const = 0;
    virtual void outputRepresentation(std::ostream& out) const = 0;
    std::string buildRepresentation() const;

    const std::shared_ptr<RootNode>& getPropertyRoot() const { return propertyRoot; }
    bool isPropertyReadOnly() const { return propertyReadOnly; }

protected:
    Property();
    Property(const std::shared_ptr<RootNode>& root, bool readOnly);

    [[noreturn]] static void failInvalidNode();
    // Fails with the read-only message of the change when this accessor is read-only.
    void checkWritable(Change change, const std::string& path) const;

    std::shared_ptr<RootNode> propertyRoot;
    bool propertyReadOnly = false;
};
