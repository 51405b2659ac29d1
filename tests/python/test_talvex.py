"""The Python package against the library it was installed with. Run by
run.sh in a fresh venv, with numpy and with numpy hidden."""

import base64
import ctypes
import glob
import os
import re
import struct
import subprocess
import sys
import tempfile
import unittest

import talvex

SOURCE = os.environ.get("TALVEX_SOURCE_DIR", os.path.join(os.path.dirname(__file__), "..", ".."))
GENERATED = os.environ.get("TALVEX_GENERATED_DIR", "")
READER = os.environ.get("TALVEX_PAYLOAD_READER", "")


def once(cls):
    """A test class that does not touch numpy runs in the first pass only."""
    if os.environ.get("TALVEX_SECOND_PASS"):
        return unittest.skip("numpy plays no part: run in the first pass")(cls)
    return cls


def needs(name):
    """Skips a test until the library has the function."""
    return unittest.skipUnless(name in talvex.FUNCTIONS, f"{name} is not in this library yet")


def raw_slot():
    """The error slot read straight through ctypes, not through the package."""
    lib = ctypes.CDLL(talvex.library_path)
    size = ctypes.c_int64(0)
    lib.sorvane_getErrorMessage(None, ctypes.byref(size))
    buf = ctypes.create_string_buffer(size.value)
    lib.sorvane_getErrorMessage(buf, ctypes.byref(size))
    return buf.value.decode()


def values(n, fmt="f"):
    """n numbers as a memoryview of format fmt (no numpy needed)."""
    arr = (ctypes.c_float * n)(*[i * 0.5 - 3 for i in range(n)]) if fmt == "f" else \
        (ctypes.c_uint16 * n)(*[i % 65536 for i in range(n)])
    return memoryview(arr).cast("B").cast(fmt)


# Objects kept to the interpreter's exit on purpose.
_KEPT = []


def tobytes(block):
    return block.tobytes() if hasattr(block, "tobytes") else bytes(block)


def fill(arf):
    arf.identity.name = "Ada"
    arf.identity.age = 31.5
    verts = arf.data.add_dense(values(12).cast("B").cast("f", [4, 3]), name="verts")
    arf.data.add_dense(values(6, "H").cast("B").cast("H", [2, 3]), name="faces", embedded=True)
    mesh = arf.components.meshes.add("quad", True, 0)
    mesh.data = [verts.id]
    return verts


class Documents(unittest.TestCase):
    def setUp(self):
        self.dir = tempfile.mkdtemp(dir=os.environ.get("TALVEX_WORK_DIR"))

    def test_storage_modes_save_and_reload_equal(self):
        for path in ("avatar.arf.json", "avatar.arfz", "avatar.zip", "memory:"):
            with self.subTest(path=path):
                full = path if path == "memory:" else os.path.join(self.dir, path)
                arf = talvex.Arf.create(full)
                fill(arf)
                arf.save()
                text = arf.to_json()
                if path == "memory:":
                    provider = arf.file_provider
                    arf.delete()
                    again = talvex.call("sorvane_arf_Arf_loadProvider", provider, "arf.json", 3, False)
                else:
                    arf.delete()
                    again = talvex.Arf.load(full)
                with again:
                    self.assertEqual(again.to_json(), text)
                    self.assertEqual(again.identity.age, 31.5)
                    mesh = again.components.meshes["quad"]
                    self.assertEqual(mesh.data_index, [1])
                    self.assertEqual(mesh.data[0].name, "verts")
                    self.assertEqual(tobytes(again.data.by_name("faces").tensor()), tobytes(values(6, "H")))
                    self.assertEqual(list(again.data.by_name("verts").tensor(use_numpy=False).shape), [4, 3])

    @needs("sorvane_arf_Arf_saveAs")
    def test_save_as_moves_between_storage_modes(self):
        source = os.path.join(self.dir, "src", "avatar.arf.json")
        with talvex.Arf.create(source) as arf:
            fill(arf)
            arf.save()
            for target in ("b.arfz", os.path.join("c", "avatar.arf.json"), "d.zip"):
                with self.subTest(target=target):
                    arf.save_as(os.path.join(self.dir, target))
                    with talvex.Arf.load(os.path.join(self.dir, target), read_only=True) as again:
                        self.assertEqual(tobytes(again.data["verts"].tensor()), tobytes(values(12)))
                        self.assertEqual(tobytes(again.data["faces"].tensor()), tobytes(values(6, "H")))
                        self.assertEqual(again.identity.name, "Ada")

    def test_sequences_and_references(self):
        with talvex.Arf.create("memory:") as arf:
            meshes = arf.components.meshes
            a = meshes.add("a", True, 0)
            meshes.add("b", False, 7)
            c = meshes.add("c", True, 0)
            self.assertEqual((len(meshes), c.id), (3, 8))
            self.assertEqual([m.name for m in meshes], ["a", "b", "c"])
            self.assertEqual((meshes[-1].name, meshes["b"].id, meshes.by_id(7).name), ("c", 7, "b"))
            self.assertTrue("a" in meshes and 8 in meshes and "z" not in meshes)
            with self.assertRaises(IndexError):
                meshes[3]
            self.assertIsNone(a.path)  # an absent optional value reads as None
            a.path = "body.obj"
            self.assertEqual(a.path, "body.obj")
            a.path = None
            self.assertIsNone(a.path)


