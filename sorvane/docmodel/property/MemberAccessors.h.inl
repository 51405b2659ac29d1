// Shared by the two document models: included inside namespace sorvane::arf
// and namespace sorvane::gltf2, where RootNode and the other names resolve
// to the module's own classes.

namespace detail {

inline std::string textArgument(const char* text) {
    if (!text) throw std::logic_error("basic_string::_S_construct null not valid");
    return std::string(text);
}

// The accessor of the record a reference names: "Getting item from %s:
// Invalid id %ld" for a dangling id.
template <class Acc, class TargetList, class NodeT>
Acc followReference(const NodeT& owner, const ReferenceTarget& target, int64_t id,
                    const std::shared_ptr<RootNode>& root, bool readOnly) {
    auto list = std::dynamic_pointer_cast<TargetList>(owner.getReferenceList(target));
    if (!list) SORVANE_THROW("Invalid node");
    return Acc(root, list->get(id), readOnly);
}

inline void writeValue(archive::JsonExporter& out, const std::string& v) { out.addString(v); }
inline void writeValue(archive::JsonExporter& out, int64_t v) { out.addInteger(v); }
inline void writeValue(archive::JsonExporter& out, double v) { out.addNumber(v); }
inline void writeValue(archive::JsonExporter& out, bool v) { out.addBoolean(v); }
template <class E, std::enable_if_t<std::is_enum_v<E>, int> = 0>
void writeValue(archive::JsonExporter& out, E v) {
    out.addInteger(static_cast<int64_t>(v));
}

// Whether a descriptor gives a value that answers a read of the absent member.
template <class D, class = void>
struct HasReadDefault : std::false_type {};
template <class D>
struct HasReadDefault<D, std::void_t<decltype(D::kReadDefault)>> : std::true_type {};
// Whether an absent child is made by reading it (glTF children).
template <class D, class = void>
struct CreatesOnGet : std::false_type {};
template <class D>
struct CreatesOnGet<D, std::void_t<decltype(D::kCreateOnGet)>> : std::true_type {};
inline void writeValue(archive::JsonExporter& out, const std::vector<std::string>& v) { out.addStringList(v); }
inline void writeValue(archive::JsonExporter& out, const std::vector<int64_t>& v) { out.addIntegerList(v); }
inline void writeValue(archive::JsonExporter& out, const IdList& v) { out.addIntegerList(v.data(), v.size()); }
inline void writeValue(archive::JsonExporter& out, const std::vector<double>& v) { out.addNumberList(v); }

} // namespace detail

// A text, integer, number or boolean member.
template <class NodeT, class D>
class SORVANE_API ValueMember : public MemberProperty<NodeT, D> {
public:
    using Value = typename D::Value;
    using Base = MemberProperty<NodeT, D>;
    using Change = Property::Change;

    ValueMember() = default;
    ValueMember(const std::shared_ptr<RootNode>& root_, const std::shared_ptr<NodeT>& owner_, bool readOnly_)
        : Base(root_, owner_, readOnly_) {}
    explicit ValueMember(const ObjectProperty<NodeT>& host) : Base(host) {}

    const char* getPropertyTypeName() const override { return D::kTypeName; }

    void outputRepresentation(std::ostream& out) const override {
        if constexpr (D::kOptional) {
            if (!D::has(this->node())) {
                out << "null";
                return;
            }
        }
        archive::JsonExporter exporter(out);
        detail::writeValue(exporter, static_cast<Value>(D::get(this->node())));
    }

    decltype(auto) get() const {
        const NodeT& n = this->node();
        if constexpr (D::kOptional && !detail::HasReadDefault<D>::value) {
            if (!D::has(n)) SORVANE_THROW("In %s: No %s", n.getNodePath().c_str(), D::kKey);
        }
        return D::get(n);
    }

    void set(const Value& value) { D::set(this->writableNode(Change::Set), value); }

    // Text members.
    template <class V = Value, class = std::enable_if_t<std::is_same_v<V, std::string>>>
    const char* c_str() const {
        return get().c_str();
    }
    template <class V = Value, class = std::enable_if_t<std::is_same_v<V, std::string>>>
    void set(const char* value) {
        set(detail::textArgument(value));
    }
    template <class V = Value, class = std::enable_if_t<std::is_same_v<V, std::string>>>
    void add(const std::string& text) {
        NodeT& n = this->writableNode(Change::Append);
        std::string value;
        if constexpr (D::kOptional) {
            if (D::has(n)) value = D::get(n);
        } else {
            value = D::get(n);
        }
        D::set(n, value + text);
    }

