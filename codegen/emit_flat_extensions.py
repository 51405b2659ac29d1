"""Flat extension functions: calls beyond the accessor families that a C
caller needs to finish a job without C++. Removal from every record list by id
(by index on lists without ids) and by position, and adding and removing
single entries of every list of values and references. They go to a header
and a source of their own, so the families stay as they are."""

from emit_accessors import accessor_source, list_accessor_source, member_var
from emit_flat import FlatEmitter, Function, handle, lower_first
from emit_nodes import cstr


def header_path(module):
    return f"sorvane/flat/sorvane_{module}_extensions_generated.h"


def source_path(module):
    return f"sorvane/flat/{module}_extensions_generated.cpp"


class FlatExtensionEmitter:
    """One header and one source per module, written with its first record."""

    def __init__(self, records):
        self.records = records

    def of_module(self, module):
        return [r for r in self.records.values() if r.module == module]

    def first(self, record):
        return record is self.of_module(record.module)[0]

    def outputs(self, record):
        return [header_path(record.module), source_path(record.module)] if self.first(record) else []

    def emit(self, record):
        if not self.first(record):
            return {}
        m = record.module
        return {header_path(m): self.header(m), source_path(m): self.source(m)}

    def list_functions(self, record):
        L = record.name + "List"
        null = cstr(lower_first(L) + " is NULL")
        h = f"{handle(L, record.module)}* self"
        p = f"{handle(L, record.module)}_"
        by = "id" if record.id_field else "index"
        by_id = "a.remove(id)" if record.id_field else "a.removeByIndex(index)"
        return [
            Function(f"{p}remove", [h, f"int64_t {by}"],
                     f"return flat::call({null}, self, [&](auto& a) {{ {by_id}; }});",
                     doc="Removes the record " + ("with this id" if record.id_field else "at this index")
                     + "; references to it are left dangling."),
            Function(f"{p}removeByIndex", [h, "int64_t index"],
                     f"return flat::call({null}, self, [&](auto& a) {{ a.removeByIndex(index); }});",
                     doc="Removes the record at this position; references to it are left dangling."),
        ]

    def member_functions(self, record, f):
        A = record.name
        null = cstr(lower_first(A) + " is NULL")
        h = f"{handle(record)}* self"
        m = member_var(f)
        p = f"{handle(record)}_"
        C = f.cap
        fns = []
        if f.type == "refs":
            fns.append(Function(f"{p}add{C}ItemValue", [h, "int64_t id"],
                                f"return flat::call({null}, self, [&](auto& a) {{ a.{m}.add(id); }});",
                                doc=f'Appends an id to "{f.key}", checked like the setters.'))
        if f.type == "list":
            # The list accessor of an absent optional list has no node to add
            # to; through its owner the list is made on the first record.
            target = self.records.find(record.module, f.of)
            if target is not None:
                params, args = FlatEmitter.init_params(None, target)
                fns.append(Function(f"{p}add{C}", [f"{handle(target)}** out", h] + params,
                                    f"return flat::get(out, {null}, self, [&](auto& a) {{ return a.{m}.addPtr({', '.join(args)}); }});",
                                    doc=f'Adds a {target.name} to the child list "{f.key}", made when absent, and gives it '
                                    "as a new handle; arguments after self: " + (", ".join(params) or "none") + "."))
        fns += self.payload_functions(record, f)
        if f.is_list:
            fns.append(Function(f"{p}remove{C}Item", [h, "int64_t index"],
                                f"return flat::call({null}, self, [&](auto& a) {{ a.{m}.remove(index); }});",
                                doc=f'Removes the entry of "{f.key}" at this position.'))
        return fns

    def payload_functions(self, record, f):
        """The payload reads of the data item a reference names, in one call:
        the forms of the item's own functions with the reference's name in
        front (and the position last for an entry of a list)."""
        if f.type not in ("ref", "refs"):
            return []
        target = f.target_record(self.records)
        if target is None or target.name != "Data":
            return []
        null = cstr(lower_first(record.name) + " is NULL")
        h = f"{handle(record)}* self"
        m = member_var(f)
        X = f"{handle(record)}_get{f.cap}" + ("Item" if f.type == "refs" else "")
        ref = f"a.{m}[index]" if f.type == "refs" else f"a.{m}"
        pos = ["int64_t index"] if f.type == "refs" else []
        what = f"the data item {f.key}[index] names" if f.type == "refs" else f"the data item {f.key} names"
        return [
            Function(f"{X}DataSize", ["int64_t* out", h] + pos,
                     f"return flat::get(out, {null}, self, [&](auto& a) {{ return {ref}.getDataSize(); }});",
                     doc=f"bytes of the payload of {what}"),
            Function(f"{X}Data", ["int64_t* out", "void* buffer", "int64_t bufferSize", h] + pos,
                     f"return flat::get(out, {null}, self, [&](auto& a) {{ return {ref}.getData(buffer, bufferSize); }});",
                     doc=f"copies the payload of {what}, as sorvane_arf_Data_getData"),
            Function(f"{X}TensorPtr", ["DataTree** out", h] + pos,
                     f"return flat::get(out, {null}, self, [&](auto& a) {{ return {ref}.getTensorPtr(); }});",
                     doc=f"the decoded payload of {what} as a new DataTree tensor"),
            Function(f"{X}TensorData", ["int64_t* out", "int32_t* pdtype", "int64_t* dims", "int64_t dimsCapacity",
                                        "int64_t* pdimCount", "void* buffer", "int64_t bufferSize", h] + pos,
                     f"return flat::tensorData(out, pdtype, dims, dimsCapacity, pdimCount, {null}, self,\n"
                     f"        [&](auto& a, std::vector<long>& sizes, sorvane::arf::DataDType& dtype) {{\n"
                     f"            return {ref}.getTensorData(sizes, dtype, buffer, bufferSize);\n"
                     f"        }});",
                     doc=f"decodes the payload of {what}, as sorvane_arf_Data_getTensorData"),
            Function(f"{X}ColSparseTensorPtr", ["DataTree** values", "DataTree** indices", h] + pos
                     + ["int64_t minCols", "int64_t maxCols", "bool normalize"],
                     f"return flat::colSparseTensor(values, indices, {null}, self, [&](auto& a) {{\n"
                     f"        return {ref}.getColSparseTensor(minCols, maxCols, normalize);\n"
                     f"    }});",
                     doc=f"the compact form of the matrix payload of {what}, as "
                     "sorvane_arf_Data_getColSparseTensorPtr"),
        ]

    def functions(self, record):
        fns = []
        for f in record.fields:
            fns += self.member_functions(record, f)
        if record.has_list:
            fns += self.list_functions(record)
        return fns

    def source(self, module):
        o = ["// Generated from schema/ by codegen/generate.py: do not edit.", "#include <optional>",
             "#include <string>", ""]
        for r in self.of_module(module):
            o.append(f'#include "sorvane/{accessor_source(r)}.h"')
            if r.has_list:
                o.append(f'#include "sorvane/{list_accessor_source(r)}.h"')
        o += ['#include "sorvane/flat/DataFrame.h"', '#include "sorvane/flat/Frame.h"', '#include "sorvane/sorvane.h"', "",
              "namespace flat = sorvane::flat;", "", 'extern "C" {', ""]
        for r in self.of_module(module):
            for fn in self.functions(r):
                o += [fn.definition(), ""]
        o.append('} // extern "C"')
        return "\n".join(o) + "\n"

    def header(self, module):
        M = module.upper()
        o = ["/* Generated from schema/ by codegen/generate.py: do not edit.",
             " * Extensions: calls beyond the accessor families, for C callers that edit",
             f" * documents. Included by sorvane/flat/sorvane_{module}_extensions.h. */",
             f"#ifndef SORVANE_FLAT_SORVANE_{M}_EXTENSIONS_GENERATED_H",
             f"#define SORVANE_FLAT_SORVANE_{M}_EXTENSIONS_GENERATED_H", "",
             f'#include "sorvane/flat/sorvane_{module}_generated.h"',
             '#include "sorvane/flat/sorvane_datatree.h"', "",
             "#ifdef __cplusplus", 'extern "C" {', "#endif", ""]
        for r in self.of_module(module):
            fns = self.functions(r)
            if not fns:
                continue
            o.append(f"/* {r.name} (extensions) */")
            for fn in fns:
                o.append(f"/* {fn.doc} */")
                o.append(fn.declaration())
            o.append("")
        o += ["#ifdef __cplusplus", "}", "#endif", "", "#endif"]
        return "\n".join(o) + "\n"
