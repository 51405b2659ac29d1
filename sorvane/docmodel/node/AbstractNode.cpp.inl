// Shared by the two document models: included inside namespace sorvane::arf
// and namespace sorvane::gltf2, where RootNode and the other names resolve
// to the module's own classes.

AbstractNode::AbstractNode() = default;

AbstractNode::AbstractNode(const NodeParent& parent_) { adoptParent(parent_.node); }

AbstractNode::~AbstractNode() = default;

std::weak_ptr<RootNode> AbstractNode::getNodeRoot() const { return root; }

AbstractNode::WeakRef AbstractNode::getNodeParent() const { return parent; }

void AbstractNode::setNodeParent(const WeakRef& parent_) { setNodeParent(parent_.lock()); }

void AbstractNode::setNodeParent(const Ref& parent_) { adoptParent(parent_.get()); }

void AbstractNode::adoptParent(AbstractNode* parent_) {
    if (!parent_) {
        parent.reset();
        root.reset();
        rootReferences = nullptr;
        return;
    }
    // The parent is held by a shared reference meanwhile, so its own weak
    // link is set: a node made under it takes its links without a counted
    // copy of the caller's reference. Direct children of the root take the
    // root from the parent itself, everything deeper from the chain; the
    // parent's link is read in place (no class overrides getNodeRoot).
    parent = parent_->weak_from_this();
    if (!parent_->root.expired()) {
        root = parent_->root;
        rootReferences = parent_->rootReferences;
        return;
    }
    if (auto* top = dynamic_cast<RootNode*>(parent_)) {
        root = std::shared_ptr<RootNode>(parent_->shared_from_this(), top);
        rootReferences = &top->referenceListCache();
        rootReferences->owner = top;
    } else {
        root.reset();
        rootReferences = nullptr;
    }
}

bool AbstractNode::isNodePresent() const {
    auto p = parent.lock();
    return p && p->hasNodeItem(this);
}

int64_t AbstractNode::getNodeIndex() const {
    auto p = parent.lock();
    if (!p || !p->isNodeList()) return -1;
    return p->findNodeItemIndex(this);
}

std::optional<std::string> AbstractNode::getNodeIdRepr() const {
    auto p = parent.lock();
    if (!p) return std::string("<noparent>");
    if (!p->isNodeList()) return std::string("<parentnotlist>");
    return std::to_string(p->findNodeItemIndex(this));
}

std::string AbstractNode::getNodeName() const {
    auto p = parent.lock();
    if (!p) return "<noparent>";
    if (!p->isNodeObject()) return "<parentnotobject>";
    return p->findNodeItemKey(this);
}

std::string AbstractNode::getNodePath() const {
    auto p = parent.lock();
    if (!p) return getNodeName();
    std::string path = p->getNodePath();
    if (p->isNodeList()) {
        auto id = getNodeIdRepr();
        path += '[';
        path += id ? *id : std::string("?");
        path += ']';
        return path;
    }
    if (path.empty()) return getNodeName();
    path += '.';
    path += getNodeName();
    return path;
}

void AbstractNode::removeNode() {
    auto p = parent.lock();
    if (!p) SORVANE_THROW("Removing %s: No parent", getNodePath().c_str());
    p->removeNodeItem(this);
}

void AbstractNode::failNotContainer() const { SORVANE_THROW("%s is not a container", getNodePath().c_str()); }
void AbstractNode::failNotList() const { SORVANE_THROW("%s is not a list", getNodePath().c_str()); }
void AbstractNode::failNotObject() const { SORVANE_THROW("%s is not an object", getNodePath().c_str()); }
void AbstractNode::failNotString() const { SORVANE_THROW("%s is not a string", getNodePath().c_str()); }
void AbstractNode::failNotInteger() const { SORVANE_THROW("%s is not an integer", getNodePath().c_str()); }

bool AbstractNode::isNodeNull() const { return false; }
bool AbstractNode::isNodeInteger() const { return false; }
int64_t AbstractNode::getNodeInteger() const { failNotInteger(); }
void AbstractNode::setNodeInteger(int64_t) { failNotInteger(); }
bool AbstractNode::isNodeString() const { return false; }
std::string AbstractNode::getNodeString() const { failNotString(); }
void AbstractNode::setNodeString(const std::string&) { failNotString(); }

bool AbstractNode::isNodeEmpty() const { failNotContainer(); }
int64_t AbstractNode::getNodeSize() const { failNotContainer(); }
bool AbstractNode::hasNodeItem(const AbstractNode*) const { failNotContainer(); }
void AbstractNode::removeNodeItem(const AbstractNode*) { failNotContainer(); }
void AbstractNode::removeNodeItems() { failNotContainer(); }
std::vector<std::string> AbstractNode::getNodeItemNames() const { failNotContainer(); }
const char* AbstractNode::getNodeItemTypeName() const { failNotContainer(); }

bool AbstractNode::isNodeObject() const { return false; }
bool AbstractNode::hasNodeItem(const std::string&) const { failNotObject(); }
AbstractNode::ConstRef AbstractNode::getNodeItem(const std::string&) const { failNotObject(); }
AbstractNode::Ref AbstractNode::getNodeItem(const std::string&) { failNotObject(); }
void AbstractNode::setNodeItem(const std::string&, const Ref&) { failNotObject(); }
void AbstractNode::removeNodeItem(const std::string&) { failNotObject(); }
std::string AbstractNode::findNodeItemKey(const AbstractNode*) const { failNotObject(); }

bool AbstractNode::isNodeList() const { return false; }
bool AbstractNode::hasNodeItem(int64_t) const { failNotList(); }
AbstractNode::ConstRef AbstractNode::getNodeItem(int64_t) const { failNotList(); }
AbstractNode::Ref AbstractNode::getNodeItem(int64_t) { failNotList(); }
void AbstractNode::addNodeItem(const Ref&) { failNotList(); }
void AbstractNode::setNodeItem(int64_t, const Ref&) { failNotList(); }
void AbstractNode::removeNodeItem(int64_t) { failNotList(); }
int64_t AbstractNode::findNodeItemIndex(const AbstractNode*) const { failNotList(); }
int64_t AbstractNode::findNodeItemIndexByName(const std::string&) const { failNotList(); }
std::vector<std::string> AbstractNode::getNodeStringVector() const { failNotList(); }

std::string AbstractNode::toJsonString(const archive::JsonExporter::Options& options) const {
    archive::StringSink out;
    {
        archive::JsonExporter exporter(out, options);
        toJson(exporter);
    }
    return out.take();
}

std::ostream& operator<<(std::ostream& out, const AbstractNode& node) {
    archive::JsonExporter exporter(out);
    node.toJson(exporter);
    exporter.flush();
    return out;
}

// Generated records put their reference members first; the setters read those
// together with the links above, so the base must not outgrow one cache line.
static_assert(sizeof(void*) != 8 || sizeof(AbstractNode) <= 64, "node links outgrow a cache line");
