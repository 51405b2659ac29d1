#!/usr/bin/env python3
"""The same record descriptions give the same bytes.

    generate_twice.py GENERATE_PY SCHEMA.json...

Runs the generator twice into fresh folders, with different hash seeds (set
and dict orders that leak into the output would differ) and the schema files
in opposite orders, and compares every file byte for byte."""

import filecmp
import os
import subprocess
import sys
import tempfile


def run(generator, schemas, out, seed):
    env = dict(os.environ, PYTHONHASHSEED=str(seed))
    subprocess.run([sys.executable, generator, "--out", out] + schemas, check=True, env=env)
    files = {}
    for root, _, names in os.walk(out):
        for n in names:
            path = os.path.join(root, n)
            files[os.path.relpath(path, out)] = path
    return files


def main(argv):
    generator, schemas = argv[1], argv[2:]
    with tempfile.TemporaryDirectory() as tmp:
        first = run(generator, sorted(schemas), os.path.join(tmp, "a"), 1)
        second = run(generator, sorted(schemas, reverse=True), os.path.join(tmp, "b"), 2)
        faults = []
        if first.keys() != second.keys():
            faults.append(f"different file sets: {sorted(first.keys() ^ second.keys())}")
        for name in sorted(first.keys() & second.keys()):
            if not filecmp.cmp(first[name], second[name], shallow=False):
                faults.append(f"{name} differs between two runs")
        for fault in faults:
            print(fault)
        if faults:
            return 1
        if not first:
            print("the generator wrote nothing")
            return 1
        print(f"same bytes: {len(first)} generated files")
        return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv))