@once
class Errors(unittest.TestCase):
    def test_texts_equal_the_c_slot(self):
        with talvex.Arf.create("memory:") as arf:
            mesh = arf.components.meshes.add("m", True, 0)
            cases = [
                lambda: talvex.Arf.load(os.path.join(SOURCE, "no such dir", "x.arf")),
                lambda: mesh._call("getPath"),
                lambda: arf.components.meshes.by_id(99),
                lambda: talvex.DataTree.load("/nonexistent.dt"),
            ]
            for case in cases:
                with self.assertRaises(talvex.Error) as caught:
                    case()
                self.assertEqual(str(caught.exception), raw_slot())
            self.assertRegex(str(self._error(lambda: mesh._call("getPath"))), r"In components\.meshes\[\d+\]: No path$")
        if READER:
            path = os.path.join(SOURCE, "no such dir", "x.arf")
            c_text = subprocess.run([READER, path, "--slot"], capture_output=True, text=True).stdout
            self.assertEqual(str(self._error(lambda: talvex.Arf.load(path))), c_text)

    def test_threads_each_read_their_own_failure(self):
        # The slot is one per process and ctypes lets other threads run during
        # a call: each failure must still carry its own call's text.
        import threading
        mismatches = []

        def fail_often(tag):
            path = os.path.join(SOURCE, "no such dir", tag + ".arf")
            for _ in range(300):
                try:
                    talvex.Arf.load(path)
                except talvex.Error as e:
                    if tag + ".arf" not in str(e):
                        mismatches.append(str(e))

        threads = [threading.Thread(target=fail_often, args=(f"t{i}",)) for i in range(4)]
        for t in threads:
            t.start()
        for t in threads:
            t.join()
        self.assertEqual(mismatches, [])

    def _error(self, call):
        with self.assertRaises(talvex.Error) as caught:
            call()
        return caught.exception

    def test_deleted_and_removed_handles_raise(self):
        arf = talvex.Arf.create("memory:")
        meshes = arf.components.meshes
        mesh = meshes.add("m", True, 0)
        arf.delete()
        self.assertEqual(str(self._error(arf.to_json)), "arf is NULL")
        self.assertEqual(mesh.name, "m")  # accessors keep the document alive
        mesh.remove_property()
        self.assertIn("Invalid node", str(self._error(lambda: mesh.name)))
        meshes.delete()
        meshes.delete()  # twice is harmless
        self.assertEqual(str(self._error(lambda: len(meshes))), "meshList is NULL")
        with talvex.Arf.create("memory:") as closed:
            pass
        self.assertEqual(str(self._error(lambda: closed.identity)), "arf is NULL")

    def test_wrong_handle_type_is_refused(self):
        with talvex.Arf.create("memory:") as arf:
            with self.assertRaises(TypeError):
                talvex.call("sorvane_arf_Mesh_getName", arf.identity)


