// Shared by the two document models: included inside namespace sorvane::arf
// and namespace sorvane::gltf2, where RootNode and the other names resolve
// to the module's own classes.

// A list of strings and integers inside a generic value; nested lists and
// objects are not part of the format.
class SORVANE_API ListNode : public BasicList<AbstractNode> {
public:
    explicit ListNode(const NodeParent& parent);

    const char* getNodeTypeName() const override;
    const char* getNodeItemTypeName() const override;
    void fromJson(archive::JsonImporter& importer) override;
    void toJson(archive::JsonExporter& exporter) const override;
};
