#ifndef SORVANE_GLTF2_PROPERTY_INDEXMAPMEMBERS_H
#define SORVANE_GLTF2_PROPERTY_INDEXMAPMEMBERS_H

#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "sorvane/datatree/DataTree.h"
#include "sorvane/gltf2/node/RootNode.h"
#include "sorvane/gltf2/node/buffer/BinaryData.h"
#include "sorvane/gltf2/node/mesh/primitive/PrimitiveData.h"
#include "sorvane/gltf2/property/MemberAccessors.h"
#include "sorvane/gltf2/property/accessor/Accessor.h"

// The accessors of text-to-index maps (a primitive's "attributes") and of
// lists of them ("targets"): one entry is an accessor index under a key.

namespace sorvane::gltf2 {

namespace detail {
inline Accessor accessorByIndex(const std::shared_ptr<RootNode>& root, int64_t index, bool readOnly) {
    if (!root) SORVANE_THROW("Invalid node");
    const auto& list = root->getAccessors();
    if (!list) SORVANE_THROW("There is no accessors in %s", root->getNodePath().c_str());
    return Accessor(root, list->getByIndex(index), readOnly);
}
} // namespace detail

// One entry: the index under `key`, of the map itself (position -1) or of
// the map at `position` of a list of maps.
template <class NodeT, class D>
class SORVANE_API IndexMapItem : public MemberProperty<NodeT, D> {
public:
    using Base = MemberProperty<NodeT, D>;
    using Change = Property::Change;

    IndexMapItem() = default;
    IndexMapItem(const std::shared_ptr<RootNode>& root_, const std::shared_ptr<NodeT>& owner_, bool readOnly_,
                 int64_t position_, std::string key_)
        : Base(root_, owner_, readOnly_), position(position_), key(std::move(key_)) {}

    std::string getPropertyName() const override { return key; }
    std::string getPropertyPath() const override {
        std::string path = Base::getPropertyPath();
        if (position >= 0) path += "[" + std::to_string(position) + "]";
        return path + "[" + key + "]";
    }
    const char* getPropertyTypeName() const override { return "integer"; }
    void outputRepresentation(std::ostream& out) const override { out << getIndex(); }
    bool isPropertyPresent() const {
        if constexpr (kList) return D::hasValue(this->node(), position, key);
        else return D::hasValue(this->node(), key);
    }

    int64_t getIndex() const {
        if constexpr (kList) return D::getValue(this->node(), position, key);
        else return D::getValue(this->node(), key);
    }
    void set(int64_t index) {
        NodeT& n = this->writableNode(Change::SetItem);
        if constexpr (kList) D::setValue(n, position, key, index);
        else D::setValue(n, key, index);
    }
    void set(const Accessor& accessor) { set(accessor.getPropertyIndex()); }
    void removeProperty() {
        NodeT& n = this->writableNode(Change::RemoveItem);
        if constexpr (kList) D::removeValue(n, position, key);
        else D::removeValue(n, key);
    }

    Accessor get() const { return detail::accessorByIndex(this->getPropertyRoot(), getIndex(), this->propertyReadOnly); }
    Accessor* getPtr() const { return new Accessor(get()); }
    std::vector<long> getDims() const { return get().getDims(); }
    AccessorComponentType getComponentType() const { return get().componentType.get(); }
    int64_t getData(void* out, int64_t outSize) const { return get().getData(out, outSize); }
    DataTree getTensor() const { return get().getTensor(); }
    DataTree* getTensorPtr() const { return get().getTensorPtr(); }
    DataTree getDataArray() const { return get().getDataArray(); }

    bool operator==(int64_t index) const { return getIndex() == index; }

private:
    static constexpr bool kList = D::kMaps;
    int64_t position = -1;
    std::string key;
};

// One map of a list of maps (a morph target): its keys and entries.
template <class NodeT, class D>
class SORVANE_API IndexMapEntry : public MemberProperty<NodeT, D> {
public:
    using Base = MemberProperty<NodeT, D>;
    using Change = Property::Change;
    using Item = IndexMapItem<NodeT, D>;

    IndexMapEntry() = default;
    IndexMapEntry(const std::shared_ptr<RootNode>& root_, const std::shared_ptr<NodeT>& owner_, bool readOnly_,
                  int64_t position_)
        : Base(root_, owner_, readOnly_), position(position_) {}

    int64_t getPropertyIndex() const override { return position; }
    std::string getPropertyPath() const override {
        return Base::getPropertyPath() + "[" + std::to_string(position) + "]";
    }
    const char* getPropertyTypeName() const override { return "map"; }
    void outputRepresentation(std::ostream& out) const override {
        archive::JsonExporter exporter(out);
        exporter.addIntegerMap(D::getItem(this->node(), position));
    }
    bool isPropertyPresent() const { return D::hasItem(this->node(), position); }

