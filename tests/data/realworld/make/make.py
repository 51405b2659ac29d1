#!/usr/bin/env python3
"""Writes the real-world input set (tests/data/realworld/) and its manifest.

Run from anywhere: python3 make.py. PNG, OBJ, JSON and glTF are written here;
JPEG by make_jpeg.c (compiled with the system C compiler and libjpeg). The
files are committed; this script documents how they were made.

Manifest lines: PATH <tab> load|refuse <tab> EXPECTATION
  images: WxHxC and the first pixel "p0=a,b,c"; OBJ: counts and the first
  vertex; JSON: the value written back as text; glTF: accessor counts and a
  value; refuse: a text the failure must contain."""
import base64
import json
import os
import struct
import subprocess
import sys
import zlib

HERE = os.path.dirname(os.path.abspath(__file__))
ROOT = os.path.dirname(HERE)
manifest = []


def out(rel, data, outcome, expect):
    path = os.path.join(ROOT, rel)
    os.makedirs(os.path.dirname(path), exist_ok=True)
    with open(path, 'wb') as f:
        f.write(data if isinstance(data, bytes) else data.encode('utf-8'))
    manifest.append((rel, outcome, expect))


# ---------------------------------------------------------------- PNG
def chunk(kind, data, crc=None):
    body = kind + data
    return struct.pack('>I', len(data)) + body + struct.pack('>I', zlib.crc32(body) if crc is None else crc)


def pack_row(samples, depth):
    if depth == 8:
        return bytes(samples)
    if depth == 16:
        return b''.join(struct.pack('>H', s) for s in samples)
    per = 8 // depth
    row = bytearray()
    for i in range(0, len(samples), per):
        byte = 0
        for k in range(per):
            s = samples[i + k] if i + k < len(samples) else 0
            byte |= s << (8 - depth * (k + 1))
        row.append(byte)
    return bytes(row)


ADAM7 = [(0, 0, 8, 8), (4, 0, 8, 8), (0, 4, 4, 8), (2, 0, 4, 4), (0, 2, 2, 4), (1, 0, 2, 2), (0, 1, 1, 2)]


def raw_data(pixels, width, height, channels, depth, interlace):
    """pixels[y][x] is a tuple of channel samples."""
    data = bytearray()
    if not interlace:
        for y in range(height):
            data += b'\0' + pack_row([s for x in range(width) for s in pixels[y][x]], depth)
        return bytes(data)
    for x0, y0, dx, dy in ADAM7:
        xs = list(range(x0, width, dx))
        if not xs:
            continue
        for y in range(y0, height, dy):
            data += b'\0' + pack_row([s for x in xs for s in pixels[y][x]], depth)
    return bytes(data)


def png(width, height, color, depth, pixels, interlace=0, extra_before=b'', extra_after=b'', plte=None, trns=None,
        idat_split=None, idat_crc=None, empty_idat=False):
    channels = {0: 1, 2: 3, 3: 1, 4: 2, 6: 4}[color]
    ihdr = struct.pack('>IIBBBBB', width, height, depth, color, 0, 0, interlace)
    z = zlib.compress(raw_data(pixels, width, height, channels, depth, interlace), 9)
    parts = [z] if not idat_split else [z[i:i + idat_split] for i in range(0, len(z), idat_split)]
    body = b'\x89PNG\r\n\x1a\n' + chunk(b'IHDR', ihdr) + extra_before
    if plte:
        body += chunk(b'PLTE', b''.join(bytes(c) for c in plte))
    if trns is not None:
        body += chunk(b'tRNS', trns)
    if empty_idat:
        body += chunk(b'IDAT', b'')
    for i, p in enumerate(parts):
        body += chunk(b'IDAT', p, idat_crc if i == 0 else None)
    return body + extra_after + chunk(b'IEND', b'')


def expand_gray(v, depth):
    return v * 255 // ((1 << depth) - 1) if depth < 8 else (v >> 8 if depth == 16 else v)


def pattern(width, height, channels, depth):
    top = (1 << depth) - 1
    return [[tuple((x * 7 + y * 13 + k * 5 + 3) % (top + 1) for k in range(channels)) for x in range(width)]
            for y in range(height)]


def first(pixels, color, depth, plte=None, trns=None):
    p = pixels[0][0]
    if color == 3:
        rgb = list(plte[p[0]])
        if trns is not None:
            rgb.append(trns[p[0]] if p[0] < len(trns) else 255)
        return rgb
    if color == 0:
        return [expand_gray(p[0], depth)]
    return [s >> 8 if depth == 16 else s for s in p]


def image_expect(width, height, pixel):
    return '%dx%dx%d p0=%s' % (width, height, len(pixel), ','.join(str(v) for v in pixel))


