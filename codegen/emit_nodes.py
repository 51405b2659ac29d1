"""Node classes: one record node and, where the record has one, its item
list, per record of the model. The behaviour they share lives in the
hand-written RecordNode, ItemList and IdItemList; this only says which record
has which member."""

from model import VALUE_KINDS, cap

CPP_KEYWORDS = {"default", "template", "class", "delete", "new", "operator", "private", "public",
                "protected", "union", "struct", "namespace", "register", "auto", "type", "this"}


def cstr(text):
    out = ['"']
    for ch in text:
        if ch in '\\"':
            out.append("\\" + ch)
        elif ch == "\n":
            out.append("\\n")
        else:
            out.append(ch)
    out.append('"')
    return "".join(out)


def param_name(field):
    return field.key + "_arg" if field.key in CPP_KEYWORDS else field.key


def guard(path):
    return "SORVANE_" + path.replace("/", "_").replace(".", "_").upper().removeprefix("SORVANE_")


def literal(t, d, enum=None):
    """The C++ literal of a value d of kind t; None gives the kind's zero."""
    if t == "enum":
        return f"static_cast<{enum}>({int(d) if d is not None else 0})"
    if t == "string":
        return cstr(d) if d is not None else "std::string()"
    if t == "number":
        return repr(float(d)) if d is not None else "0.0"
    if t == "boolean":
        return "true" if d else "false"
    return str(int(d)) if d is not None else "0"


def default_value(field):
    return literal(field.type, field.default, field.enum)


def target_const(field):
    return f"k{field.cap}Target"


def typed_target(field):
    """The name of the generated function that reaches a reference's target
    list through the typed members ("components.nodes" -> componentsNodesList)."""
    section, lst = field.target_parts()
    words = ([section] if section else []) + [lst]
    return words[0] + "".join(cap(w) for w in words[1:]) + "List"


def checked_reference(field, check):
    """A reference setter's check: the quick accept through the typed route to
    the target list, else `check` (the full check, which words the failure)."""
    return [
        f"    const auto* targets = {typed_target(field)}(peekNodeRoot());",
        "    if (!targets || !targets->hasIndexedId(value))",
        f"        {check};",
    ]


