// Shared by the two document models: included inside namespace sorvane::arf
// and namespace sorvane::gltf2, where RootNode and the other names resolve
// to the module's own classes.

class AbstractNode;

// What reference setters need of a target list, whatever its record class.
class SORVANE_API IdItemListBase {
public:
    virtual ~IdItemListBase();
    virtual int64_t findNodeItemIndexById(int64_t id) const = 0;
    virtual int64_t findNodeItemIdByName(const std::string& name) const = 0;
    virtual std::optional<int64_t> getNodeItemFreeId() const = 0;

    // Told by a record of the list when its id or name changed, so that the
    // lookups above stay right.
    virtual void nodeItemIdChanged(const AbstractNode* item, int64_t oldId, int64_t newId) const {
        (void)item, (void)oldId, (void)newId;
    }
    virtual void nodeItemsChanged() const {}

    // True when the index, as last brought up to date, holds the id: the
    // inline first try of every reference check. False means "ask
    // findNodeItemIndexById", which also sees items appended since. An item
    // removed or replaced, or an id changed, marks the index stale first, so
    // a true answer is never out of date.
    bool hasIndexedId(int64_t id) const { return !indexStale && ids.find(id) >= 0; }

protected:
    // First position of each id, over the items indexed so far.
    mutable IdIndex ids;
    mutable bool indexStale = true;
};
