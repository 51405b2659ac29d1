// Shared by the two document models: included inside namespace sorvane::arf
// and namespace sorvane::gltf2, where RootNode and the other names resolve
// to the module's own classes.

// The generic object of ARF documents (configuration values and the like).
class SORVANE_API ObjectNode : public ObjectNodeTemplate<AbstractNode> {
public:
    explicit ObjectNode(const NodeParent& parent);
    ~ObjectNode() override;
};