W, H = 13, 9
for color, depths in ((0, (1, 2, 4, 8, 16)), (2, (8, 16)), (3, (1, 2, 4, 8)), (4, (8, 16)), (6, (8, 16))):
    for depth in depths:
        channels = {0: 1, 2: 3, 3: 1, 4: 2, 6: 4}[color]
        if color == 3:
            count = 1 << depth
            plte = [((i * 37) % 256, (i * 91) % 256, (i * 53 + 7) % 256) for i in range(count)]
            pixels = pattern(W, H, 1, depth)
        else:
            plte = None
            pixels = pattern(W, H, channels, depth)
        name = 'png/color%d_depth%d.png' % (color, depth)
        # Eight-bit gray, RGB and RGBA load; other depths and colour types
        # are refused from the header.
        if depth != 8:
            outcome, expect = 'refuse', 'Unsupported png file format (non 8 bit depth)'
        elif color in (3, 4):
            outcome, expect = 'refuse', 'Unsupported png file format (pixel format)'
        else:
            outcome, expect = 'load', image_expect(W, H, first(pixels, color, depth, plte))
        out(name, png(W, H, color, depth, pixels, plte=plte), outcome, expect)
        if depth in (2, 8) and color in (0, 3, 6):
            out(name.replace('.png', '_interlaced.png'), png(W, H, color, depth, pixels, interlace=1, plte=plte),
                outcome, expect)

# Palette with transparency, gray and RGB with a transparent colour.
plte = [(255, 0, 0), (0, 255, 0), (0, 0, 255), (9, 9, 9)]
pix = pattern(W, H, 1, 2)
trns = bytes([0, 128])
out('png/palette_trns.png', png(W, H, 3, 8, pix, plte=plte, trns=trns), 'refuse',
    'Unsupported png file format (pixel format)')
gray = pattern(W, H, 1, 8)
out('png/gray_trns.png', png(W, H, 0, 8, gray, trns=struct.pack('>H', 3)), 'load', image_expect(W, H, [gray[0][0][0]]))
rgb = pattern(W, H, 3, 8)
out('png/rgb_trns.png', png(W, H, 2, 8, rgb, trns=struct.pack('>HHH', 3, 8, 13)), 'load',
    image_expect(W, H, list(rgb[0][0])))
# Ancillary chunks, known and unknown, before and after the image data.
anc = chunk(b'gAMA', struct.pack('>I', 45455)) + chunk(b'tEXt', b'Comment\0made by hand') + \
    chunk(b'ruSt', b'unknown but safe to copy') + chunk(b'pHYs', struct.pack('>IIB', 2835, 2835, 1))
out('png/ancillary_chunks.png', png(W, H, 2, 8, rgb, extra_before=anc, extra_after=chunk(b'zzZz', b'late')), 'load',
    image_expect(W, H, list(rgb[0][0])))
out('png/bad_crc_ancillary.png', png(W, H, 2, 8, rgb, extra_before=chunk(b'tEXt', b'Comment\0x', crc=1)), 'load',
    image_expect(W, H, list(rgb[0][0])))
# Image data split into one-byte chunks, and an empty chunk first.
out('png/split_idat.png', png(W, H, 2, 8, rgb, idat_split=1), 'load', image_expect(W, H, list(rgb[0][0])))
out('png/empty_idat.png', png(W, H, 2, 8, rgb, empty_idat=True), 'load', image_expect(W, H, list(rgb[0][0])))
# Refused: an unknown critical chunk, a bad image data CRC, no image data,
# and the file cut at every chunk boundary and inside the image data.
out('png/unknown_critical.png', png(W, H, 2, 8, rgb, extra_before=chunk(b'CRIT', b'x')), 'refuse', 'CRIT')
out('png/bad_crc_idat.png', png(W, H, 2, 8, rgb, idat_crc=0x12345678), 'refuse', 'CRC error')
whole = png(W, H, 2, 8, rgb)
out('png/no_idat.png', whole[:33] + chunk(b'IEND', b''), 'refuse', 'IEND: out of place')
ends = [8]
at = 8
while at < len(whole):
    length = struct.unpack('>I', whole[at:at + 4])[0]
    at += 12 + length
    ends.append(at)
for i, end in enumerate(ends[:-2]):
    out('png/cut_after_chunk%d.png' % i, whole[:end], 'refuse', '')
idat_at = ends[1]
out('png/cut_inside_idat.png', whole[:idat_at + 20], 'refuse', '')

