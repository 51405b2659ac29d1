"""Flat C functions over the accessors: one family per accessor class and
list class, named sorvane_<module>_<Class>_<operation>. Every function is one
call into the frame of sorvane/flat/Frame.h; this emitter only chooses the
frame form and the accessor call for each kind of member. It writes the C
header part and one source file per record."""

import json

from emit_accessors import accessor_source, list_accessor_source, member_var
from emit_nodes import cstr, param_name

C_VALUE = {"integer": "int64_t", "id": "int64_t", "ref": "int64_t", "number": "double", "boolean": "bool",
           "index": "int64_t", "enum": "int32_t"}
C_ELEMENT = {"integers": "int64_t", "refs": "int64_t", "numbers": "double", "indices": "int64_t"}


def lower_first(name):
    return name[0].lower() + name[1:]


def handle(record_or_name, module=None):
    """The flat handle type of a class: sorvane_<module>_<Class>. A record
    brings its module; a bare class name needs it."""
    if isinstance(record_or_name, str):
        return f"sorvane_{module}_{record_or_name}"
    return f"sorvane_{record_or_name.module}_{record_or_name.name}"


# How results of unknown length come back, named in every description.
TEXT = "text size protocol"
ARRAY = "array size protocol (count in values, capacity in bytes)"


class Function:
    def __init__(self, name, params, body, doc=None):
        self.name = name
        self.params = params  # list of "type name"
        self.body = body      # C++ statement(s) returning int32_t
        self.doc = doc

    def declaration(self):
        return f"SORVANE_API int32_t {self.name}({', '.join(self.params)});"

    def definition(self):
        return f"int32_t {self.name}({', '.join(self.params)}) {{\n    {self.body}\n}}"


def header_path(module):
    return f"sorvane/flat/sorvane_{module}_generated.h"


