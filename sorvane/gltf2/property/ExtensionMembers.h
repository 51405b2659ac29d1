#ifndef SORVANE_GLTF2_PROPERTY_EXTENSIONMEMBERS_H
#define SORVANE_GLTF2_PROPERTY_EXTENSIONMEMBERS_H

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "sorvane/datatree/DataTree.h"
#include "sorvane/gltf2/node/RootNode.h"
#include "sorvane/gltf2/property/MemberAccessors.h"

// Member accessors of the extension objects: child objects made on first
// read, and indices that follow to the record they name.

namespace sorvane::gltf2 {

// A child object that a writable accessor makes, with its empty-node values,
// when it is read while absent; a read-only one reports it missing.
template <class NodeT, class Acc, class D>
class SORVANE_API CreatedChildMember : public MemberProperty<NodeT, D> {
public:
    using Base = MemberProperty<NodeT, D>;
    using Change = Property::Change;
    using ChildNode = typename Acc::NodeType;

    CreatedChildMember() = default;
    CreatedChildMember(const std::shared_ptr<RootNode>& root_, const std::shared_ptr<NodeT>& owner_, bool readOnly_)
        : Base(root_, owner_, readOnly_) {}
    explicit CreatedChildMember(const ObjectProperty<NodeT>& host) : Base(host) {}

    const char* getPropertyTypeName() const override { return ChildNode::kTypeName; }
    void outputRepresentation(std::ostream& out) const override {
        const auto& child = D::get(this->node());
        if (child) out << *child;
        else out << "null";
    }

    Acc get() const {
        NodeT& n = this->node();
        std::shared_ptr<ChildNode> child = D::get(n);
        if (!child) {
            if (this->propertyReadOnly)
                SORVANE_THROW("Getting %s: Property does not exist", this->getPropertyPath().c_str());
            child = std::make_shared<ChildNode>(this->ownerRef());
            child->incompleteInit();
            D::set(n, child);
        }
        return Acc(this->getPropertyRoot(), child, this->propertyReadOnly);
    }
    Acc* getPtr() const { return new Acc(get()); }
    struct Arrow {
        Acc value;
        Acc* operator->() { return &value; }
    };
    Arrow operator->() const { return Arrow{get()}; }
    operator Acc() const { return get(); }

    void removeProperty() { D::remove(this->writableNode(Change::RemoveProperty)); }
};

// An index into a root list whose get() gives the accessor of the record
// there (Acc); getIndex() the stored number. Setting is checked against the
// list; reading an absent one fails with "Getting %s.key: No value".
template <class NodeT, class Acc, class D>
class SORVANE_API IndexMember : public ValueMember<NodeT, D> {
public:
    using Base = ValueMember<NodeT, D>;

    IndexMember() = default;
    IndexMember(const std::shared_ptr<RootNode>& root_, const std::shared_ptr<NodeT>& owner_, bool readOnly_)
        : Base(root_, owner_, readOnly_) {}
    explicit IndexMember(const ObjectProperty<NodeT>& host) : Base(host) {}

    int64_t getIndex() const { return D::get(this->node()); }

    Acc get() const {
        const int64_t index = getIndex();
        if (!this->getPropertyRoot()) failInvalid();
        AbstractNode::Ref list = this->getPropertyRoot()->getNodeItem(std::string(D::kTargetList));
        if (!list) SORVANE_THROW("There is no %s in %s", D::kTargetList, this->getPropertyRoot()->getNodePath().c_str());
        auto item = std::dynamic_pointer_cast<typename Acc::NodeType>(list->getNodeItem(index));
        if (!item) SORVANE_THROW("Getting item from %s: Invalid index %ld", list->getNodePath().c_str(),
                                 static_cast<long>(index));
        return Acc(this->getPropertyRoot(), item, this->propertyReadOnly);
    }
    Acc* getPtr() const { return new Acc(get()); }

    using Base::set;
    void set(const Acc& target) { Base::set(target.getPropertyIndex()); }

    // Forwards for accessor targets.
    std::vector<long> getDims() const { return get().getDims(); }
    int64_t getData(void* out, int64_t outSize) const { return get().getData(out, outSize); }
    DataTree getTensor() const { return get().getTensor(); }
    DataTree* getTensorPtr() const { return get().getTensorPtr(); }
    DataTree getDataArray() const { return get().getDataArray(); }
    auto getComponentType() const { return get().componentType.get(); }

    bool operator==(int64_t index) const { return getIndex() == index; }
    bool operator==(const Acc& target) const { return getIndex() == target.getPropertyIndex(); }

private:
    [[noreturn]] static void failInvalid() { SORVANE_THROW("Invalid node"); }
};

} // namespace sorvane::gltf2

#endif