@once
class Texts(unittest.TestCase):
    def test_long_and_boundary_names_read_whole(self):
        # The first read tries a 256-byte buffer: around it and far past it.
        with talvex.Arf.create("memory:") as arf:
            identity = arf.identity
            for n in (0, 255, 256, 257, 10000):
                name = "".join(chr(0x41 + i % 26) for i in range(n - 1)) + ("\u00e9" if n else "")
                identity.name = name
                self.assertEqual(identity.name, name)


    def test_byte_blocks_of_both_sizing_styles(self):
        # The provider reports the size with status 0, a tensor's values with
        # -1; both must also read an empty block.
        with talvex.call("sorvane_archive_FileProvider_createMemory") as provider:
            provider.create("a.bin", b"\x00\x01hello")
            provider.create("empty", b"")
            self.assertEqual(provider.get_data("a.bin", 0), b"\x00\x01hello")
            self.assertEqual(provider.get_data("empty", 0), b"")
        for data in (b"", bytes(range(16))):
            with talvex.DataTree.from_python(memoryview(bytearray(data)).cast("f")) as tree:
                self.assertEqual(tree.get_values(), data)


class Payloads(unittest.TestCase):
    def test_dense_payload_equals_the_c_read(self):
        if not READER:
            self.skipTest("no C reader")
        d = tempfile.mkdtemp(dir=os.environ.get("TALVEX_WORK_DIR"))
        path = os.path.join(d, "avatar.arf.json")
        n = 3 * 5000
        with talvex.Arf.create(path) as arf:
            arf.data.add_dense(values(n).cast("B").cast("f", [5000, 3]), name="verts")
            arf.save()
        c_bytes = subprocess.run([READER, path, "verts"], capture_output=True, check=True).stdout
        with talvex.Arf.load(path, read_only=True) as arf:
            item = arf.data["verts"]
            self.assertEqual(tobytes(item.tensor()), c_bytes)
            self.assertEqual(tobytes(item.tensor(use_numpy=False)), c_bytes)
            self.assertEqual(len(c_bytes), n * 4)
            with item.get_tensor_ptr() as tree:
                self.assertEqual(tobytes(tree.tensor()), c_bytes)
                self.assertEqual(tree.get_tensor_sizes(), [5000, 3])

    def test_datatree_files_round_trip(self):
        path = os.path.join(tempfile.mkdtemp(dir=os.environ.get("TALVEX_WORK_DIR")), "value.dt")
        value = {"name": "x", "count": -3, "ratio": 0.25, "items": [1, "two", None]}
        talvex.save_datatree(path, value)
        with talvex.load_datatree(path) as tree:
            self.assertEqual(tree.to_python(), value)


class Streams(unittest.TestCase):
    def test_encode_decode_in_chunks(self):
        sample = talvex.create("BlendshapeAnimationSample")
        sample.set_id = 3
        sample.blendshape_count = 2
        for i, (id, w) in enumerate([(5, 0.5), (6, 0.25)]):
            sample.set_blendshape_id(i, id)
            sample.set_blendshape_weight(i, w)
        silent = talvex.create("SilentAnimationSample")
        silent.timescale = 1000
        silent.duration = 40
        for little in (False, True):
            data = talvex.encode_stream([(1.0, sample), (2.0, silent), (3.0, sample)], little_endian=little)
            for chunk in (1, 7, None):
                units = talvex.decode_stream(data, little_endian=little, chunk=chunk)
                self.assertEqual([type(u).__name__ for _, u in units],
                                 ["BlendshapeAnimationSample", "SilentAnimationSample", "BlendshapeAnimationSample"])
                self.assertEqual([h.timestamp for h, _ in units], [1, 2, 3])
                self.assertEqual([units[2][1].get_blendshape_id(i) for i in range(2)], [5, 6])
                if not little:  # the little-endian writer drops the duration (reported; not this package's)
                    self.assertEqual(units[1][1].duration, 40)


