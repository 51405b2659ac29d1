#!/usr/bin/env python3
"""Writes a C program that calls every function the flat headers declare with
null pointers: first with the object argument null (every other pointer set to
a zeroed scratch block, so that a check made in the wrong order shows), then
with every pointer null at once. Each call must return -1 and leave a text in
the error slot; the object's own null text is checked where it follows from
the handle's type name. Then, on real objects reached from a loaded document
through the getters, every other pointer argument is made null in turn: the
call must not crash, and a -1 it returns (except the size protocol's) has a
text. New functions are picked up from the headers.

    null_calls.py OUTPUT.c HEADER.h...   (the program takes an ARF document)"""

import re
import sys

PROTOTYPE = re.compile(r"SORVANE_API\s+([^;(]*?)\b(sorvane_\w+)\s*\(([^)]*)\)\s*;")

# Handles and functions whose null text is not the lowered class name: the
# provider handle's historical text, the framework handle's own empty text,
# the operator handle's spaced text, and the tensor sizes call that names the tree's node.
NULL_TEXTS = {"sorvane_archive_FileProviderRef": "instancePtr_ is NULL",
              "sorvane_arf_AnimationOperator": "animation operator is NULL",
              "sorvane_arf_AnimationFramework": "framework is NULL"}
FUNCTION_NULL_TEXTS = {"sorvane_datatree_DataTree_getTensorSizes": "node is NULL"}


def strip_comments(text):
    text = re.sub(r"/\*.*?\*/", " ", text, flags=re.S)
    return re.sub(r"//[^\n]*", " ", text)


def parse_params(text):
    text = " ".join(text.split())
    if text in ("", "void"):
        return []
    params = []
    for part in text.split(","):
        part = part.strip()
        m = re.match(r"(.*?)(\w+)$", part)
        ptype, name = m.group(1).strip(), m.group(2)
        params.append((ptype, name))
    return params


def base_type(ptype):
    return ptype.replace("const", "").replace("*", "").strip()


def lower_first(name):
    return name[0].lower() + name[1:]


def object_param(fname, params):
    """The index of the object argument: the first single pointer whose type
    names the function's class (sorvane_arf_Mesh* in sorvane_arf_Mesh_...)."""
    for i, (ptype, _) in enumerate(params):
        if ptype.count("*") != 1:
            continue
        t = base_type(ptype)
        bare = t.split("_")[-1] if t.startswith("sorvane_") else t
        cls = t[:-3] if t.endswith("Ref") else t
        if t.startswith("sorvane_") and (fname.startswith(t + "_") or fname.startswith(cls + "_")):
            return i, t
        if not t.startswith("sorvane_") and re.match(rf"sorvane_[a-z0-9]+_{bare}_", fname):
            return i, t
    return None, None


def null_text(handle_type):
    if handle_type in NULL_TEXTS:
        return NULL_TEXTS[handle_type]
    name = handle_type
    m = re.match(r"sorvane_[a-z0-9]+_(\w+)$", handle_type)
    if m:
        name = m.group(1)
    return lower_first(name) + " is NULL"


def argument(ptype, null):
    if "*" in ptype:
        return f"({ptype})0" if null else f"({ptype})(void*)scratch"
    return f"({ptype})0"


def out_checked(params, j):
    """Whether a null result pointer must fail "out is NULL" on a real object:
    every `out` but those of the size protocols, where a null out asks for the
    size. The object is checked before it, the other pointers after it."""
    if params[j][1] != "out":
        return False
    following = [n for _, n in params[j + 1:]]
    return not following or following[0] not in ("outSize", "outBytes") and "pvalueCount" not in following


def handle_of(ptype, handles):
    t = base_type(ptype)
    return t if t in handles else None


