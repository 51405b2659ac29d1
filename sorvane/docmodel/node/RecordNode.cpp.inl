// Shared by the two document models: included inside namespace sorvane::arf
// and namespace sorvane::gltf2, where RootNode and the other names resolve
// to the module's own classes.

namespace {

// The id list a node is, if it is one. The cross cast walks the whole class
// tree and compares type names; records read one after another share their
// parent, so the last answer is kept per thread. It stays right while the
// same address holds an object of the same dynamic type, for which the cast
// gives the same result.
const IdItemListBase* asIdItemList(const AbstractNode* node) {
    struct Last {
        const AbstractNode* node = nullptr;
        const std::type_info* type = nullptr;
        const IdItemListBase* list = nullptr;
    };
    thread_local Last last;
    if (!node) return nullptr;
    const std::type_info* type = &typeid(*node);
    if (node != last.node || type != last.type) last = Last{node, type, dynamic_cast<const IdItemListBase*>(node)};
    return last.list;
}

} // namespace

RecordNode::~RecordNode() = default;

const RecordField* RecordNode::findField(const std::string& key) const { return findField(key.data(), key.size()); }

namespace {

// Keys are short; comparing them in words is cheaper than a call to memcmp.
// Both sides hold `length` bytes, so the overlapping loads stay inside them.
inline bool sameKey(const RecordField& field, const char* key, size_t length) {
    if (length != field.keyLength) return false;
    const char* other = field.key;
    if (length >= 8) {
        uint64_t a, b;
        for (size_t i = 0; i + 8 < length; i += 8) {
            std::memcpy(&a, key + i, 8);
            std::memcpy(&b, other + i, 8);
            if (a != b) return false;
        }
        std::memcpy(&a, key + length - 8, 8);
        std::memcpy(&b, other + length - 8, 8);
        return a == b;
    }
    if (length >= 4) {
        uint32_t a, b, c, d;
        std::memcpy(&a, key, 4);
        std::memcpy(&b, other, 4);
        std::memcpy(&c, key + length - 4, 4);
        std::memcpy(&d, other + length - 4, 4);
        return a == b && c == d;
    }
    for (size_t i = 0; i < length; ++i)
        if (key[i] != other[i]) return false;
    return true;
}

const RecordField* findIn(const RecordFields& fields, const char* key, size_t length) {
    for (const RecordField* f = fields.begin; f != fields.end; ++f)
        if (sameKey(*f, key, length)) return f;
    return nullptr;
}

void readKeys(RecordNode& self, archive::JsonImporter& importer) {
    self.clearForRead();
    if (!importer.nextBeginObject()) SORVANE_THROW("Expect an object at line %d", importer.getLine());
    // Keys are matched where they lie in the text; a value read leaves the
    // key of this record in place. Documents mostly give the keys in writing
    // order, so the field after the last one found is tried first.
    const RecordFields fields = self.getRecordFields();
    const RecordField* next = fields.begin;
    const char* key = nullptr;
    size_t length = 0;
    while (importer.nextObjectKey(key, length)) {
        const RecordField* f = next != fields.end && sameKey(*next, key, length) ? next : findIn(fields, key, length);
        if (f) {
            next = f + 1;
            if (!f->read(self, importer))
                SORVANE_THROW("Error parsing %s at line %d", std::string(key, length).c_str(), importer.getLine());
            continue;
        }
        const std::string name(key, length);
        std::cerr << "Ignore invalid or unsupported property \"" << name << "\" at line " << importer.getLine()
                  << "\n";
        if (!importer.skipContent(0, 0))
            SORVANE_THROW("Failed to skip content for key \"%s\" at line %d", name.c_str(), importer.getLine());
    }
    self.completeRead();
    if (!importer.nextEndObject()) SORVANE_THROW("Expect the end of an object at line %d", importer.getLine());
}

} // namespace

const RecordField* RecordNode::findField(const char* key, size_t length) const {
    return findIn(getRecordFields(), key, length);
}

const RecordField* RecordNode::findChildField(const std::string& key) const {
    const RecordField* f = findField(key);
    return f && f->child ? f : nullptr;
}

bool RecordNode::isNodeObject() const { return true; }

bool RecordNode::isNodeEmpty() const { return getNodeSize() == 0; }

int64_t RecordNode::getNodeSize() const {
    int64_t count = 0;
    const RecordFields fields = getRecordFields();
    for (const RecordField* f = fields.begin; f != fields.end; ++f)
        if (f->child && f->child(*this)) ++count;
    return count;
}

bool RecordNode::hasNodeItem(const AbstractNode* item) const { return findNodeItemKey(item) != "<invalid>"; }

bool RecordNode::hasNodeItem(const std::string& key) const {
    const RecordField* f = findChildField(key);
    return f && f->child(*this);
}

