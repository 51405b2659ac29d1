#!/usr/bin/env python3
"""Converts a .gltf document to a .glb file: the library reads and checks the
document and gives its JSON and its buffers' bytes; the buffers are joined
into the one binary chunk of the .glb, and the result is loaded again and its
accessors compared with the source's.

    python3 examples/python/gltf_to_glb.py IN.gltf OUT.glb"""

import base64
import json
import struct
import sys

import talvex


def buffer_bytes(gltf, buffer):
    uri = buffer.get("uri")
    if uri is None:
        raise SystemExit("a buffer without uri: the source is a .glb already")
    if uri.startswith("data:"):
        return base64.b64decode(uri.split(",", 1)[1])
    with gltf.file_provider as provider:
        return provider.get_data(uri, 0)


def main(source, target):
    with talvex.Gltf.load(source, read_only=True) as gltf:
        doc = json.loads(gltf.to_json())
        blob, starts = b"", []
        for buffer in doc.get("buffers", []):
            blob += b"\0" * (-len(blob) % 4)  # every buffer starts 4-byte aligned
            starts.append(len(blob))
            blob += buffer_bytes(gltf, buffer)[: buffer["byteLength"]]
        for view in doc.get("bufferViews", []):
            view["byteOffset"] = view.get("byteOffset", 0) + starts[view["buffer"]]
            view["buffer"] = 0
        doc["buffers"] = [{"byteLength": len(blob)}] if blob else []
        chunk = json.dumps(doc, separators=(",", ":")).encode()
        chunk += b" " * (-len(chunk) % 4)
        blob += b"\0" * (-len(blob) % 4)
        total = 12 + 8 + len(chunk) + (8 + len(blob) if blob else 0)
        with open(target, "wb") as f:
            f.write(struct.pack("<III", 0x46546C67, 2, total))
            f.write(struct.pack("<II", len(chunk), 0x4E4F534A) + chunk)
            if blob:
                f.write(struct.pack("<II", len(blob), 0x004E4942) + blob)
        before = [accessor.get_data() for accessor in gltf.accessors]
    with talvex.Gltf.load(target, read_only=True) as glb:
        after = [accessor.get_data() for accessor in glb.accessors]
    print(f"{target}: {total} bytes, {len(after)} accessors, "
          f"{'equal to the source' if after == before else 'DIFFERENT from the source'}")
    return 0 if after == before else 1


if __name__ == "__main__":
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    sys.exit(main(sys.argv[1], sys.argv[2]))
