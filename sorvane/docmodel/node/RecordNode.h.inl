// Shared by the two document models: included inside namespace sorvane::arf
// and namespace sorvane::gltf2, where RootNode and the other names resolve
// to the module's own classes.

class RecordNode;

// One JSON key of a record: how its value is read, tested, written, and,
// for members that are nodes, reached. Built by recordField<&X::member>.
struct RecordField {
    const char* key;
    size_t keyLength;
    bool (*read)(RecordNode& self, archive::JsonImporter& importer);
    bool (*present)(const RecordNode& self);
    void (*write)(const RecordNode& self, archive::JsonExporter& exporter);
    // Node members only (null for plain values).
    AbstractNode* (*child)(const RecordNode& self);
    bool (*setChild)(RecordNode& self, const AbstractNode::Ref& node);
    void (*clearChild)(RecordNode& self);
};

struct RecordFields {
    const RecordField* begin;
    const RecordField* end;
};

// The base of every record node (one JSON object of the format with typed
// members). Reading, writing and the generic object view are driven by the
// record's field table; the typed getters and setters live in the record.
class SORVANE_API RecordNode : public AbstractNode {
public:
    ~RecordNode() override;

    bool isNodeObject() const override;
    bool isNodeEmpty() const override;
    int64_t getNodeSize() const override;
    bool hasNodeItem(const AbstractNode* item) const override;
    bool hasNodeItem(const std::string& key) const override;
    using AbstractNode::hasNodeItem;
    ConstRef getNodeItem(const std::string& key) const override;
    Ref getNodeItem(const std::string& key) override;
    using AbstractNode::getNodeItem;
    void setNodeItem(const std::string& key, const Ref& item) override;
    using AbstractNode::setNodeItem;
    void removeNodeItem(const std::string& key) override;
    void removeNodeItem(const AbstractNode* item) override;
    using AbstractNode::removeNodeItem;
    void removeNodeItems() override;
    std::vector<std::string> getNodeItemNames() const override;
    std::string findNodeItemKey(const AbstractNode* item) const override;

    // Puts every member into its reading state (defaults, empty, absent).
    virtual void incompleteInit() = 0;
    // The same for a read, which may leave out the child nodes a record
    // always has: the text's own are read into new nodes, and completeRead
    // then makes those the text lacks, so that none is made twice.
    virtual void clearForRead() { incompleteInit(); }
    virtual void completeRead() {}

    void fromJson(archive::JsonImporter& importer) override;
    void toJson(archive::JsonExporter& exporter) const override;

    virtual RecordFields getRecordFields() const = 0;

    // The list node a reference points into; fails with "There is no ..."
    // when the document has none.
    AbstractNode::Ref getReferenceList(const ReferenceTarget& target) const;

protected:
    template <class>
    friend class ItemList;

    using AbstractNode::AbstractNode;

    // fromJson without telling the parent list: a list reading all its
    // records tells its index once, after the last.
    void readRecord(archive::JsonImporter& importer);

    const RecordField* findField(const std::string& key) const;
    const RecordField* findField(const char* key, size_t length) const;
    const RecordField* findChildField(const std::string& key) const;

    // Failures and checks shared by the generated members. `key` is the
    // member's JSON key.
    [[noreturn]] void failNoValue(const char* key) const;
    [[noreturn]] void failMissing(const char* key) const;
    void checkGetIndex(const char* key, int64_t index, size_t size) const;
    void checkSetIndex(const char* key, int64_t index, size_t size) const;
    void checkRemoveIndex(const char* key, int64_t index, size_t size) const;
    [[noreturn]] void failNoList(const char* operation, const char* key, int64_t index) const;

    // The list a reference points into; fails when the document has none.
    const IdItemListBase& referenceList(const ReferenceTarget& target, std::string& listPath) const;
    AbstractNode* findReferenceList(const ReferenceTarget& target, const IdItemListBase*& ids) const;
    // The full check of a reference setter, after the generated setter's
    // quick accept through the typed members failed; also makes the failure text.
    void checkReference(const ReferenceTarget& target, const char* key, int64_t id) const;
    void checkReferenceItem(const ReferenceTarget& target, const char* key, int64_t index, int64_t id) const;
    // Every id of a whole new list, against one lookup of the target list.
    void checkReferenceItems(const ReferenceTarget& target, const char* key, const std::vector<int64_t>& values) const;
    void checkReferenceAdd(const ReferenceTarget& target, const char* key, int64_t id) const;
    // A required reference given to init is resolved at once.
    void checkInitReference(const ReferenceTarget& target, int64_t id) const;

