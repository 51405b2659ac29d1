// Shared by the two document models: included inside namespace sorvane::arf
// and namespace sorvane::gltf2, where RootNode and the other names resolve
// to the module's own classes.

// A 64-bit integer inside a generic value.
class SORVANE_API IntegerNode : public AbstractNode {
public:
    explicit IntegerNode(const NodeParent& parent, int64_t value = 0);

    const char* getNodeTypeName() const override;
    bool isNodeInteger() const override;
    int64_t getNodeInteger() const override;
    void setNodeInteger(int64_t value) override;
    void fromJson(archive::JsonImporter& importer) override;
    void toJson(archive::JsonExporter& exporter) const override;

private:
    int64_t value;
};
