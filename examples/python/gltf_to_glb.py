#!/usr/bin/env python3
"""Converts a .gltf document to a .glb file (or back: the target's extension
decides). The library packs every buffer into the one binary chunk and
rebases the views; the result is loaded again and its accessors compared
with the source's.

    python3 examples/python/gltf_to_glb.py IN.gltf OUT.glb"""

import os
import sys

import talvex


def main(source, target):
    with talvex.Gltf.load(source, read_only=True) as gltf:
        gltf.save_as(target)
        before = [accessor.get_data() for accessor in gltf.accessors]
    with talvex.Gltf.load(target, read_only=True) as again:
        after = [accessor.get_data() for accessor in again.accessors]
    print(f"{target}: {os.path.getsize(target)} bytes, {len(after)} accessors, "
          f"{'equal to the source' if after == before else 'DIFFERENT from the source'}")
    return 0 if after == before else 1


if __name__ == "__main__":
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    sys.exit(main(sys.argv[1], sys.argv[2]))
