#!/usr/bin/env python3
"""Every function the public C header declares carries its own description.

    check_docs.py ROOT_HEADER INCLUDE_DIR...

Starting at ROOT_HEADER, follows the quoted includes through the include
directories (the source tree and the generated tree) and checks every
`SORVANE_API ... sorvane_...(...);` declaration:

- a comment ends on the line right above it (a comment heading a group of
  declarations describes only the first one);
- a function with a size protocol (`outSize`, `outBytes`, `pvalueCount`) says
  which protocol it follows;
- an `add` function with several arguments after `self` names them in order.

Prints one line per fault and exits 1 when there is any."""

import os
import re
import sys

_INCLUDE = re.compile(r'^\s*#\s*include\s+"([^"]+)"', re.M)
_DECL = re.compile(r"SORVANE_API\s+[^;(]*?\b(sorvane_\w+)\s*\(([^)]*)\)\s*;", re.S)
_SIZE_PARAMS = ("outSize", "outBytes", "pvalueCount")


def find(name, dirs):
    for d in dirs:
        path = os.path.join(d, name)
        if os.path.isfile(path):
            return path
    return None


def headers(root, dirs):
    """The root header and every header it includes, each once, in include order."""
    seen, order, stack = set(), [], [root]
    while stack:
        path = stack.pop()
        if path in seen:
            continue
        seen.add(path)
        order.append(path)
        with open(path, encoding="utf-8") as f:
            text = f.read()
        for name in reversed(_INCLUDE.findall(text)):
            found = find(name, dirs)
            if found is None:
                raise SystemExit(f"{path}: include {name} not found")
            stack.append(found)
    return order


def comment_above(lines, index):
    """The text of the comment ending on the line above `index`, or None."""
    i = index - 1
    if i < 0:
        return None
    line = lines[i].strip()
    if line.startswith("//"):
        parts = []
        while i >= 0 and lines[i].strip().startswith("//"):
            parts.append(lines[i].strip()[2:])
            i -= 1
        return " ".join(reversed(parts))
    if not line.endswith("*/"):
        return None
    parts = []
    while i >= 0:
        parts.append(lines[i])
        if "/*" in lines[i]:
            break
        i -= 1
    text = " ".join(reversed(parts))
    text = text[text.find("/*") + 2:text.rfind("*/")]
    return " ".join(text.replace("*", " ").split())


def param_names(params):
    params = params.strip()
    if not params or params == "void":
        return []
    return [re.match(r".*?(\w+)\s*$", p.strip(), re.S).group(1) for p in params.split(",")]


def check(path):
    with open(path, encoding="utf-8") as f:
        text = f.read()
    lines = text.split("\n")
    faults = []
    for m in _DECL.finditer(text):
        name, params = m.group(1), param_names(m.group(2))
        start = text.count("\n", 0, m.start())
        where = f"{os.path.basename(path)}:{start + 1}: {name}"
        doc = comment_above(lines, start)
        # A bare class name heading a group describes nothing.
        if not doc or len(doc.split()) < 2:
            faults.append(f"{where}: no description on the line above")
            continue
        if any(p in params for p in _SIZE_PARAMS) and "protocol" not in doc:
            faults.append(f"{where}: the description does not name its size protocol")
        op = name.rsplit("_", 1)[1]
        after = params[params.index("self") + 1:] if "self" in params else []
        if op.startswith("add") and len(after) > 1:
            pos = 0
            for p in after:
                found = re.search(r"\b" + re.escape(p) + r"\b", doc[pos:])
                if not found:
                    faults.append(f"{where}: the description does not give the arguments after self in order "
                                  f"({', '.join(after)})")
                    break
                pos += found.end()
    return faults


def main(argv):
    if len(argv) < 3:
        print(__doc__, file=sys.stderr)
        return 2
    root, dirs = argv[1], argv[2:]
    faults, count = [], 0
    for path in headers(root, dirs):
        with open(path, encoding="utf-8") as f:
            count += len(_DECL.findall(f.read()))
        faults += check(path)
    for fault in faults:
        print(fault)
    if faults:
        print(f"{len(faults)} of {count} declared functions lack a proper description")
        return 1
    if count == 0:
        print("no declarations found")
        return 1
    print(f"descriptions ok: {count} declared functions")
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv))