    // Integer members also take an int.
    template <class V = Value, class = std::enable_if_t<std::is_same_v<V, int64_t>>>
    void set(int value) {
        set(static_cast<int64_t>(value));
    }

    void removeProperty() {
        static_assert(D::kOptional, "only optional members can be removed");
        D::remove(this->writableNode(Change::RemoveProperty));
    }
};

// An optional text that reads as a default while absent (GaussianSplatSet::
// Mode). The default is not written: removing the value goes back to it.
template <class NodeT, class D>
class SORVANE_API DefaultValueMember : public ValueMember<NodeT, D> {
public:
    using Base = ValueMember<NodeT, D>;
    using Value = typename D::Value;

    static inline const Value defaultValue = D::kDefault;

    DefaultValueMember() = default;
    DefaultValueMember(const std::shared_ptr<RootNode>& root_, const std::shared_ptr<NodeT>& owner_, bool readOnly_)
        : Base(root_, owner_, readOnly_) {}
    explicit DefaultValueMember(const ObjectProperty<NodeT>& host) : Base(host) {}

    void outputRepresentation(std::ostream& out) const override {
        archive::JsonExporter exporter(out);
        detail::writeValue(exporter, get());
    }

    std::conditional_t<std::is_same_v<Value, std::string>, const Value&, Value> get() const {
        const NodeT& n = this->node();
        if (D::has(n)) return D::get(n);
        return defaultValue;
    }
    template <class V = Value, class = std::enable_if_t<std::is_same_v<V, std::string>>>
    const char* c_str() const {
        return get().c_str();
    }
};

// A list of texts, integers or numbers, references included.
template <class NodeT, class D>
class SORVANE_API ValueListMember : public MemberProperty<NodeT, D> {
public:
    using Element = typename D::Element;
    using Base = MemberProperty<NodeT, D>;
    using Change = Property::Change;

    ValueListMember() = default;
    ValueListMember(const std::shared_ptr<RootNode>& root_, const std::shared_ptr<NodeT>& owner_, bool readOnly_)
        : Base(root_, owner_, readOnly_) {}
    explicit ValueListMember(const ObjectProperty<NodeT>& host) : Base(host) {}

    const char* getPropertyTypeName() const override { return "list"; }

    void outputRepresentation(std::ostream& out) const override {
        if constexpr (D::kOptional) {
            if (!D::has(this->node())) {
                out << "null";
                return;
            }
        }
        archive::JsonExporter exporter(out);
        detail::writeValue(exporter, D::get(this->node()));
    }

    int64_t size() const { return D::size(this->node()); }
    bool has(int64_t index) const { return D::hasValue(this->node(), index); }
    // The whole list: a std::vector, or for references an IdList.
    decltype(auto) get() const { return D::get(this->node()); }
    decltype(auto) get(int64_t index) const { return D::getValue(this->node(), index); }
    void set(const std::vector<Element>& values) { D::set(this->writableNode(Change::Set), values); }
    void set(int64_t index, const Element& value) { D::setValue(this->writableNode(Change::SetItem), index, value); }
    void add(const Element& value) { D::addValue(this->writableNode(Change::AddItem), value); }
    void remove(int64_t index) { D::removeValue(this->writableNode(Change::RemoveItem), index); }

    void removeProperty() {
        static_assert(D::kOptional, "only optional members can be removed");
        D::remove(this->writableNode(Change::RemoveProperty));
    }
};

// An optional list of numbers that reads as a default while absent (a glTF
// node's "matrix" and its transform); the default is never written.
template <class NodeT, class D>
class SORVANE_API DefaultValueListMember : public ValueListMember<NodeT, D> {
public:
    using Base = ValueListMember<NodeT, D>;
    using Element = typename D::Element;

    static inline const std::vector<Element> defaultValue = D::defaultValue();

    DefaultValueListMember() = default;
    DefaultValueListMember(const std::shared_ptr<RootNode>& root_, const std::shared_ptr<NodeT>& owner_, bool readOnly_)
        : Base(root_, owner_, readOnly_) {}
    explicit DefaultValueListMember(const ObjectProperty<NodeT>& host) : Base(host) {}

