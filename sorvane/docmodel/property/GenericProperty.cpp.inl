// Shared by the two document models: included inside namespace sorvane::arf
// and namespace sorvane::gltf2, where RootNode and the other names resolve
// to the module's own classes.

namespace {

// No parent: a detached value. (A function, so that values built during
// static initialisation in other files do not meet an unbuilt constant.)
NodeParent detached() { return NodeParent(std::weak_ptr<AbstractNode>()); }

std::string textArgument(const char* text) {
    if (!text) throw std::logic_error("basic_string::_S_construct null not valid");
    return std::string(text);
}

// {"key", value}: a list of two whose first item is a string.
bool isPair(const AbstractNode& node) {
    const auto* list = dynamic_cast<const ListNode*>(&node);
    return list && list->getItems().size() == 2 && list->getItems()[0] && list->getItems()[1] &&
           list->getItems()[0]->isNodeString();
}

} // namespace

GenericProperty::GenericProperty() : nodeRef(std::make_shared<NullNode>(detached())) {}

GenericProperty::GenericProperty(int value) : GenericProperty(static_cast<int64_t>(value)) {}

GenericProperty::GenericProperty(int64_t value) : nodeRef(std::make_shared<IntegerNode>(detached(), value)) {}

GenericProperty::GenericProperty(const std::string& text) : nodeRef(std::make_shared<StringNode>(detached(), text)) {}

GenericProperty::GenericProperty(const char* text) : GenericProperty(textArgument(text)) {}

GenericProperty::GenericProperty(std::initializer_list<GenericProperty> values) { init(values); }

GenericProperty::GenericProperty(const std::shared_ptr<RootNode>& root_, const std::shared_ptr<AbstractNode>& node_,
                                 bool readOnly_)
    : Property(root_, readOnly_), nodeRef(node_) {}

GenericProperty::~GenericProperty() = default;

// Builds the detached value. The elements are copied; a pair's value is
// checked only when it lands in the object, so {"key", {1, 2}} is accepted as
// a pair although a list of a string and a list could not be stored.
void GenericProperty::init(std::initializer_list<GenericProperty> values) {
    bool pairs = values.size() != 0;
    for (const auto& value : values)
        if (!value.nodeRef || !isPair(*value.nodeRef)) pairs = false;
    if (pairs) {
        auto object = std::make_shared<ObjectNode>(detached());
        for (const auto& value : values) {
            const auto& items = static_cast<const ListNode&>(*value.nodeRef).getItems();
            detail::storeInGenericObject(*object, items[0]->getNodeString(), *items[1]);
        }
        nodeRef = object;
        return;
    }
    auto list = std::make_shared<ListNode>(detached());
    for (const auto& value : values) {
        // Nested lists are kept here so that an enclosing brace can still
        // read this list as a pair; storing it in a document checks them.
        list->addNodeItem(detail::cloneGenericNode(value.node(), list));
    }
    nodeRef = list;
}

GenericProperty GenericProperty::createNull() { return GenericProperty(); }
GenericProperty* GenericProperty::createNullPtr() { return new GenericProperty(); }
GenericProperty GenericProperty::createInteger(int64_t value) { return GenericProperty(value); }
GenericProperty* GenericProperty::createIntegerPtr(int64_t value) { return new GenericProperty(value); }
GenericProperty GenericProperty::createString(const std::string& text) { return GenericProperty(text); }
GenericProperty* GenericProperty::createStringPtr(const std::string& text) { return new GenericProperty(text); }
GenericProperty GenericProperty::createList() {
    return GenericProperty(nullptr, std::make_shared<ListNode>(detached()), false);
}
GenericProperty* GenericProperty::createListPtr() { return new GenericProperty(createList()); }

int64_t GenericProperty::getPropertyIndex() const { return node().getNodeIndex(); }
std::string GenericProperty::getPropertyName() const { return node().getNodeName(); }
std::string GenericProperty::getPropertyPath() const { return node().getNodePath(); }
const char* GenericProperty::getPropertyTypeName() const { return node().getNodeTypeName(); }

void GenericProperty::outputRepresentation(std::ostream& out) const {
    const AbstractNode& n = node();
    if (n.isNodeNull()) out << "<null>";
    else out << n;
}

bool GenericProperty::isNull() const { return node().isNodeNull(); }
bool GenericProperty::isInteger() const { return node().isNodeInteger(); }
bool GenericProperty::isString() const { return node().isNodeString(); }
bool GenericProperty::isList() const { return node().isNodeList(); }
bool GenericProperty::isObject() const { return node().isNodeObject(); }
int64_t GenericProperty::getInteger() const { return node().getNodeInteger(); }
std::string GenericProperty::getString() const { return node().getNodeString(); }

