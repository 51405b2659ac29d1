// Shared by the two document models: included inside namespace sorvane::arf
// and namespace sorvane::gltf2, where RootNode and the other names resolve
// to the module's own classes.

StringNode::StringNode(const NodeParent& parent_, std::string value_) : AbstractNode(parent_), value(std::move(value_)) {}

const char* StringNode::getNodeTypeName() const { return "string"; }
bool StringNode::isNodeString() const { return true; }
std::string StringNode::getNodeString() const { return value; }
void StringNode::setNodeString(const std::string& value_) { value = value_; }

void StringNode::fromJson(archive::JsonImporter& importer) {
    if (!importer.nextString(value)) SORVANE_THROW("Expect a string at line %d", importer.getLine());
}

void StringNode::toJson(archive::JsonExporter& exporter) const { exporter.addString(value); }
