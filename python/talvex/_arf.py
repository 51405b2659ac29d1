"""ARF documents: the document root and the data items' payload calls. Every
other record and list is an `Object` driven by its generated functions."""

import ctypes as C
import os

from . import _tensor
from ._core import Error, Object, function, register


@register("sorvane_arf_Arf")
class Arf(Object):
    """An ARF document. `path` is a main file (.arf, .json), an archive
    (.arfz, .zip) or "memory:" followed by JSON text."""

    @classmethod
    def load(cls, path, read_only=False):
        # The C call reads the path at once without a check: never pass it None.
        return function("sorvane_arf_Arf_load")(_path(path), bool(read_only))

    @classmethod
    def create(cls, path):
        return function("sorvane_arf_Arf_create")(_path(path))

    def save(self):
        """Writes the document's JSON through its provider (payloads were
        written when they were added)."""
        if function("sorvane_arf_Arf_save"):
            return self._call("save")
        # Older libraries have no flat save: the same steps through the provider.
        json = self._call("toJsonString").encode("utf-8")
        name = self._call("getMainFileName")
        with self._call("getFileProvider") as provider:
            provider.create(name or "arf.json", json)
            provider.close()
        return None

    def to_json(self):
        return self._call("toJsonString")

    def __exit__(self, *exc):
        self.delete()


def _path(path):
    if path is None:
        raise TypeError("path is None")
    return os.fspath(path)


@register("sorvane_arf_Data")
class Data(Object):
    """A data item; `tensor()` decodes its dense or sparse payload."""

    def payload(self):
        """The stored payload bytes."""
        f = function("sorvane_arf_Data_getData")
        size = f.on(self, None, 0)
        buf = C.create_string_buffer(max(size, 1))
        size = f.on(self, buf, size)
        return buf.raw[:size]

    def tensor(self, use_numpy=True):
        """The decoded payload: a numpy array, or a memoryview with shape and format."""
        f = function("sorvane_arf_Data_getTensorData")
        dims = (C.c_int64 * 8)()
        nbytes, dtype, count = f.on(self, dims, 8, None, 0)
        if count > 8:
            dims = (C.c_int64 * count)()
            nbytes, dtype, count = f.on(self, dims, count, None, 0)
        shape = list(dims[:count])
        fmt = _tensor.COMPONENT_FORMATS.get(dtype)
        if fmt is None:
            raise Error(f"element type {dtype} has no Python format")
        expected = _tensor.ITEMSIZE[fmt]
        for s in shape:
            expected *= s
        if expected != nbytes or nbytes > self._call("getDataSize"):
            # Only a dense payload is decoded straight into our block: its values
            # are in its bytes, so a larger claim is a bad header, and the
            # library's own decoding (which checks it) reads the rest.
            with self._call("getTensorPtr") as tree:
                return tree.tensor(use_numpy)
        block, address = _tensor.empty(fmt, shape, use_numpy)
        f.on(self, dims, count, address or None, nbytes)
        return _tensor.finish(block, fmt, shape)

    def tensor_into(self, out):
        """Decodes the payload into a writable buffer of the right size; its byte count."""
        f = function("sorvane_arf_Data_getTensorData")
        dims = (C.c_int64 * 8)()
        mv = memoryview(out).cast("B")
        buf = (C.c_char * len(mv)).from_buffer(mv)
        return f.on(self, dims, 8, buf, len(mv))[0]


@register("sorvane_arf_DataList")
class DataList(Object):
    def add_dense(self, values, name=None, embedded=False, uri=None, id=None):
        """A dense payload from a numpy array, a memoryview or nested lists of floats."""
        block, fmt, shape = _tensor.as_block(values)
        dtype = _tensor.FORMAT_COMPONENTS.get(fmt)
        if dtype is None:
            raise Error(f"format {fmt!r} is no payload element type")
        return function("sorvane_arf_DataList_addDense")(self, block, dtype, shape, bool(embedded), uri, name,
                                                         id is None, id or 0)
