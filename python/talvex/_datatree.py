"""DataTree values: files, conversion from and to Python values, tensors."""

import ctypes as C
import os

from . import _tensor
from ._core import Error, Object, function, register

NULL, STRING, INTEGER, FLOAT, BOOLEAN, ARRAY, TENSOR, OBJECT, LIST = range(9)


@register("DataTree")
class DataTree(Object):
    """A handle on a DataTree value (shared with other handles of the same value)."""

    @staticmethod
    def load(path):
        return function("sorvane_loadDataTree")(os.fspath(path))

    def save(self, path):
        function("sorvane_saveDataTree")(os.fspath(path), self)

    @staticmethod
    def from_python(value):
        """A new value from None, int, float, str, list, dict, or a tensor
        (a numpy array or a memoryview)."""
        p = "sorvane_datatree_DataTree_"
        if value is None:
            return function(p + "createNull")()
        if isinstance(value, bool):
            return function(p + "createInteger")(int(value))
        if isinstance(value, int):
            return function(p + "createInteger")(value)
        if isinstance(value, float):
            return function(p + "createFloat")(value)
        if isinstance(value, str):
            return function(p + "createString")(value)
        if isinstance(value, dict):
            obj = function(p + "createObject")()
            for k, v in value.items():
                with DataTree.from_python(v) as item:
                    obj.set_object_item(k, item)
            return obj
        if isinstance(value, (list, tuple)):
            lst = function(p + "createList")()
            for v in value:
                with DataTree.from_python(v) as item:
                    lst.add_list_item(item)
            return lst
        block, fmt, shape = _tensor.as_block(value)
        scalar = _tensor.FORMAT_SCALARS.get(fmt)
        if scalar is None:
            raise Error(f"format {fmt!r} is no scalar type")
        return function(p + "createTensor")(block, shape, scalar)

    @property
    def kind(self):
        return self._call("getType")

    def tensor(self, use_numpy=True):
        """The values of a tensor or array (copied): numpy array or memoryview."""
        fmt = _tensor.SCALAR_FORMATS.get(self._call("getScalarType"))
        if fmt is None:
            raise Error("no scalar type")
        shape = self._call("getTensorSizes") if self.kind == TENSOR else [self._call("getValueCount")]
        block, address = _tensor.empty(fmt, shape, use_numpy)
        count = 1
        for s in shape:
            count *= s
        if count:
            C.memmove(address, self._call("getBuffer"), count * _tensor.ITEMSIZE[fmt])
        return _tensor.finish(block, fmt, shape)

    def to_python(self):
        """The value as Python objects (tensors as numpy arrays or memoryviews)."""
        k = self.kind
        if k == NULL:
            return None
        if k == STRING:
            return self._call("getString")
        if k == INTEGER:
            return self._call("getInteger")
        if k == FLOAT:
            return self._call("getFloat")
        if k in (ARRAY, TENSOR):
            return self.tensor()
        if k == LIST:
            return [self._call("getListItem", i).to_python() for i in range(self._call("getSize"))]
        if k == OBJECT:
            return {name: self._call("getObjectItem", name).to_python() for name in self.keys()}
        return self.to_json_string()

    def keys(self):
        """The names of an object's items, in order (read from its JSON text)."""
        import json
        return list(json.loads(self._call("toJsonString")).keys())

    def __eq__(self, other):
        if not isinstance(other, DataTree):
            return NotImplemented
        return self._call("equals", other)

    __hash__ = Object.__hash__


def load_datatree(path):
    return DataTree.load(path)


def save_datatree(path, value):
    if isinstance(value, DataTree):
        value.save(path)
    else:
        with DataTree.from_python(value) as tree:
            tree.save(path)
