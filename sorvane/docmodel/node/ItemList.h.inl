// Shared by the two document models: included inside namespace sorvane::arf
// and namespace sorvane::gltf2, where RootNode and the other names resolve
// to the module's own classes.

// A JSON array of records of one class. The record class gives the type
// names (kTypeName, kListTypeName) and whether its items have names.
template <class Record>
class SORVANE_API ItemList : public BasicList<Record> {
public:
    using RecordRef = std::shared_ptr<Record>;
    using Base = BasicList<Record>;

    const char* getNodeTypeName() const override { return Record::kListTypeName; }
    const char* getNodeItemTypeName() const override { return Record::kTypeName; }

    std::vector<std::string> getNodeItemNames() const override {
        std::vector<std::string> names;
        if constexpr (Record::kHasName) {
            names.reserve(this->items.size());
            for (size_t i = 0; i < this->items.size(); ++i) {
                const auto& item = this->items[i];
                names.push_back(item ? item->getItemName() : std::string(Record::kTypeName) + " " + std::to_string(i));
            }
        }
        return names;
    }

    int64_t findNodeItemIndexByName(const std::string& name) const override {
        if constexpr (Record::kHasName) {
            for (size_t i = 0; i < this->items.size(); ++i)
                if (this->items[i] && this->items[i]->getItemName() == name) return static_cast<int64_t>(i);
        } else {
            (void)name;
        }
        return -1;
    }

    // Appends the item and adopts it.
    virtual void add(const RecordRef& item) {
        if (!item) SORVANE_THROW("Adding item to %s:\nItem is NULL", this->getNodePath().c_str());
        item->setNodeParent(this->shared_from_this());
        this->items.push_back(item);
    }

    void fromJson(archive::JsonImporter& importer) override {
        this->items.clear();
        this->itemsChanged();  // a read that fails half-way must not leave the old ids indexed
        if (!importer.nextBeginArray()) SORVANE_THROW("Expect an array at line %d", importer.getLine());
        auto self = this->shared_from_this();
        while (importer.nextArrayItem()) {
            auto item = std::make_shared<Record>(self);
            item->readRecord(importer);
            // Room for a few at once: most lists are short.
            if (this->items.empty()) this->items.reserve(4);
            this->items.push_back(std::move(item));
        }
        this->itemsChanged();
        if (!importer.nextEndArray()) SORVANE_THROW("Expect the end of an array at line %d", importer.getLine());
    }

    void toJson(archive::JsonExporter& exporter) const override {
        exporter.beginArray();
        for (const auto& item : this->items) {
            if (!item) continue;  // only the generic append can leave one; nothing to write for it
            exporter.addArrayItem();
            item->toJson(exporter);
        }
        exporter.endArray();
    }

protected:
    using Base::Base;
};

// An item list whose records carry unique 64-bit ids. Lookups by id and
// name and the free id go through an index of the items, so that init, the
// reference setters and get stay cheap on long lists. The index follows
// appends (also those made straight on `items`) item by item, is rebuilt
// after any other change of the items, and is told of id and name changes by
// the records themselves.
template <class Record>
class SORVANE_API IdItemList : public ItemList<Record>, public IdItemListBase {
public:
    using RecordRef = std::shared_ptr<Record>;

    const RecordRef& get(int64_t id) const { return this->items[indexOf(id)]; }

    void set(int64_t id, const RecordRef& item) { this->setByIndex(static_cast<int64_t>(indexOf(id)), item); }

    void remove(int64_t id) {
        this->items.erase(this->items.begin() + static_cast<std::ptrdiff_t>(indexOf(id)));
        itemsChanged();
    }

    // The first item with the id, as a scan would find it.
    int64_t findNodeItemIndexById(int64_t id) const override {
        refreshIndex();
        return ids.find(id);
    }

    int64_t findNodeItemIdByName(const std::string& name) const override {
        int64_t index = findNodeItemIndexByName(name);
        return index < 0 ? -1 : this->items[static_cast<size_t>(index)]->getId();
    }

    int64_t findNodeItemIndexByName(const std::string& name) const override {
        if constexpr (Record::kHasName) {
            refreshIndex();
            auto it = names.find(name);
            return it == names.end() ? -1 : it->second;
        } else {
            (void)name;
            return -1;
        }
    }

    // The largest id plus one; ids are never reused while a higher one exists.
    // None when the largest id is the largest value.
    std::optional<int64_t> getNodeItemFreeId() const override {
        refreshIndex();
        if (largestId == INT64_MAX) return std::nullopt;
        return largestId < 1 ? 1 : largestId + 1;
    }

    void add(const RecordRef& item) override {
        if (!item) SORVANE_THROW("Adding item to %s:\nItem is NULL", this->getNodePath().c_str());
        if (findNodeItemIndexById(item->getId()) >= 0)
            SORVANE_THROW("Adding item to %s:\nid %ld is already used", this->getNodePath().c_str(),
                          static_cast<long>(item->getId()));
        ItemList<Record>::add(item);
    }
    using ItemList<Record>::add;

    void nodeItemIdChanged(const AbstractNode* item, int64_t oldId, int64_t newId) const override {
        if (indexStale || indexed > this->items.size() || sharedIds) {
            indexStale = true;
            return;
        }
        const int64_t index = ids.find(oldId);
        if (index < 0 || this->items[static_cast<size_t>(index)].get() != item || oldId == largestId) {
            indexStale = true;
            return;
        }
        ids.erase(oldId);
        if (!ids.insert(newId, index)) indexStale = true;
        if (newId > largestId) largestId = newId;
    }

    void nodeItemsChanged() const override { indexStale = true; }

protected:
    using ItemList<Record>::ItemList;

    void itemsChanged() override { indexStale = true; }

private:
    size_t indexOf(int64_t id) const {
        int64_t index = findNodeItemIndexById(id);
        if (index < 0)
            SORVANE_THROW("Getting item from %s: Invalid id %ld", this->getNodePath().c_str(), static_cast<long>(id));
        return static_cast<size_t>(index);
    }

    void refreshIndex() const {
        const auto& items = this->items;
        if (indexStale || items.size() < indexed) {
            ids.clear();
            names.clear();
            indexed = 0;
            largestId = 0;
            sharedIds = false;
            indexStale = false;
        }
        for (; indexed < items.size(); ++indexed) {
            const auto& item = items[indexed];
            if (!item) continue;  // left by the generic append; found by nothing
            const int64_t id = item->getId();
            if (!ids.insert(id, static_cast<int64_t>(indexed))) sharedIds = true;
            if (id > largestId) largestId = id;
            if constexpr (Record::kHasName) names.emplace(item->getItemName(), static_cast<int64_t>(indexed));
        }
    }

    // First position of each name (ids: in the base); `indexed` items are in them.
    mutable std::unordered_map<std::string, int64_t> names;
    mutable size_t indexed = 0;
    mutable int64_t largestId = 0;
    mutable bool sharedIds = false;  // a document may hold an id twice
};