    void outputRepresentation(std::ostream& out) const override {
        archive::JsonExporter exporter(out);
        detail::writeValue(exporter, Base::get());
    }

    // The values narrowed to float, as a renderer takes colours
    // (Material::EmissiveFactor, PbrMetallicRoughness::BaseColorFactor).
    std::vector<float> getFloats() const {
        std::vector<float> values;
        for (const Element& v : Base::get()) values.push_back(static_cast<float>(v));
        return values;
    }
    operator std::vector<float>() const { return getFloats(); }
};

// Reads a reference forwards to the record it names, on top of get():
// nothing in general; the data items' accessor module specialises it for
// references to a data item (Mesh::DataItem, Skin::Weights), which then read
// the payload themselves.
template <class Ref, class Acc>
class ReferenceReads {};

// A reference to one record of another list (Node::Parent, Skin::Mesh): get()
// follows it to the record's accessor Acc, getIndex() gives the stored id.
template <class NodeT, class Acc, class TargetList, class D>
class SORVANE_API ReferenceMember : public ValueMember<NodeT, D>,
                                    public ReferenceReads<ReferenceMember<NodeT, Acc, TargetList, D>, Acc> {
public:
    using Base = ValueMember<NodeT, D>;

    ReferenceMember() = default;
    ReferenceMember(const std::shared_ptr<RootNode>& root_, const std::shared_ptr<NodeT>& owner_, bool readOnly_)
        : Base(root_, owner_, readOnly_) {}
    explicit ReferenceMember(const ObjectProperty<NodeT>& host) : Base(host) {}

    int64_t getIndex() const { return Base::get(); }

    // Fails with "Getting item from %s: Invalid id %ld" for a dangling id.
    Acc get() const {
        return detail::followReference<Acc, TargetList>(this->node(), D::kTarget, getIndex(), this->getPropertyRoot(),
                                                        this->propertyReadOnly);
    }
    Acc* getPtr() const { return new Acc(get()); }

    using Base::set;
    void set(const Acc& target) { Base::set(target.getPropertyId()); }

    bool operator==(int64_t id) const { return getIndex() == id; }
    bool operator==(const Acc& target) const { return getIndex() == target.getPropertyId(); }
};

// One position of a list of references (Mesh::DataItem, Node::ChildrenItem):
// the reference stored there, with the operations of a single reference.
// The position is checked when the item is used, by the node's list members.
template <class NodeT, class Acc, class TargetList, class D>
class SORVANE_API ReferenceItem : public MemberProperty<NodeT, D>,
                                  public ReferenceReads<ReferenceItem<NodeT, Acc, TargetList, D>, Acc> {
public:
    using Base = MemberProperty<NodeT, D>;
    using Change = Property::Change;

    ReferenceItem() = default;
    ReferenceItem(const std::shared_ptr<RootNode>& root_, const std::shared_ptr<NodeT>& owner_, bool readOnly_,
                  int64_t position_)
        : Base(root_, owner_, readOnly_), position(position_) {}

    int64_t getPropertyIndex() const override { return position; }
    std::string getPropertyPath() const override {
        return Base::getPropertyPath() + "[" + std::to_string(position) + "]";
    }
    const char* getPropertyTypeName() const override { return "integer"; }
    void outputRepresentation(std::ostream& out) const override { out << getIndex(); }
    bool isPropertyPresent() const { return D::hasValue(this->node(), position); }

    // The stored id.
    int64_t getIndex() const { return D::getValue(this->node(), position); }

    // Fails with "Getting item from %s: Invalid id %ld" for a dangling id.
    Acc get() const {
        return detail::followReference<Acc, TargetList>(this->node(), D::kTarget, getIndex(), this->getPropertyRoot(),
                                                        this->propertyReadOnly);
    }
    Acc* getPtr() const { return new Acc(get()); }

    // Checked like the list's own setter: "Setting item %ld of %s: Invalid id ...".
    void set(int64_t id) { D::setValue(writable(Change::SetItem), position, id); }
    void set(int id) { set(static_cast<int64_t>(id)); }
    void set(const Acc& target) { set(target.getPropertyId()); }
    // Removes this position from the list; later positions move up.
    void removeProperty() { D::removeValue(writable(Change::RemoveItem), position); }

    bool operator==(int64_t id) const { return getIndex() == id; }
    bool operator==(const Acc& target) const { return getIndex() == target.getPropertyId(); }

private:
    // The read-only texts name the list, as those of the list's own setters.
    NodeT& writable(Change change) const {
        NodeT& n = this->node();
        this->checkWritable(change, Base::getPropertyPath());
        return n;
    }

    int64_t position = 0;
};

