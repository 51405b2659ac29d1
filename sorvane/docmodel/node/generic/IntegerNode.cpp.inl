// Shared by the two document models: included inside namespace sorvane::arf
// and namespace sorvane::gltf2, where RootNode and the other names resolve
// to the module's own classes.

IntegerNode::IntegerNode(const NodeParent& parent_, int64_t value_) : AbstractNode(parent_), value(value_) {}

const char* IntegerNode::getNodeTypeName() const { return "integer"; }
bool IntegerNode::isNodeInteger() const { return true; }
int64_t IntegerNode::getNodeInteger() const { return value; }
void IntegerNode::setNodeInteger(int64_t value_) { value = value_; }

void IntegerNode::fromJson(archive::JsonImporter& importer) {
    auto v = importer.nextInteger();
    if (!v) SORVANE_THROW("Expect an integer at line %d", importer.getLine());
    value = *v;
}

void IntegerNode::toJson(archive::JsonExporter& exporter) const { exporter.addInteger(value); }