    // References by position into a list at the root (`list` is its key):
    // "There is no <list> in <root>" without the list, "Invalid index" past it.
    void checkIndexReference(const char* list, const char* key, int64_t index) const;
    void checkIndexReferenceItem(const char* list, const char* key, int64_t item, int64_t index) const;
    void checkIndexReferenceAdd(const char* list, const char* key, int64_t index) const;
    // The same for an entry of a text-to-index map ("Setting item KEY of
    // PATH.attributes: ...") and of one map of a list of them
    // ("Setting item PATH.targets[2][KEY]: ...").
    void checkMapIndexReference(const char* list, const char* key, const std::string& item, int64_t index) const;
    void checkMapsIndexReference(const char* list, const char* key, int64_t position, const std::string& item,
                                 int64_t index) const;
    // The size of the root list `list`, and its path.
    int64_t indexListSize(const char* list, std::string& listPath) const;

    // The id rules of records in id-carrying lists. `list` is the parent
    // when it is the record's own list class, else null.
    void initRecordId(int64_t& member, const IdItemListBase* list, const std::optional<int64_t>& id);
    void setRecordId(int64_t& member, const IdItemListBase* list, int64_t id);
    // Tells an id-carrying parent list that the record's name (or more) changed.
    void itemNameChanged() const;

    template <class List>
    const IdItemListBase* parentList() const {
        return dynamic_cast<const List*>(parent.lock().get());
    }
};