// A list of references (Mesh::Data, Node::Children): the ids as values, and
// one item accessor per position.
template <class NodeT, class Acc, class TargetList, class D>
class SORVANE_API ReferenceListMember : public ValueListMember<NodeT, D> {
public:
    using Base = ValueListMember<NodeT, D>;
    using Item = ReferenceItem<NodeT, Acc, TargetList, D>;

    ReferenceListMember() = default;
    ReferenceListMember(const std::shared_ptr<RootNode>& root_, const std::shared_ptr<NodeT>& owner_, bool readOnly_)
        : Base(root_, owner_, readOnly_) {}
    explicit ReferenceListMember(const ObjectProperty<NodeT>& host) : Base(host) {}

    Item getItem(int64_t index) const { return Item(this->getPropertyRoot(), this->ownerRef(), this->propertyReadOnly, index); }
    Item* getItemPtr(int64_t index) const { return new Item(getItem(index)); }
    Item operator[](int64_t index) const { return getItem(index); }
};

// A child record, viewed through its own object accessor Acc.
template <class NodeT, class Acc, class D>
class SORVANE_API ChildMember : public MemberProperty<NodeT, D> {
public:
    using Base = MemberProperty<NodeT, D>;
    using Change = Property::Change;

    ChildMember() = default;
    ChildMember(const std::shared_ptr<RootNode>& root_, const std::shared_ptr<NodeT>& owner_, bool readOnly_)
        : Base(root_, owner_, readOnly_) {}
    explicit ChildMember(const ObjectProperty<NodeT>& host) : Base(host) {}

    const char* getPropertyTypeName() const override { return Acc::NodeType::kTypeName; }

    void outputRepresentation(std::ostream& out) const override {
        const auto& child = D::get(this->node());
        if (child) out << *child;
        else out << "null";
    }

    Acc get() const {
        if constexpr (detail::CreatesOnGet<D>::value) {
            NodeT& n = this->node();
            if (!D::get(n)) {
                if (this->propertyReadOnly)
                    SORVANE_THROW("Getting %s: Property does not exist", this->getPropertyPath().c_str());
                auto child = std::make_shared<typename Acc::NodeType>(this->ownerRef());
                child->incompleteInit();
                D::set(n, child);
            }
        }
        return Acc(this->getPropertyRoot(), D::get(this->node()), this->propertyReadOnly);
    }
    Acc* getPtr() const { return new Acc(get()); }

    struct Arrow {
        Acc value;
        Acc* operator->() { return &value; }
    };
    Arrow operator->() const { return Arrow{get()}; }
    operator Acc() const { return get(); }

    void removeProperty() {
        static_assert(D::kOptional, "only optional members can be removed");
        D::remove(this->writableNode(Change::RemoveProperty));
    }
};

// A child list, viewed through its list accessor ListAcc.
template <class NodeT, class ListAcc, class D>
class SORVANE_API ChildListMember : public MemberProperty<NodeT, D> {
public:
    using Base = MemberProperty<NodeT, D>;
    using Change = Property::Change;
    using Item = typename ListAcc::Item;
    using ListNode = typename ListAcc::NodeType;

    ChildListMember() = default;
    ChildListMember(const std::shared_ptr<RootNode>& root_, const std::shared_ptr<NodeT>& owner_, bool readOnly_)
        : Base(root_, owner_, readOnly_) {}
    explicit ChildListMember(const ObjectProperty<NodeT>& host) : Base(host) {}

    const char* getPropertyTypeName() const override { return Item::NodeType::kListTypeName; }

    void outputRepresentation(std::ostream& out) const override {
        const auto& list = D::get(this->node());
        if (list) out << *list;
        else out << "null";
    }

