"""glTF 2.0 documents: the document root and typed access to accessors'
data. Every other object and list is an `Object` driven by its generated
functions, as on the ARF side."""

import os

from . import _tensor
from ._core import Error, Object, function, register

# Components per element of an accessor's type.
TYPE_SIZES = {"SCALAR": 1, "VEC2": 2, "VEC3": 3, "VEC4": 4, "MAT2": 4, "MAT3": 9, "MAT4": 16}
COMPONENT_FORMATS = dict(_tensor.COMPONENT_FORMATS)


@register("sorvane_gltf2_Gltf")
class Gltf(Object):
    """A glTF document: a .gltf (JSON with its buffers beside it or embedded)
    or a .glb file."""

    @classmethod
    def load(cls, path, read_only=False):
        return _need("sorvane_gltf2_Gltf_load")(_path(path), bool(read_only))

    @classmethod
    def create(cls, path):
        return _need("sorvane_gltf2_Gltf_create")(_path(path))

    def save(self):
        return _need("sorvane_gltf2_Gltf_save").on(self)

    def save_as(self, path):
        return _need("sorvane_gltf2_Gltf_saveAs").on(self, _path(path))

    def to_json(self):
        return self._call("toJsonString")


@register("sorvane_gltf2_Accessor")
class Accessor(Object):
    def tensor(self, use_numpy=True):
        """The accessor's elements, one row per element: numpy array or memoryview."""
        data = self._call("getData")
        fmt = COMPONENT_FORMATS.get(self.component_type)
        if fmt is None:
            raise Error(f"component type {self.component_type} has no Python format")
        width = TYPE_SIZES.get(self.type, 1)
        shape = [self.count, width] if width > 1 else [self.count]
        expected = _tensor.ITEMSIZE[fmt]
        for s in shape:
            expected *= s
        if len(data) != expected:
            raise Error(f"accessor data has {len(data)} bytes, {expected} expected")
        block, address = _tensor.empty(fmt, shape, use_numpy)
        if expected:
            import ctypes
            ctypes.memmove(address, data, expected)
        return _tensor.finish(block, fmt, shape)


def _need(name):
    f = function(name)
    if f is None:
        raise Error(f"{name} is not in this library")
    return f


def _path(path):
    if path is None:
        raise TypeError("path is None")
    return os.fspath(path)
