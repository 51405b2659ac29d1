#!/usr/bin/env python3
"""Prints the skeletons of an ARF avatar as trees of joints, with each node's
translation and rotation.

    python3 examples/python/print_skeleton.py examples/avatar.arf.json"""

import sys

import talvex


def print_node(node, joints, depth):
    label = joints.get(node.id, "")
    pose = []
    if len(node.translation):
        pose.append("t=" + ",".join(f"{v:g}" for v in node.translation))
    if len(node.rotation):
        pose.append("r=" + ",".join(f"{v:g}" for v in node.rotation))
    joint = f"  joint '{label}'" if label else ""
    print(f"{'  ' * depth}{node.name} (node {node.id}){joint}  {' '.join(pose)}")
    for child in node.children:
        print_node(child, joints, depth + 1)


def main(path):
    with talvex.Arf.load(path, read_only=True) as arf:
        skeletons = arf.components.skeletons
        if not len(skeletons):
            print("no skeleton")
        for skeleton in skeletons:
            joints = {joint.node_index: joint.name for joint in skeleton.joints}
            print(f"skeleton '{skeleton.name}' (id {skeleton.id}), {len(joints)} joints")
            print_node(skeleton.root, joints, 1)


if __name__ == "__main__":
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    main(sys.argv[1])
