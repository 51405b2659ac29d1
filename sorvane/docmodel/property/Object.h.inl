// Shared by the two document models: included inside namespace sorvane::arf
// and namespace sorvane::gltf2, where RootNode and the other names resolve
// to the module's own classes.

// A generic value used as an object; it differs from GenericProperty only by
// its type name.
class SORVANE_API Object : public GenericProperty {
public:
    using GenericProperty::GenericProperty;
    Object();
    Object(const GenericProperty& value);
    ~Object() override;

    const char* getPropertyTypeName() const override;

    // A new object under `parent` holding a copy of every value of `source`,
    // which must be an object; only what a document can read back is taken
    // (values and lists of values), anything else fails before a change.
    static std::shared_ptr<AbstractNode> copyOf(const GenericProperty& source, const std::shared_ptr<AbstractNode>& parent);
};
