// Shared by the two document models: included inside namespace sorvane::arf
// and namespace sorvane::gltf2, where RootNode and the other names resolve
// to the module's own classes.

// A flat JSON object of strings, integers and lists of those, keyed by text.
template <class Base>
class SORVANE_API ObjectNodeTemplate : public Base {
public:
    using Ref = typename Base::Ref;
    using ConstRef = typename Base::ConstRef;
    using WeakRef = typename Base::WeakRef;

    explicit ObjectNodeTemplate(const NodeParent& parent) : Base(parent) {}

    void initDefault() { items.clear(); }
    void incompleteInit() { items.clear(); }

    const char* getNodeTypeName() const override { return "object"; }
    const char* getNodeItemTypeName() const override { return "node"; }
    bool isNodeObject() const override { return true; }
    bool isNodeEmpty() const override { return items.empty(); }
    int64_t getNodeSize() const override { return static_cast<int64_t>(items.size()); }

    bool hasNodeItem(const std::string& key) const override { return items.count(key) != 0; }
    bool hasNodeItem(const Base* item) const override { return findKey(item) != nullptr; }
    using Base::hasNodeItem;

    ConstRef getNodeItem(const std::string& key) const override { return find(key); }
    Ref getNodeItem(const std::string& key) override { return find(key); }
    using Base::getNodeItem;

    void setNodeItem(const std::string& key, const Ref& item) override {
        if (!item) SORVANE_THROW("Setting item in %s:\nItem is NULL", this->getNodePath().c_str());
        item->setNodeParent(this->shared_from_this());
        items[key] = item;
    }
    using Base::setNodeItem;

    void removeNodeItem(const std::string& key) override {
        if (items.erase(key) == 0)
            SORVANE_THROW("Removing item from %s:\nNo key %s", this->getNodePath().c_str(), key.c_str());
    }
    void removeNodeItem(const Base* item) override {
        const std::string* key = findKey(item);
        if (!key) SORVANE_THROW("Removing at item of %s: Node was not found", this->getNodePath().c_str());
        items.erase(*key);
    }
    using Base::removeNodeItem;
    void removeNodeItems() override { items.clear(); }

    std::vector<std::string> getNodeItemNames() const override {
        std::vector<std::string> names;
        names.reserve(items.size());
        for (const auto& entry : items) names.push_back(entry.first);
        return names;
    }

    std::string findNodeItemKey(const Base* item) const override {
        const std::string* key = findKey(item);
        return key ? *key : std::string("<invalid>");
    }

    void fromJson(archive::JsonImporter& importer) override {
        items.clear();
        if (!importer.nextBeginObject()) SORVANE_THROW("Expect an object at line %d", importer.getLine());
        auto self = this->shared_from_this();
        std::string key;
        while (importer.nextObjectItem(key)) {
            if (auto text = importer.peekString()) {
                importer.flush();
                items[key] = std::make_shared<StringNode>(self, std::move(*text));
            } else if (auto number = importer.peekInteger()) {
                importer.flush();
                items[key] = std::make_shared<IntegerNode>(self, *number);
            } else if (importer.peekBeginArray()) {
                importer.rollback();
                auto list = std::make_shared<ListNode>(self);
                items[key] = list;
                list->fromJson(importer);
            } else {
                SORVANE_THROW("Unsupported or invalid object at line %d", importer.getLine());
            }
        }
        if (!importer.nextEndObject()) SORVANE_THROW("Expect the end of an object at line %d", importer.getLine());
    }

    // Keys are written in byte order, so that a value read back and written
    // again gives the same text (a hash map's own order would not).
    void toJson(archive::JsonExporter& exporter) const override {
        std::vector<const typename decltype(items)::value_type*> sorted;
        sorted.reserve(items.size());
        for (const auto& entry : items) sorted.push_back(&entry);
        std::sort(sorted.begin(), sorted.end(), [](auto a, auto b) { return a->first < b->first; });
        exporter.beginObject();
        for (const auto* entry : sorted) {
            exporter.addObjectItem(entry->first);
            entry->second->toJson(exporter);
        }
        exporter.endObject();
    }

    const std::unordered_map<std::string, Ref>& getItems() const { return items; }

private:
    Ref find(const std::string& key) const {
        auto found = items.find(key);
        if (found == items.end())
            SORVANE_THROW("Getting item from %s: No key %s", this->getNodePath().c_str(), key.c_str());
        return found->second;
    }

    const std::string* findKey(const Base* item) const {
        for (const auto& entry : items)
            if (entry.second.get() == item) return &entry.first;
        return nullptr;
    }

    std::unordered_map<std::string, Ref> items;
};