AbstractNode::ConstRef RecordNode::getNodeItem(const std::string& key) const {
    return const_cast<RecordNode*>(this)->getNodeItem(key);
}

AbstractNode::Ref RecordNode::getNodeItem(const std::string& key) {
    const RecordField* f = findChildField(key);
    if (!f) SORVANE_THROW("Getting item in %s: no property %s", getNodePath().c_str(), key.c_str());
    AbstractNode* child = f->child(*this);
    return child ? child->shared_from_this() : Ref();
}

void RecordNode::setNodeItem(const std::string& key, const Ref& item) {
    const RecordField* f = findChildField(key);
    if (!f) SORVANE_THROW("Setting item in %s: no property %s", getNodePath().c_str(), key.c_str());
    if (!item) {
        f->clearChild(*this);
        return;
    }
    if (!f->setChild(*this, item))
        SORVANE_THROW("Setting item in %s: %s is not a %s", getNodePath().c_str(), key.c_str(),
                      item->getNodeTypeName());
}

void RecordNode::removeNodeItem(const std::string& key) {
    const RecordField* f = findChildField(key);
    if (!f) SORVANE_THROW("Removing item in %s: no property %s", getNodePath().c_str(), key.c_str());
    f->clearChild(*this);
}

void RecordNode::removeNodeItem(const AbstractNode* item) {
    const RecordFields fields = getRecordFields();
    for (const RecordField* f = fields.begin; f != fields.end; ++f) {
        if (f->child && item && f->child(*this) == item) {
            f->clearChild(*this);
            return;
        }
    }
    SORVANE_THROW("Removing at item of %s: Node was not found", getNodePath().c_str());
}

void RecordNode::removeNodeItems() {
    const RecordFields fields = getRecordFields();
    for (const RecordField* f = fields.begin; f != fields.end; ++f)
        if (f->child) f->clearChild(*this);
}

std::vector<std::string> RecordNode::getNodeItemNames() const {
    std::vector<std::string> names;
    const RecordFields fields = getRecordFields();
    for (const RecordField* f = fields.begin; f != fields.end; ++f)
        if (f->child && f->child(*this)) names.emplace_back(f->key);
    return names;
}

std::string RecordNode::findNodeItemKey(const AbstractNode* item) const {
    const RecordFields fields = getRecordFields();
    for (const RecordField* f = fields.begin; f != fields.end; ++f)
        if (f->child && item && f->child(*this) == item) return f->key;
    return "<invalid>";
}

void RecordNode::fromJson(archive::JsonImporter& importer) {
    readRecord(importer);
    itemNameChanged();  // a record read again in place may have a new id and name
}

void RecordNode::readRecord(archive::JsonImporter& importer) {
    try {
        readKeys(*this, importer);
    } catch (...) {
        // A record left by a failed read still has every child it always has
        // (out of memory here, the read's own failure is the one to report).
        try {
            completeRead();
        } catch (...) {
        }
        // The list will not get to tell its index after its last record;
        // the records it already holds may have replaced others.
        itemNameChanged();
        throw;
    }
}

void RecordNode::toJson(archive::JsonExporter& exporter) const {
    exporter.beginObject();
    const RecordFields fields = getRecordFields();
    for (const RecordField* f = fields.begin; f != fields.end; ++f) {
        if (!f->present(*this)) continue;
        exporter.addObjectItem(f->key);
        f->write(*this, exporter);
    }
    exporter.endObject();
}

void RecordNode::failNoValue(const char* key) const {
    SORVANE_THROW("Getting %s.%s: No value", getNodePath().c_str(), key);
}

void RecordNode::failMissing(const char* key) const {
    SORVANE_THROW("Initialization of %s: %s must be defined", getNodePath().c_str(), key);
}

void RecordNode::checkGetIndex(const char* key, int64_t index, size_t size) const {
    if (index < 0 || static_cast<uint64_t>(index) >= size)
        SORVANE_THROW("Getting item of %s.%s: Invalid index %ld", getNodePath().c_str(), key, static_cast<long>(index));
}

void RecordNode::checkSetIndex(const char* key, int64_t index, size_t size) const {
    if (index < 0 || static_cast<uint64_t>(index) >= size)
        SORVANE_THROW("Setting item %ld of %s.%s: Invalid index %ld", static_cast<long>(index), getNodePath().c_str(),
                      key, static_cast<long>(index));
}

void RecordNode::checkRemoveIndex(const char* key, int64_t index, size_t size) const {
    if (index < 0 || static_cast<uint64_t>(index) >= size)
        SORVANE_THROW("Removing item %ld of %s.%s: Invalid index", static_cast<long>(index), getNodePath().c_str(), key);
}