    int64_t size() const { return static_cast<int64_t>(D::getItem(this->node(), position).size()); }
    std::vector<std::string> getKeys() const {
        std::vector<std::string> keys;
        for (const auto& entry : D::getItem(this->node(), position)) keys.push_back(entry.first);
        return keys;
    }
    bool has(const std::string& key) const { return D::hasValue(this->node(), position, key); }
    Item get(const std::string& key) const {
        D::getValue(this->node(), position, key);  // fails for an absent key
        return Item(this->getPropertyRoot(), this->ownerRef(), this->propertyReadOnly, position, key);
    }
    Item* getPtr(const std::string& key) const { return new Item(get(key)); }
    void put(const std::string& key, int64_t index) {
        D::setValue(this->writableNode(Change::SetItem), position, key, index);
    }
    void remove(const std::string& key) { D::removeValue(this->writableNode(Change::RemoveItem), position, key); }
    void removeProperty() { D::removeItem(this->writableNode(Change::RemoveItem), position); }

private:
    int64_t position = 0;
};

// A text-to-index map ("attributes"), with the skinning view over its
// JOINTS_n / WEIGHTS_n entries.
template <class NodeT, class D>
class SORVANE_API IndexMapMember : public MemberProperty<NodeT, D> {
public:
    using Base = MemberProperty<NodeT, D>;
    using Change = Property::Change;
    using Item = IndexMapItem<NodeT, D>;

    IndexMapMember() = default;
    IndexMapMember(const std::shared_ptr<RootNode>& root_, const std::shared_ptr<NodeT>& owner_, bool readOnly_)
        : Base(root_, owner_, readOnly_) {}
    explicit IndexMapMember(const ObjectProperty<NodeT>& host) : Base(host) {}

    const char* getPropertyTypeName() const override { return "map"; }
    void outputRepresentation(std::ostream& out) const override {
        if (!D::has(this->node())) {
            out << "null";
            return;
        }
        archive::JsonExporter exporter(out);
        exporter.addIntegerMap(D::get(this->node()));
    }

    int64_t size() const { return D::size(this->node()); }
    std::vector<std::string> getKeys() const { return D::keys(this->node()); }
    // The key at a position of the map's own order.
    std::string getKey(int64_t position) const {
        const std::vector<std::string> keys = getKeys();
        if (position < 0 || position >= static_cast<int64_t>(keys.size()))
            SORVANE_THROW("Getting keys of %s: Invalid index %ld", this->getPropertyPath().c_str(),
                          static_cast<long>(position));
        return keys[static_cast<size_t>(position)];
    }
    const archive::JsonImporter::IntegerMap& get() const { return D::get(this->node()); }
    Item get(const std::string& key) const {
        D::getValue(this->node(), key);  // fails for an absent key
        return Item(this->getPropertyRoot(), this->ownerRef(), this->propertyReadOnly, -1, key);
    }
    Item* getPtr(const std::string& key) const { return new Item(get(key)); }
    Item operator[](const std::string& key) const { return get(key); }
    bool has(const std::string& key) const { return D::hasValue(this->node(), key); }
    void put(const std::string& key, int64_t index) { D::setValue(this->writableNode(Change::SetItem), key, index); }
    void remove(const std::string& key) { D::removeValue(this->writableNode(Change::RemoveItem), key); }
    void removeProperty() { D::remove(this->writableNode(Change::RemoveProperty)); }

    // Every vertex's `jointCount` heaviest influences over all sets, weights
    // renormalised; `vertexCount` below 0 takes the first set's count.
    std::pair<DataTree, DataTree> getJointsTensor(long vertexCount, long jointCount) const {
        return PrimitiveData::jointsTensors(*this->getPropertyRoot(), this->node().getNodePath(), mapOrNull(),
                                            vertexCount, jointCount);
    }
    std::pair<DataTree*, DataTree*> getJointsTensorPtr(long vertexCount, long jointCount) const {
        auto tensors = getJointsTensor(vertexCount, jointCount);
        auto joints = std::make_unique<DataTree>(std::move(tensors.first));
        auto weights = std::make_unique<DataTree>(std::move(tensors.second));
        return {joints.release(), weights.release()};
    }
    std::vector<long> getJointsDataLayout(long vertexCount, long jointCount) const {
        auto j = joints(vertexCount, jointCount);
        return {j.vertexCount, j.jointCount};
    }
    // Sizes in bytes; returns the number of influences written
    // (vertices times joints). Null buffers only measure.
    long getJointsData(unsigned char* jointsOut, long jointsSize, float* weightsOut, long weightsSize,
                       long vertexCount, long jointCount) const {
        auto j = joints(vertexCount, jointCount);
        const long count = static_cast<long>(j.joints.size());
        if (!jointsOut && !weightsOut) return count;
        const std::string path = this->node().getNodePath();
        if (!jointsOut || jointsSize < count)
            SORVANE_THROW("Getting joints tensor of %s: Indices buffer is not large enough", path.c_str());
        if (!weightsOut || weightsSize < count * static_cast<long>(sizeof(float)))
            SORVANE_THROW("Getting joints tensor of %s: Weights buffer is not large enough", path.c_str());
        if (count > 0) {
            std::memcpy(jointsOut, j.joints.data(), static_cast<size_t>(count));
            std::memcpy(weightsOut, j.weights.data(), static_cast<size_t>(count) * sizeof(float));
        }
        return count;
    }

private:
    const archive::JsonImporter::IntegerMap* mapOrNull() const {
        const NodeT& n = this->node();
        return D::has(n) ? &D::get(n) : nullptr;
    }
    PrimitiveData::Joints joints(long vertexCount, long jointCount) const {
        if (!this->getPropertyRoot()) SORVANE_THROW("Invalid node");
        return PrimitiveData::joints(*this->getPropertyRoot(), this->node().getNodePath(), mapOrNull(), vertexCount,
                                     jointCount);
    }
};

// A list of text-to-index maps ("targets"), with the morph stack of one key.
template <class NodeT, class D>
class SORVANE_API IndexMapListMember : public MemberProperty<NodeT, D> {
public:
    using Base = MemberProperty<NodeT, D>;
    using Change = Property::Change;
    using Map = IndexMapEntry<NodeT, D>;
    using Item = IndexMapItem<NodeT, D>;

