"""The record descriptions of schema/*.json, loaded and checked.

Each record is described once: its JSON keys in writing order, each key's kind
and presence, defaults, the arguments of init, and whether it has a list
class. Every emitter derives its output from this model only.
"""

import json

# Kinds of member value. 'cpp' is the member's C++ type before optionality,
# 'arg' the type of an init argument, 'param' the setter's parameter type.
VALUE_KINDS = {
    "string": {"cpp": "std::string", "arg": "const char*", "param": "const std::string&", "ret": "const std::string&"},
    "integer": {"cpp": "int64_t", "arg": "std::optional<int64_t>", "param": "int64_t", "ret": "int64_t"},
    "id": {"cpp": "int64_t", "arg": "std::optional<int64_t>", "param": "int64_t", "ret": "int64_t"},
    "ref": {"cpp": "int64_t", "arg": "std::optional<int64_t>", "param": "int64_t", "ret": "int64_t"},
    "number": {"cpp": "double", "arg": "std::optional<double>", "param": "double", "ret": "double"},
    "boolean": {"cpp": "bool", "arg": "std::optional<bool>", "param": "bool", "ret": "bool"},
    # An index into a list at the root (glTF): stored as read, checked by setters.
    "index": {"cpp": "int64_t", "arg": "std::optional<int64_t>", "param": "int64_t", "ret": "int64_t"},
    # A hand-written enumeration ("enum" names it, "header" its source): an
    # integer in JSON, stored as read.
    "enum": {"cpp": None, "arg": None, "param": None, "ret": None},
}
LIST_KINDS = {
    "strings": "std::string",
    "integers": "int64_t",
    "numbers": "double",
    "refs": "int64_t",
    "indices": "int64_t",
}
# Maps from a text to an index into a root list (glTF primitive attributes),
# alone or as a list of maps (morph targets); written in hash-map order.
MAP_KINDS = {
    "indexMap": "archive::JsonImporter::IntegerMap",
    "indexMaps": "std::vector<archive::JsonImporter::IntegerMap>",
}
NODE_KINDS = ("object", "list", "generic")
PRESENCES = ("required", "always", "optional")


class SchemaError(Exception):
    pass


def cap(key):
    return key[0].upper() + key[1:]


class Field:
    def __init__(self, record, desc):
        self.record = record
        self.key = desc["key"]
        self.type = desc["type"]
        self.presence = desc.get("presence", "always")
        self.default = desc.get("default")
        self.of = desc.get("of")
        self.target = desc.get("target")
        self.enum = desc.get("enum")
        self.enum_header = desc.get("header")
        # A child object that a read through a writable accessor makes when
        # absent (glTF extension objects).
        self.create_on_get = bool(desc.get("createOnGet", False))
        # An index whose accessor follows it to the record it names (the
        # accessor class of that record).
        self.follow = desc.get("follow")
        # A value that a read of the absent member answers; never written.
        self.read_default = desc.get("readDefault")
        # An init argument that goes through the member's setter (and so its
        # check) instead of being stored as given.
        self.init_by_setter = bool(desc.get("initBySetter", False))
        where = f"{record.name}.{self.key}"
        if (self.type not in VALUE_KINDS and self.type not in LIST_KINDS and self.type not in NODE_KINDS
                and self.type not in MAP_KINDS):
            raise SchemaError(f"{where}: unknown type {self.type}")
        if self.presence not in PRESENCES:
            raise SchemaError(f"{where}: unknown presence {self.presence}")
        if self.type in ("object", "list") and not self.of:
            raise SchemaError(f"{where}: '{self.type}' needs 'of'")
        if self.type in ("ref", "refs", "index", "indices", "indexMap", "indexMaps") and not self.target:
            raise SchemaError(f"{where}: '{self.type}' needs 'target'")
        if self.type == "enum" and not (self.enum and self.enum_header):
            raise SchemaError(f"{where}: 'enum' needs 'enum' and 'header'")
        if self.read_default is not None and not (
                self.optional and self.type in ("string", "integer", "number", "boolean", "enum", "numbers")):
            raise SchemaError(f"{where}: 'readDefault' is for optional plain values")

    # The C++ member name; a suffix keeps keys such as "root" or "parent"
    # clear of the node's own members.
    @property
    def member(self):
        return self.key + "_"

    @property
    def cap(self):
        return cap(self.key)

    # The node's remover of an optional value. "removeNode" is the node
    # framework's own (take this node out of its parent): a key "node" must
    # not override it.
    @property
    def remover(self):
        name = "remove" + cap(self.key)
        return name + "Property" if name in ("removeNode",) else name

    @property
    def optional(self):
        return self.presence == "optional"

    @property
    def is_value(self):
        return self.type in VALUE_KINDS

    @property
    def is_list(self):
        return self.type in LIST_KINDS

    @property
    def is_map(self):
        return self.type in MAP_KINDS

    @property
    def is_node(self):
        return self.type in NODE_KINDS

    @property
    def is_reference(self):
        return self.type in ("ref", "refs")

    @property
    def is_index(self):
        return self.type in ("index", "indices")

    @property
    def kind(self):
        """The C++ types of a plain value member (VALUE_KINDS, with the
        enumeration's own type filled in)."""
        if self.type != "enum":
            return VALUE_KINDS[self.type]
        return {"cpp": self.enum, "arg": f"std::optional<{self.enum}>", "param": self.enum, "ret": self.enum}

    @property
    def element(self):
        return LIST_KINDS[self.type]

    @property
    def of_record(self):
        """The record an 'object' or 'list' member holds, from the same module."""
        return self.record.records.find(self.record.module, self.of)

    def child_class(self, records):
        if self.type == "generic":
            return "ObjectNode"
        target = self.of_record
        return target.list_class if self.type == "list" else target.node_class

    def base_type(self, records):
        if self.is_value:
            return self.kind["cpp"]
        if self.is_list:
            return self.list_type
        if self.is_map:
            return MAP_KINDS[self.type]
        return f"std::shared_ptr<{self.child_class(records)}>"

    @property
    def list_type(self):
        """The C++ container of a list member: reference lists keep short
        lists of ids inside the record."""
        return "IdList" if self.type == "refs" else f"std::vector<{self.element}>"

    def member_type(self, records):
        t = self.base_type(records)
        if self.optional and not self.is_node:
            return f"std::optional<{t}>"
        return t

    def target_record(self, records):
        """The record a reference points at, when the model holds its list."""
        section, key = self.target_parts()
        for r in records.values():
            if r.module != self.record.module:
                continue
            if section is None and r.root_list == key:
                return r
            if section is not None and r.section == section:
                field = next((f for f in r.fields if f.key == key and f.type == "list"), None)
                return field.of_record if field else None
        return None

    def target_parts(self):
        parts = self.target.split(".")
        if len(parts) == 1:
            return None, parts[0]
        return parts[0], parts[1]