void RecordNode::failNoList(const char* operation, const char* key, int64_t index) const {
    const std::string path = getNodePath();
    if (std::strcmp(operation, "Getting") == 0)
        SORVANE_THROW("Getting item of %s.%s: No list", path.c_str(), key);
    SORVANE_THROW("%s item %ld of %s.%s: No list", operation, static_cast<long>(index), path.c_str(), key);
}

AbstractNode* RecordNode::findReferenceList(const ReferenceTarget& target, const IdItemListBase*& ids) const {
    // An accessor may outlive its document: a missing root reads as a
    // document without the section.
    std::shared_ptr<RootNode> rootNode = root.lock();
    if (!rootNode) SORVANE_THROW("There is no %s", target.section ? target.section : target.list);
    ReferenceListCache::Entry& cached = rootNode->referenceListCache().slot(&target);
    if (cached.target == &target) {
        const AbstractNode* holder = cached.sectionField ? cached.sectionField->child(*rootNode) : rootNode.get();
        // Same objects behind the same fields: the holder's class is the
        // field's, so its list field still applies.
        if (holder && holder == cached.holder &&
            cached.listField->child(static_cast<const RecordNode&>(*holder)) == cached.list) {
            ids = cached.ids;
            return cached.list;
        }
    }
    cached.target = nullptr;

    AbstractNode::Ref holder = rootNode;
    if (target.section) {
        holder = rootNode->getNodeItem(std::string(target.section));
        if (!holder) SORVANE_THROW("There is no %s", target.section);
    }
    AbstractNode::Ref list = holder->hasNodeItem(std::string(target.list)) ? holder->getNodeItem(std::string(target.list))
                                                                           : AbstractNode::Ref();
    ids = asIdItemList(list.get());
    if (!ids) SORVANE_THROW("There is no %s in %s", target.list, holder->getNodePath().c_str());

    // Remembered only where both steps are plain record fields, which the
    // check above can repeat without names.
    const RecordField* sectionField = target.section ? rootNode->findChildField(std::string(target.section)) : nullptr;
    const RecordNode* holderRecord = dynamic_cast<const RecordNode*>(holder.get());
    const RecordField* listField = holderRecord ? holderRecord->findChildField(std::string(target.list)) : nullptr;
    if ((!target.section || (sectionField && sectionField->child(*rootNode) == holder.get())) && listField &&
        listField->child(*holderRecord) == list.get()) {
        cached.sectionField = sectionField;
        cached.listField = listField;
        cached.holder = holder.get();
        cached.list = list.get();
        cached.ids = ids;
        cached.target = &target;
    }
    return list.get();
}

AbstractNode::Ref RecordNode::getReferenceList(const ReferenceTarget& target) const {
    const IdItemListBase* ids = nullptr;
    return findReferenceList(target, ids)->shared_from_this();
}

const IdItemListBase& RecordNode::referenceList(const ReferenceTarget& target, std::string& listPath) const {
    const IdItemListBase* ids = nullptr;
    AbstractNode* list = findReferenceList(target, ids);
    listPath = list->getNodePath();
    return *ids;
}

// The list's path is made only for the message: checks run on every setter.
void RecordNode::checkReference(const ReferenceTarget& target, const char* key, int64_t id) const {
    const IdItemListBase* ids = nullptr;
    AbstractNode* list = findReferenceList(target, ids);
    if (ids->findNodeItemIndexById(id) < 0)
        SORVANE_THROW("Setting %s.%s: Invalid id %ld in %s", getNodePath().c_str(), key, static_cast<long>(id),
                      list->getNodePath().c_str());
}

void RecordNode::checkReferenceItem(const ReferenceTarget& target, const char* key, int64_t index, int64_t id) const {
    const IdItemListBase* ids = nullptr;
    AbstractNode* list = findReferenceList(target, ids);
    if (ids->findNodeItemIndexById(id) < 0)
        SORVANE_THROW("Setting item %ld of %s.%s: Invalid id %ld in %s", static_cast<long>(index),
                      getNodePath().c_str(), key, static_cast<long>(id), list->getNodePath().c_str());
}

void RecordNode::checkReferenceItems(const ReferenceTarget& target, const char* key,
                                     const std::vector<int64_t>& values) const {
    if (values.empty()) return;
    const IdItemListBase* ids = nullptr;
    AbstractNode* list = findReferenceList(target, ids);
    for (size_t i = 0; i < values.size(); ++i)
        if (!ids->hasIndexedId(values[i]) && ids->findNodeItemIndexById(values[i]) < 0)
            SORVANE_THROW("Setting item %ld of %s.%s: Invalid id %ld in %s", static_cast<long>(i),
                          getNodePath().c_str(), key, static_cast<long>(values[i]), list->getNodePath().c_str());
}

