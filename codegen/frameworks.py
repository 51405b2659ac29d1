#!/usr/bin/env python3
"""Turns the built-in animation frameworks (codegen/data/animation_frameworks.json)
into the row tables AnimationFramework::create reads.

    frameworks.py DATA.json OUT.cpp

Checks what a typo in the data would otherwise hide: known value kinds, a
range for every weight framework, and range lists that name existing rows."""

import json
import sys

VALUE_TYPES = {
    "weight": "ANIMATION_VALUE_WEIGHT",
    "vector3": "ANIMATION_VALUE_VECTOR3",
    "quaternion": "ANIMATION_VALUE_QUATERNION",
    "transform": "ANIMATION_VALUE_TRANSFORM",
}


def c_string(text):
    return '"' + text.replace("\\", "\\\\").replace('"', '\\"') + '"'


def c_float(value):
    return repr(float(value)) + "f"


def rows_of(index, fw):
    """(name, min, max) per row, or None for rows numbered by a loop."""
    if "numberedRows" in fw:
        return None
    rows = fw["rows"]
    if len(set(rows)) != len(rows):
        raise ValueError(f"{fw['urn']}: repeated row name")
    if fw["value"] != "weight":
        return [(name, 0.0, 0.0) for name in rows]
    if "range" not in fw:
        raise ValueError(f"{fw['urn']}: a weight framework needs a range")
    special = {}
    for r in fw.get("ranges", []):
        for name in r["rows"]:
            if name not in rows:
                raise ValueError(f"{fw['urn']}: range names unknown row {name}")
            special[name] = (r["min"], r["max"])
    low, high = fw["range"]
    return [(name,) + special.get(name, (low, high)) for name in rows]


def emit(data):
    out = [
        "// Generated from codegen/data/animation_frameworks.json by codegen/frameworks.py: do not edit.",
        '#include "sorvane/arf/animation/BuiltinFrameworks.h"',
        "",
        "namespace sorvane::arf::detail {",
        "",
        "namespace {",
    ]
    entries = []
    for i, fw in enumerate(data["frameworks"]):
        if fw["value"] not in VALUE_TYPES:
            raise ValueError(f"{fw['urn']}: unknown value kind {fw['value']}")
        rows = rows_of(i, fw)
        if rows is None:
            count, table, numbered = int(fw["numberedRows"]), "nullptr", "true"
        else:
            table = f"kRows{i}"
            count, numbered = len(rows), "false"
            out.append(f"const BuiltinRow {table}[] = {{")
            for name, low, high in rows:
                out.append(f"    {{{c_string(name)}, {c_float(low)}, {c_float(high)}}},")
            out.append("};")
        entries.append(
            f"    {{{c_string(fw['urn'])}, {c_string(fw['type'])}, {VALUE_TYPES[fw['value']]}, "
            f"{'true' if fw.get('known', True) else 'false'}, {table}, {count}, {numbered}}},"
        )
    out.append("")
    out.append("const BuiltinFramework kFrameworks[] = {")
    out.extend(entries)
    out.append("};")
    out.append("")
    out.append("} // namespace")
    out.append("")
    out.append("const BuiltinFramework* builtinFrameworks(long* count) {")
    out.append("    *count = static_cast<long>(sizeof kFrameworks / sizeof kFrameworks[0]);")
    out.append("    return kFrameworks;")
    out.append("}")
    out.append("")
    out.append("} // namespace sorvane::arf::detail")
    return "\n".join(out) + "\n"


def main():
    if len(sys.argv) != 3:
        print(__doc__, file=sys.stderr)
        return 2
    try:
        with open(sys.argv[1], encoding="utf-8") as f:
            text = emit(json.load(f))
    except (KeyError, ValueError) as e:
        print(f"frameworks.py: {e}", file=sys.stderr)
        return 1
    try:
        with open(sys.argv[2], encoding="utf-8") as f:
            if f.read() == text:
                return 0
    except FileNotFoundError:
        pass
    with open(sys.argv[2], "w", encoding="utf-8") as f:
        f.write(text)
    return 0


if __name__ == "__main__":
    sys.exit(main())
