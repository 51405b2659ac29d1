// Shared by the two document models: included inside namespace sorvane::arf
// and namespace sorvane::gltf2, where RootNode and the other names resolve
// to the module's own classes.

NullNode::NullNode(const NodeParent& parent_) : AbstractNode(parent_) {}

const char* NullNode::getNodeTypeName() const { return "null"; }

bool NullNode::isNodeNull() const { return true; }

void NullNode::fromJson(archive::JsonImporter& importer) {
    if (!importer.nextNull()) SORVANE_THROW("Expect a null at line %d", importer.getLine());
}

void NullNode::toJson(archive::JsonExporter& exporter) const { exporter.addString("null"); }