# ---------------------------------------------------------------- JPEG
jpeg_dir = os.path.join(ROOT, 'jpeg')
os.makedirs(jpeg_dir, exist_ok=True)
tool = os.path.join('/tmp', 'talvex_make_jpeg')
subprocess.check_call(['cc', '-O1', '-o', tool, os.path.join(HERE, 'make_jpeg.c'), '-ljpeg'])
subprocess.check_call([tool, jpeg_dir])
for name, w, h in (('baseline_444', 33, 17), ('baseline_422', 33, 17), ('baseline_420', 33, 17),
                   ('progressive_420', 40, 24), ('restart_markers', 48, 32), ('exif_icc', 16, 16),
                   ('arithmetic', 16, 16)):
    manifest.append(('jpeg/%s.jpg' % name, 'load', '%dx%dx3' % (w, h)))
manifest.append(('jpeg/gray.jpg', 'refuse', 'Unsupported jpeg file format (pixel format)'))
manifest.append(('jpeg/cmyk.jpg', 'refuse', 'Unsupported jpeg file format (pixel format)'))
with open(os.path.join(jpeg_dir, 'baseline_420.jpg'), 'rb') as f:
    jpg = f.read()
scan = jpg.index(b'\xff\xda')
out('jpeg/cut_in_scan.jpg', jpg[:scan + 40], 'load', '33x17x3')
out('jpeg/cut_in_header.jpg', jpg[:scan - 10], 'refuse', '')

# ---------------------------------------------------------------- OBJ
out('obj/negative_indices.obj', 'v 0 0 0\nv 1 0 0\nv 0 1 0\nv 1 1 0\nf -4 -3 -2\nf -3 -1 -2\n', 'load',
    'vertices=4 faces=2 v0=0,0,0')
# The first face fixes the face format of the file.
out('obj/mixed_polygons.obj', 'v 0 0 0\nv 1 0 0\nv 1 1 0\nv 0 1 0\nv 2 0 0\nf 1 2 3\nf 1 2 3 4\nf 2 5 3\n', 'refuse',
    "unsupported format 'f 1 2 3 4' (count=5, slash=0, double=0)")
out('obj/quads.obj', 'v 0 0 0\nv 1 0 0\nv 1 1 0\nv 0 1 0\nv 2 0 0\nv 2 1 0\nf 1 2 3 4\nf 2 5 6 3\n', 'load',
    'vertices=6 faces=2 v0=0,0,0')
out('obj/groups_lines_vp.obj', '# exported\no thing\ng part\ns 1\nv 0.5 -1 2\nv 1 0 0\nv 0 1 0\nvp 0.5 0.5\n'
    'l 1 2\ns off\nf 1 2 3\n', 'load', 'vertices=3 faces=1 v0=0.5,-1,2')
out('obj/missing_mtl.obj', 'mtllib nowhere.mtl\nusemtl skin\nv 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n', 'refuse',
    'nowhere.mtl')
out('obj/crlf_comments.obj', '# comment\r\nv 1 2 3 \r\nv 4 5 6\t\r\n\r\nv 7 8 9   \r\n# end\r\nf 1 2 3 \r\n', 'load',
    'vertices=3 faces=1 v0=1,2,3')
out('obj/huge_index.obj', 'v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 99999999999\n', 'refuse', 'index')
out('obj/uv_normal.obj', 'v 0 0 0\nv 1 0 0\nv 0 1 0\nvt 0 0\nvt 1 0\nvt 0 1\nvn 0 0 1\nf 1/1/1 2/2/1 3/3/1\n', 'load',
    'vertices=3 faces=1 v0=0,0,0')

# ---------------------------------------------------------------- JSON
out('json/deep_ok.json', '[' * 500 + '"x"' + ']' * 500, 'load', 'depth=500')
out('json/deep_refused.json', '[' * 600 + ']' * 600, 'refuse', 'Unsupported or invalid object')
out('json/long_numbers.json', '[3.14159265358979323846264338327950288419716939937510, 1e308, -0.0, '
    '123456789012345678901234567890]', 'load', 'text=[3.14159265358979323846264338327950288419716939937510, 1e308, -0.0, 123456789012345678901234567890]')
out('json/duplicate_keys.json', '{"a": 1, "b": 2, "a": 3}', 'load', 'text={"a": 3, "b": 2}')
out('json/invalid_utf8.json', b'{"a": "\xff\xfe"}', 'refuse', '')
out('json/nul_byte.json', b'{"a": 1}\x00', 'load', 'text={"a": 1}')
out('json/nul_in_string.json', b'{"a": "x\x00y"}', 'refuse', '')
# Strings are ASCII: \u escapes and bytes from 0x80 up are refused.
out('json/u_escapes.json', '{"name": "caf\\u00e9"}', 'refuse', 'Unsupported or invalid object')
out('json/utf8_text.json', '{"name": "caf\u00e9 \U0001F600"}', 'refuse', 'Unsupported or invalid object')
out('json/escapes_ascii.json', '{"name": "tab\\there \\"quoted\\" \\\\ end"}', 'load',
    'text={"name": "tab\\there \\"quoted\\" \\\\ end"}')

