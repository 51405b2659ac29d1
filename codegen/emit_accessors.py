"""Accessor classes: for each record an object accessor with one member
accessor per key, and a list accessor where the record has a list. The
behaviour lives in the hand-written templates (ObjectProperty, ValueMember,
ValueListMember, ChildMember, ChildListMember, ListProperty); this says which
member has which kind, through one small descriptor per member."""

from emit_nodes import cstr, guard, literal
from model import VALUE_KINDS

# Names of the accessor's own members that a key must not shadow.
RESERVED = {"node", "has", "propertyRoot", "propertyReadOnly", "nodeRef", "get", "getNode", "owner"}

TYPE_NAMES = {"string": "string", "integer": "integer", "id": "integer", "ref": "integer",
              "number": "number", "boolean": "boolean", "index": "integer", "enum": "integer"}


def accessor_source(record):
    # arf/node/structure/AssetNode -> arf/property/structure/Asset, and likewise
    # gltf2/node/buffer/BufferNode -> gltf2/property/buffer/Buffer
    folder = record.folder.replace("/node", "/property", 1)
    return f"{folder}/{record.name}"


def list_accessor_source(record):
    return accessor_source(record) + "List"


def base_source(record, name):
    # A hand-written base class lives beside the accessor it extends.
    return accessor_source(record).rsplit("/", 1)[0] + "/" + name


def member_var(field):
    return field.key + "_" if field.key in RESERVED else field.key


def alias(field):
    """The accessor type's name inside the record's accessor: the key's
    capitalised form, suffixed where the member itself carries that name
    (extension keys such as "KHR_gaussian_splatting")."""
    return field.cap + "Type" if field.cap == member_var(field) else field.cap


def descriptor(record, field):
    # Underscored: "JointKey" + "Node" would be the node class's own name.
    return f"{record.name}_{field.key}"


