#!/usr/bin/env python3
"""Drives an avatar from an animation sample stream file and prints, for each
unit, the blendshape weights and joint translations it moved.

    talvex stream-make examples/body.stream.txt body.stream
    python3 examples/python/animate.py examples/avatar.arf.json body.stream [URN]

URN defaults to the body framework examples/avatar.arf.json drives its
skeleton with; a built-in URN such as urn:mpeg:avatar:blendshapes:mediapipe
is used as it is."""

import sys

import talvex


def main(avatar, stream, urn):
    with open(stream, "rb") as f:
        data = f.read()
    with talvex.Arf.load(avatar, read_only=True) as arf:
        units = 0
        # The stream is fed in 4 KB chunks, as it would arrive over a network.
        for timestamp, kind, animator in talvex.animate(arf, data, urn, chunk=4096):
            units += 1
            print(f"t={timestamp}")
            c = animator.components
            for set_id in c.get_blendshape_set_ids():
                weights = " ".join(f"{i}={w:.3f}" for i, w in animator.weights(set_id).items())
                print(f"  blendshape set {set_id}: {weights}")
            for skeleton in c.get_skeleton_ids():
                for joint, m in animator.joints(skeleton).items():
                    print(f"  skeleton {skeleton} joint {joint}: translation ({m[3]:.4f}, {m[7]:.4f}, {m[11]:.4f})")
        print(f"{units} units driven")


if __name__ == "__main__":
    if len(sys.argv) not in (3, 4):
        sys.exit(__doc__)
    main(sys.argv[1], sys.argv[2], sys.argv[3] if len(sys.argv) == 4 else "urn:mpeg:arf:animation:body:smpl")
