"""Python binding of libtalvex: ARF avatar documents, DataTree values and the
animation sample stream, over the library's flat C interface.

    import talvex
    with talvex.Arf.load("avatar.arf.json") as arf:
        for skeleton in arf.components.skeletons:
            print(skeleton.name)

Failures raise `talvex.Error` with the library's own text. `talvex.call(name,
*args)` reaches any C function of the header directly."""

from ._core import Error, FUNCTIONS, Object, library_path, live_handles, slot_text
from ._core import function as _function
from ._arf import Arf, Data, DataList
from ._datatree import DataTree, load_datatree, save_datatree
from ._stream import SampleStream, decode as decode_stream, encode as encode_stream
from ._animation import Animator, animate, framework
from ._gltf import Accessor, Gltf
from ._image import decode_image, load_image, pixels, save_image
from . import _tensor

__all__ = ["Error", "Arf", "Data", "DataList", "DataTree", "Gltf", "Accessor", "SampleStream", "Object", "Animator", "animate", "framework", "call",
           "create", "decode_stream", "encode_stream", "load_datatree", "save_datatree", "load_image",
           "decode_image", "save_image", "pixels", "library_path", "live_handles", "has_numpy", "FUNCTIONS"]

has_numpy = _tensor.numpy is not None


def call(name, *args):
    """Calls the C function `name` through the generated wrapper: results come
    back as the return value, failures raise Error."""
    f = _function(name)
    if f is None:
        raise AttributeError(f"no C function {name}")
    return f(*args)


def create(class_name, *args):
    """A new object of a class made by a `<Class>_create` function, such as
    create("BlendshapeAnimationSample")."""
    for name in FUNCTIONS:
        if name.endswith(f"_{class_name}_create"):
            return FUNCTIONS[name](*args)
    raise AttributeError(f"no create function for {class_name}")


def last_error():
    """The error slot's current text."""
    from ._core import LOCK
    with LOCK:
        return slot_text()