class Images(unittest.TestCase):
    @needs("sorvane_loadImagePtr")
    def test_png_saved_and_decoded_equal(self):
        work = tempfile.mkdtemp(dir=os.environ.get("TALVEX_WORK_DIR"))
        rows, cols = 3, 5
        pixels = memoryview(bytearray((i * 7) % 256 for i in range(rows * cols * 3))).cast("B", [rows, cols, 3])
        path = os.path.join(work, "p.png")
        talvex.save_image(path, {"imageFormat": 2, "pixelFormat": 1, "pixels": pixels})
        with talvex.load_image(path) as image:
            self.assertEqual(tobytes(talvex.pixels(image)), pixels.tobytes())
            self.assertEqual(list(talvex.pixels(image, use_numpy=False).shape), [rows, cols, 3])
        with open(path, "rb") as f:
            with talvex.decode_image(f.read(), "p.png") as image:
                self.assertEqual(tobytes(talvex.pixels(image)), pixels.tobytes())
        if READER:
            c_bytes = subprocess.run([READER, path, "--image"], capture_output=True, check=True).stdout
            self.assertEqual(c_bytes, pixels.tobytes())


def gltf_files(directory):
    """The same two-accessor document as .gltf (buffer embedded as a data uri) and as .glb."""
    import json
    import struct
    values = struct.pack("<6f", 0.0, 1.0, 2.0, 3.5, 4.0, -5.0) + struct.pack("<3H", 0, 1, 2) + b"\0\0"
    doc = {"asset": {"version": "2.0"},
           "buffers": [{"byteLength": len(values)}],
           "bufferViews": [{"buffer": 0, "byteLength": 24}, {"buffer": 0, "byteOffset": 24, "byteLength": 6}],
           "accessors": [{"bufferView": 0, "componentType": 5126, "count": 2, "type": "VEC3"},
                         {"bufferView": 1, "componentType": 5123, "count": 3, "type": "SCALAR"}]}
    text_doc = json.loads(json.dumps(doc))
    text_doc["buffers"][0]["uri"] = "data:application/octet-stream;base64," + base64.b64encode(values).decode()
    gltf = os.path.join(directory, "two.gltf")
    with open(gltf, "w", encoding="utf-8") as f:
        json.dump(text_doc, f)
    chunk = json.dumps(doc).encode()
    chunk += b" " * (-len(chunk) % 4)
    glb_bytes = (struct.pack("<III", 0x46546C67, 2, 12 + 8 + len(chunk) + 8 + len(values))
                 + struct.pack("<II", len(chunk), 0x4E4F534A) + chunk
                 + struct.pack("<II", len(values), 0x004E4942) + values)
    glb = os.path.join(directory, "two.glb")
    with open(glb, "wb") as f:
        f.write(glb_bytes)
    return (gltf, glb), values