class AccessorEmitter:
    def __init__(self, records):
        self.records = records

    def supported(self, field):
        return True

    def outputs(self, record):
        files = [f"sorvane/{accessor_source(record)}.h", f"sorvane/{accessor_source(record)}.cpp"]
        if record.has_list:
            files += [f"sorvane/{list_accessor_source(record)}.h"]
        return files

    def emit(self, record):
        out = {
            f"sorvane/{accessor_source(record)}.h": self.header(record),
            f"sorvane/{accessor_source(record)}.cpp": self.source(record),
        }
        if record.has_list:
            out[f"sorvane/{list_accessor_source(record)}.h"] = self.list_header(record)
        return out

    def member_type(self, record, f):
        N = record.node_class
        d = f"fields::{descriptor(record, f)}"
        target = f.target_record(self.records) if f.is_reference else None
        if target:
            ns = "::" + target.namespace
            kind = "ReferenceMember" if f.type == "ref" else "ReferenceListMember"
            return f"{kind}<{N}, {ns}::{target.name}, {ns}::{target.list_class}, {d}>"
        if f.is_value:
            if f.follow:
                return f"IndexMember<{N}, ::{record.namespace}::{f.follow}, {d}>"
            if f.read_default is not None:
                return f"DefaultValueMember<{N}, {d}>"
            return f"ValueMember<{N}, {d}>"
        if f.is_list:
            if f.read_default is not None:
                return f"DefaultValueListMember<{N}, {d}>"
            return f"ValueListMember<{N}, {d}>"
        if f.type == "indexMap":
            return f"IndexMapMember<{N}, {d}>"
        if f.type == "indexMaps":
            return f"IndexMapListMember<{N}, {d}>"
        if f.type == "generic":
            # glTF extras have no deep copy: their copy() refuses.
            kind = "ExtrasMember" if record.module == "gltf2" else "GenericMember"
            return f"{kind}<{N}, {d}>"
        # Qualified: the member's own name may be the child accessor's name.
        target = f.of_record
        ns = "::" + target.namespace
        if f.type == "object" and f.create_on_get:
            return f"CreatedChildMember<{N}, {ns}::{target.name}, {d}>"
        if f.type == "object":
            return f"ChildMember<{N}, {ns}::{target.name}, {d}>"
        return f"ChildListMember<{N}, {ns}::{target.name}List, {d}>"

    def descriptor_struct(self, record, f):
        N = record.node_class
        C = f.cap
        o = [f"struct SORVANE_API {descriptor(record, f)} {{"]
        o.append(f"    static constexpr const char* kKey = {cstr(f.key)};")
        o.append(f"    static constexpr bool kOptional = {'true' if f.optional else 'false'};")
        if f.is_reference:
            o.append(f"    static constexpr ReferenceTarget kTarget = {N}::k{C}Target;")
        if f.follow:
            o.append(f"    static constexpr const char* kTargetList = {cstr(f.target)};")
        if f.is_value:
            k = f.kind
            o.append(f"    static constexpr const char* kTypeName = {cstr(TYPE_NAMES[f.type])};")
            o.append(f"    using Value = {k['cpp']};")
            if f.read_default is not None:
                t = "const char*" if f.type == "string" else k['cpp']
                o.append(f"    static constexpr {t} kDefault = {literal(f.type, f.read_default, f.enum)};")
            o.append(f"    static {k['ret']} get(const {N}& n) {{ return n.get{C}(); }}")
            o.append(f"    static void set({N}& n, const Value& v) {{ n.set{C}(v); }}")
            if f.read_default is not None:
                o.append("    static constexpr bool kReadDefault = true;")
        elif f.is_list:
            E = f.element
            o.append(f"    using Element = {E};")
            o.append(f"    static const {f.list_type}& get(const {N}& n) {{ return n.get{C}(); }}")
            o.append(f"    static void set({N}& n, const std::vector<{E}>& v) {{ n.set{C}(v); }}")
            o.append(f"    static int64_t size(const {N}& n) {{ return n.get{C}Size(); }}")
            o.append(f"    static bool hasValue(const {N}& n, int64_t i) {{ return n.has{C}Value(i); }}")
            o.append(f"    static decltype(auto) getValue(const {N}& n, int64_t i) {{ return n.get{C}Value(i); }}")
            o.append(f"    static void setValue({N}& n, int64_t i, const Element& v) {{ n.set{C}Value(i, v); }}")
            o.append(f"    static void addValue({N}& n, const Element& v) {{ n.add{C}Value(v); }}")
            o.append(f"    static void removeValue({N}& n, int64_t i) {{ n.remove{C}Value(i); }}")
            if f.read_default is not None:
                items = ", ".join(literal("number", v) for v in f.read_default)
                o.append(f"    static std::vector<{E}> defaultValue() {{ return {{{items}}}; }}")
        elif f.type == "indexMap":
            o.append("    static constexpr bool kMaps = false;")
            o.append(f"    static const auto& get(const {N}& n) {{ return n.get{C}(); }}")
            o.append(f"    static int64_t size(const {N}& n) {{ return n.get{C}Size(); }}")
            o.append(f"    static std::vector<std::string> keys(const {N}& n) {{ return n.get{C}Keys(); }}")
            o.append(f"    static bool hasValue(const {N}& n, const std::string& k) {{ return n.has{C}Value(k); }}")
            o.append(f"    static int64_t getValue(const {N}& n, const std::string& k) {{ return n.get{C}Value(k); }}")
            o.append(f"    static void setValue({N}& n, const std::string& k, int64_t v) {{ n.set{C}Value(k, v); }}")
            o.append(f"    static void removeValue({N}& n, const std::string& k) {{ n.remove{C}Value(k); }}")
        elif f.type == "indexMaps":
            o.append("    static constexpr bool kMaps = true;")
            o.append(f"    static const auto& get(const {N}& n) {{ return n.get{C}(); }}")
            o.append(f"    static int64_t size(const {N}& n) {{ return n.get{C}Size(); }}")
            o.append(f"    static bool hasItem(const {N}& n, int64_t i) {{ return n.has{C}Item(i); }}")
            o.append(f"    static const auto& getItem(const {N}& n, int64_t i) {{ return n.get{C}Item(i); }}")
            o.append(f"    static int64_t addItem({N}& n) {{ return n.add{C}Item(); }}")
            o.append(f"    static void removeItem({N}& n, int64_t i) {{ n.remove{C}Item(i); }}")
            o.append(f"    static bool hasValue(const {N}& n, int64_t i, const std::string& k) {{ return n.has{C}Value(i, k); }}")
            o.append(f"    static int64_t getValue(const {N}& n, int64_t i, const std::string& k) {{ return n.get{C}Value(i, k); }}")
            o.append(f"    static void setValue({N}& n, int64_t i, const std::string& k, int64_t v) {{ n.set{C}Value(i, k, v); }}")
            o.append(f"    static void removeValue({N}& n, int64_t i, const std::string& k) {{ n.remove{C}Value(i, k); }}")
        else:
            t = f.base_type(self.records)
            if f.type == "object" and f.optional and record.module == "gltf2":
                # A glTF accessor's get makes an absent child on a writable document.
                o.append("    static constexpr bool kCreateOnGet = true;")
            o.append(f"    static const {t}& get(const {N}& n) {{ return n.get{C}(); }}")
            o.append(f"    static void set({N}& n, const {t}& v) {{ n.set{C}(v); }}")
        if f.optional:
            o.append(f"    static bool has(const {N}& n) {{ return n.has{C}(); }}")
            o.append(f"    static void remove({N}& n) {{ n.{f.remover}(); }}")
        o.append("};")
        return o

    def includes(self, record):
        m = record.module
        inc = {record.node_header, f"sorvane/{m}/property/MemberAccessors.h", f"sorvane/{m}/property/ObjectProperty.h"}
        if record.accessor_base:
            inc.add(f"sorvane/{base_source(record, record.accessor_base)}.h")
        for f in record.fields:
            if not self.supported(f):
                continue
            target = f.target_record(self.records) if f.is_reference else None
            if target and target is not record:
                inc.add(f"sorvane/{accessor_source(target)}.h")
                inc.add(target.list_header)
            if f.is_map:
                inc.add(f"sorvane/{m}/property/IndexMapMembers.h")
            if f.follow or f.create_on_get:
                inc.add(f"sorvane/{m}/property/ExtensionMembers.h")

            if f.type == "object":
                inc.add(f"sorvane/{accessor_source(f.of_record)}.h")
            elif f.type == "list":
                inc.add(f"sorvane/{list_accessor_source(f.of_record)}.h")
                inc.add(f.of_record.list_header)
        return sorted(inc)

    def header(self, record):
        A = record.name
        N = record.node_class
        path = f"sorvane/{accessor_source(record)}.h"
        fields = [f for f in record.fields if self.supported(f)]
        o = ["// Generated from schema/ by codegen/generate.py: do not edit.",
             f"#ifndef {guard(path)}", f"#define {guard(path)}", ""]
        for inc in self.includes(record):
            o.append(f'#include "{inc}"')
        o += ["", f"namespace {record.namespace} {{", ""]
        # Followed records are declared only: their headers may include this one.
        follows = sorted({f.follow for f in fields if f.follow})
        for name in follows:
            o.append(f"class {name};")
        if follows:
            o.append("")
        o += ["namespace fields {", ""]
        for f in fields:
            o += self.descriptor_struct(record, f)
            o.append("")
        o += ["} // namespace fields", ""]
        o.append(f"// The accessor of a {record.type_name} record.")
        base = record.accessor_base or f"ObjectProperty<{N}>"
        o.append(f"class SORVANE_API {A} : public {base} {{")
        o.append("public:")
        for f in fields:
            o.append(f"    using {alias(f)} = {self.member_type(record, f)};")
            if f.type == "refs" and f.target_record(self.records):
                # The accessor of one position of the list.
                o.append(f"    using {f.cap}Item = {f.cap}::Item;")
            if f.type == "indexMap":
                o.append(f"    using {f.cap}Item = {f.cap}::Item;")
            if f.type == "indexMaps":
                o.append(f"    using {f.cap}Map = {f.cap}::Map;")
                o.append(f"    using {f.cap}Item = {f.cap}::Item;")
        o.append("")
        o.append(f"    {A}();")
        o.append(f"    {A}(const std::shared_ptr<RootNode>& root, const std::shared_ptr<{N}>& node, bool readOnly);")
        # The members view the node through this accessor's references: a
        # copy or a move binds them to the new accessor.
        o.append(f"    {A}(const {A}& other);")
        o.append(f"    {A}({A}&& other) noexcept;")
        o.append(f"    {A}& operator=(const {A}& other);")
        o.append(f"    {A}& operator=({A}&& other) noexcept;")
        o.append("")
        for f in fields:
            o.append(f"    {alias(f)} {member_var(f)};")
        o.append("")
        o.append("protected:")
        o.append("    void clearMembers() override;")
        o.append("};")
        o += ["", f"}} // namespace {record.namespace}", "", "#endif"]
        return "\n".join(o) + "\n"

    def source(self, record):
        A = record.name
        N = record.node_class
        fields = [f for f in record.fields if self.supported(f)]
        o = ["// Generated from schema/ by codegen/generate.py: do not edit.",
             f'#include "sorvane/{accessor_source(record)}.h"']
        for name in sorted({f.follow for f in fields if f.follow}):
            followed = self.records.find(record.module, name)
            if followed is not None and followed is not record:
                o.append(f'#include "sorvane/{accessor_source(followed)}.h"')
        o += ["", f"namespace {record.namespace} {{", ""]
        # Every member borrows this accessor's references (see MemberProperty).
        inits = "".join(f",\n      {member_var(f)}(*this)" for f in fields)
        base = record.accessor_base or f"ObjectProperty<{N}>"
        o.append(f"{A}::{A}() : {base}(){inits} {{}}")
        o.append("")
        o.append(f"{A}::{A}(const std::shared_ptr<RootNode>& root_, const std::shared_ptr<{N}>& node_, bool readOnly_)")
        o.append(f"    : {base}(root_, node_, readOnly_){inits} {{}}")
        o.append("")
        o.append(f"{A}::{A}(const {A}& other) : {base}(other){inits} {{}}")
        o.append("")
        o.append(f"{A}::{A}({A}&& other) noexcept : {base}(std::move(other)){inits} {{}}")
        o.append("")
        for arg, val in ((f"const {A}& other", "other"), (f"{A}&& other", "std::move(other)")):
            o.append(f"{A}& {A}::operator=({arg}){' noexcept' if '&&' in arg else ''} {{")
            o.append(f"    {base}::operator=({val});")
            for f in fields:
                o.append(f"    {member_var(f)}.bind(*this);")
            o.append("    return *this;")
            o.append("}")
            o.append("")
        o.append(f"void {A}::clearMembers() {{")
        for f in fields:
            o.append(f"    {member_var(f)}.reset();")
        o.append("}")
        o += ["", f"}} // namespace {record.namespace}"]
        return "\n".join(o) + "\n"

    def list_header(self, record):
        L = record.name + "List"
        path = f"sorvane/{list_accessor_source(record)}.h"
        # The lists at the top of a glTF document may be absent: their handle
        # makes the list on its first add.
        default = "RootListProperty" if record.root_list and record.module == "gltf2" else "ListProperty"
        base = record.list_accessor_base or f"{default}<{record.list_class}, {record.name}>"
        base_include = (f"sorvane/{base_source(record, record.list_accessor_base)}.h" if record.list_accessor_base
                        else f"sorvane/{record.module}/property/{default}.h")
        o = ["// Generated from schema/ by codegen/generate.py: do not edit.",
             f"#ifndef {guard(path)}", f"#define {guard(path)}", "",
             f'#include "{record.list_header}"',
             f'#include "{base_include}"',
             f'#include "sorvane/{accessor_source(record)}.h"', "",
             f"namespace {record.namespace} {{", "",
             f"// The accessor of a {record.list_type_name}.",
             f"class SORVANE_API {L} : public {base} {{",
             "public:",
             f"    using {base.split('<')[0]}::{base.split('<')[0]};",
             "};", "",
             f"}} // namespace {record.namespace}", "", "#endif"]
        return "\n".join(o) + "\n"
