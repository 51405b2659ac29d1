// Shared by the two document models: included inside namespace sorvane::arf
// and namespace sorvane::gltf2, where RootNode and the other names resolve
// to the module's own classes.

ListNode::ListNode(const NodeParent& parent_) : BasicList(parent_) {}

const char* ListNode::getNodeTypeName() const { return "list"; }
const char* ListNode::getNodeItemTypeName() const { return "node"; }

void ListNode::fromJson(archive::JsonImporter& importer) {
    items.clear();
    if (!importer.nextBeginArray()) SORVANE_THROW("Expect an array at line %d", importer.getLine());
    auto self = shared_from_this();
    while (importer.nextArrayItem()) {
        if (auto text = importer.peekString()) {
            importer.flush();
            items.push_back(std::make_shared<StringNode>(self, std::move(*text)));
        } else if (auto number = importer.peekInteger()) {
            importer.flush();
            items.push_back(std::make_shared<IntegerNode>(self, *number));
        } else {
            SORVANE_THROW("Unsupported or invalid object at line %d", importer.getLine());
        }
    }
    if (!importer.nextEndArray()) SORVANE_THROW("Expect the end of an array at line %d", importer.getLine());
}

void ListNode::toJson(archive::JsonExporter& exporter) const {
    exporter.beginArray();
    for (const auto& item : items) {
        if (!item) continue;
        exporter.addArrayItem();
        item->toJson(exporter);
    }
    exporter.endArray();
}