class Gltf(unittest.TestCase):
    @needs("sorvane_gltf2_Gltf_load")
    def test_accessor_tensors_of_gltf_and_glb_equal_the_c_read(self):
        paths, values = gltf_files(tempfile.mkdtemp(dir=os.environ.get("TALVEX_WORK_DIR")))
        for path in paths:
            with self.subTest(path=os.path.basename(path)), talvex.Gltf.load(path, read_only=True) as gltf:
                positions, indices = gltf.accessors
                self.assertEqual((positions.type, positions.count, positions.component_type), ("VEC3", 2, 5126))
                self.assertEqual(tobytes(positions.tensor()), values[:24])
                self.assertEqual(list(positions.tensor(use_numpy=False).shape), [2, 3])
                self.assertEqual(tobytes(indices.tensor()), values[24:30])
                # Every accessor at once, as DataTree tensors of their own.
                tensors = gltf.accessors.tensors
                self.assertEqual([list(t.tensor(use_numpy=False).shape) for t in tensors], [[2, 3], [3]])
                self.assertEqual(tobytes(tensors[1].tensor()), values[24:30])
                if READER:
                    c_bytes = subprocess.run([READER, path, "--accessor"], capture_output=True, check=True).stdout
                    self.assertEqual(c_bytes, values[:24])

    @needs("sorvane_gltf2_Gltf_saveAs")
    def test_gltf_and_glb_saved_and_reloaded_equal(self):
        work = tempfile.mkdtemp(dir=os.environ.get("TALVEX_WORK_DIR"))
        paths, values = gltf_files(work)
        for source in paths:
            for suffix in (".gltf", ".glb"):
                with self.subTest(source=os.path.basename(source), to=suffix):
                    target = os.path.join(work, "out" + os.path.basename(source) + suffix)
                    with talvex.Gltf.load(source) as gltf:
                        gltf.save_as(target)
                    with talvex.Gltf.load(target, read_only=True) as again:
                        self.assertEqual(tobytes(again.accessors[0].tensor()), values[:24])
                        self.assertEqual(tobytes(again.accessors[1].tensor()), values[24:30])

    @needs("sorvane_arf_Data_getGltf")
    def test_glb_payload_opens_as_a_document_that_outlives_its_avatar(self):
        work = tempfile.mkdtemp(dir=os.environ.get("TALVEX_WORK_DIR"))
        (_, glb), expected = gltf_files(work)
        with talvex.Arf.create(os.path.join(work, "avatar.arf")) as arf:
            item = arf.data.add_glb("models/two.glb", glb, "model", True, 0)
            arf.save()
            opened = item.get_gltf(True)
            with item.get_gltf(False) as writable:
                self.assertEqual(len(writable.accessors), 2)
        # The document and one accessor stay alive past the avatar and past
        # this test, to the interpreter's exit: nothing may leak or crash then.
        _KEPT.extend([opened, opened.accessors[1]])
        self.assertEqual(tobytes(opened.accessors[0].tensor()), expected[:24])
        with self.assertRaises(talvex.Error) as raised:
            with talvex.Arf.create(os.path.join(work, "b.arf")) as other:
                other.data.add_dense(values(2)).get_gltf(True)
        self.assertIn("Not a glTF", str(raised.exception))

    @needs("sorvane_gltf2_Gltf_saveAs")
    def test_gltf_to_glb_and_back_keeps_the_document(self):
        import json
        work = tempfile.mkdtemp(dir=os.environ.get("TALVEX_WORK_DIR"))
        (gltf_path, _), values = gltf_files(work)
        glb, back = os.path.join(work, "round.glb"), os.path.join(work, "round.gltf")
        with talvex.Gltf.load(gltf_path) as gltf:
            gltf.accessors[1].name = "indices"
            gltf.save()
            gltf.save_as(glb)
            source = json.loads(gltf.to_json())
        with talvex.Gltf.load(glb) as binary:
            self.assertNotIn("uri", json.loads(binary.to_json())["buffers"][0])
            binary.save_as(back)
        with talvex.Gltf.load(back, read_only=True) as again:
            result = json.loads(again.to_json())
            self.assertEqual(result["buffers"][0]["uri"], "round_buffer_1.bin")
            with open(os.path.join(work, "round_buffer_1.bin"), "rb") as f:
                self.assertEqual(f.read(), values)
        # Only where the bytes live differs.
        for doc in (source, result):
            del doc["buffers"][0]["uri"]
        self.assertEqual(result, source)
        self.assertEqual(result["accessors"][1]["name"], "indices")


class LaterFamilies(unittest.TestCase):
    def test_array_protocols_of_a_family_the_package_does_not_name(self):
        # Nothing in the package knows animation frameworks: the generated
        # layer alone reads two arrays under one count and takes an array
        # with its byte size and count.
        with talvex.call("sorvane_arf_AnimationFramework_new", "face", "blendshapes") as framework:
            for i in range(3):
                framework.add_weight_input(1, 5, i, f"w{i}", -1.0 * i, 1.0 + i)
            self.assertEqual(framework.get_input_ranges(1, 5), ([0.0, -1.0, -2.0], [1.0, 2.0, 3.0]))
            self.assertEqual(framework.get_input_name(1, 5, 2), "w2")
            with framework.create_data() as data:
                data.weights = [0.5, 0.25, 1.0]
                self.assertEqual(data.weights, [0.5, 0.25, 1.0])