# ---------------------------------------------------------------- glTF
def b64(data):
    return 'data:application/octet-stream;base64,' + base64.b64encode(data).decode()


positions = struct.pack('<9f', 0, 0, 0, 1, 0, 0, 0, 1, 0)
normals = struct.pack('<9f', 0, 0, 1, 0, 0, 1, 0, 0, 1)
inter = b''.join(positions[i * 12:i * 12 + 12] + normals[i * 12:i * 12 + 12] for i in range(3))
asset = {'version': '2.0', 'generator': 'hand-made'}
out('gltf/interleaved.gltf', json.dumps({
    'asset': asset, 'buffers': [{'uri': b64(inter), 'byteLength': len(inter)}],
    'bufferViews': [{'buffer': 0, 'byteLength': len(inter), 'byteStride': 24}],
    'accessors': [{'bufferView': 0, 'componentType': 5126, 'count': 3, 'type': 'VEC3'},
                  {'bufferView': 0, 'byteOffset': 12, 'componentType': 5126, 'count': 3, 'type': 'VEC3'}]}),
    'load', 'accessors=2 a0=refused a1=refused')
out('gltf/stride_zero.gltf', json.dumps({
    'asset': asset, 'buffers': [{'uri': b64(positions), 'byteLength': 36}],
    'bufferViews': [{'buffer': 0, 'byteLength': 36, 'byteStride': 0}],
    'accessors': [{'bufferView': 0, 'componentType': 5126, 'count': 3, 'type': 'VEC3'}]}), 'load',
    'accessors=1 a0[3]=1')
extras = json.dumps({
    'asset': dict(asset, extras={'flag': True, 'ratio': 0.25}), 'extras': {'on': False},
    'buffers': [{'uri': b64(positions), 'byteLength': 36, 'name': 'plain'}],
    'accessors': [{'componentType': 5126, 'count': 2, 'type': 'SCALAR', 'name': 'zeros'}]})
out('gltf/extras.gltf', extras, 'load', 'accessors=1 a0=refused')
out('gltf/byte_order_mark.gltf', '\ufeff' + extras, 'refuse', 'Expect an object at line 1')
out('gltf/utf8_names.gltf', json.dumps({'asset': asset, 'accessors': [
    {'componentType': 5126, 'count': 2, 'type': 'SCALAR', 'name': '\u6e2c\u8a66'}]}, ensure_ascii=False), 'refuse',
    'Error parsing name')
out('gltf/u_escape_name.gltf', json.dumps({'asset': asset, 'accessors': [
    {'componentType': 5126, 'count': 2, 'type': 'SCALAR', 'name': '\u6e2c'}]}), 'refuse', 'Error parsing name')
out('gltf/dangling_index.gltf', json.dumps({
    'asset': asset, 'buffers': [{'uri': b64(positions), 'byteLength': 36}],
    'accessors': [{'bufferView': 7, 'componentType': 5126, 'count': 3, 'type': 'VEC3'}]}), 'load',
    'accessors=1 a0=refused')
out('gltf/wrong_count.gltf', json.dumps({
    'asset': asset, 'buffers': [{'uri': b64(positions), 'byteLength': 36}],
    'bufferViews': [{'buffer': 0, 'byteLength': 36}],
    'accessors': [{'bufferView': 0, 'componentType': 5126, 'count': 30, 'type': 'VEC3'}]}), 'load',
    'accessors=1 a0=refused')
glb_json = json.dumps({'asset': asset, 'accessors': [{'componentType': 5126, 'count': 4, 'type': 'SCALAR'}]}).encode()
glb_json += b' ' * ((4 - len(glb_json) % 4) % 4)
glb = b'glTF' + struct.pack('<II', 2, 12 + 8 + len(glb_json)) + struct.pack('<I', len(glb_json)) + b'JSON' + glb_json
out('gltf/no_bin_chunk.glb', glb, 'refuse', 'Invalid second chunk: expect a BIN chunk')
out('gltf/bad_magic.glb', b'glTf' + glb[4:], 'refuse', 'Invalid header: not a glb file')

with open(os.path.join(ROOT, 'manifest.tsv'), 'w') as f:
    f.write('# path\toutcome\texpectation (see make/make.py)\n')
    for rel, outcome, expect in manifest:
        f.write('%s\t%s\t%s\n' % (rel, outcome, expect))
print('%d files' % len(manifest))
