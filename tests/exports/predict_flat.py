#!/usr/bin/env python3
"""Prints the flat functions the record descriptions predict, one per line
as "family NAME" or "extension NAME", worked out from the naming rules of
the flat interface rather than taken from the emitters, so that a family the
generator forgets to write shows as missing from the library.

    predict_flat.py SCHEMA.json..."""

import os
import sys

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "codegen"))

import model  # noqa: E402

VALUE_LISTS = ("strings", "integers", "numbers", "indices")
COMMON = ("delete", "isPropertyPresent", "removeProperty", "getPropertyIndex", "getPropertyName",
          "getPropertyPath", "getPropertyTypeName", "toString")
LIST_OPS = ("getSize", "has", "get", "hasByIndex", "getByIndex", "hasByName", "getByName",
            "findPropertyItemIndexByName", "add")


def member(records, record, f):
    X = f.key[0].upper() + f.key[1:]
    names = []
    if f.type == "ref":
        names += [f"get{X}Index", f"set{X}Index"]
        if f.target_record(records):
            names += [f"get{X}", f"set{X}"]
    elif f.type == "refs":
        names += [f"get{X}Size", f"get{X}ItemValue", f"set{X}ItemValue", f"get{X}ItemValues", f"set{X}ItemValues"]
        if f.target_record(records):
            names += [f"get{X}Item", f"set{X}Item"]
    elif f.type in VALUE_LISTS:
        names += [f"get{X}Size", f"get{X}Value", f"set{X}Value", f"add{X}Value"]
        if f.type != "strings":
            names += [f"get{X}Values", f"set{X}Values"]
    elif f.type == "indexMap":
        names += [f"get{X}Size", f"get{X}Key", f"has{X}Value", f"get{X}Value", f"set{X}Value", f"remove{X}Value",
                  f"get{X}Item"]
    elif f.type == "indexMaps":
        names += [f"get{X}Size", f"add{X}Item", f"remove{X}Item", f"has{X}Value", f"get{X}Value", f"set{X}Value",
                  f"remove{X}Value"]
    elif f.type in ("object", "list", "generic"):
        names.append(f"get{X}")
    else:
        names += [f"get{X}", f"set{X}"]
    if f.optional:
        names += [f"has{X}", f"remove{X}"]
    return names


PAYLOAD_READS = ("DataSize", "Data", "TensorPtr", "TensorData", "ColSparseTensorPtr")


def extensions(records, record, f):
    X = f.key[0].upper() + f.key[1:]
    names = []
    if f.type in ("ref", "refs"):
        target = f.target_record(records)
        if target is not None and target.name == "Data":
            item = "Item" if f.type == "refs" else ""
            names += [f"get{X}{item}{read}" for read in PAYLOAD_READS]
    if f.type == "refs":
        names.append(f"add{X}ItemValue")
    if f.type == "list":
        names.append(f"add{X}")
    if f.type == "refs" or f.type in VALUE_LISTS:
        names.append(f"remove{X}Item")
    # The derived reads of the glTF maps: the morph stack of a key over a
    # list of maps, the joint influences of an attribute map.
    if f.type == "indexMaps":
        names += [f"get{X}Tensor", f"get{X}Data", f"get{X}DataLayout", f"get{X}ComponentType", f"get{X}FirstdWith"]
    if f.type == "indexMap":
        names += ["getJointsTensor", "getJointsDataLayout", "getJointsData"]
    # A record whose child list holds attribute maps reads as a DataTree mesh.
    if f.type == "list" and any(g.type == "indexMap" for g in f.of_record.fields):
        names.append("getDataTree")
    return names


def main():
    records = model.load(sorted(sys.argv[1:]))
    out = []
    for r in records.values():
        A = f"sorvane_{r.module}_{r.name}"
        ops = list(COMMON) + ["has"] + (["getPropertyId"] if r.id_field else [])
        for f in r.fields:
            ops += member(records, r, f)
        out += [f"family {A}_{op}" for op in ops]
        out += [f"extension {A}_{op}" for f in r.fields for op in extensions(records, r, f)]
        if r.has_list:
            L = f"{A}List"
            out += [f"family {L}_{op}" for op in COMMON + LIST_OPS]
            out += [f"extension {L}_remove", f"extension {L}_removeByIndex"]
    print("\n".join(sorted(set(out))))


if __name__ == "__main__":
    main()
