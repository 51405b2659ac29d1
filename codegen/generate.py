#!/usr/bin/env python3
"""Turns the record descriptions of schema/*.json into C++.

    generate.py --out DIR [--list] SCHEMA.json...

--list prints the files it would write, one per line, and writes nothing.
Files whose text is unchanged are not rewritten, so a build redoes only what
changed."""

import argparse
import os
import sys

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))

import model  # noqa: E402
from emit_accessors import AccessorEmitter  # noqa: E402
from emit_flat import FlatEmitter  # noqa: E402
from emit_flat_extensions import FlatExtensionEmitter  # noqa: E402
from emit_nodes import NodeEmitter  # noqa: E402
from emit_tables import TableEmitter  # noqa: E402


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--out", required=True)
    parser.add_argument("--list", action="store_true")
    parser.add_argument("schemas", nargs="+")
    args = parser.parse_args()

    try:
        records = model.load(sorted(args.schemas))
    except (model.SchemaError, KeyError, ValueError) as e:
        print(f"generate.py: {e}", file=sys.stderr)
        return 1

    emitters = [NodeEmitter(records), AccessorEmitter(records), FlatEmitter(records)]
    emitters.append(TableEmitter(records))
    emitters.append(FlatExtensionEmitter(records))
    if args.list:
        for record in records.values():
            for emitter in emitters:
                for path in emitter.outputs(record):
                    print(os.path.join(args.out, path))
        return 0

    for record in records.values():
        for emitter in emitters:
            for path, text in emitter.emit(record).items():
                write_if_changed(os.path.join(args.out, path), text)
    return 0


def write_if_changed(path, text):
    try:
        with open(path, encoding="utf-8") as f:
            if f.read() == text:
                return
    except FileNotFoundError:
        pass
    os.makedirs(os.path.dirname(path), exist_ok=True)
    with open(path, "w", encoding="utf-8") as f:
        f.write(text)


if __name__ == "__main__":
    sys.exit(main())
