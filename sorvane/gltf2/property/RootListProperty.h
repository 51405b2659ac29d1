#ifndef SORVANE_GLTF2_PROPERTY_ROOTLISTPROPERTY_H
#define SORVANE_GLTF2_PROPERTY_ROOTLISTPROPERTY_H

#include <memory>
#include <ostream>
#include <string>
#include <utility>

#include "sorvane/gltf2/node/RootNode.h"
#include "sorvane/gltf2/property/ListProperty.h"

namespace sorvane::gltf2 {

// The accessor of a list that may be absent from its document: every list at
// the top of a glTF document is. Taken while the list is absent, it reads as
// empty, and its first addition makes the list under its key of the root, so
// a document can be built from an empty one through list handles alone.
template <class ListNodeT, class ItemT>
class SORVANE_API RootListProperty : public ListProperty<ListNodeT, ItemT> {
public:
    using Base = ListProperty<ListNodeT, ItemT>;
    using Item = ItemT;
    using Change = Property::Change;

    RootListProperty() = default;
    RootListProperty(const std::shared_ptr<RootNode>& root_, const std::shared_ptr<ListNodeT>& node_, bool readOnly_)
        : Base(root_, node_, readOnly_) {}
    // `rootKey` names the list at the root, for the list made on first add.
    RootListProperty(const std::shared_ptr<RootNode>& root_, const std::shared_ptr<ListNodeT>& node_, bool readOnly_,
                     const char* rootKey_)
        : Base(root_, node_, readOnly_), rootKey(rootKey_) {}

    int64_t getPropertyIndex() const override { return pending() ? -1 : Base::getPropertyIndex(); }
    std::string getPropertyName() const override { return pending() ? rootKey : Base::getPropertyName(); }
    std::string getPropertyPath() const override { return pending() ? rootKey : Base::getPropertyPath(); }
    const char* getPropertyTypeName() const override {
        return pending() ? ItemT::NodeType::kListTypeName : Base::getPropertyTypeName();
    }
    void outputRepresentation(std::ostream& out) const override {
        if (pending()) out << "null";
        else Base::outputRepresentation(out);
    }

    bool isPropertyPresent() const { return !pending() && Base::isPropertyPresent(); }
    bool empty() const { return pending() || Base::empty(); }
    int64_t size() const { return pending() ? 0 : Base::size(); }
    bool hasByIndex(int64_t index) const { return !pending() && Base::hasByIndex(index); }
    bool hasByName(const std::string& name) const { return !pending() && Base::hasByName(name); }
    int64_t findPropertyItemIndexByName(const std::string& name) const {
        return pending() ? -1 : Base::findPropertyItemIndexByName(name);
    }

    template <class... A>
    Item add(A&&... args) {
        materialize();
        return Base::add(std::forward<A>(args)...);
    }
    template <class... A>
    Item* addPtr(A&&... args) {
        return new Item(add(std::forward<A>(args)...));
    }

    typename Base::Iterator begin() const { return typename Base::Iterator(this, 0); }
    typename Base::Iterator end() const { return typename Base::Iterator(this, size()); }

protected:
    // The list, made and put at the root when absent; read-only accessors fail first.
    ListNodeT& writableList() {
        if (!this->nodeRef && this->propertyRoot) this->checkWritable(Change::ListAdd, rootKey);
        materialize();
        ListNodeT& n = this->node();
        this->checkWritable(Change::ListAdd, n.getNodePath());
        return n;
    }

private:
    bool pending() const { return !this->nodeRef && this->propertyRoot && !rootKey.empty(); }

    void materialize() {
        if (!pending()) return;
        this->checkWritable(Change::ListAdd, rootKey);
        auto list = std::make_shared<ListNodeT>(this->propertyRoot);
        this->propertyRoot->setNodeItem(rootKey, list);
        this->nodeRef = list;
    }

    std::string rootKey;
};

} // namespace sorvane::gltf2

#endif
