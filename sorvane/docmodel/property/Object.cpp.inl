// Shared by the two document models: included inside namespace sorvane::arf
// and namespace sorvane::gltf2, where RootNode and the other names resolve
// to the module's own classes.

Object::Object() = default;

Object::Object(const GenericProperty& value) : GenericProperty(value) {}

Object::~Object() = default;

const char* Object::getPropertyTypeName() const { return "Object"; }

std::shared_ptr<AbstractNode> Object::copyOf(const GenericProperty& source, const std::shared_ptr<AbstractNode>& parent) {
    if (!source.getNode()) failInvalidNode();
    const auto* object = dynamic_cast<const ObjectNode*>(source.getNode().get());
    if (!object) SORVANE_THROW("Cloning %s: %s is not an object", source.getPropertyPath().c_str(),
                               source.getNode()->getNodeTypeName());
    auto copy = std::make_shared<ObjectNode>(parent);
    for (const auto& entry : object->getItems())
        if (entry.second) detail::storeInGenericObject(*copy, entry.first, *entry.second);
    return copy;
}