class Record:
    def __init__(self, module, desc, records=None):
        self.module = module
        self.records = records
        self.name = desc["name"]
        self.source = desc["source"]
        self.has_list = bool(desc.get("list", False))
        self.type_name = desc.get("typeName", self.name)
        self.list_type_name = desc.get("listTypeName", self.name + "List")
        # Hand-written extensions: a list node class kept in the source tree
        # (it derives from the item list and adds its own operations), and
        # base classes of the accessors that add reads or adding operations.
        self.hand_written_list = bool(desc.get("handWrittenList", False))
        self.accessor_base = desc.get("accessorBase")
        self.list_accessor_base = desc.get("listAccessorBase")
        # A hand-written base of the record node itself, between RecordNode
        # and the generated class, beside the node's source; it adds
        # operations computed from the members (NodeNode's transform).
        self.node_base = desc.get("nodeBase")
        # A method of that base which init calls last, for what init decides
        # beyond storing its arguments (a camera's child by its type).
        self.init_hook = desc.get("initHook")
        if self.init_hook and not self.node_base:
            raise SchemaError(f"{self.name}: 'initHook' needs 'nodeBase'")
        self.fields = [Field(self, f) for f in desc["fields"]]
        self.init_keys = desc.get("init", [])
        keys = [f.key for f in self.fields]
        if len(set(keys)) != len(keys):
            raise SchemaError(f"{self.name}: repeated key")
        for k in self.init_keys:
            if k not in keys:
                raise SchemaError(f"{self.name}: init argument {k} is no key")
        self.id_field = next((f for f in self.fields if f.type == "id"), None)
        if self.id_field and not self.has_list:
            raise SchemaError(f"{self.name}: an id needs a list")
        self.has_name = any(f.key == "name" and f.type == "string" for f in self.fields)
        # A section of the root ("components"): the key reference targets name.
        self.section = desc.get("section")
        # A list at the root ("data"): the key reference targets name.
        self.root_list = desc.get("rootList")

    @property
    def node_class(self):
        return self.name + "Node"

    @property
    def list_class(self):
        return self.name + "Nodes"

    @property
    def folder(self):
        return self.source.rsplit("/", 1)[0]

    @property
    def node_header(self):
        return f"sorvane/{self.source}.h"

    @property
    def list_source(self):
        return f"{self.folder}/{self.list_class}"

    @property
    def list_header(self):
        return f"sorvane/{self.list_source}.h"

    @property
    def namespace(self):
        return f"sorvane::{self.module}"

    def field(self, key):
        return next(f for f in self.fields if f.key == key)

    @property
    def init_fields(self):
        return [self.field(k) for k in self.init_keys]


class Records(dict):
    """All records, keyed by (module, name): the same name may be a record of
    several modules ("Node", "Mesh", "Skin", "Asset" are in arf and gltf2)."""

    def find(self, module, name):
        return self.get((module, name))

    def of_module(self, module):
        return [r for r in self.values() if r.module == module]

    @property
    def modules(self):
        return sorted({r.module for r in self.values()})


MODULES = ("arf", "gltf2")


def load(paths):
    records = Records()
    for path in paths:
        with open(path, encoding="utf-8") as f:
            doc = json.load(f)
        if doc["module"] not in MODULES:
            raise SchemaError(f"{path}: unknown module {doc['module']}")
        for desc in doc["records"]:
            record = Record(doc["module"], desc, records)
            if (record.module, record.name) in records:
                raise SchemaError(f"{path}: record {record.module}.{record.name} described twice")
            if not record.source.startswith(record.module + "/"):
                raise SchemaError(f"{path}: {record.name} is not under {record.module}/")
            records[(record.module, record.name)] = record
    for record in records.values():
        for field in record.fields:
            if field.type in ("object", "list") and field.of_record is None:
                raise SchemaError(f"{record.name}.{field.key}: unknown record {field.of}")
            if field.type == "list" and not field.of_record.has_list:
                raise SchemaError(f"{record.name}.{field.key}: {field.of} has no list")
    return records