def real_objects(functions):
    """Objects reached from a document, then each pointer argument null in turn."""
    by_name = dict(functions)
    handles = set()
    for name, params in functions:
        for ptype, _ in params:
            if ptype.count("*") == 2 and base_type(ptype) not in ("void", "char"):
                handles.add(base_type(ptype))
        index, handle = object_param(name, params)
        if handle:
            handles.add(handle)
    deleters = {h: f for h in handles for f in by_name
                if f in (f"{h}_delete", f"{h[:-3]}_delete" if h.endswith("Ref") else "", f"sorvane_datatree_{h}_delete")}
    var = {h: "h_" + h for h in handles}
    o = ["", "    /* Objects reached from the document. */"]
    o += [f"    {h}* {var[h]} = NULL;" for h in sorted(handles)]
    o += ["    int32_t status;", "    int round;", "    int reached;"]
    # Roots: the document, and the objects made from nothing.
    o.append("    sorvane_arf_Arf_load(&h_sorvane_arf_Arf, document, false);")
    # A glTF document of its own, in memory only (never saved), with one
    # accessor so that its lists have items to reach.
    if {"sorvane_gltf2_Gltf", "sorvane_gltf2_AccessorList"} <= handles and \
            "sorvane_gltf2_AccessorList_addDense" in by_name:
        o += ['    sorvane_gltf2_Gltf_create(&h_sorvane_gltf2_Gltf, "null_calls_never_saved.glb");',
              "    if (h_sorvane_gltf2_Gltf) {",
              "        static const float xyz[6] = {1, 2, 3, 4, 5, 6};",
              "        sorvane_gltf2_Accessor* made = NULL;",
              "        sorvane_gltf2_Gltf_getAccessors(&h_sorvane_gltf2_AccessorList, h_sorvane_gltf2_Gltf);",
              "        sorvane_gltf2_AccessorList_addDense(&made, h_sorvane_gltf2_AccessorList, xyz, 2, 5126, \"VEC3\","
              " 34962, false, \"xyz\");",
              "        if (made) sorvane_gltf2_Accessor_delete(made);",
              "    }"]
    makers, getters = [], []
    for name, params in functions:
        if not params or params[0][0].count("*") != 2 or base_type(params[0][0]) not in handles:
            continue
        made = base_type(params[0][0])
        rest = params[1:]
        if all("*" not in t for t, _ in rest) and "_create" in name and made != "sorvane_arf_Arf":
            makers.append((made, name, rest))
            continue
        index, handle = object_param(name, params)
        if index == 1 and handle != made and all("*" not in t for t, _ in params[2:]) and \
                re.search(r"_(get[A-Z]\w*|getByIndex)$", name) and not name.endswith("Ptr"):
            getters.append((made, name, handle, params[2:]))
    for made, name, rest in makers:
        args = "".join(f", ({t})0" for t, _ in rest)
        o.append(f"    if (!{var[made]}) {name}(&{var[made]}{args});")
    o.append("    for (round = 0; round < 8; ++round) {")
    for made, name, handle, rest in getters:
        args = "".join(f", ({t})0" for t, _ in rest)
        o.append(f"        if (!{var[made]} && {var[handle]}) {name}(&{var[made]}, {var[handle]}{args});")
    o.append("    }")
    o.append("    sorvane_clearErrorMessage();")
    o.append("    reached = " + " + ".join(f"({var[h]} != NULL)" for h in sorted(handles)) + ";")
    o.append(f'    printf("%d of {len(handles)} kinds of object reached\\n", reached);')
    o.append("    /* Each pointer argument null in turn on a real object. */")
    skip = re.compile(r"_(delete|removeProperty|close|clear)$")
    for name, params in functions:
        index, handle = object_param(name, params)
        if index is None or skip.search(name):
            continue
        others = [i for i, (t, _) in enumerate(params) if "*" in t and i != index]
        for j in others:
            guards, decls, cleanup, args = [var[handle]], [], [], []
            ok = True
            for i, (t, _) in enumerate(params):
                if i == index:
                    args.append(var[handle])
                elif i == j:
                    args.append(f"({t})0")
                elif t.count("*") == 2 and base_type(t) in handles:
                    h = base_type(t)
                    if h not in deleters:
                        ok = False
                        break
                    decls.append(f"{h}* made{i} = NULL;")
                    args.append(f"&made{i}")
                    cleanup.append(f"if (made{i}) {deleters[h]}(made{i});")
                elif "*" in t and handle_of(t, handles):
                    guards.append(var[handle_of(t, handles)])
                    args.append(var[handle_of(t, handles)])
                elif "*" in t:
                    args.append(f"({t})(void*)scratch")
                else:
                    args.append(f"({t})0")
            if not ok:
                continue
            o.append(f"    if ({' && '.join(guards)}) {{")
            o += [f"        {d}" for d in decls]
            o.append(f"        status = {name}({', '.join(args)});")
            o += [f"        {c}" for c in cleanup]
            if out_checked(params, j):
                o.append(f'        expect(status, "{name} (out)", "out is NULL");')
            else:
                o.append(f'        real(status, "{name}", {j});')
            o.append("        ++calls;")
            o.append("    }")
    o.append("    /* The objects go in reverse order of their kinds; the document last. */")
    for h in sorted(handles, reverse=True):
        if h not in ("sorvane_arf_Arf", "sorvane_gltf2_Gltf") and h in deleters:
            o.append(f"    if ({var[h]}) {deleters[h]}({var[h]});")
    o.append("    if (h_sorvane_arf_Arf) sorvane_arf_Arf_delete(h_sorvane_arf_Arf);")
    if "sorvane_gltf2_Gltf" in handles:
        o.append("    if (h_sorvane_gltf2_Gltf) sorvane_gltf2_Gltf_delete(h_sorvane_gltf2_Gltf);")
    return o


