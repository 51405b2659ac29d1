"""A table of the record descriptions for the library's own use at run time:
each record's name, where it sits in a document (section or root list) and
its keys with their kinds, list records and reference targets. The document
checker walks documents with it, so it learns new records without edits."""

from emit_nodes import cstr


class TableEmitter:
    SOURCE = "sorvane/tools/record_table_generated.cpp"

    def __init__(self, records):
        self.records = records

    def first(self):
        return next(iter(self.records.values()))

    def outputs(self, record):
        return [self.SOURCE] if record is self.first() else []

    def emit(self, record):
        return {self.SOURCE: self.source()} if record is self.first() else {}

    @staticmethod
    def text(value):
        return cstr(value) if value else "nullptr"

    def source(self):
        o = ["// Generated from schema/ by codegen/generate.py: do not edit.",
             '#include "sorvane/tools/RecordTable.h"', "",
             "namespace sorvane::detail {", "", "namespace {", ""]
        for r in self.records.values():
            o.append(f"const FieldInfo fields_{r.module}_{r.name}[] = {{")
            for f in r.fields:
                o.append(f"    {{{cstr(f.key)}, {cstr(f.type)}, {self.text(f.of)}, {self.text(f.target)}}},")
            o.append("};")
        o += ["", "const RecordInfo records[] = {"]
        for r in self.records.values():
            o.append(f"    {{{cstr(r.module)}, {cstr(r.name)}, {self.text(r.section)}, {self.text(r.root_list)}, "
                     f"fields_{r.module}_{r.name}, {len(r.fields)}}},")
        o += ["};", "", "} // namespace", "",
              "const RecordInfo* recordTable(size_t& count) {",
              "    count = sizeof records / sizeof records[0];",
              "    return records;", "}", "", "} // namespace sorvane::detail"]
        return "\n".join(o) + "\n"