class FlatEmitter:
    def __init__(self, records):
        self.records = records

    def supported(self, field):
        return True

    def source_path(self, record):
        return f"sorvane/flat/{record.module}_{record.name}.cpp"

    def outputs(self, record):
        files = [self.source_path(record)]
        if record is self.first(record.module):
            files.append(header_path(record.module))
        return files

    # The header of a module is written with its first record.
    def first(self, module):
        return self.records.of_module(module)[0]

    def emit(self, record):
        out = {self.source_path(record): self.source(record)}
        if record is self.first(record.module):
            out[header_path(record.module)] = self.header(record.module)
        return out

    # ----- families -----

    def common(self, module, cls, null, with_has, with_id):
        H = handle(cls, module)
        h = f"{H}* self"
        thing = "list" if cls.endswith("List") else "record"
        fns = [Function(f"{H}_delete", [h], f"return flat::destroy({null}, self);",
                        doc="Releases the handle; the document is untouched.")]
        if with_has:
            fns.append(Function(f"{H}_has", ["bool* out", h, "const char* key"],
                                f"return flat::get(out, {null}, self, [&](auto& a) {{ return a.has(flat::str(key)); }});",
                                doc="Whether key is a key of the class (present or not)."))
        fns += [
            Function(f"{H}_isPropertyPresent", ["bool* out", h],
                     f"return flat::get(out, {null}, self, [&](auto& a) {{ return a.isPropertyPresent(); }});",
                     doc=f"Whether the {thing} is in the document; false for a handle without a node."),
            Function(f"{H}_removeProperty", [h],
                     f"return flat::call({null}, self, [&](auto& a) {{ a.removeProperty(); }});",
                     doc=f"Removes the {thing} from the document; the handle is then good for _delete only."),
            Function(f"{H}_getPropertyIndex", ["int64_t* out", h],
                     f"return flat::get(out, {null}, self, [&](auto& a) {{ return a.getPropertyIndex(); }});",
                     doc=f"The {thing}'s position in its parent."),
        ]
        if with_id:
            fns.append(Function(f"{H}_getPropertyId", ["int64_t* out", h],
                                f"return flat::get(out, {null}, self, [&](auto& a) {{ return a.getPropertyId(); }});",
                                doc="The record's id."))
        for op, what in (("getPropertyName", f'The {thing}\'s key in its parent object ("<parentnotobject>" inside a list)'),
                         ("getPropertyPath", f"The {thing}'s path in the document"),
                         ("getPropertyTypeName", f'The class name, "{cls}"')):
            fns.append(Function(f"{H}_{op}", ["char* out", "int64_t* outSize", h],
                                f"return flat::text(out, outSize, {null}, self, [&](auto& a) {{ return std::string(a.{op}()); }});",
                                doc=f"{what}; {TEXT}."))
        fns.append(Function(f"{H}_toString", ["char* out", "int64_t* outSize", h],
                            f"return flat::text(out, outSize, {null}, self, [&](auto& a) {{ return a.buildRepresentation(); }});",
                            doc=f"The {thing} as JSON text; {TEXT}."))
        return fns

    def member_functions(self, record, f):
        A = record.name
        null = cstr(lower_first(A) + " is NULL")
        h = f"{handle(record)}* self"
        m = member_var(f)
        C = f.cap
        p = f"{handle(record)}_"
        k = f'"{f.key}"'
        fns = []
        target = f.target_record(self.records) if f.is_reference else None
        if f.type == "ref":
            # The stored id through ...Index; the record itself when its list is known.
            fns.append(Function(f"{p}get{C}Index", ["int64_t* out", h],
                                f"return flat::get(out, {null}, self, [&](auto& a) {{ return static_cast<int64_t>(a.{m}.{'getIndex' if target else 'get'}()); }});",
                                doc=f"The id stored in {k}, whether or not it names a record."))
            fns.append(Function(f"{p}set{C}Index", [h, "int64_t id"],
                                f"return flat::call({null}, self, [&](auto& a) {{ a.{m}.set(id); }});",
                                doc=f"Stores an id in {k}."))
            if target:
                T = handle(target)
                item_null = cstr(lower_first(target.name) + " is NULL")
                fns.append(Function(f"{p}get{C}", [f"{T}** out", h],
                                    f"return flat::get(out, {null}, self, [&](auto& a) {{ return a.{m}.getPtr(); }});",
                                    doc=f"The {target.name} that {k} names, as a new handle."))
                fns.append(Function(f"{p}set{C}", [h, f"{T}* item"],
                                    f"if (self && !item) return flat::fail({item_null});\n    "
                                    f"return flat::call({null}, self, [&](auto& a) {{ a.{m}.set(*item); }});",
                                    doc=f"Makes {k} name item, through its id."))
        elif f.is_value:
            absent = f" (read default {json.dumps(f.read_default)} while absent)" if f.read_default is not None else ""
            if f.type == "string":
                fns.append(Function(f"{p}get{C}", ["char* out", "int64_t* outSize", h],
                                    f"return flat::text(out, outSize, {null}, self, [&](auto& a) {{ return std::string(a.{m}.get()); }});",
                                    doc=f"The text of {k}{absent}; {TEXT}."))
                fns.append(Function(f"{p}set{C}", [h, "const char* value"],
                                    f"return flat::call({null}, self, [&](auto& a) {{ a.{m}.set(flat::str(value)); }});",
                                    doc=f"Sets {k}."))
            else:
                t = C_VALUE[f.type]
                # An enumeration arrives as an int and is checked by its int2... conversion.
                value = f"{record.namespace}::int2{f.enum}(value)" if f.type == "enum" else "value"
                read = "getIndex" if f.follow else "get"
                what = f"The {f.enum} value of" if f.type == "enum" else "The value of"
                fns.append(Function(f"{p}get{C}", [f"{t}* out", h],
                                    f"return flat::get(out, {null}, self, [&](auto& a) {{ return static_cast<{t}>(a.{m}.{read}()); }});",
                                    doc=f"{what} {k}{absent}."))
                fns.append(Function(f"{p}set{C}", [h, f"{t} value"],
                                    f"return flat::call({null}, self, [&](auto& a) {{ a.{m}.set({value}); }});",
                                    doc=f"Sets {k}" + (f", checked as a {f.enum}." if f.type == "enum" else ".")))
        elif f.is_list:
            item = "Item" if f.type == "refs" else ""
            entry = "id" if f.type == "refs" else "entry"
            fns.append(Function(f"{p}get{C}Size", ["int64_t* out", h],
                                f"return flat::get(out, {null}, self, [&](auto& a) {{ return a.{m}.size(); }});",
                                doc=f"The number of entries of {k}."))
            if f.type == "strings":
                fns.append(Function(f"{p}get{C}Value", ["char* out", "int64_t* outSize", h, "int64_t index"],
                                    f"return flat::text(out, outSize, {null}, self, [&](auto& a) {{ return std::string(a.{m}.get(index)); }});",
                                    doc=f"The entry of {k} at index; {TEXT}."))
                fns.append(Function(f"{p}set{C}Value", [h, "int64_t index", "const char* value"],
                                    f"return flat::call({null}, self, [&](auto& a) {{ a.{m}.set(index, flat::str(value)); }});",
                                    doc=f"Replaces the entry of {k} at index."))
                fns.append(Function(f"{p}add{C}Value", [h, "const char* value"],
                                    f"return flat::call({null}, self, [&](auto& a) {{ a.{m}.add(flat::str(value)); }});",
                                    doc=f"Appends value to {k}, made when absent."))
            else:
                t = C_ELEMENT[f.type]
                fns.append(Function(f"{p}get{C}{item}Value", [f"{t}* out", h, "int64_t index"],
                                    f"return flat::get(out, {null}, self, [&](auto& a) {{ return static_cast<{t}>(a.{m}.get(index)); }});",
                                    doc=f"The {entry} of {k} at index."))
                fns.append(Function(f"{p}set{C}{item}Value", [h, "int64_t index", f"{t} value"],
                                    f"return flat::call({null}, self, [&](auto& a) {{ a.{m}.set(index, value); }});",
                                    doc=f"Replaces the {entry} of {k} at index."))
                if f.type != "refs":
                    fns.append(Function(f"{p}add{C}Value", [h, f"{t} value"],
                                        f"return flat::call({null}, self, [&](auto& a) {{ a.{m}.add(value); }});",
                                        doc=f"Appends value to {k}, made when absent."))
                if target:
                    T = handle(target)
                    fns.append(Function(f"{p}get{C}Item", [f"{T}** out", h, "int64_t index"],
                                        f"return flat::get(out, {null}, self, [&](auto& a) {{ return a.{m}[index].getPtr(); }});",
                                        doc=f"The {target.name} that the id of {k} at index names, as a new handle."))
                    fns.append(Function(f"{p}set{C}Item", [h, "int64_t index", f"{T}* item"],
                                        f"if (self && !item) return flat::fail(\"item is NULL\");\n    "
                                        f"return flat::call({null}, self, [&](auto& a) {{ a.{m}[index].set(*item); }});",
                                        doc=f"Makes the id of {k} at index name item, through its id."))
                # An absent optional list reads as no values, as its size reads 0.
                none = "flat::noIds()" if f.type == "refs" else f"flat::none<{t}>()"
                read = (f"a.{m}.isPropertyPresent() ? a.{m}.get() : {none}"
                        if f.optional and f.read_default is None else f"a.{m}.get()")
                fns.append(Function(f"{p}get{C}{item}Values", [f"{t}* out", "int64_t outBytes", "int64_t* pvalueCount", h],
                                    f"return flat::values(out, outBytes, pvalueCount, {null}, self, [&](auto& a) -> const auto& {{ return {read}; }});",
                                    doc=f"Every {entry} of {k}; {ARRAY}."))
                fns.append(Function(f"{p}set{C}{item}Values", [h, f"const {t}* values", "int64_t count"],
                                    f"return flat::call({null}, self, [&](auto& a) {{ a.{m}.set(flat::array(values, count)); }});",
                                    doc=f"Replaces {k} with count values."))
        elif f.type == "indexMap":
            acc = handle("Accessor", record.module)
            fns.append(Function(f"{p}get{C}Size", ["int64_t* out", h],
                                f"return flat::get(out, {null}, self, [&](auto& a) {{ return a.{m}.size(); }});",
                                doc=f"The number of keys of the map {k}."))
            fns.append(Function(f"{p}get{C}Key", ["char* out", "int64_t* outSize", h, "int64_t position"],
                                f"return flat::text(out, outSize, {null}, self, [&](auto& a) {{ return a.{m}.getKey(position); }});",
                                doc=f"The key at a position of the map's own order; {TEXT}."))
            fns.append(Function(f"{p}has{C}Value", ["bool* out", h, "const char* key"],
                                f"return flat::get(out, {null}, self, [&](auto& a) {{ return a.{m}.has(flat::str(key)); }});",
                                doc=f"Whether {k} has key."))
            fns.append(Function(f"{p}get{C}Value", ["int64_t* out", h, "const char* key"],
                                f"return flat::get(out, {null}, self, [&](auto& a) {{ return a.{m}.get(flat::str(key)).getIndex(); }});",
                                doc=f"The accessor index under key in {k}."))
            fns.append(Function(f"{p}set{C}Value", [h, "const char* key", "int64_t value"],
                                f"return flat::call({null}, self, [&](auto& a) {{ a.{m}.put(flat::str(key), value); }});",
                                doc=f"Puts an accessor index under key in {k}."))
            fns.append(Function(f"{p}remove{C}Value", [h, "const char* key"],
                                f"return flat::call({null}, self, [&](auto& a) {{ a.{m}.remove(flat::str(key)); }});",
                                doc=f"Removes key from {k}."))
            fns.append(Function(f"{p}get{C}Item", [f"{acc}** out", h, "const char* key"],
                                f"return flat::get(out, {null}, self, [&](auto& a) {{ return a.{m}.get(flat::str(key)).getPtr(); }});",
                                doc=f"The accessor under key in {k}, as a new handle."))
        elif f.type == "indexMaps":
            fns.append(Function(f"{p}get{C}Size", ["int64_t* out", h],
                                f"return flat::get(out, {null}, self, [&](auto& a) {{ return a.{m}.size(); }});",
                                doc=f"The number of maps in {k}."))
            fns.append(Function(f"{p}add{C}Item", ["int64_t* out", h],
                                f"return flat::get(out, {null}, self, [&](auto& a) {{ return a.{m}.add().getPropertyIndex(); }});",
                                doc=f"Appends an empty map to {k} and gives its position."))
            fns.append(Function(f"{p}remove{C}Item", [h, "int64_t index"],
                                f"return flat::call({null}, self, [&](auto& a) {{ a.{m}.remove(index); }});",
                                doc=f"Removes the map of {k} at index."))
            fns.append(Function(f"{p}has{C}Value", ["bool* out", h, "int64_t index", "const char* key"],
                                f"return flat::get(out, {null}, self, [&](auto& a) {{ return a.{m}.has(index) && a.{m}.get(index).has(flat::str(key)); }});",
                                doc=f"Whether the map of {k} at index has key."))
            fns.append(Function(f"{p}get{C}Value", ["int64_t* out", h, "int64_t index", "const char* key"],
                                f"return flat::get(out, {null}, self, [&](auto& a) {{ return a.{m}.get(index).get(flat::str(key)).getIndex(); }});",
                                doc=f"The accessor index under key in the map of {k} at index."))
            fns.append(Function(f"{p}set{C}Value", [h, "int64_t index", "const char* key", "int64_t value"],
                                f"return flat::call({null}, self, [&](auto& a) {{ a.{m}.put(index, flat::str(key), value); }});",
                                doc=f"Puts an accessor index under key in the map of {k} at index."))
            fns.append(Function(f"{p}remove{C}Value", [h, "int64_t index", "const char* key"],
                                f"return flat::call({null}, self, [&](auto& a) {{ a.{m}.remove(index, flat::str(key)); }});",
                                doc=f"Removes key from the map of {k} at index."))
        elif f.type == "object":
            child = f.of_record
            fns.append(Function(f"{p}get{C}", [f"{handle(child)}** out", h],
                                f"return flat::get(out, {null}, self, [&](auto& a) {{ return a.{m}.getPtr(); }});",
                                doc=f"The child object {k} ({child.name}), as a new handle."))
        elif f.type == "generic":
            fns.append(Function(f"{p}get{C}", [f"{handle('GenericProperty', record.module)}** out", h],
                                f"return flat::get(out, {null}, self, [&](auto& a) -> {record.namespace}::GenericProperty* {{ return a.{m}.getPtr(); }});",
                                doc=f"The free-form value {k}, as a new handle."))
        elif f.type == "list":
            lst = f.of_record.name + "List"
            fns.append(Function(f"{p}get{C}", [f"{handle(lst, record.module)}** out", h],
                                f"return flat::get(out, {null}, self, [&](auto& a) {{ return a.{m}.getPtr(); }});",
                                doc=f"The child list {k} ({lst}), as a new handle."))
        if f.optional:
            fns.append(Function(f"{p}has{C}", ["bool* out", h],
                                f"return flat::get(out, {null}, self, [&](auto& a) {{ return a.{m}.isPropertyPresent(); }});",
                                doc=f"Whether {k} is present."))
            fns.append(Function(f"{p}remove{C}", [h],
                                f"return flat::call({null}, self, [&](auto& a) {{ a.{m}.removeProperty(); }});",
                                doc=f"Removes {k}."))
        return fns

    def init_params(self, record):
        params, args = [], []
        for f in record.init_fields:
            name = param_name(f)
            if f.type == "id":
                params += ["bool autoId", f"int64_t {name}"]
                args.append(f"autoId ? std::optional<int64_t>() : std::optional<int64_t>({name})")
            elif f.type == "string":
                params.append(f"const char* {name}")
                args.append(f"flat::str({name}).c_str()")
            elif f.type == "enum":
                params.append(f"{C_VALUE[f.type]} {name}")
                args.append(f"{record.namespace}::int2{f.enum}({name})")
            else:
                params.append(f"{C_VALUE[f.type]} {name}")
                args.append(name)
        return params, args

    def list_functions(self, record):
        L = record.name + "List"
        T = handle(record)
        null = cstr(lower_first(L) + " is NULL")
        h = f"{handle(L, record.module)}* self"
        p = f"{handle(L, record.module)}_"
        has_by = "a.has(id)" if record.id_field else "a.hasByIndex(id)"
        get_by = "a.getPtr(id)" if record.id_field else "a.getPtrByIndex(id)"
        params, args = self.init_params(record)
        fns = self.common(record.module, L, null, with_has=False, with_id=False)
        fns += [
            Function(f"{p}getSize", ["int64_t* out", h],
                     f"return flat::get(out, {null}, self, [&](auto& a) {{ return a.size(); }});",
                     doc="The number of records."),
            Function(f"{p}has", ["bool* out", h, "int64_t id"],
                     f"return flat::get(out, {null}, self, [&](auto& a) {{ return {has_by}; }});",
                     doc=f"Whether a record has this id." if record.id_field else "Whether there is a record at this index (the list has no ids)."),
            Function(f"{p}get", [f"{T}** out", h, "int64_t id"],
                     f"return flat::get(out, {null}, self, [&](auto& a) {{ return {get_by}; }});",
                     doc=f"The record with this id, as a new handle." if record.id_field else "The record at this index, as a new handle (the list has no ids)."),
            Function(f"{p}hasByIndex", ["bool* out", h, "int64_t index"],
                     f"return flat::get(out, {null}, self, [&](auto& a) {{ return a.hasByIndex(index); }});",
                     doc="Whether there is a record at this position."),
            Function(f"{p}getByIndex", [f"{T}** out", h, "int64_t index"],
                     f"return flat::get(out, {null}, self, [&](auto& a) {{ return a.getPtrByIndex(index); }});",
                     doc="The record at this position, as a new handle."),
            Function(f"{p}hasByName", ["bool* out", h, "const char* name"],
                     f"return flat::get(out, {null}, self, [&](auto& a) {{ return a.hasByName(flat::str(name)); }});",
                     doc="Whether a record has this name."),
            Function(f"{p}getByName", [f"{T}** out", h, "const char* name"],
                     f"return flat::get(out, {null}, self, [&](auto& a) {{ return a.getPtrByName(flat::str(name)); }});",
                     doc="The first record with this name, as a new handle."),
            Function(f"{p}findPropertyItemIndexByName", ["int64_t* out", h, "const char* name"],
                     f"return flat::get(out, {null}, self, [&](auto& a) {{ return a.findPropertyItemIndexByName(flat::str(name)); }});",
                     doc="The position of the first record with this name."),
            Function(f"{p}add", [f"{T}** out", h] + params,
                     f"return flat::get(out, {null}, self, [&](auto& a) {{ return a.addPtr({', '.join(args)}); }});",
                     doc=f"Adds a {record.name} and gives it as a new handle; arguments after self: "
                     + (", ".join(params) if params else "none")
                     + ("; with autoId true the id argument is ignored and a free id is taken." if record.id_field else ".")),
        ]
        return fns

    def object_functions(self, record):
        null = cstr(lower_first(record.name) + " is NULL")
        fns = self.common(record.module, record.name, null, with_has=True, with_id=bool(record.id_field))
        for f in record.fields:
            if self.supported(f):
                fns += self.member_functions(record, f)
        return fns

    def all_functions(self, record):
        fns = self.object_functions(record)
        if record.has_list:
            fns += self.list_functions(record)
        return fns

    # ----- files -----

    def source(self, record):
        o = ["// Generated from schema/ by codegen/generate.py: do not edit.",
             "#include <optional>",
             "#include <string>",
             "",
             f'#include "sorvane/{accessor_source(record)}.h"']
        if record.has_list:
            o.append(f'#include "sorvane/{list_accessor_source(record)}.h"')
        o += ['#include "sorvane/flat/Frame.h"', '#include "sorvane/sorvane.h"', "",
              "namespace flat = sorvane::flat;", "", 'extern "C" {', ""]
        for fn in self.all_functions(record):
            o.append(fn.definition())
            o.append("")
        o.append('} // extern "C"')
        return "\n".join(o) + "\n"

    def header(self, module):
        M = module.upper()
        title = {"arf": "ARF", "gltf2": "glTF"}[module]
        o = ["/* Generated from schema/ by codegen/generate.py: do not edit.",
             f" * Flat functions of the {title} record accessors and their lists. Included by",
             f" * sorvane/flat/sorvane_{module}.h. */",
             f"#ifndef SORVANE_FLAT_SORVANE_{M}_GENERATED_H",
             f"#define SORVANE_FLAT_SORVANE_{M}_GENERATED_H", "",
             "#include <stddef.h>", "#include <stdint.h>", "#ifndef __cplusplus", "#include <stdbool.h>", "#endif", "",
             '#include "sorvane/core/Export.h"', ""]
        names = ["GenericProperty"]
        records = self.records.of_module(module)
        for r in records:
            names.append(r.name)
            if r.has_list:
                names.append(r.name + "List")
        o.append("/* Handles: accessor objects owned by the caller, released with their _delete. */")
        o.append("#ifdef __cplusplus")
        o.append(f"namespace sorvane::{module} {{")
        for n in names:
            o.append(f"class {n};")
        o.append("}")
        for n in names:
            o.append(f"typedef sorvane::{module}::{n} {handle(n, module)};")
        o.append("#else")
        for n in names:
            o.append(f"typedef struct {handle(n, module)} {handle(n, module)};")
        o.append("#endif")
        o += ["", "#ifdef __cplusplus", 'extern "C" {', "#endif", ""]
        for r in records:
            o.append(f"/* {r.name} */")
            for fn in self.all_functions(r):
                o.append(f"/* {fn.doc} */")
                o.append(fn.declaration())
            o.append("")
        o += ["#ifdef __cplusplus", "}", "#endif", "", "#endif"]
        return "\n".join(o) + "\n"