    // Over an absent optional list, a handle that creates it on its first add.
    ListAcc get() const {
        ListAcc list(this->getPropertyRoot(), D::get(this->node()), this->propertyReadOnly);
        if constexpr (D::kOptional) {
            if (!list.getNode()) list.setAbsentOwner(this->ownerRef(), D::kKey);
        }
        return list;
    }
    ListAcc* getPtr() const { return new ListAcc(get()); }

    int64_t size() const {
        const auto& list = D::get(this->node());
        return list ? list->getNodeSize() : 0;
    }
    bool has(int64_t id) const {
        const auto& list = D::get(this->node());
        return list && list->findNodeItemIndexById(id) >= 0;
    }
    Item get(int64_t id) const { return get().get(id); }
    Item operator[](int64_t id) const { return get(id); }
    Item getByIndex(int64_t index) const { return get().getByIndex(index); }

    // Creates an absent list on the first item added.
    template <class... A>
    Item add(A&&... args) {
        NodeT& n = this->writableNode(Change::AddItem);
        if (!D::get(n)) D::set(n, std::make_shared<ListNode>(this->ownerRef()));
        return get().add(std::forward<A>(args)...);
    }
    template <class... A>
    Item* addPtr(A&&... args) {
        return new Item(add(std::forward<A>(args)...));
    }

    std::vector<std::string> getPropertyItemNames() const {
        const auto& list = D::get(this->node());
        if (!list)
            SORVANE_THROW("Getting names of items of %s: Property does not exist", this->getPropertyPath().c_str());
        return list->getNodeItemNames();
    }
    int64_t findPropertyItemIndexByName(const std::string& name) const {
        const auto& list = D::get(this->node());
        if (!list)
            SORVANE_THROW("Finding name in items of %s: Property does not exist", this->getPropertyPath().c_str());
        return list->findNodeItemIndexByName(name);
    }

    struct Arrow {
        ListAcc value;
        ListAcc* operator->() { return &value; }
    };
    Arrow operator->() const { return Arrow{get()}; }
    operator ListAcc() const { return get(); }

    typename ListAcc::Iterator begin() const { return get().begin(); }
    typename ListAcc::Iterator end() const { return get().end(); }

    void removeProperty() {
        static_assert(D::kOptional, "only optional members can be removed");
        D::remove(this->writableNode(Change::RemoveProperty));
    }
};

// A generic object value (a flat object of strings, integers and lists),
// viewed as an Object. A writable accessor makes an absent value empty on
// first use; a read-only one reports it missing.
template <class NodeT, class D>
class SORVANE_API GenericMember : public MemberProperty<NodeT, D> {
public:
    using Base = MemberProperty<NodeT, D>;
    using Change = Property::Change;

    GenericMember() = default;
    GenericMember(const std::shared_ptr<RootNode>& root_, const std::shared_ptr<NodeT>& owner_, bool readOnly_)
        : Base(root_, owner_, readOnly_) {}
    explicit GenericMember(const ObjectProperty<NodeT>& host) : Base(host) {}

    const char* getPropertyTypeName() const override { return "Object"; }

    void outputRepresentation(std::ostream& out) const override {
        const auto& value = D::get(this->node());
        if (value) out << *value;
        else out << "null";
    }

    Object get() const {
        NodeT& n = this->node();
        std::shared_ptr<ObjectNode> value = D::get(n);
        if (!value) {
            if (this->propertyReadOnly) SORVANE_THROW("Getting %s: Property does not exist", this->getPropertyPath().c_str());
            value = std::make_shared<ObjectNode>(this->ownerRef());
            D::set(n, value);
        }
        return Object(this->getPropertyRoot(), value, this->propertyReadOnly);
    }
    Object* getPtr() const { return new Object(get()); }
    // The value under a key of the object, which may not exist yet.
    ObjectItem operator[](const std::string& key) const { return get().get(key); }

    void removeProperty() {
        static_assert(D::kOptional, "only optional members can be removed");
        D::remove(this->writableNode(Change::RemoveProperty));
    }

    // Replaces the object by a copy of `source`; the two stay apart after.
    // The copy is made first, so a failure leaves the member as it was.
    void copy(const GenericProperty& source) {
        NodeT& n = this->writableNode(Change::Clone);
        D::set(n, std::static_pointer_cast<ObjectNode>(Object::copyOf(source, this->ownerRef())));
    }
};