FACE = ('memory:{"preamble": {"signature": "MPEG-ARF-2025", "version": "1.0.0", "supportedAnimations": '
        '{"faceAnimations": ["urn:example:rig", "urn:mpeg:avatar:blendshapes:mediapipe"]}}, "components": '
        '{"meshes": [], "blendshapeSets": [{"animationInfo": [{"type": "ANIMATION_FACE", "target": 0, "mappings": '
        '[{"source": 1, "linearAssociations": [{"targetIndex": 0, "sourceIndices": [1, 2], "weights": [0.5, 0.25]}, '
        '{"targetIndex": 2, "sourceIndices": [25], "weights": [2]}]}]}], "shapes": [{"shape": 1, "name": "a", "id": 0}, '
        '{"shape": 1, "name": "b", "id": 1}, {"shape": 1, "name": "c", "id": 2}], "baseMesh": 1, "name": "face", '
        '"id": 1}]}}')


def blendshapes(pairs):
    sample = talvex.create("BlendshapeAnimationSample")
    sample.blendshape_count = len(pairs)
    for i, (id, w) in enumerate(pairs):
        sample.set_blendshape_id(i, id)
        sample.set_blendshape_weight(i, w)
    return sample


def joints(rows):
    sample = talvex.create("JointAnimationSample")
    sample.joint_count = len(rows)
    for i, (id, m) in enumerate(rows):
        sample.set_joint_id(i, id)
        sample.set_joint_transform(i, struct.pack("16f", *m), 16)
    return sample


@once
class Animation(unittest.TestCase):
    @needs("sorvane_arf_AnimationMapper_create")
    def test_stream_drives_the_face_in_any_chunking(self):
        stream = talvex.encode_stream([(0, blendshapes([(1, 0.2), (2, 0.4), (25, 0.3)])),
                                       (10, joints([(0, [1.0] * 16)])),
                                       (33, blendshapes([(1, 0.4), (2, 0.0)]))])
        with talvex.Arf.load(FACE) as arf:
            for chunk in (1, 5, 4096):
                seen = [(t, kind, a.weights(1)) for t, kind, a in
                        talvex.animate(arf, stream, "urn:mpeg:avatar:blendshapes:mediapipe", chunk=chunk)]
                # The joint unit fits no weight framework; the last unit lacks
                # input 25, so target 2 keeps its value whole.
                self.assertEqual([(t, kind) for t, kind, _ in seen], [(0, 1), (33, 1)])
                for (_, _, got), want in zip(seen, ([0.2, 0.0, 0.6], [0.2, 0.0, 0.6])):
                    for id, w in enumerate(want):
                        self.assertAlmostEqual(got[id], w, places=6)
            with talvex.Animator(arf, "urn:mpeg:avatar:blendshapes:mediapipe") as animator:
                self.assertIn('"queue"', animator.describe())
                animator.update(blendshapes([(1, 1.0), (2, 1.0)]))
                self.assertAlmostEqual(animator.weights(1)[0], 0.75, places=6)
            with self.assertRaisesRegex(talvex.Error, "No framework urn:none"):
                talvex.Animator(arf, "urn:none")

    @needs("sorvane_arf_AnimationMapper_create")
    def test_example_drives_the_example_skeleton(self):
        moved = [1, 0, 0, 0.25, 0, 1, 0, 0.5, 0, 0, 1, 0.75, 0, 0, 0, 1]
        stream = talvex.encode_stream([(5, joints([(0, moved), (1, moved)]))])
        with tempfile.TemporaryDirectory() as d:
            path = os.path.join(d, "body.stream")
            with open(path, "wb") as f:
                f.write(stream)
            out = subprocess.run([sys.executable, os.path.join(SOURCE, "examples", "python", "animate.py"),
                                  os.path.join(SOURCE, "examples", "avatar.arf.json"), path],
                                 capture_output=True, text=True, check=True).stdout
        self.assertIn("skeleton 1 joint 1: translation (0.2500, 0.5000, 0.7500)", out)
        self.assertIn("1 units driven", out)