void RecordNode::checkReferenceAdd(const ReferenceTarget& target, const char* key, int64_t id) const {
    const IdItemListBase* ids = nullptr;
    AbstractNode* list = findReferenceList(target, ids);
    if (ids->findNodeItemIndexById(id) < 0)
        SORVANE_THROW("Adding item to %s.%s: Invalid id %ld in %s", getNodePath().c_str(), key, static_cast<long>(id),
                      list->getNodePath().c_str());
}

void RecordNode::checkInitReference(const ReferenceTarget& target, int64_t id) const {
    const IdItemListBase* ids = nullptr;
    AbstractNode* list = findReferenceList(target, ids);
    if (ids->findNodeItemIndexById(id) < 0)
        SORVANE_THROW("id %ld does not exist in %s", static_cast<long>(id), list->getNodePath().c_str());
}

int64_t RecordNode::indexListSize(const char* list, std::string& listPath) const {
    std::shared_ptr<RootNode> rootNode = root.lock();
    if (!rootNode) SORVANE_THROW("There is no %s in %s", list, "");
    AbstractNode::Ref node = rootNode->getNodeItem(std::string(list));
    if (!node) SORVANE_THROW("There is no %s in %s", list, rootNode->getNodePath().c_str());
    listPath = node->getNodePath();
    return node->getNodeSize();
}

void RecordNode::checkIndexReference(const char* list, const char* key, int64_t index) const {
    std::string listPath;
    const int64_t size = indexListSize(list, listPath);
    if (index < 0 || index >= size)
        SORVANE_THROW("Setting %s.%s: Invalid index %ld in %s", getNodePath().c_str(), key, static_cast<long>(index),
                      listPath.c_str());
}

void RecordNode::checkIndexReferenceItem(const char* list, const char* key, int64_t item, int64_t index) const {
    std::string listPath;
    const int64_t size = indexListSize(list, listPath);
    if (index < 0 || index >= size)
        SORVANE_THROW("Setting item %ld of %s.%s: Invalid index %ld in %s", static_cast<long>(item),
                      getNodePath().c_str(), key, static_cast<long>(index), listPath.c_str());
}

void RecordNode::checkIndexReferenceAdd(const char* list, const char* key, int64_t index) const {
    std::string listPath;
    const int64_t size = indexListSize(list, listPath);
    if (index < 0 || index >= size)
        SORVANE_THROW("Adding item to %s.%s: Invalid index %ld in %s", getNodePath().c_str(), key,
                      static_cast<long>(index), listPath.c_str());
}

void RecordNode::checkMapIndexReference(const char* list, const char* key, const std::string& item,
                                        int64_t index) const {
    std::string listPath;
    const int64_t size = indexListSize(list, listPath);
    if (index < 0 || index >= size)
        SORVANE_THROW("Setting item %s of %s.%s: Invalid index %ld in %s", item.c_str(), getNodePath().c_str(), key,
                      static_cast<long>(index), listPath.c_str());
}

void RecordNode::checkMapsIndexReference(const char* list, const char* key, int64_t position, const std::string& item,
                                         int64_t index) const {
    std::string listPath;
    const int64_t size = indexListSize(list, listPath);
    if (index < 0 || index >= size)
        SORVANE_THROW("Setting item %s.%s[%ld][%s]: Invalid index %ld in %s", getNodePath().c_str(), key,
                      static_cast<long>(position), item.c_str(), static_cast<long>(index), listPath.c_str());
}

void RecordNode::initRecordId(int64_t& member, const IdItemListBase* list, const std::optional<int64_t>& id) {
    member = 0;
    if (!list) SORVANE_THROW("Initialization of %s: Internal error: no parent", getNodePath().c_str());
    if (id) {
        if (list->findNodeItemIndexById(*id) >= 0)
            SORVANE_THROW("Initialization of %s: id %ld is already used", getNodePath().c_str(), static_cast<long>(*id));
        member = *id;
        return;
    }
    std::optional<int64_t> free = list->getNodeItemFreeId();
    if (!free) SORVANE_THROW("Initialization of %s: Unable to generate a new id", getNodePath().c_str());
    member = *free;
}

void RecordNode::setRecordId(int64_t& member, const IdItemListBase* list, int64_t id) {
    if (id == member) return;
    if (parent.expired()) SORVANE_THROW("Setting %s.id: No parent", getNodePath().c_str());
    if (!list) SORVANE_THROW("Setting %s.id: Invalid parent", getNodePath().c_str());
    if (list->findNodeItemIndexById(id) >= 0)
        SORVANE_THROW("Setting %s.id: %ld already used", getNodePath().c_str(), static_cast<long>(id));
    const int64_t old = member;
    member = id;
    list->nodeItemIdChanged(this, old, id);
}

void RecordNode::itemNameChanged() const {
    const AbstractNode::Ref owner = parent.lock();
    if (const IdItemListBase* list = asIdItemList(owner.get())) list->nodeItemsChanged();
}