class NodeEmitter:
    def __init__(self, records):
        self.records = records

    def outputs(self, record):
        files = [record.node_header, f"sorvane/{record.source}.cpp"]
        if record.has_list and not record.hand_written_list:
            files += [record.list_header, f"sorvane/{record.list_source}.cpp"]
        return files

    def emit(self, record):
        out = {
            record.node_header: self.node_header(record),
            f"sorvane/{record.source}.cpp": self.node_source(record),
        }
        if record.has_list and not record.hand_written_list:
            out[record.list_header] = self.list_header(record)
            out[f"sorvane/{record.list_source}.cpp"] = self.list_source(record)
        return out

    # ----- record node -----

    def child_includes(self, record):
        includes = set()
        for f in record.fields:
            if f.type == "object":
                includes.add(f.of_record.node_header)
            elif f.type == "list":
                includes.add(f.of_record.list_header)
            elif f.type == "generic":
                includes.add(f"sorvane/{record.module}/node/generic/ObjectNode.h")
            elif f.type == "enum":
                includes.add(f"sorvane/{f.enum_header}.h")
            elif f.is_map:
                includes.add("sorvane/archive/JsonImporter.h")
            if f.type == "refs":
                includes.add("sorvane/core/IdList.h")
        return sorted(includes)

    # The hand-written base named by "nodeBase" lives beside the record node.
    def base_class(self, record):
        return record.node_base or "RecordNode"

    def base_header(self, record):
        if record.node_base:
            return f"sorvane/{record.folder}/{record.node_base}.h"
        return f"sorvane/{record.module}/node/RecordNode.h"

    @staticmethod
    def required_children(record):
        """Child node members that a record always has."""
        return [f for f in record.fields if not (f.is_value or f.is_list or f.is_map or f.optional)]

    def make_child(self, record, f):
        lines = [f"    {f.member} = std::make_shared<{f.child_class(self.records)}>(shared_from_this());"]
        if f.type in ("object", "generic"):
            lines.append(f"    {f.member}->incompleteInit();")
        return lines

    def init_signature(self, record):
        return ", ".join(f"{f.kind['arg']} {param_name(f)}" for f in record.init_fields)

    def member_decls(self, record, f):
        r = self.records
        C = f.cap
        m = f.member
        lines = []
        if f.is_value:
            k = f.kind
            if f.optional:
                lines.append(f"bool has{C}() const {{ return {m}.has_value(); }}")
                lines.append(f"{k['ret']} get{C}() const;")
                lines.append(f"void set{C}({k['param']} value);")
                if f.key == "name" and record.id_field:
                    lines.append(f"void {f.remover}() {{ {m}.reset(); itemNameChanged(); }}")
                else:
                    lines.append(f"void {f.remover}() {{ {m}.reset(); }}")
            else:
                lines.append(f"{k['ret']} get{C}() const {{ return {m}; }}")
                lines.append(f"void set{C}({k['param']} value);")
        elif f.is_list:
            T = f.element
            P = "const std::string&" if T == "std::string" else T
            R = "const std::string&" if T == "std::string" else T
            if f.optional:
                lines.append(f"bool has{C}() const {{ return {m}.has_value(); }}")
                lines.append(f"void {f.remover}() {{ {m}.reset(); }}")
            lines.append(f"const {f.list_type}& get{C}() const;")
            lines.append(f"void set{C}(const std::vector<{T}>& values);")
            lines.append(f"bool has{C}Value(int64_t index) const;")
            lines.append(f"int64_t get{C}Size() const;")
            lines.append(f"{R} get{C}Value(int64_t index) const;")
            lines.append(f"void set{C}Value(int64_t index, {P} value);")
            lines.append(f"void add{C}Value({P} value);")
            lines.append(f"void remove{C}Value(int64_t index);")
        elif f.type == "indexMap":
            M = "archive::JsonImporter::IntegerMap"
            lines.append(f"bool has{C}() const {{ return {m}.has_value(); }}")
            lines.append(f"void {f.remover}() {{ {m}.reset(); }}")
            lines.append(f"const {M}& get{C}() const;")
            lines.append(f"void set{C}(const {M}& values);")
            lines.append(f"std::vector<std::string> get{C}Keys() const;")
            lines.append(f"int64_t get{C}Size() const {{ return {m} ? static_cast<int64_t>({m}->size()) : 0; }}")
            lines.append(f"bool has{C}Value(const std::string& key) const {{ return {m} && {m}->count(key) != 0; }}")
            lines.append(f"int64_t get{C}Value(const std::string& key) const;")
            lines.append(f"// Checked against the target list; makes the map when absent.")
            lines.append(f"void set{C}Value(const std::string& key, int64_t value);")
            lines.append(f"void remove{C}Value(const std::string& key);")
        elif f.type == "indexMaps":
            M = "archive::JsonImporter::IntegerMap"
            lines.append(f"bool has{C}() const {{ return {m}.has_value(); }}")
            lines.append(f"void {f.remover}() {{ {m}.reset(); }}")
            lines.append(f"const std::vector<{M}>& get{C}() const;")
            lines.append(f"void set{C}(const std::vector<{M}>& values);")
            lines.append(f"int64_t get{C}Size() const {{ return {m} ? static_cast<int64_t>({m}->size()) : 0; }}")
            lines.append(f"bool has{C}Item(int64_t index) const;")
            lines.append(f"const {M}& get{C}Item(int64_t index) const;")
            lines.append(f"// Appends an empty map, making the list when absent; returns its position.")
            lines.append(f"int64_t add{C}Item();")
            lines.append(f"void remove{C}Item(int64_t index);")
            lines.append(f"bool has{C}Value(int64_t index, const std::string& key) const;")
            lines.append(f"int64_t get{C}Value(int64_t index, const std::string& key) const;")
            lines.append(f"void set{C}Value(int64_t index, const std::string& key, int64_t value);")
            lines.append(f"void remove{C}Value(int64_t index, const std::string& key);")
        else:
            t = f.base_type(r)
            if f.optional:
                lines.append(f"bool has{C}() const {{ return static_cast<bool>({m}); }}")
                lines.append(f"void {f.remover}() {{ {m}.reset(); }}")
            lines.append(f"const {t}& get{C}() const {{ return {m}; }}")
            lines.append(f"void set{C}(const {t}& node);")
        return lines

    def node_header(self, record):
        r = self.records
        N = record.node_class
        g = guard(record.node_header)
        o = []
        o.append(f"// Generated from schema/ by codegen/generate.py: do not edit.")
        o.append(f"#ifndef {g}")
        o.append(f"#define {g}")
        o.append("")
        o.append("#include <cstdint>")
        o.append("#include <memory>")
        o.append("#include <optional>")
        o.append("#include <string>")
        o.append("#include <vector>")
        o.append("")
        o.append(f'#include "{self.base_header(record)}"')
        for inc in self.child_includes(record):
            o.append(f'#include "{inc}"')
        o.append("")
        o.append(f"namespace {record.namespace} {{")
        o.append("")
        if record.has_list:
            o.append(f"class {record.list_class};")
            o.append("")
        o.append(f"class SORVANE_API {N} : public {self.base_class(record)} {{")
        o.append("public:")
        o.append(f"    static constexpr const char* kTypeName = {cstr(record.type_name)};")
        o.append(f"    static constexpr const char* kListTypeName = {cstr(record.list_type_name)};")
        o.append(f"    static constexpr bool kHasName = {'true' if record.has_name else 'false'};")
        o.append(f"    static constexpr bool kHasId = {'true' if record.id_field else 'false'};")
        keys = ", ".join(cstr(f.key) for f in record.fields)
        o.append(f"    static constexpr const char* kKeys[] = {{{keys}}};")
        o.append(f"    static constexpr size_t kKeyCount = {len(record.fields)};")
        for f in record.fields:
            if f.is_reference:
                section, lst = f.target_parts()
                sec = cstr(section) if section else "nullptr"
                o.append(f"    static constexpr ReferenceTarget {target_const(f)} = {{{sec}, {cstr(lst)}}};")
        o.append("")
        o.append(f"    explicit {N}(const NodeParent& parent);")
        o.append(f"    ~{N}() override;")
        o.append("")
        o.append("    const char* getNodeTypeName() const override;")
        if record.id_field:
            o.append("    std::optional<std::string> getNodeIdRepr() const override;")
        o.append("    RecordFields getRecordFields() const override;")
        o.append("    void incompleteInit() override;")
        if self.required_children(record):
            o.append("    void clearForRead() override;")
            o.append("    void completeRead() override;")
        if record.has_name:
            name = record.field("name")
            expr = "name_.value_or(std::string())" if name.optional else "name_"
            o.append(f"    // The name lists go by; empty when the record has none.")
            o.append(f"    std::string getItemName() const {{ return {expr}; }}")
        o.append(f"    void init({self.init_signature(record)});")
        for f in record.fields:
            o.append("")
            o.append(f"    // {cstr(f.key)}")
            for line in self.member_decls(record, f):
                o.append("    " + line)
        o.append("")
        o.append("private:")
        # References first: a reference setter touches the member and the
        # root links at the end of the base, which then share a cache line.
        for f in sorted(record.fields, key=lambda f: not f.is_reference):
            o.append(f"    {f.member_type(r)} {f.member};")
        o.append("};")
        o.append("")
        o.append(f"}} // namespace {record.namespace}")
        o.append("")
        o.append("#endif")
        return "\n".join(o) + "\n"

    def assign_init(self, f):
        p = param_name(f)
        if f.type == "string":
            return f"{f.member} = {p};"
        return f"{f.member} = *{p};"

    def typed_targets(self, record):
        """name -> (field, section record or None, target record) for each
        list the record's references point into."""
        routes = {}
        for f in record.fields:
            if f.type not in ("ref", "refs"):
                continue
            section, _ = f.target_parts()
            target = f.target_record(self.records)
            if target is None:
                raise ValueError(f"{record.name}.{f.key}: no record holds {f.target}")
            sec = None
            if section:
                sec = next((r for r in self.records.values() if r.module == record.module and r.section == section), None)
                if sec is None:
                    raise ValueError(f"{record.name}.{f.key}: no record is the section {section}")
            routes.setdefault(typed_target(f), (f, sec, target))
        return routes

    def node_source(self, record):
        r = self.records
        N = record.node_class
        o = []
        o.append("// Generated from schema/ by codegen/generate.py: do not edit.")
        o.append(f'#include "{record.node_header}"')
        o.append("")
        if record.has_list:
            o.append(f'#include "{record.list_header}"')
        o.append(f'#include "sorvane/{record.module}/node/ItemList.h"')
        o.append('#include "sorvane/core/detail/release.h"')
        routes = self.typed_targets(record)
        if routes:
            headers = {f"sorvane/{record.module}/node/RootNode.h"}
            for _, section, target in routes.values():
                if section:
                    headers.add(section.node_header)
                headers.add(target.list_header)
            headers.discard(record.node_header)
            if record.has_list:
                headers.discard(record.list_header)
            for h in sorted(headers):
                o.append(f'#include "{h}"')
        o.append("")
        o.append(f"namespace {record.namespace} {{")
        o.append("")
        if routes:
            # A setter's quick accept: the target list reached through the
            # typed members, whose index holds the id. A null list, or an id
            # the index does not hold, goes to the full check, which also
            # makes the failure text.
            o.append("namespace {")
            o.append("")
            for name, (field, section, target) in sorted(routes.items()):
                sec, lst = field.target_parts()
                T = target.list_class
                o.append(f"const {T}* {name}(const RootNode* root) {{")
                o.append("    if (!root) return nullptr;")
                if section:
                    o.append(f"    const {section.node_class}* section = root->get{cap(sec)}().get();")
                    o.append(f"    return section ? section->get{cap(lst)}().get() : nullptr;")
                else:
                    o.append(f"    return root->get{cap(lst)}().get();")
                o.append("}")
                o.append("")
            o.append("} // namespace")
            o.append("")
        o.append(f"{N}::{N}(const NodeParent& parent_) : {self.base_class(record)}(parent_) {{}}")
        # Members are freed in key order, the order a read allocates them
        # (see sorvane/core/detail/release.h).
        o.append(f"{N}::~{N}() {{ sorvane::detail::releaseInOrder({', '.join(f.member for f in record.fields)}); }}"
                 if record.fields else f"{N}::~{N}() = default;")
        o.append("")
        o.append(f"const char* {N}::getNodeTypeName() const {{ return kTypeName; }}")
        o.append("")
        if record.id_field:
            o.append(f"std::optional<std::string> {N}::getNodeIdRepr() const {{ return std::to_string({record.id_field.member}); }}")
            o.append("")
        o.append(f"RecordFields {N}::getRecordFields() const {{")
        o.append("    static constexpr RecordField fields[] = {")
        for f in record.fields:
            o.append(f"        recordField<&{N}::{f.member}>({cstr(f.key)}),")
        o.append("    };")
        o.append("    return {fields, fields + sizeof fields / sizeof fields[0]};")
        o.append("}")
        o.append("")
        # incompleteInit, and for a read the same without the required
        # children, which the read makes only for the keys the text lacks.
        def reading_state(fn, make_children):
            o.append(f"void {N}::{fn}() {{")
            for f in record.fields:
                m = f.member
                if f.is_value:
                    o.append(f"    {m} = {'std::nullopt' if f.optional else default_value(f)};")
                elif f.is_list:
                    o.append(f"    {m}{'.reset()' if f.optional else '.clear()'};")
                elif f.is_map or f.optional or not make_children:
                    o.append(f"    {m}.reset();")
                else:
                    o.extend(self.make_child(record, f))
            o.append("}")
            o.append("")
        reading_state("incompleteInit", True)
        if self.required_children(record):
            reading_state("clearForRead", False)
            o.append(f"void {N}::completeRead() {{")
            for f in self.required_children(record):
                o.append(f"    if (!{f.member}) {{")
                o.extend("    " + line for line in self.make_child(record, f))
                o.append("    }")
            o.append("}")
            o.append("")
        # init
        o.append(f"void {N}::init({self.init_signature(record)}) {{")
        o.append("    incompleteInit();")
        # The id comes first, whatever its place among the arguments.
        for f in record.init_fields:
            if f.type == "id":
                o.append(f"    initRecordId({f.member}, parentList<{record.list_class}>(), {param_name(f)});")
        for f in record.init_fields:
            p = param_name(f)
            if f.type == "id":
                continue
            if f.presence == "required":
                o.append(f"    if (!{p}) failMissing({cstr(f.key)});")
                if f.type == "ref":
                    o.append(f"    checkInitReference({target_const(f)}, *{p});")
                if f.type == "index":
                    o.append(f"    checkIndexReference({cstr(f.target)}, {cstr(f.key)}, *{p});")
                o.append(f"    {self.assign_init(f)}")
            else:
                if f.type == "ref":
                    o.append(f"    if ({p}) checkInitReference({target_const(f)}, *{p});")
                if f.init_by_setter:
                    o.append(f"    if ({p}) set{f.cap}(*{p});")
                else:
                    o.append(f"    if ({p}) {self.assign_init(f)}")
        if record.init_hook:
            o.append(f"    {record.init_hook}();")
        o.append("}")
        for f in record.fields:
            o.append("")
            o.extend(self.member_defs(record, f))
        o.append("")
        o.append(f"}} // namespace {record.namespace}")
        return "\n".join(o) + "\n"

    def member_defs(self, record, f):
        r = self.records
        N = record.node_class
        C = f.cap
        m = f.member
        key = cstr(f.key)
        o = []
        if f.is_value:
            k = f.kind
            if f.optional:
                o.append(f"{k['ret']} {N}::get{C}() const {{")
                if f.read_default is None:
                    o.append(f"    if (!{m}) failNoValue({key});")
                elif f.type == "string":
                    o.append(f"    static const std::string kDefault = {cstr(f.read_default)};")
                    o.append(f"    if (!{m}) return kDefault;")
                else:
                    o.append(f"    if (!{m}) return {literal(f.type, f.read_default, f.enum)};")
                o.append(f"    return *{m};")
                o.append("}")
            o.append(f"void {N}::set{C}({k['param']} value) {{")
            if f.type == "id":
                o.append(f"    setRecordId({m}, parentList<{record.list_class}>(), value);")
            elif f.type == "index":
                cur = f"{m} && *{m} == value" if f.optional else f"{m} == value"
                o.append(f"    if ({cur}) return;")
                o.append(f"    checkIndexReference({cstr(f.target)}, {key}, value);")
                o.append(f"    {m} = value;")
            elif f.type == "ref":
                cur = f"{m} && *{m} == value" if f.optional else f"{m} == value"
                o.append(f"    if ({cur}) return;")
                o.extend(checked_reference(f, f"checkReference({target_const(f)}, {key}, value)"))
                o.append(f"    {m} = value;")
            else:
                o.append(f"    {m} = value;")
                if f.key == "name" and record.id_field:
                    o.append("    itemNameChanged();")
            o.append("}")
            return o
        if f.is_list:
            T = f.element
            P = "const std::string&" if T == "std::string" else T
            R = "const std::string&" if T == "std::string" else T
            L = f.list_type
            if f.optional and f.read_default is not None:
                # Reads of the absent list see its default; writes still need the list.
                cget = f"const {L}* list = {m} ? &*{m} : &get{C}();"
                mget = f"{L}* list = {m} ? &*{m} : nullptr;"
            elif f.optional:
                cget = f"const {L}* list = {m} ? &*{m} : nullptr;"
                mget = f"{L}* list = {m} ? &*{m} : nullptr;"
            else:
                cget = f"const {L}* list = &{m};"
                mget = f"{L}* list = &{m};"
            ref = f.type == "refs"
            tgt = target_const(f) if ref else None
            idx = f.type == "indices"
            o.append(f"const {L}& {N}::get{C}() const {{")
            if f.optional and f.read_default is not None:
                items = ", ".join(literal("number", v) for v in f.read_default)
                o.append(f"    static const {L} kDefault = {{{items}}};")
                o.append(f"    if (!{m}) return kDefault;")
                o.append(f"    return *{m};")
            elif f.optional:
                o.append(f"    if (!{m}) failNoValue({key});")
                o.append(f"    return *{m};")
            else:
                o.append(f"    return {m};")
            o.append("}")
            o.append(f"void {N}::set{C}(const std::vector<{T}>& values) {{")
            if ref:
                # Every id is checked before the list is replaced.
                o.append(f"    checkReferenceItems({tgt}, {key}, values);")
            if idx:
                o.append("    for (size_t i = 0; i < values.size(); ++i)")
                o.append(f"        checkIndexReferenceItem({cstr(f.target)}, {key}, static_cast<int64_t>(i), values[i]);")
            o.append(f"    {m} = values;")
            o.append("}")
            o.append(f"bool {N}::has{C}Value(int64_t index) const {{")
            o.append(f"    {cget}")
            o.append("    return list && index >= 0 && static_cast<uint64_t>(index) < list->size();")
            o.append("}")
            o.append(f"int64_t {N}::get{C}Size() const {{")
            o.append(f"    {cget}")
            o.append("    return list ? static_cast<int64_t>(list->size()) : 0;")
            o.append("}")
            o.append(f"{R} {N}::get{C}Value(int64_t index) const {{")
            o.append(f"    {cget}")
            o.append(f'    if (!list) failNoList("Getting", {key}, index);')
            o.append(f"    checkGetIndex({key}, index, list->size());")
            o.append("    return (*list)[static_cast<size_t>(index)];")
            o.append("}")
            o.append(f"void {N}::set{C}Value(int64_t index, {P} value) {{")
            o.append(f"    {mget}")
            o.append(f'    if (!list) failNoList("Setting", {key}, index);')
            o.append(f"    checkSetIndex({key}, index, list->size());")
            if ref:
                o.extend(checked_reference(f, f"checkReferenceItem({tgt}, {key}, index, value)"))
            if idx:
                o.append(f"    checkIndexReferenceItem({cstr(f.target)}, {key}, index, value);")
            o.append("    (*list)[static_cast<size_t>(index)] = value;")
            o.append("}")
            o.append(f"void {N}::add{C}Value({P} value) {{")
            if ref:
                o.extend(checked_reference(f, f"checkReferenceAdd({tgt}, {key}, value)"))
            if idx:
                o.append(f"    checkIndexReferenceAdd({cstr(f.target)}, {key}, value);")
            if f.optional:
                o.append(f"    if (!{m}) {m}.emplace();")
                o.append(f"    {m}->push_back(value);")
            else:
                o.append(f"    {m}.push_back(value);")
            o.append("}")
            o.append(f"void {N}::remove{C}Value(int64_t index) {{")
            o.append(f"    {mget}")
            o.append(f'    if (!list) failNoList("Removing", {key}, index);')
            o.append(f"    checkRemoveIndex({key}, index, list->size());")
            o.append("    list->erase(list->begin() + static_cast<std::ptrdiff_t>(index));")
            o.append("}")
            return o
        if f.is_map:
            return self.map_defs(record, f)
        t = f.base_type(r)
        o.append(f"void {N}::set{C}(const {t}& node) {{")
        o.append("    if (node) node->setNodeParent(shared_from_this());")
        o.append(f"    {m} = node;")
        o.append("}")
        return o

    def map_defs(self, record, f):
        N = record.node_class
        C = f.cap
        m = f.member
        key = cstr(f.key)
        tgt = cstr(f.target)
        M = "archive::JsonImporter::IntegerMap"
        path = "getNodePath().c_str()"
        o = []
        if f.type == "indexMap":
            o.append(f"const {M}& {N}::get{C}() const {{")
            o.append(f'    if (!{m}) SORVANE_THROW("Getting item of %s.%s: No list", {path}, {key});')
            o.append(f"    return *{m};")
            o.append("}")
            o.append(f"void {N}::set{C}(const {M}& values) {{")
            o.append("    for (const auto& entry : values)")
            o.append(f"        checkMapIndexReference({tgt}, {key}, entry.first, entry.second);")
            o.append(f"    {m} = values;")
            o.append("}")
            o.append(f"std::vector<std::string> {N}::get{C}Keys() const {{")
            o.append(f'    if (!{m}) SORVANE_THROW("Getting keys of %s.%s: No list", {path}, {key});')
            o.append("    std::vector<std::string> keys;")
            o.append(f"    keys.reserve({m}->size());")
            o.append(f"    for (const auto& entry : *{m}) keys.push_back(entry.first);")
            o.append("    return keys;")
            o.append("}")
            o.append(f"int64_t {N}::get{C}Value(const std::string& item) const {{")
            o.append(f'    if (!{m}) SORVANE_THROW("Getting item of %s.%s: No list", {path}, {key});')
            o.append(f"    auto found = {m}->find(item);")
            o.append(f'    if (found == {m}->end()) SORVANE_THROW("Getting item of %s.%s: Invalid key %s", {path}, {key}, item.c_str());')
            o.append("    return found->second;")
            o.append("}")
            o.append(f"void {N}::set{C}Value(const std::string& item, int64_t value) {{")
            o.append(f"    checkMapIndexReference({tgt}, {key}, item, value);")
            o.append(f"    if (!{m}) {m}.emplace();")
            o.append(f"    (*{m})[item] = value;")
            o.append("}")
            o.append(f"void {N}::remove{C}Value(const std::string& item) {{")
            o.append(f'    if (!{m}) SORVANE_THROW("Removing item %s of %s.%s: No list", item.c_str(), {path}, {key});')
            o.append(f'    if ({m}->erase(item) == 0) SORVANE_THROW("Removing item %s of %s.%s: Invalid key", item.c_str(), {path}, {key});')
            o.append("}")
            return o
        o.append(f"const std::vector<{M}>& {N}::get{C}() const {{")
        o.append(f'    if (!{m}) SORVANE_THROW("Getting item of %s.%s: No list", {path}, {key});')
        o.append(f"    return *{m};")
        o.append("}")
        o.append(f"void {N}::set{C}(const std::vector<{M}>& values) {{")
        o.append("    for (size_t i = 0; i < values.size(); ++i)")
        o.append("        for (const auto& entry : values[i])")
        o.append(f"            checkMapsIndexReference({tgt}, {key}, static_cast<int64_t>(i), entry.first, entry.second);")
        o.append(f"    {m} = values;")
        o.append("}")
        o.append(f"bool {N}::has{C}Item(int64_t index) const {{")
        o.append(f"    return {m} && index >= 0 && static_cast<uint64_t>(index) < {m}->size();")
        o.append("}")
        o.append(f"const {M}& {N}::get{C}Item(int64_t index) const {{")
        o.append(f'    if (!{m}) SORVANE_THROW("Getting item of %s.%s: No list", {path}, {key});')
        o.append(f"    if (index < 0 || static_cast<uint64_t>(index) >= {m}->size())")
        o.append(f'        SORVANE_THROW("Getting item of %s.%s: Invalid index %ld", {path}, {key}, static_cast<long>(index));')
        o.append(f"    return (*{m})[static_cast<size_t>(index)];")
        o.append("}")
        o.append(f"int64_t {N}::add{C}Item() {{")
        o.append(f"    if (!{m}) {m}.emplace();")
        o.append(f"    {m}->emplace_back();")
        o.append(f"    return static_cast<int64_t>({m}->size()) - 1;")
        o.append("}")
        o.append(f"void {N}::remove{C}Item(int64_t index) {{")
        o.append(f'    if (!{m}) SORVANE_THROW("Removing item %s.%s[%ld]: No list", {path}, {key}, static_cast<long>(index));')
        o.append(f"    if (index < 0 || static_cast<uint64_t>(index) >= {m}->size())")
        o.append(f'        SORVANE_THROW("Removing item %s.%s[%ld]: Invalid index", {path}, {key}, static_cast<long>(index));')
        o.append(f"    {m}->erase({m}->begin() + static_cast<std::ptrdiff_t>(index));")
        o.append("}")
        o.append(f"bool {N}::has{C}Value(int64_t index, const std::string& item) const {{")
        o.append(f"    return has{C}Item(index) && (*{m})[static_cast<size_t>(index)].count(item) != 0;")
        o.append("}")
        o.append(f"int64_t {N}::get{C}Value(int64_t index, const std::string& item) const {{")
        o.append(f"    const {M}& map = get{C}Item(index);")
        o.append("    auto found = map.find(item);")
        o.append(f'    if (found == map.end()) SORVANE_THROW("Getting item of %s.%s: Invalid key %s", {path}, {key}, item.c_str());')
        o.append("    return found->second;")
        o.append("}")
        o.append(f"void {N}::set{C}Value(int64_t index, const std::string& item, int64_t value) {{")
        o.append(f"    if (!{m})")
        o.append(f'        SORVANE_THROW("Setting item %s.%s[%ld][%s]: No list", {path}, {key}, static_cast<long>(index), item.c_str());')
        o.append(f"    if (index < 0 || static_cast<uint64_t>(index) >= {m}->size())")
        o.append(f'        SORVANE_THROW("Setting item %s.%s[%ld][%s]: Invalid index", {path}, {key}, static_cast<long>(index), item.c_str());')
        o.append(f"    checkMapsIndexReference({tgt}, {key}, index, item, value);")
        o.append(f"    (*{m})[static_cast<size_t>(index)][item] = value;")
        o.append("}")
        o.append(f"void {N}::remove{C}Value(int64_t index, const std::string& item) {{")
        o.append(f"    if (!{m})")
        o.append(f'        SORVANE_THROW("Removing item %s.%s[%ld][%s]: No list", {path}, {key}, static_cast<long>(index), item.c_str());')
        o.append(f"    if (index < 0 || static_cast<uint64_t>(index) >= {m}->size())")
        o.append(f'        SORVANE_THROW("Removing item %s.%s[%ld][%s]: Invalid index", {path}, {key}, static_cast<long>(index), item.c_str());')
        o.append(f"    if ((*{m})[static_cast<size_t>(index)].erase(item) == 0)")
        o.append(f'        SORVANE_THROW("Removing item %s.%s[%ld][%s]: Invalid key", {path}, {key}, static_cast<long>(index), item.c_str());')
        o.append("}")
        return o

    # ----- item list -----

    def list_header(self, record):
        L = record.list_class
        N = record.node_class
        base = f"IdItemList<{N}>" if record.id_field else f"ItemList<{N}>"
        g = guard(record.list_header)
        o = []
        o.append("// Generated from schema/ by codegen/generate.py: do not edit.")
        o.append(f"#ifndef {g}")
        o.append(f"#define {g}")
        o.append("")
        o.append(f'#include "sorvane/{record.module}/node/ItemList.h"')
        o.append(f'#include "{record.node_header}"')
        o.append("")
        o.append(f"namespace {record.namespace} {{")
        o.append("")
        o.append(f"class SORVANE_API {L} : public {base} {{")
        o.append("public:")
        o.append(f"    explicit {L}(const NodeParent& parent);")
        o.append(f"    ~{L}() override;")
        o.append("")
        o.append(f"    using {base}::add;")
        o.append(f"    // A new record made by {N}::init with these arguments, appended.")
        o.append(f"    std::shared_ptr<{N}> add({self.init_signature(record)});")
        o.append("};")
        o.append("")
        o.append(f"}} // namespace {record.namespace}")
        o.append("")
        o.append("#endif")
        return "\n".join(o) + "\n"

    def list_source(self, record):
        L = record.list_class
        N = record.node_class
        base = f"IdItemList<{N}>" if record.id_field else f"ItemList<{N}>"
        args = ", ".join(param_name(f) for f in record.init_fields)
        o = []
        o.append("// Generated from schema/ by codegen/generate.py: do not edit.")
        o.append(f'#include "{record.list_header}"')
        o.append("")
        o.append(f"namespace {record.namespace} {{")
        o.append("")
        o.append(f"{L}::{L}(const NodeParent& parent_) : {base}(parent_) {{}}")
        o.append(f"{L}::~{L}() = default;")
        o.append("")
        o.append(f"std::shared_ptr<{N}> {L}::add({self.init_signature(record)}) {{")
        o.append(f"    auto item = std::make_shared<{N}>(shared_from_this());")
        o.append(f"    item->init({args});")
        o.append("    items.push_back(item);")
        o.append("    return item;")
        o.append("}")
        o.append("")
        o.append(f"}} // namespace {record.namespace}")
        return "\n".join(o) + "\n"