bool GenericProperty::empty() const { return node().isNodeEmpty(); }
int64_t GenericProperty::size() const { return node().getNodeSize(); }
void GenericProperty::clear() { writableNode(Change::Clear).removeNodeItems(); }

AbstractNode& GenericProperty::writableNode(Change change) const {
    AbstractNode& n = node();
    if (propertyReadOnly) checkWritable(change, n.getNodePath());  // the path only when it is needed
    return n;
}

bool GenericProperty::has(const std::string& key) const { return node().hasNodeItem(key); }

ObjectItem GenericProperty::get(const std::string& key) const {
    node();
    return ObjectItem(propertyRoot, nodeRef, key, propertyReadOnly);
}

ObjectItem* GenericProperty::getPtr(const std::string& key) const { return new ObjectItem(get(key)); }

GenericProperty* GenericProperty::getPropertyPtr(const std::string& key) const {
    return new GenericProperty(propertyRoot, node().getNodeItem(key), propertyReadOnly);
}

void GenericProperty::set(const std::string& key, const GenericProperty& value) {
    AbstractNode& n = node();
    if (!n.isNodeObject()) SORVANE_THROW("%s is not an object", n.getNodePath().c_str());
    if (propertyReadOnly) checkWritable(Change::Modify, n.getNodePath() + "[" + key + "]");
    detail::storeInGenericObject(n, key, value.node());
}

GenericProperty GenericProperty::get(int64_t index) const {
    return GenericProperty(propertyRoot, node().getNodeItem(index), propertyReadOnly);
}

GenericProperty* GenericProperty::getPtr(int64_t index) const { return new GenericProperty(get(index)); }

void GenericProperty::add(const GenericProperty& value) {
    detail::appendToGenericList(writableNode(Change::AddItem), value.node());
}
void GenericProperty::add(const std::string& text) { add(GenericProperty(text)); }
void GenericProperty::add(const char* text) { add(GenericProperty(text)); }
void GenericProperty::add(int64_t value) { add(GenericProperty(value)); }
void GenericProperty::add(int value) { add(GenericProperty(value)); }

void GenericProperty::add(std::initializer_list<GenericProperty> values) {
    AbstractNode& n = writableNode(Change::AddItem);
    if (!n.isNodeList()) SORVANE_THROW("%s is not a list", n.getNodePath().c_str());
    for (const auto& value : values) detail::appendToGenericList(n, value.node());
}

void GenericProperty::addNull() { detail::appendToGenericList(writableNode(Change::AddNull), GenericProperty().node()); }

std::vector<std::string> GenericProperty::getStringVector() const { return node().getNodeStringVector(); }

void GenericProperty::setInteger(int64_t value) {
    AbstractNode& n = writableNode(Change::Set);
    if (n.isNodeInteger()) n.setNodeInteger(value);
    else nodeRef = std::make_shared<IntegerNode>(detached(), value);
}

void GenericProperty::setString(const std::string& text) {
    AbstractNode& n = writableNode(Change::Set);
    if (n.isNodeString()) n.setNodeString(text);
    else nodeRef = std::make_shared<StringNode>(detached(), text);
}

void GenericProperty::removeProperty() {
    writableNode(Change::RemoveProperty).removeNode();
    nodeRef.reset();
}

GenericProperty::Iterator::Iterator(const GenericProperty& container_,
                                    std::shared_ptr<const std::vector<std::string>> keys_, int64_t index_)
    : propertyRoot(container_.propertyRoot),
      container(container_.nodeRef),
      keys(std::move(keys_)),
      index(index_),
      propertyReadOnly(container_.propertyReadOnly) {}

GenericProperty GenericProperty::Iterator::operator*() const {
    // The keys are those of the time begin() was called.
    if (keys && (index < 0 || index >= static_cast<int64_t>(keys->size())))
        SORVANE_THROW("Getting item from %s: Invalid index %ld", container->getNodePath().c_str(),
                      static_cast<long>(index));
    if (keys) return GenericProperty(propertyRoot, container->getNodeItem((*keys)[static_cast<size_t>(index)]), propertyReadOnly);
    return GenericProperty(propertyRoot, container->getNodeItem(index), propertyReadOnly);
}

GenericProperty::Iterator& GenericProperty::Iterator::operator++() {
    ++index;
    return *this;
}

GenericProperty::Iterator GenericProperty::begin() const {
    const AbstractNode& n = node();
    std::shared_ptr<std::vector<std::string>> keys;
    if (n.isNodeObject()) {
        keys = std::make_shared<std::vector<std::string>>(n.getNodeItemNames());
        std::sort(keys->begin(), keys->end());
    }
    return Iterator(*this, std::move(keys), 0);
}

GenericProperty::Iterator GenericProperty::end() const { return Iterator(*this, nullptr, size()); }
