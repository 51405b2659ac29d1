#!/usr/bin/env python3
"""Decodes an animation sample stream file and prints each unit: its time and
kind, and the blendshape or texture weights by id, or the joint count.

    talvex stream-make examples/face.stream.txt face.stream
    python3 examples/python/print_stream.py face.stream [--little-endian]"""

import sys

import talvex


def describe(sample):
    kind = type(sample).__name__.replace("AnimationSample", "").lower()
    if kind in ("blendshape", "texture"):
        noun = kind.capitalize()
        count = getattr(sample, f"{kind}_count")
        weights = ", ".join(f"{sample._call(f'get{noun}Id', i)}={sample._call(f'get{noun}Weight', i):.3f}"
                            for i in range(count))
        return f"{kind} set {sample.set_id}: {weights}"
    if kind in ("joint", "landmark"):
        return f"{kind} set {sample.set_id}: {getattr(sample, kind + '_count')} values"
    if kind == "silent":
        return f"silent for {sample.duration}/{sample.timescale} s"
    return kind


def main(path, little_endian):
    with open(path, "rb") as f:
        data = f.read()
    for header, sample in talvex.decode_stream(data, little_endian=little_endian, chunk=4096):
        print(f"t={header.timestamp:<6} {describe(sample)}")


if __name__ == "__main__":
    args = [a for a in sys.argv[1:] if a != "--little-endian"]
    if len(args) != 1:
        sys.exit(__doc__)
    main(args[0], "--little-endian" in sys.argv)
