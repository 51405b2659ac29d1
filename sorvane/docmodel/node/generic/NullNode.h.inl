// Shared by the two document models: included inside namespace sorvane::arf
// and namespace sorvane::gltf2, where RootNode and the other names resolve
// to the module's own classes.

// A JSON null inside a generic value. It writes itself as the string "null",
// which older documents expect, and reads a real JSON null.
class SORVANE_API NullNode : public AbstractNode {
public:
    explicit NullNode(const NodeParent& parent);

    const char* getNodeTypeName() const override;
    bool isNodeNull() const override;
    void fromJson(archive::JsonImporter& importer) override;
    void toJson(archive::JsonExporter& exporter) const override;
};
