// Shared by the two document models: included inside namespace sorvane::arf
// and namespace sorvane::gltf2, where RootNode and the other names resolve
// to the module's own classes.

// What reference setters need of a target list, whatever its record class.
class SORVANE_API IdItemListBase {
public:
    virtual ~IdItemListBase();
    virtual int64_t findNodeItemIndexById(int64_t id) const = 0;
    virtual int64_t findNodeItemIdByName(const std::string& name) const = 0;
    virtual std::optional<int64_t> getNodeItemFreeId() const = 0;
};

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
        if (!importer.nextBeginArray()) SORVANE_THROW("Expect an array at line %d", importer.getLine());
        auto self = this->shared_from_this();
        while (importer.nextArrayItem()) {
            auto item = std::make_shared<Record>(self);
            item->fromJson(importer);
            this->items.push_back(std::move(item));
        }
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

// An item list whose records carry unique 64-bit ids.
template <class Record>
class SORVANE_API IdItemList : public ItemList<Record>, public IdItemListBase {
public:
    using RecordRef = std::shared_ptr<Record>;

    const RecordRef& get(int64_t id) const { return this->items[indexOf(id)]; }

    void set(int64_t id, const RecordRef& item) { this->setByIndex(static_cast<int64_t>(indexOf(id)), item); }

    void remove(int64_t id) { this->items.erase(this->items.begin() + static_cast<std::ptrdiff_t>(indexOf(id))); }

    int64_t findNodeItemIndexById(int64_t id) const override {
        for (size_t i = 0; i < this->items.size(); ++i)
            if (this->items[i] && this->items[i]->getId() == id) return static_cast<int64_t>(i);
        return -1;
    }

    int64_t findNodeItemIdByName(const std::string& name) const override {
        for (const auto& item : this->items)
            if (item && item->getItemName() == name) return item->getId();
        return -1;
    }

    // The largest id plus one; ids are never reused while a higher one exists.
    std::optional<int64_t> getNodeItemFreeId() const override {
        int64_t candidate = 1;
        for (const auto& item : this->items)
            if (item && item->getId() >= candidate) candidate = item->getId() + 1;
        return candidate;
    }

    void add(const RecordRef& item) override {
        if (!item) SORVANE_THROW("Adding item to %s:\nItem is NULL", this->getNodePath().c_str());
        if (findNodeItemIndexById(item->getId()) >= 0)
            SORVANE_THROW("Adding item to %s:\nid %ld is already used", this->getNodePath().c_str(),
                          static_cast<long>(item->getId()));
        ItemList<Record>::add(item);
    }
    using ItemList<Record>::add;

protected:
    using ItemList<Record>::ItemList;

private:
    size_t indexOf(int64_t id) const {
        int64_t index = findNodeItemIndexById(id);
        if (index < 0)
            SORVANE_THROW("Getting item from %s: Invalid id %ld", this->getNodePath().c_str(), static_cast<long>(id));
        return static_cast<size_t>(index);
    }
};
