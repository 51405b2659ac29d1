// Shared by the two document models: included inside namespace sorvane::arf
// and namespace sorvane::gltf2, where RootNode and the other names resolve
// to the module's own classes.

// A text inside a generic value.
class SORVANE_API StringNode : public AbstractNode {
public:
    explicit StringNode(const NodeParent& parent, std::string value = std::string());

    const char* getNodeTypeName() const override;
    bool isNodeString() const override;
    std::string getNodeString() const override;
    void setNodeString(const std::string& value) override;
    void fromJson(archive::JsonImporter& importer) override;
    void toJson(archive::JsonExporter& exporter) const override;

private:
    std::string value;
};