@once
class Lifetime(unittest.TestCase):
    def test_handles_made_and_dropped_leave_none(self):
        before = talvex.live_handles()
        with talvex.Arf.create("memory:") as arf:
            arf.components.meshes.add("m", True, 0)
            components = arf.components
            for _ in range(25000):
                meshes = components.meshes  # a list accessor
                mesh = meshes[0]  # an object accessor
                mesh.data  # a view, no handle
                talvex.DataTree.from_python(1)
                unit = talvex.create("SilentAnimationSample")
                unit._call("toUnitAnimationSample")  # an alias: neither counted nor released
            del meshes, mesh, unit, components
        self.assertEqual(talvex.live_handles(), before)


TYPEDEFS = {}


def header_prototypes():
    """name: (result, [parameter types]) read from the headers with a regex of this test's own;
    number typedefs go to TYPEDEFS."""
    dirs = [os.path.join(SOURCE, "sorvane")] + ([os.path.join(GENERATED, "sorvane")] if GENERATED else [])
    out = {}
    for d in dirs:
        for path in glob.glob(os.path.join(d, "**", "*.h"), recursive=True):
            with open(path, encoding="utf-8") as f:
                text = re.sub(r"/\*.*?\*/", " ", f.read(), flags=re.S)
            for base, name in re.findall(r"typedef\s+(u?int\d+_t|int|float|double|bool)\s+(\w+)\s*;", text):
                TYPEDEFS[name] = base
            for name in re.findall(r"typedef\s+enum\b[^;]*?\}\s*(\w+)\s*;", text, flags=re.S):
                TYPEDEFS[name] = "int"
            for m in re.finditer(r"SORVANE_API\s+([\w\s\*]+?)\s*\b(sorvane_\w+)\s*\(([^)]*)\)", text):
                params = [] if m.group(3).strip() in ("", "void") else \
                    [re.sub(r"\w+\s*$", "", p).strip() for p in m.group(3).split(",")]
                out[m.group(2)] = (m.group(1).strip(), params)
    return out


SCALARS = {"int32_t": ctypes.c_int32, "int64_t": ctypes.c_int64, "bool": ctypes.c_bool, "double": ctypes.c_double,
           "float": ctypes.c_float, "int": ctypes.c_int, "uint8_t": ctypes.c_uint8, "int8_t": ctypes.c_int8,
           "uint16_t": ctypes.c_uint16, "int16_t": ctypes.c_int16, "uint32_t": ctypes.c_uint32,
           "uint64_t": ctypes.c_uint64, "size_t": ctypes.c_size_t}


def expected(ctype):
    """(ctypes class, pointer depth) a C type must be bound as."""
    t = " ".join(ctype.replace("const", " ").replace("struct", " ").replace("*", " * ").split())
    depth = t.count("*")
    base = t.replace("*", "").strip()
    base = TYPEDEFS.get(base, base)
    if base == "void":
        return (None, 0) if depth == 0 else (ctypes.c_void_p, depth - 1)
    if base == "char" and depth:
        return ctypes.c_char_p, depth - 1
    if base in SCALARS:
        return SCALARS[base], depth
    return base, depth  # a handle: compared by the C name of its opaque class


def actual(t):
    depth = 0
    while t is not None and hasattr(t, "_type_") and not isinstance(t._type_, str) and t is not ctypes.c_void_p:
        t, depth = t._type_, depth + 1
    return (t.c_name, depth) if hasattr(t, "c_name") else (t, depth)


@once
class Binding(unittest.TestCase):
    def test_covers_every_header_function_with_its_prototype(self):
        prototypes = header_prototypes()
        self.assertGreater(len(prototypes), 500)
        self.assertEqual(sorted(set(prototypes) - set(talvex.FUNCTIONS)), [])
        self.assertEqual(sorted(set(talvex.FUNCTIONS) - set(prototypes)), [])
        lib = ctypes.CDLL(talvex.library_path)
        for name, (result, params) in prototypes.items():
            f = talvex.FUNCTIONS[name].raw
            self.assertIsNotNone(f, f"{name} not exported")
            with self.subTest(name=name):
                self.assertEqual(actual(f.restype), expected(result))
                self.assertEqual([actual(t) for t in f.argtypes], [expected(p) for p in params])
                self.assertTrue(hasattr(lib, name))


