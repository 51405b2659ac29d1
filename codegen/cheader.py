"""The prototypes of the public C headers, read the way the export check reads
them: every `SORVANE_API <result> sorvane_...(<parameters>);` declaration,
with the header's typedefs resolved, so that other languages' bindings can be
derived from the header itself instead of being written per function."""

import os
import re

_COMMENT = re.compile(r"/\*.*?\*/|//[^\n]*", re.S)
_PROTOTYPE = re.compile(r"SORVANE_API\s+([^;(]*?[\s*])(sorvane_\w+)\s*\(([^)]*)\)\s*;")
_STRUCT_TYPEDEF = re.compile(r"typedef\s+struct\s+(\w+)\s+(\w+)\s*;")
_SCALAR_TYPEDEF = re.compile(r"typedef\s+((?:unsigned\s+|signed\s+)?\w+)\s+(\w+)\s*;")
_ENUM_TYPEDEF = re.compile(r"typedef\s+enum\s*\w*\s*\{[^}]*\}\s*(\w+)\s*;")

# Types a C header may use by value; everything else must be a typedef of one
# of these, or an opaque struct (a handle).
SCALARS = {
    "void", "bool", "char", "signed char", "unsigned char", "short", "unsigned short", "int", "unsigned",
    "unsigned int", "long", "unsigned long", "long long", "unsigned long long", "float", "double",
    "int8_t", "uint8_t", "int16_t", "uint16_t", "int32_t", "uint32_t", "int64_t", "uint64_t", "size_t",
}


class HeaderError(Exception):
    pass


class CType:
    """A parameter or result type: base name, pointer depth and constness of
    the pointee. `handle` is true for opaque struct types."""

    def __init__(self, base, depth, const, handle):
        self.base = base
        self.depth = depth
        self.const = const
        self.handle = handle

    def __str__(self):
        return ("const " if self.const else "") + self.base + "*" * self.depth

    def __repr__(self):
        return f"CType({str(self)!r})"


class Param:
    def __init__(self, ctype, name):
        self.type = ctype
        self.name = name


class Prototype:
    def __init__(self, name, result, params, header):
        self.name = name
        self.result = result
        self.params = params
        self.header = header


def header_files(dirs):
    files = []
    for d in dirs:
        for root, _, names in os.walk(d):
            files += [os.path.join(root, n) for n in names if n.endswith(".h")]
    return sorted(files)


def _c_branch(text):
    """The text as a C compiler sees it: `#ifdef __cplusplus` blocks dropped,
    their `#else` parts kept."""
    out, stack = [], []
    for line in text.splitlines():
        s = line.strip()
        if s.startswith("#if"):
            cpp = s.startswith("#ifdef __cplusplus") or s.startswith("#if defined(__cplusplus)")
            skip_c = s.startswith("#ifndef __cplusplus")
            stack.append("cpp" if cpp else ("c" if skip_c else "other"))
            continue
        if s.startswith("#else") and stack:
            stack[-1] = {"cpp": "c", "c": "cpp"}.get(stack[-1], "other")
            continue
        if s.startswith("#endif") and stack:
            stack.pop()
            continue
        if "cpp" in stack:
            continue
        out.append(line)
    return "\n".join(out)


def parse_type(text, typedefs, handles):
    text = " ".join(text.replace("*", " * ").split())
    depth = text.count("*")
    words = [w for w in text.replace("*", " ").split() if w not in ("struct",)]
    const = "const" in words
    words = [w for w in words if w != "const"]
    base = " ".join(words)
    while base in typedefs:
        base = typedefs[base]
    if base in handles:
        return CType(handles[base], depth, const, True)
    if base not in SCALARS:
        raise HeaderError(f"unknown C type '{text}'")
    return CType(base, depth, const, False)


def parse(dirs):
    """Prototypes of every header under `dirs`, in header order, by name."""
    texts = []
    for path in header_files(dirs):
        with open(path, encoding="utf-8") as f:
            texts.append((path, _c_branch(_COMMENT.sub(" ", f.read()))))
    typedefs, handles = {}, {}
    for _, text in texts:
        for tag, name in _STRUCT_TYPEDEF.findall(text):
            handles[name] = name
            handles[tag] = name
        for name in _ENUM_TYPEDEF.findall(text):
            typedefs[name] = "int"
    for _, text in texts:
        for base, name in _SCALAR_TYPEDEF.findall(text):
            if base not in ("struct", "enum") and name not in handles:
                typedefs[name] = base
    prototypes = {}
    for path, text in texts:
        for result, name, params in _PROTOTYPE.findall(text):
            try:
                rtype = parse_type(result, typedefs, handles)
                plist = []
                params = params.strip()
                if params and params != "void":
                    for i, p in enumerate(params.split(",")):
                        m = re.match(r"(.*?)(\w+)\s*$", p.strip(), re.S)
                        plist.append(Param(parse_type(m.group(1), typedefs, handles), m.group(2)))
            except HeaderError as e:
                raise HeaderError(f"{os.path.basename(path)}: {name}: {e}") from None
            prototypes[name] = Prototype(name, rtype, plist, os.path.basename(path))
    return prototypes