    IndexMapListMember() = default;
    IndexMapListMember(const std::shared_ptr<RootNode>& root_, const std::shared_ptr<NodeT>& owner_, bool readOnly_)
        : Base(root_, owner_, readOnly_) {}
    explicit IndexMapListMember(const ObjectProperty<NodeT>& host) : Base(host) {}

    const char* getPropertyTypeName() const override { return "list"; }
    void outputRepresentation(std::ostream& out) const override {
        if (!D::has(this->node())) {
            out << "null";
            return;
        }
        archive::JsonExporter exporter(out);
        exporter.addIntegerMapList(D::get(this->node()));
    }

    int64_t size() const { return D::size(this->node()); }
    bool has(int64_t index) const { return D::hasItem(this->node(), index); }
    Map get(int64_t index) const {
        D::getItem(this->node(), index);  // fails for a bad position
        return Map(this->getPropertyRoot(), this->ownerRef(), this->propertyReadOnly, index);
    }
    Map* getPtr(int64_t index) const { return new Map(get(index)); }
    Map operator[](int64_t index) const { return get(index); }
    // A new empty target at the end, the list made when absent.
    Map add() {
        const int64_t index = D::addItem(this->writableNode(Change::AddItem));
        return Map(this->getPropertyRoot(), this->ownerRef(), this->propertyReadOnly, index);
    }
    Map* addPtr() { return new Map(add()); }
    void remove(int64_t index) { D::removeItem(this->writableNode(Change::RemoveItem), index); }
    void removeProperty() { D::remove(this->writableNode(Change::RemoveProperty)); }
    // Entries of one target, with the list's own messages for a bad position.
    void put(int64_t index, const std::string& key, int64_t value) {
        D::setValue(this->writableNode(Change::SetItem), index, key, value);
    }
    void remove(int64_t index, const std::string& key) {
        D::removeValue(this->writableNode(Change::RemoveItem), index, key);
    }

    // The first target that has `key`, or -1.
    int64_t getFirstdWith(const std::string& key) const {
        return PrimitiveData::firstTargetWith(targets(), key);
    }
    AccessorComponentType getComponentType(const std::string& key) const {
        return PrimitiveData::targetsComponentType(root(), path(), targets(), key);
    }
    std::vector<long> getDataLayout(const std::string& key) const {
        return PrimitiveData::targetsLayout(root(), path(), targets(), key, nullptr);
    }
    std::vector<long> getDataLayout(const std::string& key, const std::vector<long>& selection) const {
        return PrimitiveData::targetsLayout(root(), path(), targets(), key, &selection);
    }
    int64_t getData(void* out, int64_t outSize, const std::string& key) const {
        return PrimitiveData::targetsData(root(), path(), targets(), out, outSize, key, nullptr);
    }
    int64_t getData(void* out, int64_t outSize, const std::string& key, const std::vector<long>& selection) const {
        return PrimitiveData::targetsData(root(), path(), targets(), out, outSize, key, &selection);
    }
    DataTree getTensor(const std::string& key) const {
        return PrimitiveData::targetsTensor(root(), path(), targets(), key, nullptr);
    }
    DataTree getTensor(const std::string& key, const std::vector<long>& selection) const {
        return PrimitiveData::targetsTensor(root(), path(), targets(), key, &selection);
    }
    DataTree* getTensorPtr(const std::string& key) const { return new DataTree(getTensor(key)); }
    DataTree* getTensorPtr(const std::string& key, const std::vector<long>& selection) const {
        return new DataTree(getTensor(key, selection));
    }

private:
    const std::vector<archive::JsonImporter::IntegerMap>* targets() const {
        const NodeT& n = this->node();
        return D::has(n) ? &D::get(n) : nullptr;
    }
    const RootNode& root() const {
        if (!this->getPropertyRoot()) SORVANE_THROW("Invalid node");
        return *this->getPropertyRoot();
    }
    std::string path() const { return this->node().getNodePath(); }
};

} // namespace sorvane::gltf2

#endif