def main():
    out_path, headers = sys.argv[1], sys.argv[2:]
    functions, seen, used_headers = [], set(), []
    for header in sorted(headers):
        with open(header, encoding="utf-8") as f:
            text = strip_comments(f.read())
        found = PROTOTYPE.findall(text)
        if found:
            used_headers.append(header)
        for ret, name, params in found:
            if name in seen or ret.strip() != "int32_t":
                continue
            seen.add(name)
            functions.append((name, parse_params(params)))

    o = ["/* Generated by tests/nullargs/null_calls.py: do not edit. */",
         "#include <stdio.h>", "#include <stdlib.h>", "#include <string.h>", ""]
    o += [f'#include "{h}"' for h in used_headers]
    o += ["",
          "static long long scratch[8192];",
          "static int failures;", "",
          "static void expect(int32_t status, const char* function, const char* expected) {",
          "    char text[256];",
          "    int64_t size = sizeof text;",
          "    if (sorvane_getErrorMessage(text, &size) != 0) text[0] = 0;",
          "    if (status != -1 || text[0] == 0 || (expected && strcmp(text, expected) != 0)) {",
          '        fprintf(stderr, "%s: status %d, text \\"%s\\", expected \\"%s\\"\\n", function, (int)status, text,',
          '                expected ? expected : "(any)");',
          "        ++failures;",
          "    }",
          "    sorvane_clearErrorMessage();",
          "    memset(scratch, 0, sizeof scratch);",
          "}", "",
          "/* On a real object a call may succeed, or fail by the size protocol",
          " * without a text; a failure with a text is fine too. Only a crash is wrong,",
          " * and the sanitizers see that. */",
          "static void real(int32_t status, const char* function, int argument) {",
          "    if (status != 0 && status != -1) {",
          '        fprintf(stderr, "%s with argument %d null: status %d\\n", function, argument, (int)status);',
          "        ++failures;",
          "    }",
          "    sorvane_clearErrorMessage();",
          "    memset(scratch, 0, sizeof scratch);",
          "}", "",
          "static char* readDocument(const char* path) {",
          '    static const char prefix[] = "memory:";',
          '    FILE* file = fopen(path, "rb");',
          "    char* text;",
          "    long size;",
          "    if (!file) return NULL;",
          "    fseek(file, 0, SEEK_END);",
          "    size = ftell(file);",
          "    fseek(file, 0, SEEK_SET);",
          "    text = (char*)malloc(sizeof prefix + (size_t)size);",
          "    memcpy(text, prefix, sizeof prefix - 1);",
          "    text[sizeof prefix - 1 + fread(text + sizeof prefix - 1, 1, (size_t)size, file)] = 0;",
          "    fclose(file);",
          "    return text;",
          "}", "",
          "int main(int argc, char** argv) {",
          "    int calls = 0;",
          '    char* document = argc > 1 ? readDocument(argv[1]) : NULL;',
          "    if (!document) {",
          '        fprintf(stderr, "usage: null_calls DOCUMENT\\n");',
          "        return 2;",
          "    }"]
    for name, params in functions:
        pointers = [i for i, (t, _) in enumerate(params) if "*" in t]
        if not pointers:
            continue
        index, handle = object_param(name, params)
        expected_text = FUNCTION_NULL_TEXTS.get(name) or (null_text(handle) if index is not None else None)
        if index is not None:
            args = ", ".join(argument(t, i == index) for i, (t, _) in enumerate(params))
            o.append(f'    expect({name}({args}), "{name}", "{expected_text}");')
            o.append("    ++calls;")
        args = ", ".join(argument(t, True) for t, _ in params)
        expected = f'"{expected_text}"' if expected_text else "NULL"
        o.append(f'    expect({name}({args}), "{name}", {expected});')
        o.append("    ++calls;")
    o += real_objects(functions)
    o += ["    free(document);"]
    o += ['    printf("%d null calls over %d functions, %d failed\\n", calls, ' + str(len(functions)) + ", failures);",
          "    return failures == 0 ? 0 : 1;", "}"]
    with open(out_path, "w", encoding="utf-8") as f:
        f.write("\n".join(o) + "\n")


if __name__ == "__main__":
    main()