class BadInput(unittest.TestCase):
    def corpus(self, target):
        files = sorted(f for f in glob.glob(os.path.join(SOURCE, "fuzz", "corpus", target, "**"), recursive=True)
                       if os.path.isfile(f))
        self.assertTrue(files, target)
        for path in files:
            with open(path, "rb") as f:
                yield os.path.basename(path), f.read()

    def survive(self, name, call):
        try:
            call()
        except talvex.Error:
            pass
        except UnicodeDecodeError:
            pass  # a text that is not UTF-8 reached Python intact

    def test_seed_corpora_raise_error_or_load(self):
        work = tempfile.mkdtemp(dir=os.environ.get("TALVEX_WORK_DIR"))

        def load_memory(data):
            with talvex.Arf.load("memory:" + data.decode("utf-8", "replace")) as arf:
                arf.to_json()
                for asset in arf.structure.assets:
                    [lod.name for lod in asset.lods]

        for name, data in self.corpus("arf_load"):
            self.survive(name, lambda: load_memory(data))
        for name, data in self.corpus("datatree_load"):
            path = os.path.join(work, name)
            with open(path, "wb") as f:
                f.write(data)
            self.survive(name, lambda: talvex.load_datatree(path).to_python())
        for name, data in self.corpus("sample_stream"):
            if data:
                self.survive(name, lambda: talvex.decode_stream(data[2:], little_endian=bool(data[0] & 1),
                                                                chunk=1 + data[1] % 16 if len(data) > 1 else None))
        for name, data in self.corpus("zip_open"):
            path = os.path.join(work, name + ".arfz")
            with open(path, "wb") as f:
                f.write(data)
            self.survive(name, lambda: talvex.Arf.load(path, read_only=True).to_json())

        def payload(data, kind):
            uri = f"data:application/mpeg.arf.{kind};base64," + base64.b64encode(data).decode()
            text = ('{"data": [{"type": "application/mpeg.arf.%s", "uri": "%s", "byteLength": %d, '
                    '"name": "p", "id": 1}]}' % (kind, uri, len(data)))
            with talvex.Arf.load("memory:" + text) as arf:
                item = arf.data[0]
                item.payload()
                item.tensor()
                item.tensor(use_numpy=False)

        if "sorvane_createImagePtr" in talvex.FUNCTIONS:
            for name, data in self.corpus("image_decode"):
                self.survive(name, lambda: talvex.pixels(talvex.decode_image(data, name)))
        if "sorvane_gltf2_Gltf_load" in talvex.FUNCTIONS:
            for target, suffix in (("glb_decode", ".glb"), ("gltf_load", ".gltf")):
                if os.path.isdir(os.path.join(SOURCE, "fuzz", "corpus", target)):
                    for name, data in self.corpus(target):
                        path = os.path.join(work, name + suffix)
                        with open(path, "wb") as f:
                            f.write(data)
                        self.survive(name, lambda: talvex.Gltf.load(path, read_only=True).to_json())
        if "sorvane_gltf2_Gltf_load" in talvex.FUNCTIONS:
            # No seed corpus for .glb yet: damaged copies of a good file.
            import struct
            (_, glb), _ = gltf_files(work)
            with open(glb, "rb") as f:
                good = f.read()
            damaged = [good[:n] for n in (0, 4, 11, 12, 19, 20, 40, len(good) - 1)]
            damaged += [good[:8] + struct.pack("<I", 1 << 31) + good[12:],  # total length past the file
                        good[:12] + struct.pack("<I", 1 << 30) + good[16:],  # JSON chunk past the file
                        good[:16] + b"XXXX" + good[20:],  # chunk type
                        b"glTF" + struct.pack("<I", 1) + good[8:]]  # version 1
            for i, data in enumerate(damaged):
                path = os.path.join(work, f"damaged{i}.glb")
                with open(path, "wb") as f:
                    f.write(data)
                self.survive(path, lambda: [a.tensor() for a in talvex.Gltf.load(path, read_only=True).accessors])
        for name, data in self.corpus("data_payload"):
            self.survive(name, lambda: payload(data, "sparse" if name.startswith("sparse") else "dense"))


if __name__ == "__main__":
    unittest.main()