namespace detail {

template <class T>
struct IsSharedPtr : std::false_type {};
template <class T>
struct IsSharedPtr<std::shared_ptr<T>> : std::true_type {};

template <class T>
struct IsOptional : std::false_type {};
template <class T>
struct IsOptional<std::optional<T>> : std::true_type {};

// Typed JSON reading and writing of a plain member value.
template <class T, class Enable = void>
struct JsonValue;

// Enumerations are integers in JSON, stored as read.
template <class T>
struct JsonValue<T, std::enable_if_t<std::is_enum_v<T>>> {
    static bool read(archive::JsonImporter& in, T& v) {
        auto r = in.nextInteger();
        if (r) v = static_cast<T>(static_cast<std::underlying_type_t<T>>(*r));
        return r.has_value();
    }
    static void write(archive::JsonExporter& out, T v) { out.addInteger(static_cast<int64_t>(v)); }
};

template <>
struct JsonValue<std::string> {
    static bool read(archive::JsonImporter& in, std::string& v) { return in.nextString(v); }
    static void write(archive::JsonExporter& out, const std::string& v) { out.addString(v); }
};
template <>
struct JsonValue<int64_t> {
    static bool read(archive::JsonImporter& in, int64_t& v) {
        auto r = in.nextInteger();
        if (r) v = *r;
        return r.has_value();
    }
    static void write(archive::JsonExporter& out, int64_t v) { out.addInteger(v); }
};
template <>
struct JsonValue<double> {
    static bool read(archive::JsonImporter& in, double& v) {
        auto r = in.nextNumber();
        if (r) v = *r;
        return r.has_value();
    }
    static void write(archive::JsonExporter& out, double v) { out.addNumber(v); }
};
template <>
struct JsonValue<bool> {
    static bool read(archive::JsonImporter& in, bool& v) {
        auto r = in.nextBoolean();
        if (r) v = *r;
        return r.has_value();
    }
    static void write(archive::JsonExporter& out, bool v) { out.addBoolean(v); }
};
template <>
struct JsonValue<std::vector<std::string>> {
    static bool read(archive::JsonImporter& in, std::vector<std::string>& v) { return in.nextStringList(v); }
    static void write(archive::JsonExporter& out, const std::vector<std::string>& v) { out.addStringList(v); }
};
template <>
struct JsonValue<std::vector<int64_t>> {
    static bool read(archive::JsonImporter& in, std::vector<int64_t>& v) { return in.nextIntegerList(v); }
    static void write(archive::JsonExporter& out, const std::vector<int64_t>& v) { out.addIntegerList(v); }
};
template <>
struct JsonValue<IdList> {
    static bool read(archive::JsonImporter& in, IdList& v) { return in.nextIntegerList(v); }
    static void write(archive::JsonExporter& out, const IdList& v) { out.addIntegerList(v.data(), v.size()); }
};
template <>
struct JsonValue<archive::JsonImporter::IntegerMap> {
    static bool read(archive::JsonImporter& in, archive::JsonImporter::IntegerMap& v) {
        auto r = in.nextIntegerMap();
        if (r) v = std::move(*r);
        return r.has_value();
    }
    static void write(archive::JsonExporter& out, const archive::JsonImporter::IntegerMap& v) { out.addIntegerMap(v); }
};
template <>
struct JsonValue<std::vector<archive::JsonImporter::IntegerMap>> {
    static bool read(archive::JsonImporter& in, std::vector<archive::JsonImporter::IntegerMap>& v) {
        auto r = in.nextIntegerMapList();
        if (r) v = std::move(*r);
        return r.has_value();
    }
    static void write(archive::JsonExporter& out, const std::vector<archive::JsonImporter::IntegerMap>& v) {
        out.addIntegerMapList(v);
    }
};
template <>
struct JsonValue<std::vector<double>> {
    static bool read(archive::JsonImporter& in, std::vector<double>& v) { return in.nextNumberList(v); }
    static void write(archive::JsonExporter& out, const std::vector<double>& v) { out.addNumberList(v); }
};
template <class T>
struct JsonValue<std::optional<T>> {
    static bool read(archive::JsonImporter& in, std::optional<T>& v) {
        if (!v) v.emplace();
        if (JsonValue<T>::read(in, *v)) return true;
        v.reset();
        return false;
    }
    static void write(archive::JsonExporter& out, const std::optional<T>& v) { JsonValue<T>::write(out, *v); }
};

template <auto Member>
struct MemberOf;
template <class R, class T, T R::*Member>
struct MemberOf<Member> {
    using Record = R;
    using Type = T;
};

template <auto Member>
struct ValueField {
    using R = typename MemberOf<Member>::Record;
    using T = typename MemberOf<Member>::Type;
    static bool read(RecordNode& self, archive::JsonImporter& in) {
        return JsonValue<T>::read(in, static_cast<R&>(self).*Member);
    }
    static bool present(const RecordNode& self) {
        if constexpr (IsOptional<T>::value) return (static_cast<const R&>(self).*Member).has_value();
        else return true;
    }
    static void write(const RecordNode& self, archive::JsonExporter& out) {
        JsonValue<T>::write(out, static_cast<const R&>(self).*Member);
    }
};

template <auto Member>
struct ChildField {
    using R = typename MemberOf<Member>::Record;
    using Child = typename MemberOf<Member>::Type::element_type;
    static bool read(RecordNode& self, archive::JsonImporter& in) {
        auto child = std::make_shared<Child>(self.shared_from_this());
        static_cast<R&>(self).*Member = child;
        child->fromJson(in);
        return true;
    }
    static bool present(const RecordNode& self) { return static_cast<bool>(static_cast<const R&>(self).*Member); }
    static void write(const RecordNode& self, archive::JsonExporter& out) {
        (static_cast<const R&>(self).*Member)->toJson(out);
    }
    static AbstractNode* child(const RecordNode& self) { return (static_cast<const R&>(self).*Member).get(); }
    static bool setChild(RecordNode& self, const AbstractNode::Ref& node) {
        auto typed = std::dynamic_pointer_cast<Child>(node);
        if (!typed) return false;
        typed->setNodeParent(self.shared_from_this());
        static_cast<R&>(self).*Member = std::move(typed);
        return true;
    }
    static void clearChild(RecordNode& self) { (static_cast<R&>(self).*Member).reset(); }
};

} // namespace detail

// The table entry of one member: a value, or a child node.
template <auto Member>
constexpr RecordField recordField(const char* key) {
    using T = typename detail::MemberOf<Member>::Type;
    if constexpr (detail::IsSharedPtr<T>::value) {
        using F = detail::ChildField<Member>;
        return RecordField{key, std::char_traits<char>::length(key), &F::read, &F::present, &F::write, &F::child, &F::setChild, &F::clearChild};
    } else {
        using F = detail::ValueField<Member>;
        return RecordField{key, std::char_traits<char>::length(key), &F::read, &F::present, &F::write, nullptr, nullptr, nullptr};
    }
}
