// Shared by the two document models: included inside namespace sorvane::arf
// and namespace sorvane::gltf2, where RootNode and the other names resolve
// to the module's own classes.

ObjectItem::ObjectItem() = default;

ObjectItem::ObjectItem(const std::shared_ptr<RootNode>& root_, const std::shared_ptr<AbstractNode>& object_,
                       const std::string& key_, bool readOnly_)
    : Property(root_, readOnly_), object(object_), key(key_) {
    if (!object) SORVANE_THROW("Node is null");
    if (!object->isNodeObject()) SORVANE_THROW("%s is not an object", object->getNodePath().c_str());
}

ObjectItem::~ObjectItem() = default;

int64_t ObjectItem::getPropertyIndex() const { return -1; }
std::string ObjectItem::getPropertyName() const { return key; }
std::string ObjectItem::getPropertyPath() const { return owner().getNodePath() + "[\"" + key + "\"]"; }

const char* ObjectItem::getPropertyTypeName() const {
    const AbstractNode& o = owner();
    return o.hasNodeItem(key) ? o.getNodeItem(key)->getNodeTypeName() : "null";
}

void ObjectItem::outputRepresentation(std::ostream& out) const {
    const AbstractNode& o = owner();
    if (!o.hasNodeItem(key)) {
        out << "<null>";
        return;
    }
    getItem().outputRepresentation(out);
}

bool ObjectItem::isPropertyPresent() const { return owner().hasNodeItem(key); }

GenericProperty ObjectItem::getItem() const {
    AbstractNode& o = owner();
    if (!o.hasNodeItem(key)) SORVANE_THROW("%s[%s] doest not exist", o.getNodePath().c_str(), key.c_str());
    return GenericProperty(propertyRoot, o.getNodeItem(key), propertyReadOnly);
}

GenericProperty* ObjectItem::getItemPtr() const { return new GenericProperty(getItem()); }

AbstractNode& ObjectItem::modifiableOwner() const {
    AbstractNode& o = owner();
    if (propertyReadOnly) checkWritable(Change::Modify, o.getNodePath() + "[" + key + "]");  // path only when needed
    return o;
}

AbstractNode& ObjectItem::writableOwner(Change change) const {
    AbstractNode& o = owner();
    if (propertyReadOnly) checkWritable(change, getPropertyPath());
    return o;
}

void ObjectItem::setInteger(int64_t value) {
    AbstractNode& o = modifiableOwner();
    if (o.hasNodeItem(key)) {
        auto item = o.getNodeItem(key);
        if (item->isNodeInteger()) return item->setNodeInteger(value);
    }
    o.setNodeItem(key, std::make_shared<IntegerNode>(object, value));
}

void ObjectItem::setString(const std::string& text) {
    AbstractNode& o = modifiableOwner();
    if (o.hasNodeItem(key)) {
        auto item = o.getNodeItem(key);
        if (item->isNodeString()) return item->setNodeString(text);
    }
    o.setNodeItem(key, std::make_shared<StringNode>(object, text));
}

ObjectItem& ObjectItem::operator=(const GenericProperty& value) {
    AbstractNode& o = modifiableOwner();
    if (!value.getNode()) SORVANE_THROW("Invalid node");
    detail::storeInGenericObject(o, key, *value.getNode());
    return *this;
}

ObjectItem& ObjectItem::operator=(const ObjectItem& other) {
    modifiableOwner();
    return *this = other.getItem();
}

void ObjectItem::add(const GenericProperty& value) {
    AbstractNode& o = writableOwner(Change::AddValue);
    if (!value.getNode()) SORVANE_THROW("Invalid node");
    detail::appendToGenericList(*detail::listUnderKey(o, key), *value.getNode());
}
void ObjectItem::add(const std::string& text) { add(GenericProperty(text)); }
void ObjectItem::add(const char* text) { add(GenericProperty(text)); }
void ObjectItem::add(int64_t value) { add(GenericProperty(value)); }
void ObjectItem::add(int value) { add(GenericProperty(value)); }

void ObjectItem::addNull() {
    AbstractNode& o = writableOwner(Change::AddNull);
    detail::appendToGenericList(*detail::listUnderKey(o, key), *GenericProperty().getNode());
}

void ObjectItem::removeProperty() { writableOwner(Change::RemoveProperty).removeNodeItem(key); }
